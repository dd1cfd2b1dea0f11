#include "orvix1/wx_dll_application.h"

#include <vector>

#include <gtest/gtest.h>
#include <wx/dialog.h>
#include <wx/frame.h>
#include <wx/timer.h>

#include "support/wx_test_environment.h"

namespace {

using orvix1_test::pump_events;
using orvix1_test::run_soon;
using orvix1_test::take_asserts;

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
