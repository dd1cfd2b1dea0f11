#include "orvix1/image_helpers.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <wx/palette.h>
#include <wx/settings.h>

#include "support/wx_test_environment.h"

namespace {

using orvix1::image_helpers_t;
using orvix1_test::take_asserts;

struct rgb_t {
  unsigned char r, g, b;
};

// A width x height image from pixels given row by row; with alpha when
// `alpha` is not empty.
wxImage make_image(int width, int height, const std::vector<rgb_t>& pixels,
                   const std::vector<unsigned char>& alpha = {}) {
  wxImage image(width, height, false);
  if (!alpha.empty()) image.InitAlpha();
  for (size_t i = 0; i < pixels.size(); ++i) {
    image.SetRGB(i % width, i / width, pixels[i].r, pixels[i].g, pixels[i].b);
    if (!alpha.empty()) image.SetAlpha(i % width, i / width, alpha[i]);
  }
  return image;
}

wxImage uniform_image(int width, int height, rgb_t colour, int alpha = -1) {
  const size_t count = static_cast<size_t>(width) * height;
  return make_image(width, height, std::vector<rgb_t>(count, colour),
                    std::vector<unsigned char>(alpha < 0 ? 0 : count, static_cast<unsigned char>(alpha)));
}

// The pixels at `points` as "r,g,b,a" (a is -1 without alpha), space-separated.
std::string pixels(const wxImage& image, std::initializer_list<wxPoint> points) {
  std::string text;
  for (const wxPoint& p : points)
    text += (text.empty() ? "" : " ") + std::to_string(image.GetRed(p.x, p.y)) + "," +
            std::to_string(image.GetGreen(p.x, p.y)) + "," + std::to_string(image.GetBlue(p.x, p.y)) + "," +
            std::to_string(image.HasAlpha() ? image.GetAlpha(p.x, p.y) : -1);
  return text;
}

// Takes the one assertion the last call raised and checks its texts.
void expect_one_assert(const std::string& condition, int line, const std::string& function) {
  const auto asserts = take_asserts();
  ASSERT_EQ(asserts.size(), 1u);
  const auto& got = asserts[0];
  EXPECT_EQ(got.function + ":" + std::to_string(got.line) + ": " + got.condition + got.message,
            function + ":" + std::to_string(line) + ": " + condition);
}

class ImageHelpers : public ::testing::Test {
 protected:
  void SetUp() override { take_asserts(); }
  void TearDown() override { EXPECT_TRUE(take_asserts().empty()); }
};

// Hand-computed blends below: channel = (front * fa + back * (255 - fa)) / 255,
// truncated. With fa = 191 and front (200, 100, 50) over back (10, 20, 30):
// 38840 / 255 = 152.3, 20380 / 255 = 79.9, 11470 / 255 = 44.98.

TEST_F(ImageHelpers, WatermarkPaintsTheShapeOpaqueInFrontOverBack) {
  const wxImage icon = make_image(4, 1, {{9, 9, 9}, {77, 0, 200}, {1, 2, 3}, {255, 255, 255}},
                                  {0, 255, 191, 0});
  const wxImage mark = image_helpers_t::create_watermark_image(icon, wxColour(200, 100, 50), wxColour(10, 20, 30));
  ASSERT_EQ(mark.GetSize(), wxSize(4, 1));
  // Outside the shape: back; inside: front; at the edge: blended, truncated.
  EXPECT_EQ(pixels(mark, {{0, 0}, {1, 0}, {2, 0}, {3, 0}}), "10,20,30,255 200,100,50,255 152,79,44,255 10,20,30,255");

  // Without colours: window text over window.
  const wxImage plain = image_helpers_t::create_watermark_image(icon);
  const auto colour_at = [&](int x) { return wxColour(plain.GetRed(x, 0), plain.GetGreen(x, 0), plain.GetBlue(x, 0)); };
  EXPECT_EQ(colour_at(0), wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOW));
  EXPECT_EQ(colour_at(1), wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOWTEXT));
}

TEST_F(ImageHelpers, CompositeBlendsByTheFrontsAlphaAndTakesTheFrontsSize) {
  const wxImage front = make_image(3, 1, {{200, 100, 50}, {200, 100, 50}, {1, 2, 3}}, {191, 0, 255});
  const std::vector<rgb_t> back_pixels = {{10, 20, 30}, {10, 20, 30}, {90, 90, 90}};

  const wxImage with_alpha =
      image_helpers_t::create_composite_image(front, make_image(3, 1, back_pixels, {100, 40, 7}));
  // Alpha: 191 * 191 / 255 + 100 * 64 / 255 = 143.06 + 25.10 = 168.16. A
  // transparent front shows the back; an opaque one hides it.
  EXPECT_EQ(pixels(with_alpha, {{0, 0}, {1, 0}, {2, 0}}), "152,79,44,168 10,20,30,40 1,2,3,255");
  const wxImage opaque_back = image_helpers_t::create_composite_image(front, make_image(3, 1, back_pixels));
  EXPECT_EQ(pixels(opaque_back, {{0, 0}}), "152,79,44,255");

  // Of mismatched sizes the front's size wins. A transparent front shows the
  // back pixel by pixel: rows must line up although the back is wider.
  const char* condition = "w == image_back.GetWidth() && h == image_back.GetHeight()";
  const wxImage wide_back =
      make_image(3, 2, {{1, 1, 1}, {2, 2, 2}, {3, 3, 3}, {4, 4, 4}, {5, 5, 5}, {6, 6, 6}}, {11, 12, 13, 14, 15, 16});
  const wxImage narrow = image_helpers_t::create_composite_image(uniform_image(2, 2, {99, 99, 99}, 0), wide_back);
  expect_one_assert(condition, 115, "create_composite_image");
  ASSERT_EQ(narrow.GetSize(), wxSize(2, 2));
  EXPECT_EQ(pixels(narrow, {{1, 0}, {0, 1}, {1, 1}}), "2,2,2,12 4,4,4,14 5,5,5,15");

  // Where the back is missing, it counts as transparent black.
  const wxImage large = image_helpers_t::create_composite_image(
      uniform_image(3, 3, {200, 100, 50}, 191), uniform_image(2, 2, {10, 20, 30}, 100));
  expect_one_assert(condition, 115, "create_composite_image");
  ASSERT_EQ(large.GetSize(), wxSize(3, 3));
  // 200 * 191 / 255 = 149.8, 100 * 191 / 255 = 74.9, 50 * 191 / 255 = 37.45.
  EXPECT_EQ(pixels(large, {{1, 1}, {2, 0}, {0, 2}}), "152,79,44,168 149,74,37,143 149,74,37,143");
}

