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
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const size_t i = static_cast<size_t>(y) * width + x;
      image.SetRGB(x, y, pixels[i].r, pixels[i].g, pixels[i].b);
      if (!alpha.empty()) image.SetAlpha(x, y, alpha[i]);
    }
  }
  return image;
}

wxImage uniform_image(int width, int height, rgb_t colour, int alpha = -1) {
  const size_t count = static_cast<size_t>(width) * height;
  return make_image(width, height, std::vector<rgb_t>(count, colour),
                    alpha < 0 ? std::vector<unsigned char>()
                              : std::vector<unsigned char>(count, alpha));
}

std::string pixel(const wxImage& image, int x, int y) {
  const int alpha = image.HasAlpha() ? image.GetAlpha(x, y) : -1;
  return std::to_string(image.GetRed(x, y)) + "," + std::to_string(image.GetGreen(x, y)) + "," +
         std::to_string(image.GetBlue(x, y)) + "," + std::to_string(alpha);
}

void expect_one_assert(const std::string& condition, int line, const std::string& function) {
  const auto asserts = take_asserts();
  ASSERT_EQ(asserts.size(), 1u);
  EXPECT_EQ(asserts[0].condition, condition);
  EXPECT_EQ(asserts[0].line, line);
  EXPECT_EQ(asserts[0].function, function);
  EXPECT_EQ(asserts[0].message, "");
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
  const wxImage mark = image_helpers_t::create_watermark_image(icon, wxColour(200, 100, 50),
                                                               wxColour(10, 20, 30));
  ASSERT_TRUE(mark.IsOk());
  ASSERT_EQ(mark.GetSize(), wxSize(4, 1));
  EXPECT_EQ(pixel(mark, 0, 0), "10,20,30,255");   // outside the shape: back
  EXPECT_EQ(pixel(mark, 1, 0), "200,100,50,255");  // inside: front
  EXPECT_EQ(pixel(mark, 2, 0), "152,79,44,255");   // edge: blended, truncated
  EXPECT_EQ(pixel(mark, 3, 0), "10,20,30,255");
  EXPECT_NE(mark.GetData(), icon.GetData());
}

TEST_F(ImageHelpers, WatermarkWithoutColoursUsesWindowTextOverWindow) {
  const wxColour text = wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOWTEXT);
  const wxColour window = wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOW);
  ASSERT_NE(text, window);
  const wxImage mark =
      image_helpers_t::create_watermark_image(make_image(2, 1, {{0, 0, 0}, {0, 0, 0}}, {255, 0}));
  ASSERT_TRUE(mark.IsOk());
  EXPECT_EQ(wxColour(mark.GetRed(0, 0), mark.GetGreen(0, 0), mark.GetBlue(0, 0)), text);
  EXPECT_EQ(wxColour(mark.GetRed(1, 0), mark.GetGreen(1, 0), mark.GetBlue(1, 0)), window);
}

TEST_F(ImageHelpers, WatermarkNeedsAValidImageWithAlpha) {
  const char* condition = "image.IsOk() == true && image.HasAlpha() == true";
  EXPECT_FALSE(image_helpers_t::create_watermark_image(uniform_image(2, 2, {1, 2, 3})).IsOk());
  expect_one_assert(condition, 64, "create_watermark_image");
  EXPECT_FALSE(
      image_helpers_t::create_watermark_image(wxImage(), *wxBLACK, *wxWHITE).IsOk());
  expect_one_assert(condition, 64, "create_watermark_image");
}

TEST_F(ImageHelpers, CompositeBlendsByTheFrontsAlpha) {
  const wxImage front = make_image(3, 1, {{200, 100, 50}, {200, 100, 50}, {1, 2, 3}},
                                   {191, 0, 255});
  const std::vector<rgb_t> back_pixels = {{10, 20, 30}, {10, 20, 30}, {90, 90, 90}};

  const wxImage with_alpha =
      image_helpers_t::create_composite_image(front, make_image(3, 1, back_pixels, {100, 40, 7}));
  ASSERT_TRUE(with_alpha.IsOk());
  // Alpha: 191 * 191 / 255 + 100 * 64 / 255 = 143.06 + 25.10 = 168.16.
  EXPECT_EQ(pixel(with_alpha, 0, 0), "152,79,44,168");
  EXPECT_EQ(pixel(with_alpha, 1, 0), "10,20,30,40");  // a transparent front shows the back
  EXPECT_EQ(pixel(with_alpha, 2, 0), "1,2,3,255");    // an opaque front hides it

  const wxImage opaque_back =
      image_helpers_t::create_composite_image(front, make_image(3, 1, back_pixels));
  ASSERT_TRUE(opaque_back.IsOk());
  EXPECT_EQ(pixel(opaque_back, 0, 0), "152,79,44,255");
  EXPECT_EQ(pixel(opaque_back, 1, 0), "10,20,30,255");
  EXPECT_EQ(pixel(opaque_back, 2, 0), "1,2,3,255");
}

