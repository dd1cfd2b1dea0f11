// The test environment started wx and holds one initialize_wxwidgets()
// reference of its own, so every session here runs on a wx it did not start.

#include "orvix1/host_session.h"

#include <gtest/gtest.h>

#include "orvix1/wx_dll_application.h"
#include "support/host_window.h"
#include "support/log_capture.h"
#include "support/wx_test_environment.h"

namespace {

using namespace orvix1;
using orvix1_test::host_window_t;
using orvix1_test::take_asserts;

// Nested sessions add clients: the latest handle wins, the palette is the
// live one with the desktop's colours and fonts. Even when a session ends
// the last client outside a main loop, where cleanup_wxwidgets() would end
// wx, it leaves the wx it did not start running and drops the handle.
TEST(HostSession, OnARunningWxAddsClientsAndNeverEndsIt) {
  take_asserts();
  wxAppConsole* const app = wxApp::GetInstance();
  host_window_t window(240, 120);
  {
    host_session_t outer(window.widget());
    ASSERT_TRUE(outer.ok());
    EXPECT_FALSE(outer.started_wx());
    EXPECT_EQ(get_main_window()->GetSize(), wxSize(240, 120));
    EXPECT_EQ(outer.palette().get(), ui_settings_t::get().get());
    EXPECT_TRUE(outer.palette()->get_color(color_window_bg).IsOk());
    EXPECT_TRUE(outer.palette()->get_font(font_normal).IsOk());
    {
      host_session_t inner;
      EXPECT_FALSE(get_main_window());
      EXPECT_EQ(inner.palette().get(), outer.palette().get());
    }
    EXPECT_EQ(wxApp::GetInstance(), app);
    cleanup_wxwidgets();  // the environment's client: the outer session is the last
    ASSERT_EQ(wxApp::GetInstance(), app);
  }
  EXPECT_EQ(wxApp::GetInstance(), app);
  EXPECT_FALSE(get_main_window());
  initialize_wxwidgets(nullptr);  // the environment's client back
  EXPECT_TRUE(take_asserts().empty());
}

// Asking for the palette while wx is not running writes one warning per
// process, whichever way it is asked for.
TEST(HostSession, ThePaletteAskedForWithoutWxIsReportedOnce) {
  const auto palette = ui_settings_configure_t::get();
  orvix1_test::log_capture_t log("orvix.settings");
  ui_settings_t::get();
  EXPECT_EQ(log.warnings(), 0u);
  wxAppConsole* const app = wxApp::GetInstance();
  wxApp::SetInstance(nullptr);
  ui_settings_t::get();
  ui_settings_configure_t::get();
  wxApp::SetInstance(app);
  ASSERT_EQ(log.warnings(), 1u);
  EXPECT_NE(log.entries()[0].message.find("host_session_t"), std::string::npos);
}

}  // namespace
