#include "orvix1/host_session.h"

#include <langinfo.h>

#include <clocale>
#include <cstring>

#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/init.h>

#include "core/log.h"
#include "host/library_clients.h"
#include "orvix1/wx_dll_application.h"

namespace orvix1 {
namespace {

log4cplus::Logger session_logger() { return log::get_logger("orvix.host"); }

// wxEntryStart leaves LC_CTYPE at "C", where wx's conversions turn UTF-8
// text into nothing.
void use_utf8_ctype() {
  if (std::setlocale(LC_CTYPE, "") != nullptr && std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0)
    return;
  std::setlocale(LC_CTYPE, "C.UTF-8");
}

}  // namespace

host_session_t::host_session_t(void* main_window) {
  // GTK and wx read the program name from the first argument.
  static char program[] = "orvix1-host";
  char* argv[] = {program, nullptr};
  int argc = 1;
  start(argc, argv, main_window);
}

host_session_t::host_session_t(int& argc, char** argv, void* main_window) {
  start(argc, argv, main_window);
}

void host_session_t::start(int& argc, char** argv, void* main_window) {
  if (wxApp::GetInstance() == nullptr && !start_wx(argc, argv)) return;
  m_ok = true;
  initialize_wxwidgets(main_window);
  m_palette = ui_settings_configure_t::get();
}

bool host_session_t::start_wx(int& argc, char** argv) {
  if (!wxEntryStart(argc, argv)) {
    ORVIX_LOG_ERROR(session_logger(),
                    "wxWidgets did not start (is there a display?): the library is not started");
    return false;
  }
  use_utf8_ctype();
  m_loop = std::make_unique<wxGUIEventLoop>();
  m_activator = std::make_unique<wxEventLoopActivator>(m_loop.get());
  if (!wxTheApp->CallOnInit()) {
    ORVIX_LOG_ERROR(session_logger(), "the application object refused to start: the library is not started");
    m_activator.reset();
    m_loop.reset();
    wxEntryCleanup();
    return false;
  }
  m_started_wx = true;
  return true;
}

host_session_t::~host_session_t() {
  if (!m_ok) return;
  // The palette's monitor window must be gone, and its deletion handled,
  // before wx may end.
  m_palette.reset();
  const bool last_client = detail::release_library_client();
  m_activator.reset();
  m_loop.reset();
  if (m_started_wx && last_client && wxTheApp != nullptr && !wxAppConsoleBase::IsMainLoopRunning())
    wxEntryCleanup();
}

}  // namespace orvix1
