#include "orvix1/wx_dll_application.h"

#include <vector>

#include <gtest/gtest.h>
#include <wx/dialog.h>
#include <wx/filesys.h>
#include <wx/frame.h>
#include <wx/fs_arc.h>
#include <wx/timer.h>

#include "orvix1/error_dialog.h"
#include "support/host_window.h"
#include "support/wx_test_environment.h"

namespace {

using orvix1_test::host_window_t;
using orvix1_test::pump_events;
using orvix1_test::run_in_main_loop;
using orvix1_test::run_soon;
using orvix1_test::take_asserts;

// Reads the registered file-system handlers.
struct file_system_probe_t : wxFileSystem {
  static int archive_handlers() {
    int count = 0;
    for (wxObject* handler : m_Handlers)
      if (dynamic_cast<wxArchiveFSHandler*>(handler) != nullptr) ++count;
    return count;
  }
};

// Start-up and clean-up counting; the test environment holds one reference
// of its own for the whole process. Two initialisations and one clean-up
// keep the latest handle. Inside a main
// loop the last clean-up leaves wx to the loop but drops the main window and
// closes the error dialog (earlier clean-ups close nothing); one clean-up too
// many asserts, and initialising again registers no handler twice.
TEST(EntryLifecycle, TwoInitialisationsOneCleanupAndOverCleanupInsideAMainLoop) {
  EXPECT_EQ(file_system_probe_t::archive_handlers(), 1);
  host_window_t first(200, 100);
  host_window_t second(320, 160);
  EXPECT_TRUE(orvix1::initialize_wxwidgets(first.widget()));
  EXPECT_TRUE(orvix1::initialize_wxwidgets(second.widget()));
  orvix1::cleanup_wxwidgets();
  ASSERT_NE(wxTheApp, nullptr);
  {
    const talvar2::smart_pointer_t<wxWindow> main_window = orvix1::get_main_window();
    ASSERT_TRUE(main_window);
    EXPECT_EQ(main_window->GetSize(), wxSize(320, 160));
    EXPECT_NE(orvix1::get_main_window().get(), main_window.get());  // a fresh wrapper each time
  }
  EXPECT_TRUE(second.still_alive());
  orvix1::initialize_wxwidgets(nullptr);  // a null handle: no main window
  EXPECT_FALSE(orvix1::get_main_window());
  orvix1::initialize_wxwidgets(second.widget());
  orvix1::show_error_dlg("disk full");
  for (int i = 0; i < 3; ++i) orvix1::cleanup_wxwidgets();  // back to the environment's reference
  EXPECT_TRUE(take_asserts().empty());
  EXPECT_NE(orvix1::get_error_dlg(), nullptr);
  EXPECT_TRUE(orvix1::get_main_window());
  bool app_alive = false, main_window_dropped = false, error_dialog_closed = false;
  run_in_main_loop([&] {
    orvix1::cleanup_wxwidgets();  // the environment's reference: now at 0
    app_alive = wxTheApp != nullptr;
    main_window_dropped = !orvix1::get_main_window();
    error_dialog_closed = orvix1::get_error_dlg() == nullptr;
    orvix1::cleanup_wxwidgets();  // one too many
  });
  EXPECT_TRUE(app_alive);
  EXPECT_TRUE(main_window_dropped);
  EXPECT_TRUE(error_dialog_closed);
  const auto asserts = take_asserts();
  ASSERT_EQ(asserts.size(), 1u);
  EXPECT_EQ(asserts[0].condition, "g_initialization_counter > 0");
  EXPECT_EQ(asserts[0].message, "cleanup_wxwidgets() was called more times than initialize_wxwidgets()");
  EXPECT_EQ(asserts[0].line, 158);
  EXPECT_NE(asserts[0].file.find("wx_dll_application"), std::string::npos);

  EXPECT_TRUE(orvix1::initialize_wxwidgets(nullptr));  // the environment's reference again
  EXPECT_EQ(file_system_probe_t::archive_handlers(), 1);
  EXPECT_NE(wxImage::FindHandler(wxBITMAP_TYPE_GIF), nullptr);
}

// The frame beside the modal dialog is a top-level window that is no dialog.
TEST(MessageLoop, DispatchesButDoesNotIdleUnderAModalDialog) {
  ASSERT_NE(dynamic_cast<orvix1::wxDLLGlobalApp*>(wxTheApp), nullptr);
  int idle = 0, received = 0;
  const auto count_idle = [&idle](wxIdleEvent& event) {
    ++idle;
    event.Skip();
  };
  wxTheApp->Bind(wxEVT_IDLE, count_idle);
  auto* frame = new wxFrame(nullptr, wxID_ANY, "owner");
  frame->Show();
  orvix1::process_message_loop();
  EXPECT_GT(idle, 0);

  int idle_under_modal = -1, dispatched = -1;
  bool app_idle_result = true;
  {
    wxDialog dialog(frame, wxID_ANY, "modal");
    const auto timer = run_soon([&] {
      idle = 0;
      wxTheApp->CallAfter([&received] { ++received; });
      orvix1::process_message_loop();
      dispatched = received;
      app_idle_result = wxTheApp->ProcessIdle();
      idle_under_modal = idle;
      dialog.EndModal(wxID_OK);
    });
    dialog.ShowModal();
  }
  wxTheApp->Unbind(wxEVT_IDLE, count_idle);
  EXPECT_EQ(dispatched, 1);
  EXPECT_EQ(idle_under_modal, 0);
  EXPECT_FALSE(app_idle_result);
  frame->Destroy();
  pump_events();
}

struct mouse_listener_t : talvar2::subscriber_base_t {
  void on_mouse(wxMouseEvent* event) { seen.push_back(event); }
  std::vector<wxMouseEvent*> seen;
};

// No subscriber or a null event: nothing happens.
TEST(MouseSignal, ReachesConnectedWidgetsOnly) {
  wxMouseEvent event(wxEVT_MOTION);
  orvix1::fire_mouse_signal(&event);
  mouse_listener_t listener;
  orvix1::get_mouse_signal().connect(&listener, &mouse_listener_t::on_mouse);
  orvix1::fire_mouse_signal(nullptr);
  orvix1::fire_mouse_signal(&event);
  orvix1::get_mouse_signal().disconnect(&listener, &mouse_listener_t::on_mouse);
  EXPECT_EQ(listener.seen, std::vector<wxMouseEvent*>{&event});
  EXPECT_TRUE(take_asserts().empty());
}

}  // namespace
