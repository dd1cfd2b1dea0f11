#include "orvix1/dpi.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <wx/frame.h>
#include <wx/settings.h>

#include "support/wx_test_environment.h"

namespace {

// Changes the desktop's resolution setting like a desktop's settings
// service would, and puts the original back afterwards. Every test starts
// with the scale forgotten, so that it is read again.
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
  static void rescale(int dpi) {
    set_desktop_dpi(dpi);
    orvix1::forget_DPI_scale();
  }
  static double desktop_resolution() { return gdk_screen_get_resolution(gdk_screen_get_default()); }
  static int default_font_pixel_height() {
    return wxSystemSettings::GetFont(wxSYS_DEFAULT_GUI_FONT).GetPixelSize().GetHeight();
  }

 private:
  gint m_saved_xft_dpi = 0;
};

wxImage solid_image(int width, int height) {
  wxImage image(width, height);
  image.SetRGB(wxRect(0, 0, width, height), 12, 34, 56);
  return image;
}

TEST_F(DpiScale, DesktopAt96WinsOverTheLargerDefaultFontAndBelow96IsRaisedToOne) {
  ASSERT_EQ(desktop_resolution(), 96.0);
  // "Sans 10" is 17 pixels high: alone it would mean 17 / 16 = 1.0625.
  ASSERT_GT(default_font_pixel_height(), 16);
  EXPECT_EQ(orvix1::get_DPI_scale(), 1.0);
  EXPECT_EQ(orvix1::calculate_DPI_scaled_size(101, 31), wxSize(101, 31));
  // At one an image is not even copied.
  wxImage image = solid_image(16, 16);
  const unsigned char* data = image.GetData();
  orvix1::apply_DPI_scale(image);
  EXPECT_EQ(image.GetData(), data);
  wxImage invalid;
  orvix1::apply_DPI_scale(invalid);
  EXPECT_FALSE(invalid.IsOk());

  rescale(72);
  EXPECT_EQ(orvix1::get_DPI_scale(), 1.0);
}

TEST_F(DpiScale, DesktopAt144ScalesByOneAndAHalf) {
  rescale(144);
  ASSERT_EQ(desktop_resolution(), 144.0);
  EXPECT_EQ(orvix1::get_DPI_scale(), 1.5);

  wxImage icon = solid_image(16, 16);
  orvix1::apply_DPI_scale(icon);
  EXPECT_EQ(icon.GetSize(), wxSize(24, 24));
  EXPECT_EQ(icon.GetRed(23, 23), 12);

  wxImage odd = solid_image(15, 7);  // 22.5 x 10.5
  orvix1::apply_DPI_scale(odd);
  EXPECT_EQ(odd.GetSize(), wxSize(22, 10));

  EXPECT_EQ(orvix1::calculate_DPI_scaled_size(101, 31), wxSize(151, 46));
  EXPECT_EQ(orvix1::calculate_DPI_scaled_size(0, 1), wxSize(0, 1));
}

TEST_F(DpiScale, DesktopFactorIsCachedUntilForgotten) {
  EXPECT_EQ(orvix1::get_DPI_scale(), 1.0);
  set_desktop_dpi(144);
  EXPECT_EQ(orvix1::get_DPI_scale(), 1.0);
  orvix1::forget_DPI_scale();
  EXPECT_EQ(orvix1::get_DPI_scale(), 1.5);
  set_desktop_dpi(192);
  EXPECT_EQ(orvix1::get_DPI_scale(), 1.5);
}

TEST_F(DpiScale, WithoutDesktopResolutionTheDefaultFontDecidesAndIsAskedAgain) {
  // wx measures fonts with the desktop resolution as its scale; without one
  // it hands Pango a negative size, which Pango rejects (keeping the font's
  // own size). Keeps those complaints out of the test output.
  const guint muted = g_log_set_handler(
      "Pango", G_LOG_LEVEL_CRITICAL, [](const gchar*, GLogLevelFlags, const gchar*, gpointer) {}, nullptr);
  set_desktop_dpi(-1);
  ASSERT_LT(desktop_resolution(), 0.0);
  ASSERT_EQ(default_font_pixel_height(), 17);
  EXPECT_EQ(orvix1::get_DPI_scale(), 17 * 0.0625);
  EXPECT_EQ(orvix1::calculate_DPI_scaled_size(100, 16), wxSize(106, 17));

  set_desktop_dpi(96);
  EXPECT_EQ(orvix1::get_DPI_scale(), 1.0);
  g_log_remove_handler("Pango", muted);
}

TEST_F(DpiScale, WindowSizeIsScaledAndPositionKept) {
  auto* frame = new wxFrame(nullptr, wxID_ANY, "host", wxPoint(40, 50), wxSize(400, 300));
  auto* child = new wxWindow(frame, wxID_ANY, wxPoint(7, 9), wxSize(10, 10));
  const wxSize initial_min_size = child->GetMinSize();

  orvix1::set_DPI_scaled_window_size(child, 100, 30, false);
  EXPECT_EQ(child->GetSize(), wxSize(100, 30));
  EXPECT_EQ(child->GetMinSize(), initial_min_size);

  rescale(144);
  orvix1::set_DPI_scaled_window_size(child, 100, 30, true);
  EXPECT_EQ(child->GetSize(), wxSize(150, 45));
  EXPECT_EQ(child->GetMinSize(), wxSize(150, 45));
  EXPECT_EQ(child->GetPosition(), wxPoint(7, 9));

  orvix1::set_DPI_scaled_window_size(child, 20, 10, false);
  EXPECT_EQ(child->GetSize(), wxSize(30, 15));
  EXPECT_EQ(child->GetMinSize(), wxSize(150, 45));

  orvix1::set_DPI_scaled_window_size(nullptr, 100, 30, true);
  frame->Destroy();
  orvix1_test::pump_events();
}

TEST(DpiAutoscale, GuardsNestAndRestore) {
  const auto autoscale = [] { return orvix1::get_image_loading_autoscale(); };
  EXPECT_TRUE(autoscale());
  {
    orvix1::autoscale_guard_t unscaled(false);
    {
      orvix1::autoscale_guard_t scaled(true);
      EXPECT_TRUE(autoscale());
      {
        orvix1::autoscale_guard_t unscaled_again(false);
        EXPECT_FALSE(autoscale());
      }
      EXPECT_TRUE(autoscale());
      orvix1::set_image_loading_autoscale(false);  // undone with the guard
    }
    EXPECT_FALSE(autoscale());
  }
  EXPECT_TRUE(autoscale());
}

}  // namespace
