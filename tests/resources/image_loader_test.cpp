#include "orvix1/image_loader.h"

#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "orvix1/dpi.h"
#include "orvix1/resource_loader.h"
#include "support/dpi_scale.h"
#include "support/log_capture.h"
#include "support/resource_archive.h"
#include "support/scratch_dir.h"
#include "support/wx_test_environment.h"

namespace {

using orvix1_test::png_bytes;
using orvix1_test::scoped_DPI_scale_t;
using orvix1_test::xrc_text;

// "close" is red, its twin blue; the declared "app" has a declared twin.
// The same test runs under GDK_SCALE=2 (see tests/CMakeLists.txt), where a
// bitmap wants twice the density of an image and carries scale factor 2.
class ImageLoader : public ::testing::Test {
 protected:
  void SetUp() override {
    const std::string base = m_dir.file("base.zip");
    orvix1_test::write_zip(
        base, {{"resources.xrc",
                xrc_text("<object class=\"wxImage\" name=\"app\"><bitmap>app.png</bitmap></object>"
                         "<object class=\"wxImage\" name=\"app@2x\"><bitmap>app2.png</bitmap>"
                         "</object><object class=\"wxAnimation\" name=\"busy\"><animation>busy.gif"
                         "</animation></object>")},
               {"busy.gif", orvix1_test::gif_bytes(16, 16)},
               {"app.png", png_bytes(16, 16, *wxRED)},
               {"app2.png", png_bytes(32, 32, *wxBLUE)},
               {"icons/close.png", png_bytes(16, 8, *wxRED)},
               {"icons/close@2x.png", png_bytes(32, 16, *wxBLUE)},
               {"icons/broken.png", png_bytes(16, 16, *wxRED)},
               {"icons/broken@2x.png", "not a picture"}});
    ASSERT_TRUE(m_resources.add_archive(base));
  }
  static wxColour colour_of(const wxImage& image) {
    return wxColour(image.GetRed(0, 0), image.GetGreen(0, 0), image.GetBlue(0, 0));
  }

  orvix1_test::scratch_folder_t m_dir;
  orvix1::resource_loader_t m_resources;
  orvix1::image_loader_t m_images{m_resources};
};

TEST_F(ImageLoader, FromOneAndAHalfTheTwinIsTakenAndBroughtToTheScale) {
  const double content = orvix1::get_content_scale_factor();
  ASSERT_TRUE(content == 1.0 || content == 2.0);
  struct bitmap_t {
    wxSize pixels;
    wxColour colour;
    double factor;
  };
  const struct {
    double scale;
    wxSize image;
    wxColour image_colour;
    bitmap_t bitmap[2];  // under content scale 1 and 2
  } cases[] = {
      {1.0, {16, 8}, *wxRED, {{{16, 8}, *wxRED, 1.0}, {{32, 16}, *wxBLUE, 2.0}}},
      {1.5, {24, 12}, *wxBLUE, {{{24, 12}, *wxBLUE, 1.0}, {{48, 24}, *wxBLUE, 2.0}}},
      {2.0, {32, 16}, *wxBLUE, {{{32, 16}, *wxBLUE, 1.0}, {{64, 32}, *wxBLUE, 2.0}}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.scale);
    const scoped_DPI_scale_t scale(c.scale);
    const wxImage image = m_images.load_image("icons/close.png");
    EXPECT_EQ(image.GetSize(), c.image);
    EXPECT_EQ(colour_of(image), c.image_colour);
    const bitmap_t& expected = c.bitmap[content == 2.0 ? 1 : 0];
    const wxBitmap bitmap_and_icon[] = {m_images.load_bitmap("icons/close.png"),
                                        wxBitmap(m_images.load_icon("icons/close.png"))};
    for (const wxBitmap& bitmap : bitmap_and_icon) {
      EXPECT_EQ(bitmap.GetSize(), expected.pixels);
      EXPECT_EQ(colour_of(bitmap.ConvertToImage()), expected.colour);
      EXPECT_EQ(bitmap.GetScaleFactor(), expected.factor);
      EXPECT_EQ(bitmap.GetLogicalSize(), c.image);  // the authored size times the scale
    }
    EXPECT_EQ(colour_of(m_images.load_image("app")), c.image_colour);  // declared twins too
    EXPECT_EQ(m_images.load_animation("busy").GetSize(), wxSize(16, 16));  // never scaled
  }
}

// The twin's name has "@2x" before the file's extension. A twin from an
// older archive does not replace a newer archive's picture, nor does an
// older archive's file stand in for a name the newer one declares; unscaled
// loading ignores twins. Undecodable files give invalid results with a
// warning each; a twin that cannot be decoded is reported and the picture
// enlarged instead.
TEST_F(ImageLoader, TheNewerArchiveDecidesAndUndecodablePicturesAreReported) {
  const std::pair<const char*, const char*> names[] = {
      {"icons/close.png", "icons/close@2x.png"}, {"logo", "logo@2x"},
      {"a.b/c", "a.b/c@2x"}, {"dir/.hidden", "dir/.hidden@2x"}, {"x.tar.gz", "x.tar@2x.gz"}};
  for (const auto& name : names)
    EXPECT_EQ(orvix1::image_loader_t::double_density_name(name.first), name.second);
  const scoped_DPI_scale_t scale(2.0);
  orvix1_test::write_folder(m_dir.file("theme"),
                            {{"resources.xrc", xrc_text("<object class=\"wxImage\" name=\"app2.png\">"
                                                        "<bitmap>junk.png</bitmap></object>")},
                             {"icons/close.png", png_bytes(16, 8, *wxGREEN)},
                             {"junk.png", "not a picture"},
                             {"spin.gif", "GIF89a"}});
  ASSERT_TRUE(m_resources.add_archive(m_dir.file("theme")));
  EXPECT_EQ(m_resources.find_archive("icons/close@2x.png", "wxImage"), 0);
  EXPECT_EQ(m_resources.find_archive("icons/close.png", "wxImage"), 1);
  EXPECT_EQ(m_resources.find_archive("app", "wxImage"), 0);
  EXPECT_EQ(m_resources.find_archive("nothing.png", "wxImage"), -1);

  wxImage image = m_images.load_image("icons/close.png");
  EXPECT_EQ(image.GetSize(), wxSize(32, 16));
  EXPECT_EQ(colour_of(image), *wxGREEN);
  const orvix1_test::log_capture_t capture("orvix");
  {
    const orvix1::autoscale_guard_t unscaled(false);
    EXPECT_EQ(m_images.load_image("app").GetSize(), wxSize(16, 16));
    EXPECT_EQ(colour_of(m_images.load_image("app")), *wxRED);
    EXPECT_FALSE(m_images.load_image("junk.png").IsOk());
    EXPECT_FALSE(m_images.load_bitmap("junk.png").IsOk());
    EXPECT_FALSE(m_images.load_animation("spin.gif").IsOk());
    ASSERT_EQ(capture.entries().size(), 3u);
    EXPECT_NE(capture.entries()[0].message.find("junk.png"), std::string::npos);
    EXPECT_NE(capture.entries()[2].message.find("spin.gif"), std::string::npos);
    EXPECT_FALSE(m_images.load_image("app2.png").IsOk());
  }
  image = m_images.load_image("icons/broken.png");
  EXPECT_EQ(image.GetSize(), wxSize(32, 32));
  EXPECT_EQ(colour_of(image), *wxRED);
  EXPECT_NE(capture.entries().back().message.find("icons/broken@2x.png"), std::string::npos);
}

}  // namespace
