#include "orvix1/native_window.h"

#include <gtest/gtest.h>
#include <wx/frame.h>
#include <wx/nativewin.h>

#include "support/host_window.h"
#include "support/wx_test_environment.h"

namespace {

using orvix1_test::host_window_t;
using orvix1_test::pump_events;

TEST(NativeWindow, WrapsAHostWidgetOrItsGdkWindowWithoutOwningItAndFollowsItsSize) {
  host_window_t host(240, 120);
  wxWindow* wrapper = orvix1::create_dummy_wrapper(host.widget());
  ASSERT_NE(wrapper, nullptr);
  EXPECT_EQ(wrapper->GetSize(), wxSize(240, 120));
  EXPECT_NE(dynamic_cast<wxNativeContainerWindow*>(wrapper), nullptr);
  auto* frame = new wxFrame(wrapper, wxID_ANY, "child of the host");
  frame->Show();
  pump_events();
  EXPECT_EQ(frame->GetParent(), wrapper);
  // It follows the host's size, which GTK applies on a frame-clock tick.
  gtk_window_resize(GTK_WINDOW(host.widget()), 300, 90);
  const gint64 give_up = g_get_monotonic_time() + 5 * G_USEC_PER_SEC;
  while (wrapper->GetSize() != wxSize(300, 90) && g_get_monotonic_time() < give_up)
    g_main_context_iteration(nullptr, TRUE);
  EXPECT_EQ(wrapper->GetSize(), wxSize(300, 90));
  // The wrapper shares the host's frame clock, which outlives it: nothing of
  // the wrapper may stay connected there (a later frame would call into it).
  GdkFrameClock* clock = gtk_widget_get_frame_clock(host.widget());
  ASSERT_NE(g_signal_handler_find(clock, G_SIGNAL_MATCH_DATA, 0, 0, nullptr, nullptr, wrapper), 0u);
  const void* released = wrapper;
  orvix1::release_dummy_wrapper(wrapper);
  pump_events();
  EXPECT_TRUE(host.still_alive());
  EXPECT_EQ(g_signal_handler_find(clock, G_SIGNAL_MATCH_DATA, 0, 0, nullptr, nullptr,
                                  const_cast<void*>(released)), 0u);

  wxWindow* from_gdk = orvix1::create_dummy_wrapper(host.gdk_window());
  ASSERT_NE(from_gdk, nullptr);
  EXPECT_EQ(from_gdk->GetSize(), wxSize(300, 90));
  delete from_gdk;  // deleting is the same as releasing
  EXPECT_TRUE(host.still_alive());

  // Not-yet-realised widgets are realised; a null handle is refused (objects
  // that are not windows: log_test).
  GtkWidget* hidden = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  orvix1::release_dummy_wrapper(orvix1::create_dummy_wrapper(hidden));
  EXPECT_TRUE(gtk_widget_get_realized(hidden));
  gtk_widget_destroy(hidden);
  EXPECT_EQ(orvix1::create_dummy_wrapper(nullptr), nullptr);
  orvix1::release_dummy_wrapper(nullptr);
}

}  // namespace