TEST_F(ImageHelpers, AlphaFromMaskIsAllOrNothingAndTakesTheMasksSize) {
  const wxImage mask = make_image(4, 1, {{1, 0, 0}, {0, 255, 255}, {255, 255, 255}, {0, 0, 0}});
  const wxImage image = make_image(4, 1, {{10, 20, 30}, {40, 50, 60}, {70, 80, 90}, {1, 2, 3}}, {5, 5, 5, 5});
  const wxImage result = image_helpers_t::create_alpha_image(mask, image);
  ASSERT_EQ(result.GetSize(), wxSize(4, 1));
  EXPECT_EQ(pixels(result, {{0, 0}, {1, 0}, {2, 0}, {3, 0}}), "10,20,30,255 40,50,60,0 70,80,90,255 1,2,3,0");

  const wxImage plain = image_helpers_t::create_alpha_image(mask, uniform_image(4, 1, {7, 8, 9}));
  EXPECT_EQ(pixels(plain, {{0, 0}, {1, 0}}), "7,8,9,255 7,8,9,0");

  // Of mismatched sizes the mask's wins; where the image is missing, the
  // result is transparent black.
  const wxImage large = image_helpers_t::create_alpha_image(uniform_image(3, 3, {255, 0, 0}),
                                                            uniform_image(2, 2, {7, 8, 9}));
  expect_one_assert("w == image.GetWidth() && h == image.GetHeight()", 158, "create_alpha_image");
  ASSERT_EQ(large.GetSize(), wxSize(3, 3));
  EXPECT_EQ(pixels(large, {{1, 1}, {2, 1}, {1, 2}}), "7,8,9,255 0,0,0,0 0,0,0,0");
}

// A palette is dropped and everything else kept; invalid input asserts and
// gives no image.
TEST_F(ImageHelpers, PaletteIsDroppedAndInvalidInputAssertsAndGivesNoImage) {
  wxImage indexed = make_image(2, 1, {{0, 0, 0}, {255, 255, 255}}, {30, 200});
  unsigned char levels[2] = {0, 255};
  indexed.SetPalette(wxPalette(2, levels, levels, levels));
  const wxImage plain = image_helpers_t::create_paletteless_image(indexed);
  EXPECT_FALSE(plain.HasPalette());
  ASSERT_EQ(plain.GetSize(), wxSize(2, 1));
  EXPECT_EQ(pixels(plain, {{0, 0}, {1, 0}}), "0,0,0,30 255,255,255,200");
  EXPECT_TRUE(indexed.HasPalette());  // the caller's image keeps its own

  const wxImage opaque = uniform_image(2, 2, {1, 2, 3});
  const char* watermark = "image.IsOk() == true && image.HasAlpha() == true";
  const char* composite = "image_front.IsOk() == true && image_front.HasAlpha() == true && image_back.IsOk()";
  const char* alpha = "image_alpha_mask.IsOk() == true && image.IsOk()";
  const auto refused = [](const wxImage& result, const char* condition, int line, const char* function) {
    EXPECT_FALSE(result.IsOk()) << function;
    expect_one_assert(condition, line, function);
  };
  refused(image_helpers_t::create_watermark_image(opaque), watermark, 64, "create_watermark_image");
  refused(image_helpers_t::create_composite_image(opaque, opaque), composite, 107, "create_composite_image");
  refused(image_helpers_t::create_composite_image(uniform_image(2, 2, {4, 5, 6}, 9), wxImage()), composite, 107,
          "create_composite_image");
  refused(image_helpers_t::create_alpha_image(opaque, wxImage()), alpha, 150, "create_alpha_image");
  refused(image_helpers_t::create_paletteless_image(wxImage()), "image.IsOk() == true", 192,
          "create_paletteless_image");
  // Without a mask the image comes back unchanged.
  EXPECT_TRUE(image_helpers_t::create_alpha_image(wxImage(), opaque).IsSameAs(opaque));
  expect_one_assert(alpha, 150, "create_alpha_image");
}

}  // namespace
