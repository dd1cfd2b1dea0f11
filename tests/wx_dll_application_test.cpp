#include "orvix1/wx_dll_application.h"

#include <gtest/gtest.h>
#include <wx/dialog.h>
#include <wx/frame.h>
#include <wx/timer.h>

#include "support/wx_test_environment.h"
#include "talvar2/pointers/intrusive_pointer.h"

namespace {

using orvix1_test::pump_events;
using orvix1_test::run_soon;
using orvix1_test::take_asserts;

TEST(Application, IsTheLibrarysApplicationObject) {
  ASSERT_NE(wxTheApp, nullptr);
  EXPECT_NE(dynamic_cast<orvix1::wxDLLGlobalApp*>(wxTheApp), nullptr);
  EXPECT_EQ(&orvix1::wxGetApp(), wxTheApp);
  EXPECT_EQ(orvix1::wxGetApp().GetLayoutDirection(), wxLayout_LeftToRight);
}

// Counts idle events that reach the application object.
struct idle_counter_t {
  idle_counter_t() { wxTheApp->Bind(wxEVT_IDLE, &idle_counter_t::on_idle, this); }
  ~idle_counter_t() { wxTheApp->Unbind(wxEVT_IDLE, &idle_counter_t::on_idle, this); }
  void on_idle(wxIdleEvent& event) {
    ++count;
    event.Skip();
  }
  int count = 0;
};

// A handler whose queued calls show whether pending events were dispatched.
struct probe_handler_t : wxEvtHandler {
  void queue() { CallAfter([this] { ++received; }); }
  int received = 0;
};

// Shows `dialog` modally and, from inside its loop, runs the message pump
// the way a host would; reports what the pump did.
struct pump_under_modal_t {
  int dispatched = -1;
  int idle_events = -1;
  bool app_idle_result = true;
};

pump_under_modal_t pump_while_modal(wxDialog& dialog) {
  pump_under_modal_t seen;
  probe_handler_t probe;
  const auto timer = run_soon([&] {
    idle_counter_t idle;
    probe.queue();
    orvix1::process_message_loop();
    seen.dispatched = probe.received;
    seen.app_idle_result = wxTheApp->ProcessIdle();
    seen.idle_events = idle.count;
    dialog.EndModal(wxID_OK);
  });
  dialog.ShowModal();
  return seen;
}

TEST(MessageLoop, DispatchesButDoesNotIdleUnderATopLevelModalDialog) {
  wxDialog dialog(nullptr, wxID_ANY, "modal");
  const pump_under_modal_t seen = pump_while_modal(dialog);
  EXPECT_EQ(seen.dispatched, 1);
  EXPECT_EQ(seen.idle_events, 0);
  EXPECT_FALSE(seen.app_idle_result);

  // Once the modal dialog is gone, the pump dispatches and idles again; a
  // modeless dialog does not stop idle work.
  auto* modeless = new wxDialog(nullptr, wxID_ANY, "modeless");
  modeless->Show();
  {
    probe_handler_t probe;
    idle_counter_t idle;
    probe.queue();
    orvix1::process_message_loop();
    EXPECT_EQ(probe.received, 1);
    EXPECT_GT(idle.count, 0);
  }
  modeless->Destroy();

  auto* frame = new wxFrame(nullptr, wxID_ANY, "owner");  // a dialog owned by a frame too
  frame->Show();
  {
    wxDialog child(frame, wxID_ANY, "modal child");
    const pump_under_modal_t owned = pump_while_modal(child);
    EXPECT_EQ(owned.dispatched, 1);
    EXPECT_EQ(owned.idle_events, 0);
  }
  frame->Destroy();
  pump_events();
}

struct mouse_listener_t : talvar2::_internal::subscriber_base_t {
  void on_mouse(wxMouseEvent* event) {
    ++calls;
    last = event;
  }
  int calls = 0;
  wxMouseEvent* last = nullptr;
};

TEST(MouseSignal, ReachesConnectedWidgetsOnly) {
  wxMouseEvent event(wxEVT_MOTION);
  orvix1::fire_mouse_signal(&event);  // nobody listens: nothing happens
  orvix1::fire_mouse_signal(nullptr);

  mouse_listener_t listener;
  orvix1::get_mouse_signal().connect(&listener, &mouse_listener_t::on_mouse);
  orvix1::fire_mouse_signal(nullptr);
  EXPECT_EQ(listener.calls, 0);
  orvix1::fire_mouse_signal(&event);
  EXPECT_EQ(listener.calls, 1);
  EXPECT_EQ(listener.last, &event);

  orvix1::get_mouse_signal().disconnect(&listener, &mouse_listener_t::on_mouse);
  orvix1::fire_mouse_signal(&event);
  EXPECT_EQ(listener.calls, 1);
  {
    mouse_listener_t dying;
    orvix1::get_mouse_signal().connect(&dying, &mouse_listener_t::on_mouse);
  }
  EXPECT_FALSE(orvix1::get_mouse_signal().has_connections());  // a listener that died is forgotten
  orvix1::fire_mouse_signal(&event);
  EXPECT_TRUE(take_asserts().empty());
}

struct counted_t : talvar2::intrusive_pointer_impl_t {};

TEST(AssertionBridge, CompanionAssertionsArriveThroughWx) {
  take_asserts();
  talvar2::intrusive_pointer_t<counted_t> empty;
  EXPECT_EQ(empty.operator->(), nullptr);
  const auto asserts = take_asserts();
  ASSERT_EQ(asserts.size(), 1u);
  EXPECT_EQ(asserts[0].condition, "m_ptr != 0");
  EXPECT_EQ(asserts[0].file, "pointers/intrusive_pointer.h");
  EXPECT_EQ(asserts[0].line, 135);
  EXPECT_NE(asserts[0].function.find("[with T = {anonymous}::counted_t]"), std::string::npos)
      << asserts[0].function;
}

}  // namespace
