#include "look/tab_cross_images.h"

#include <gtest/gtest.h>
#include <wx/image.h>

#include "support/wx_test_environment.h"

namespace {

using orvix1::detail::make_tab_cross;
using orvix1::detail::tab_cross_normal_xpm;

bool clear(const wxImage& image, int x, int y) {
  return image.HasAlpha() ? image.GetAlpha(x, y) == 0 : image.IsTransparent(x, y);
}

// Logical size 9 by 10 times the scale, device pixels times the content
// scale. At whole multiples each pixel of the art is a square block (its
// negative turns the colours, not the transparency); in between the art is
// averaged and its clear parts stay clear.
TEST(TabCross, LogicalSizeFollowsTheScalePixelsTheContentScale) {
  const wxImage art(tab_cross_normal_xpm);
  const struct {
    double scale, content;
    wxSize logical, pixels;
  } cases[] = {{1.0, 1.0, {9, 10}, {9, 10}},  {1.5, 1.0, {13, 15}, {13, 15}},
               {2.0, 1.0, {18, 20}, {18, 20}}, {1.0, 2.0, {9, 10}, {18, 20}},
               {1.5, 2.0, {13, 15}, {26, 30}}};
  for (const auto& c : cases) {
    for (bool negative : {false, true}) {
      SCOPED_TRACE(testing::Message() << c.scale << " x " << c.content << " " << negative);
      const wxBitmap bitmap = make_tab_cross(tab_cross_normal_xpm, c.scale, c.content, negative);
      EXPECT_EQ(bitmap.GetSize(), c.pixels);
      EXPECT_EQ(bitmap.GetLogicalSize(), c.logical);
      EXPECT_EQ(bitmap.GetScaleFactor(), c.pixels == art.GetSize() ? 1.0 : c.content);
      const wxImage image = bitmap.ConvertToImage();
      EXPECT_TRUE(clear(image, c.pixels.x / 2, 0) && !clear(image, 0, 0));
      const int block = c.pixels.x / 9;
      for (int y = 0; block * 9 == c.pixels.x && y < c.pixels.y; ++y)
        for (int x = 0; x < c.pixels.x; ++x) {
          const int ax = x / block, ay = y / block;
          const int red = art.IsTransparent(ax, ay) ? -1 : art.GetRed(ax, ay);
          const int expected = red < 0 || !negative ? red : 255 - red;
          ASSERT_EQ(clear(image, x, y) ? -1 : image.GetRed(x, y), expected) << x << "," << y;
        }
    }
  }
}

}  // namespace
