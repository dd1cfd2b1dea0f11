// Pictures from files are recognised and their declared sizes bounded
// before a decoder runs: each hostile header below made wx allocate
// gigabytes or assert on the image it failed to allocate.

#include <unistd.h>

#include <cstdint>
#include <string>

#include <gtest/gtest.h>
#include <wx/mstream.h>

#include "orvix1/dpi.h"
#include "orvix1/image_loader.h"
#include "orvix1/resource_loader.h"
#include "support/log_capture.h"
#include "support/resource_archive.h"
#include "support/scratch_dir.h"
#include "support/wx_test_environment.h"

namespace {

std::string le16(std::uint32_t value) { return {char(value & 0xff), char(value >> 8 & 0xff)}; }
std::string le32(std::uint32_t value) { return le16(value & 0xffff) + le16(value >> 16); }
std::string be32(std::uint32_t value) {
  return {char(value >> 24), char(value >> 16 & 0xff), char(value >> 8 & 0xff), char(value & 0xff)};
}

std::string saved(wxBitmapType type) {
  wxImage image(5, 3);
  image.SetRGB(wxRect(0, 0, 5, 3), 200, 10, 10);
  wxMemoryOutputStream out;
  EXPECT_TRUE(image.SaveFile(out, type));
  return orvix1_test::stream_bytes(out);
}

// A BITMAPINFOHEADER (40 bytes) with a size and a palette size.
std::string dib(std::uint32_t width, std::uint32_t height, std::uint32_t colours = 0) {
  return le32(40) + le32(width) + le32(height) + le16(1) + le16(24) + le32(0) + le32(0) +
         le32(0) + le32(0) + le32(colours) + le32(0);
}

std::string bmp(std::uint32_t width, std::uint32_t height, std::uint32_t colours = 0) {
  return "BM" + le32(0) + le32(0) + le32(54) + dib(width, height, colours) + std::string(16, '\0');
}

std::string gif_frame(std::uint32_t width, std::uint32_t height) {
  return "\x2c" + le16(0) + le16(0) + le16(width) + le16(height) + std::string("\0\2\2\x44\1\0", 6);
}

std::string gif(const std::string& frames, std::uint32_t width = 1, std::uint32_t height = 1) {
  return "GIF89a" + le16(width) + le16(height) + std::string("\0\0\0", 3) + frames + "\x3b";
}

std::string repeated(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

TEST(ImageDecoding, HostileHeadersAreRefusedBeforeDecodingAndSmallPicturesOfEachFormatDecode) {
  (void)orvix1_test::take_asserts();
  const orvix1_test::scratch_folder_t dir;
  const struct {
    const char* what;
    std::string bytes;
    const char* problem;  // empty: decodes
  } cases[] = {
      {"png", orvix1_test::png_bytes(5, 3, *wxRED), ""},
      {"gif", orvix1_test::gif_bytes(5, 3), ""},
      {"bmp", saved(wxBITMAP_TYPE_BMP), ""},
      {"jpeg", saved(wxBITMAP_TYPE_JPEG), ""},
      {"ico", saved(wxBITMAP_TYPE_ICO), ""},
      {"pnm", saved(wxBITMAP_TYPE_PNM), ""},
      {"xpm", saved(wxBITMAP_TYPE_XPM), ""},
      {"pnm huge", "P6 30000 30000 255\n" + std::string(64, '\0'), "declares 30000 x 30000"},
      {"pnm comment", "P6 #c\n99999999999 1 255\n", "PNM header is damaged"},
      {"bmp huge", bmp(30000, 30000), "declares 30000 x 30000"},
      {"bmp top-down", bmp(30000, -30000), "declares 30000 x 30000"},
      {"bmp palette", bmp(2, 2, 100000), "palette is larger"},
      {"png huge", "\x89PNG\r\n\x1a\n" + be32(13) + "IHDR" + be32(100000) + be32(100000) + "xxxxx",
       "declares 100000 x 100000"},
      {"png overflow",  // the product of the sides overflows 64 bits
       "\x89PNG\r\n\x1a\n" + be32(13) + "IHDR" + be32(0xfc000000) + be32(0xf6000002) + "x",
       "declares 4227858432 x 4127195138"},
      {"gif frame", gif(gif_frame(60000, 60000)), "declares 60000 x 60000"},
      {"gif screen", gif("", 65535, 65535), "declares 65535 x 65535"},
      {"gif frames", gif(repeated(gif_frame(4096, 4096), 9)), "frames together"},
      {"gif count", gif(repeated(gif_frame(1, 1), 10001)), "more than 10000 frames"},
      {"jpeg huge", std::string("\xff\xd8\xff\xc0\0\x11\x08\xfd\xe8\xfd\xe8\3", 12),
       "declares 65000 x 65000"},
      {"jpeg no frame", std::string("\xff\xd8\xff\xda\0\2", 6), "no JPEG frame header"},
      {"ico huge", std::string("\0\0\1\0", 4) + le16(1) + std::string(12, '\0') + le32(22) +
                       dib(30000, 60000),
       "declares 30000 x 30000"},
      {"ico empty", std::string("\0\0\1\0\0\0", 6), "image count"},
      {"xpm huge", "/* XPM */\nstatic char *x[] = {\n\"40000 40000 1 1\",", "declares 40000 x 40000"},
      {"xpm wide", "/* XPM */\nstatic char *x[] = {\n\"1 1 1 9\",", "colour table"},
      {"pcx", std::string("\x0a\x05\x01\x08\0\0\0\0", 8) + le16(30000) + le16(30000), "not a PNG"},
  };
  orvix1_test::archive_files_t files;
  for (const auto& row : cases) files.emplace_back(row.what, row.bytes);
  files.emplace_back("gif frame anim", gif(gif_frame(60000, 60000)));
  orvix1_test::write_folder(dir.file("pictures"), files);
  // Larger than any picture read: a sparse file, so nothing is written.
  ASSERT_EQ(::truncate(dir.file("pictures/png huge").c_str(), 65 << 20), 0);
  orvix1::resource_loader_t resources;
  ASSERT_TRUE(resources.add_archive(dir.file("pictures")));
  const orvix1::image_loader_t images(resources);
  const orvix1::autoscale_guard_t unscaled(false);
  const orvix1_test::log_capture_t capture("orvix.resources");
  for (const auto& row : cases) {
    SCOPED_TRACE(row.what);
    const std::size_t warnings = capture.warnings();
    const wxImage image = images.load_image(row.what);
    if (*row.problem == '\0') {
      EXPECT_EQ(image.GetSize(), wxSize(5, 3));
      EXPECT_EQ(capture.warnings(), warnings);
    } else {
      EXPECT_FALSE(image.IsOk());
      ASSERT_EQ(capture.warnings(), warnings + 1);
      const std::string problem = std::string(row.what) == "png huge" ? "larger than" : row.problem;
      EXPECT_NE(capture.entries().back().message.find(problem), std::string::npos)
          << capture.entries().back().message;
    }
  }
  EXPECT_FALSE(images.load_animation("gif frame anim").IsOk());
  EXPECT_NE(capture.entries().back().message.find("declares 60000 x 60000"), std::string::npos);
  EXPECT_TRUE(orvix1_test::take_asserts().empty());
}

}  // namespace
