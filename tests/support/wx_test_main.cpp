#include <clocale>
#include <cstdlib>
#include <mutex>

#include <gtest/gtest.h>
#include <wx/evtloop.h>
#include <wx/filesys.h>
#include <wx/fs_arc.h>
#include <wx/init.h>
#include <wx/log.h>
#include <wx/wx.h>

#include "orvix1/wx_dll_application.h"
#include "support/wx_test_environment.h"

namespace orvix1_test {
namespace {

int g_argc = 0;
char** g_argv = nullptr;
std::mutex g_asserts_mutex;
std::vector<recorded_assert_t> g_asserts;
std::unique_ptr<wxGUIEventLoop> g_loop;
std::unique_ptr<wxEventLoopActivator> g_activator;

void record_assert(const wxString& file, int line, const wxString& function,
                   const wxString& condition, const wxString& message) {
  std::lock_guard<std::mutex> lock(g_asserts_mutex);
  g_asserts.push_back({file.utf8_string(), line, function.utf8_string(), condition.utf8_string(),
                       message.utf8_string()});
}

void start_wx() {
  wxSetAssertHandler(record_assert);
  if (!wxEntryStart(g_argc, g_argv)) {
    std::fprintf(stderr, "cannot start wxWidgets: is there a display?\n");
    std::exit(2);
  }
  delete wxLog::SetActiveTarget(new wxLogStderr);
  g_loop = std::make_unique<wxGUIEventLoop>();
  g_activator = std::make_unique<wxEventLoopActivator>(g_loop.get());
  wxTheApp->CallOnInit();
  orvix1::initialize_wxwidgets(nullptr);
}

void stop_loop() {
  g_activator.reset();
  g_loop.reset();
}

class wx_environment_t : public ::testing::Environment {
 public:
  void SetUp() override { start_wx(); }
  void TearDown() override {
    if (wxTheApp == nullptr) return;
    pump_events();
    stop_loop();
    orvix1::cleanup_wxwidgets();
    if (wxTheApp != nullptr) {
      std::fprintf(stderr, "the last cleanup_wxwidgets() left wxWidgets running\n");
      wxEntryCleanup();
      std::exit(3);
    }
  }
};

}  // namespace

std::vector<recorded_assert_t> take_asserts() {
  std::lock_guard<std::mutex> lock(g_asserts_mutex);
  std::vector<recorded_assert_t> taken;
  taken.swap(g_asserts);
  return taken;
}

void pump_events() {
  if (wxTheApp == nullptr) return;
  for (int round = 0; round < 100; ++round) {
    while (wxTheApp->Pending()) wxTheApp->Dispatch();
    wxTheApp->ProcessPendingEvents();
    if (!wxTheApp->ProcessIdle() && !wxTheApp->Pending() && !wxTheApp->HasPendingEvents()) return;
  }
}

void ensure_wx_running() {
  if (wxTheApp != nullptr) return;
  stop_loop();
  start_wx();
  // wxEntryCleanup dropped the image and file-system handlers, and the
  // library registers its handlers once per process by design: put back
  // what the later tests of this process rely on.
  wxInitAllImageHandlers();
  wxFileSystem::AddHandler(new wxArchiveFSHandler);
}

std::unique_ptr<wxTimer> run_soon(const std::function<void()>& body) {
  auto timer = std::make_unique<wxTimer>();
  timer->Bind(wxEVT_TIMER, [body](wxTimerEvent&) { body(); });
  timer->StartOnce(1);
  return timer;
}

void run_in_main_loop(const std::function<void()>& body) {
  const auto timer = run_soon([body] {
    body();
    wxTheApp->ExitMainLoop();
  });
  wxTheApp->MainLoop();
}

}  // namespace orvix1_test

int main(int argc, char** argv) {
  // wxEntryStart leaves LC_CTYPE at "C", which turns UTF-8 text into nothing.
  std::setlocale(LC_ALL, "C.UTF-8");
  ::testing::InitGoogleTest(&argc, argv);
  orvix1_test::g_argc = argc;
  orvix1_test::g_argv = argv;
  ::testing::AddGlobalTestEnvironment(new orvix1_test::wx_environment_t);
  return RUN_ALL_TESTS();
}