TEST_F(ImageHelpers, CompositeNeedsAFrontWithAlphaAndAValidBack) {
  const char* condition =
      "image_front.IsOk() == true && image_front.HasAlpha() == true && image_back.IsOk()";
  const wxImage back = uniform_image(2, 2, {1, 2, 3});
  EXPECT_FALSE(image_helpers_t::create_composite_image(uniform_image(2, 2, {4, 5, 6}), back).IsOk());
  expect_one_assert(condition, 107, "create_composite_image");
  EXPECT_FALSE(image_helpers_t::create_composite_image(wxImage(), back).IsOk());
  expect_one_assert(condition, 107, "create_composite_image");
  EXPECT_FALSE(
      image_helpers_t::create_composite_image(uniform_image(2, 2, {4, 5, 6}, 9), wxImage()).IsOk());
  expect_one_assert(condition, 107, "create_composite_image");
}

TEST_F(ImageHelpers, CompositeOfMismatchedSizesTakesTheFrontsSize) {
  const char* condition = "w == image_back.GetWidth() && h == image_back.GetHeight()";
  // A transparent front shows the back pixel by pixel: rows must line up
  // although the back is wider.
  const wxImage wide_back = make_image(3, 2, {{1, 1, 1}, {2, 2, 2}, {3, 3, 3},
                                              {4, 4, 4}, {5, 5, 5}, {6, 6, 6}},
                                       {11, 12, 13, 14, 15, 16});
  const wxImage narrow =
      image_helpers_t::create_composite_image(uniform_image(2, 2, {99, 99, 99}, 0), wide_back);
  expect_one_assert(condition, 115, "create_composite_image");
  ASSERT_TRUE(narrow.IsOk());
  ASSERT_EQ(narrow.GetSize(), wxSize(2, 2));
  EXPECT_EQ(pixel(narrow, 1, 0), "2,2,2,12");
  EXPECT_EQ(pixel(narrow, 0, 1), "4,4,4,14");
  EXPECT_EQ(pixel(narrow, 1, 1), "5,5,5,15");

  // Where the back is missing, it counts as transparent black.
  const wxImage large = image_helpers_t::create_composite_image(
      uniform_image(3, 3, {200, 100, 50}, 191), uniform_image(2, 2, {10, 20, 30}, 100));
  expect_one_assert(condition, 115, "create_composite_image");
  ASSERT_EQ(large.GetSize(), wxSize(3, 3));
  EXPECT_EQ(pixel(large, 1, 1), "152,79,44,168");
  // 200 * 191 / 255 = 149.8, 100 * 191 / 255 = 74.9, 50 * 191 / 255 = 37.45.
  EXPECT_EQ(pixel(large, 2, 0), "149,74,37,143");
  EXPECT_EQ(pixel(large, 0, 2), "149,74,37,143");
}

TEST_F(ImageHelpers, AlphaFromMaskIsAllOrNothing) {
  const wxImage mask = make_image(4, 1, {{1, 0, 0}, {0, 255, 255}, {255, 255, 255}, {0, 0, 0}});
  const wxImage image = make_image(4, 1, {{10, 20, 30}, {40, 50, 60}, {70, 80, 90}, {1, 2, 3}},
                                   {5, 5, 5, 5});
  const wxImage result = image_helpers_t::create_alpha_image(mask, image);
  ASSERT_TRUE(result.IsOk());
  ASSERT_EQ(result.GetSize(), wxSize(4, 1));
  EXPECT_EQ(pixel(result, 0, 0), "10,20,30,255");
  EXPECT_EQ(pixel(result, 1, 0), "40,50,60,0");
  EXPECT_EQ(pixel(result, 2, 0), "70,80,90,255");
  EXPECT_EQ(pixel(result, 3, 0), "1,2,3,0");

  const wxImage plain = image_helpers_t::create_alpha_image(mask, uniform_image(4, 1, {7, 8, 9}));
  EXPECT_EQ(pixel(plain, 0, 0), "7,8,9,255");
  EXPECT_EQ(pixel(plain, 1, 0), "7,8,9,0");
}

