#include "fuzz_environment.h"

#include <unistd.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <fstream>

#include <glib.h>
#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/init.h>
#include <wx/log.h>

#include "core/log4cplus_headers.h"
#include "orvix1/wx_dll_application.h"

namespace orvix1_fuzz {
namespace {

std::string g_folder;

void abort_on_assert(const wxString& file, int line, const wxString& function,
                     const wxString& condition, const wxString& message) {
  std::fprintf(stderr, "wx assertion at %s:%d in %s: %s (%s)\n", file.utf8_str().data(), line,
               function.utf8_str().data(), condition.utf8_str().data(), message.utf8_str().data());
  std::abort();
}

// A critical from GLib, GDK, GTK or GdkPixbuf is a failed argument check
// (as a wx assertion is), whoever made the call: a finding.
void abort_on_critical(const gchar* domain, GLogLevelFlags level, const gchar* message,
                       gpointer data) {
  if ((level & G_LOG_LEVEL_CRITICAL) == 0) return g_log_default_handler(domain, level, message, data);
  std::fprintf(stderr, "%s-CRITICAL: %s\n", domain != nullptr ? domain : "", message);
  std::abort();
}

// Takes every log line and drops it: the lines are still built, as in a
// program, but thousands of inputs a second would drown the fuzzer's output.
class discarding_appender_t : public log4cplus::Appender {
 public:
  ~discarding_appender_t() override { destructorImpl(); }
  void close() override {}

 protected:
  void append(const log4cplus::spi::InternalLoggingEvent&) override {}
};

void silence_library_log() {
  log4cplus::Logger orvix = log4cplus::Logger::getInstance("orvix");
  orvix.removeAllAppenders();
  orvix.addAppender(log4cplus::SharedAppenderPtr(new discarding_appender_t));
  orvix.setAdditivity(false);
}

void remove_folder() {
  const std::string command = "rm -rf '" + g_folder + "'";
  if (std::system(command.c_str()) != 0) std::perror("rm");
}

}  // namespace

void start_environment(int* argc, char*** argv) {
  std::setlocale(LC_ALL, "C.UTF-8");
  wxSetAssertHandler(abort_on_assert);
  g_log_set_default_handler(abort_on_critical, nullptr);
  if (!wxEntryStart(*argc, *argv)) {
    std::fprintf(stderr, "cannot start wxWidgets: is there a display?\n");
    std::exit(2);
  }
  // wx's own error messages go to stderr instead of a dialog at idle time.
  delete wxLog::SetActiveTarget(new wxLogStderr);
  static wxGUIEventLoop loop;
  static wxEventLoopActivator activator(&loop);
  wxTheApp->CallOnInit();
  orvix1::initialize_wxwidgets(nullptr);
  silence_library_log();

  char pattern[] = "/tmp/orvix-fuzz-XXXXXX";
  if (::mkdtemp(pattern) == nullptr) {
    std::perror("mkdtemp");
    std::exit(2);
  }
  g_folder = pattern;
  std::atexit(remove_folder);
}

std::string write_input(const std::string& name, const std::uint8_t* data, std::size_t size) {
  const std::string path = g_folder + "/" + name;
  std::ofstream(path, std::ios::binary | std::ios::trunc)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  return path;
}

}  // namespace orvix1_fuzz
