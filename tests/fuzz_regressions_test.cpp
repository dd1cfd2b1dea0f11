// Inputs that once crashed a fuzz target, replayed in the ordinary suite
// (and so under the sanitizers): each gets a clear answer and a warning.

#include <string>

#include <gtest/gtest.h>

#include "orvix1/image_loader.h"
#include "orvix1/resource_loader.h"
#include "support/log_capture.h"

namespace {

std::string corpus_file(const std::string& target, const std::string& name) {
  return std::string(ORVIX1_FUZZ_CORPUS_DIR) + "/" + target + "/" + name;
}

// A zip archive whose directory is sound but whose picture entry has one
// damaged byte in its compressed data: decoding used to seek in the broken
// entry and crash inside wx.
TEST(FuzzRegressions, DamagedPictureEntryGivesInvalidPicturesWithAWarningEach) {
  orvix1::resource_loader_t resources;
  const orvix1::image_loader_t images(resources);
  ASSERT_TRUE(resources.add_archive(
      corpus_file("resource_archive_fuzzer", "regression-damaged-png-entry.zip")));
  const orvix1_test::log_capture_t capture("orvix");
  EXPECT_FALSE(images.load_image("logo").IsOk());  // declared in resources.xrc
  EXPECT_EQ(capture.warnings(), 1u);
  EXPECT_FALSE(images.load_bitmap("icons/logo.png").IsOk());  // by its path
  EXPECT_EQ(capture.warnings(), 2u);
  EXPECT_TRUE(images.load_animation("spin").IsOk());  // the sound entries still serve
}

}  // namespace