TEST_F(ImageHelpers, AlphaImageReturnsTheImageUnchangedForInvalidInput) {
  const char* condition = "image_alpha_mask.IsOk() == true && image.IsOk()";
  const wxImage image = uniform_image(2, 2, {1, 2, 3});
  const wxImage unchanged = image_helpers_t::create_alpha_image(wxImage(), image);
  expect_one_assert(condition, 150, "create_alpha_image");
  EXPECT_TRUE(unchanged.IsSameAs(image));

  EXPECT_FALSE(image_helpers_t::create_alpha_image(image, wxImage()).IsOk());
  expect_one_assert(condition, 150, "create_alpha_image");
}

TEST_F(ImageHelpers, AlphaImageOfMismatchedSizesTakesTheMasksSize) {
  const char* condition = "w == image.GetWidth() && h == image.GetHeight()";
  const wxImage wide_image = make_image(3, 2, {{1, 1, 1}, {2, 2, 2}, {3, 3, 3},
                                               {4, 4, 4}, {5, 5, 5}, {6, 6, 6}});
  const wxImage narrow =
      image_helpers_t::create_alpha_image(uniform_image(2, 2, {255, 0, 0}), wide_image);
  expect_one_assert(condition, 158, "create_alpha_image");
  ASSERT_TRUE(narrow.IsOk());
  ASSERT_EQ(narrow.GetSize(), wxSize(2, 2));
  EXPECT_EQ(pixel(narrow, 1, 0), "2,2,2,255");
  EXPECT_EQ(pixel(narrow, 0, 1), "4,4,4,255");
  EXPECT_EQ(pixel(narrow, 1, 1), "5,5,5,255");

  const wxImage large = image_helpers_t::create_alpha_image(uniform_image(3, 3, {255, 0, 0}),
                                                            uniform_image(2, 2, {7, 8, 9}));
  expect_one_assert(condition, 158, "create_alpha_image");
  ASSERT_EQ(large.GetSize(), wxSize(3, 3));
  EXPECT_EQ(pixel(large, 1, 1), "7,8,9,255");
  EXPECT_EQ(pixel(large, 2, 1), "0,0,0,0");
  EXPECT_EQ(pixel(large, 1, 2), "0,0,0,0");
}

TEST_F(ImageHelpers, PaletteIsDroppedAndEverythingElseKept) {
  wxImage indexed = make_image(2, 1, {{0, 0, 0}, {255, 255, 255}}, {30, 200});
  unsigned char levels[2] = {0, 255};
  indexed.SetPalette(wxPalette(2, levels, levels, levels));
  ASSERT_TRUE(indexed.HasPalette());

  const wxImage plain = image_helpers_t::create_paletteless_image(indexed);
  ASSERT_TRUE(plain.IsOk());
  EXPECT_FALSE(plain.HasPalette());
  ASSERT_EQ(plain.GetSize(), wxSize(2, 1));
  EXPECT_EQ(pixel(plain, 0, 0), "0,0,0,30");
  EXPECT_EQ(pixel(plain, 1, 0), "255,255,255,200");
  EXPECT_TRUE(indexed.HasPalette());  // the caller's image keeps its own

  const wxImage already_plain = uniform_image(2, 2, {1, 2, 3});
  EXPECT_TRUE(image_helpers_t::create_paletteless_image(already_plain).IsSameAs(already_plain));
}

TEST_F(ImageHelpers, PalettelessNeedsAValidImage) {
  EXPECT_FALSE(image_helpers_t::create_paletteless_image(wxImage()).IsOk());
  expect_one_assert("image.IsOk() == true", 192, "create_paletteless_image");
}

}  // namespace
