#include "orvix1/image_loader.h"

#include <string>

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include "orvix1/dpi.h"
#include "orvix1/resource_loader.h"
#include "support/log_capture.h"
#include "support/resource_archive.h"
#include "support/scratch_dir.h"
#include "support/wx_test_environment.h"

namespace {

using orvix1_test::png_bytes;
using orvix1_test::xrc_text;

void set_desktop_dpi(int dpi) {
  g_object_set(gtk_settings_get_default(), "gtk-xft-dpi", dpi * 1024, NULL);
  orvix1::forget_DPI_scale();
}

class ImageLoader : public ::testing::Test {
 protected:
  void SetUp() override {
    const std::string path = m_dir.file("icons.zip");
    orvix1_test::write_zip(
        path, {{"resources.xrc",
                xrc_text("<object class=\"wxImage\" name=\"app\"><bitmap>icons/app.png</bitmap>"
                         "</object>\n"
                         "<object class=\"wxAnimation\" name=\"busy\"><animation>busy.gif"
                         "</animation></object>")},
               {"icons/app.png", png_bytes(16, 16, *wxRED)},
               {"icons/close.png", png_bytes(16, 8, *wxBLUE)},
               {"busy.gif", orvix1_test::gif_bytes(16, 16)}});
    ASSERT_TRUE(m_resources.add_archive(path));
  }
  void TearDown() override { set_desktop_dpi(96); }

  orvix1_test::scratch_folder_t m_dir;
  orvix1::resource_loader_t m_resources;
  orvix1::image_loader_t m_images{m_resources};
};

TEST_F(ImageLoader, ScalesForADenseDesktopAndUndecodableFilesGiveInvalidResults) {
  set_desktop_dpi(144);
  ASSERT_DOUBLE_EQ(orvix1::get_DPI_scale(), 1.5);

  EXPECT_EQ(m_images.load_image("app").GetSize(), wxSize(24, 24));
  EXPECT_EQ(m_images.load_bitmap("icons/close.png").GetSize(), wxSize(24, 12));
  EXPECT_EQ(m_images.load_icon("app").GetSize(), wxSize(24, 24));
  EXPECT_EQ(m_images.load_animation("busy").GetSize(), wxSize(16, 16));  // animations keep their size
  const orvix1::autoscale_guard_t unscaled(false);
  EXPECT_EQ(m_images.load_bitmap("icons/close.png").GetSize(), wxSize(16, 8));

  // Undecodable files give invalid results with a warning each; a name the
  // newest archive declares does not fall through to a file of that name in
  // an older one.
  orvix1_test::write_folder(m_dir.file("junk"),
                            {{"resources.xrc", xrc_text("<object class=\"wxImage\" name=\"icons/close.png\">"
                                                        "<bitmap>icons/app.png</bitmap></object>")},
                             {"icons/app.png", "not a picture"},
                             {"spin.gif", "GIF89a"}});
  ASSERT_TRUE(m_resources.add_archive(m_dir.file("junk")));
  const orvix1_test::log_capture_t capture("orvix");
  EXPECT_FALSE(m_images.load_image("icons/app.png").IsOk());
  EXPECT_FALSE(m_images.load_bitmap("icons/app.png").IsOk());
  EXPECT_FALSE(m_images.load_animation("spin.gif").IsOk());
  ASSERT_EQ(capture.entries().size(), 3u);
  EXPECT_NE(capture.entries()[0].message.find("icons/app.png"), std::string::npos);
  EXPECT_NE(capture.entries()[2].message.find("spin.gif"), std::string::npos);
  EXPECT_FALSE(m_images.load_image("icons/close.png").IsOk());
}

}  // namespace
