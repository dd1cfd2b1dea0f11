#include "orvix1/dpi.h"

#include <cstdlib>

#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <wx/frame.h>
#include <wx/settings.h>

#include "support/wx_test_environment.h"

namespace {

// Sets the desktop's resolution as its settings service would, and puts it
// back afterwards; every test starts with the scale forgotten.
class DpiScale : public ::testing::Test {
 protected:
  void SetUp() override {
    g_object_get(gtk_settings_get_default(), "gtk-xft-dpi", &m_saved_xft_dpi, NULL);
    orvix1::forget_DPI_scale();
  }
  void TearDown() override {
    g_object_set(gtk_settings_get_default(), "gtk-xft-dpi", m_saved_xft_dpi, NULL);
    orvix1::forget_DPI_scale();
  }

  // -1 is a desktop without a resolution setting.
  static void set_desktop_dpi(int dpi) {
    g_object_set(gtk_settings_get_default(), "gtk-xft-dpi", dpi < 0 ? -1 : dpi * 1024, NULL);
  }
  static double desktop_resolution() { return gdk_screen_get_resolution(gdk_screen_get_default()); }

 private:
  gint m_saved_xft_dpi = 0;
};

// "Sans 10" is 17 pixels high: alone it would mean 17 / 16 = 1.0625, but the
// desktop's 96 dpi wins; below 96 the factor is raised to one. The factor is
// cached until forgotten.
TEST_F(DpiScale, DesktopAt96WinsOverTheFontAndAt144ScalesImagesSizesAndWindowsByOneAndAHalf) {
  ASSERT_EQ(desktop_resolution(), 96.0);
  ASSERT_GT(wxSystemSettings::GetFont(wxSYS_DEFAULT_GUI_FONT).GetPixelSize().GetHeight(), 16);
  EXPECT_EQ(orvix1::get_DPI_scale(), 1.0);
  EXPECT_EQ(orvix1::calculate_DPI_scaled_size(101, 31), wxSize(101, 31));
  wxImage image(16, 16);
  const unsigned char* data = image.GetData();
  orvix1::apply_DPI_scale(image);
  EXPECT_EQ(image.GetData(), data);  // at one not even copied

  set_desktop_dpi(72);
  orvix1::forget_DPI_scale();
  EXPECT_EQ(orvix1::get_DPI_scale(), 1.0);
  set_desktop_dpi(144);
  EXPECT_EQ(orvix1::get_DPI_scale(), 1.0);
  orvix1::forget_DPI_scale();
  EXPECT_EQ(orvix1::get_DPI_scale(), 1.5);

  orvix1::apply_DPI_scale(image);
  EXPECT_EQ(image.GetSize(), wxSize(24, 24));
  wxImage odd(15, 7);  // 22.5 x 10.5
  orvix1::apply_DPI_scale(odd);
  EXPECT_EQ(odd.GetSize(), wxSize(22, 10));

  EXPECT_EQ(orvix1::calculate_DPI_scaled_size(101, 31), wxSize(151, 46));

  auto* frame = new wxFrame(nullptr, wxID_ANY, "host", wxPoint(40, 50), wxSize(400, 300));
  auto* child = new wxWindow(frame, wxID_ANY, wxPoint(7, 9), wxSize(10, 10));
  orvix1::set_DPI_scaled_window_size(child, 100, 30, true);
  EXPECT_EQ(child->GetSize(), wxSize(150, 45));
  EXPECT_EQ(child->GetPosition(), wxPoint(7, 9));
  orvix1::set_DPI_scaled_window_size(child, 20, 10, false);
  EXPECT_EQ(child->GetSize(), wxSize(30, 15));
  EXPECT_EQ(child->GetMinSize(), wxSize(150, 45));  // set only when asked
  orvix1::set_DPI_scaled_window_size(nullptr, 100, 30, true);
  frame->Destroy();
  orvix1_test::pump_events();
}

TEST_F(DpiScale, WithoutDesktopResolutionTheDefaultFontDecidesAndIsAskedAgain) {
  // Without a desktop resolution wx hands Pango a negative font size, which
  // Pango rejects with a complaint (keeping the font's own size): muted.
  const guint muted = g_log_set_handler(
      "Pango", G_LOG_LEVEL_CRITICAL, [](const gchar*, GLogLevelFlags, const gchar*, gpointer) {}, nullptr);
  set_desktop_dpi(-1);
  ASSERT_LT(desktop_resolution(), 0.0);
  ASSERT_EQ(wxSystemSettings::GetFont(wxSYS_DEFAULT_GUI_FONT).GetPixelSize().GetHeight(), 17);
  EXPECT_EQ(orvix1::get_DPI_scale(), 17 * 0.0625);
  EXPECT_EQ(orvix1::calculate_DPI_scaled_size(100, 16), wxSize(106, 17));
  set_desktop_dpi(96);  // not cached: asked again
  EXPECT_EQ(orvix1::get_DPI_scale(), 1.0);
  g_log_remove_handler("Pango", muted);
}

// A host's (or a test's) scale replaces the desktop's until handed back;
// nothing brings the factor below one. The toolkit's own scale is that of
// the process's GDK_SCALE (1 when unset).
TEST_F(DpiScale, AnOverrideWinsOverTheDesktopUntilHandedBack) {
  set_desktop_dpi(144);
  const struct {
    double override_scale, scale;
    int length_101;
  } cases[] = {{2.0, 2.0, 202}, {1.25, 1.25, 126}, {0.5, 1.0, 101},
               {0.0, 1.5, 151}, {-1.0, 1.5, 151}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.override_scale);
    orvix1::set_DPI_scale_override(c.override_scale);
    EXPECT_EQ(orvix1::get_DPI_scale(), c.scale);
    EXPECT_EQ(orvix1::calculate_DPI_scaled_length(101), c.length_101);
  }
  const char* gdk_scale = std::getenv("GDK_SCALE");
  EXPECT_EQ(orvix1::get_content_scale_factor(), gdk_scale != nullptr ? std::atof(gdk_scale) : 1.0);
}

TEST(DpiAutoscale, GuardsNestAndRestore) {
  using orvix1::get_image_loading_autoscale;
  {
    orvix1::autoscale_guard_t unscaled(false);
    {
      orvix1::autoscale_guard_t scaled(true);
      EXPECT_TRUE(get_image_loading_autoscale());
      orvix1::set_image_loading_autoscale(false);  // undone with the guard
    }
    EXPECT_FALSE(get_image_loading_autoscale());
  }
  EXPECT_TRUE(get_image_loading_autoscale());
}

}  // namespace
