// Inputs that once crashed a fuzz target, replayed in the ordinary suite
// (and so under the sanitizers): each gets a clear answer and a warning.

#include <string>
#include <utility>

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

// Animations the frame decoder must not see: each is refused before
// decoding with a warning saying why. The decoder allocated 14 GB for the
// first; for the GIF frames it failed its own argument checks or, for the
// cleared frame, crashed. The image element takes them through the same
// probe; the animation target replays these inputs along that path.
TEST(FuzzRegressions, AnimationsTheDecoderCannotTakeAreRefusedWithTheReason) {
  const std::pair<const char*, const char*> inputs[] = {
      {"regression-huge-declared-size.gif", "declares 60000 x 60000 pixels"},
      {"regression-gif-frame-without-width.gif", "has no pixels"},
      {"regression-gif-frame-without-height.gif", "has no pixels"},
      {"regression-gif-cleared-frame-right-of-the-screen.gif", "not wholly on the 8 x 8 screen"},
      {"regression-gif-restored-frame-across-the-right-edge.gif", "not wholly on the"},
      {"regression-gif-restored-frame-across-the-bottom-edge.gif", "(4 x 65518 at 4, 0)"},
      // An empty control block: the decoder reads on past it, and the
      // disposal it takes is a stale byte.
      {"regression-gif-empty-control-block.gif", "(2 x 8 at 4, 11264) is to be cleared or restored"},
      // Frames cleared or restored within the screen, and a kept frame that
      // overhangs it, are sound.
      {"three_frames_loop.gif", nullptr},
      {"frame_past_the_screen.gif", nullptr}};
  orvix1::resource_loader_t resources;
  ASSERT_TRUE(resources.add_archive(corpus_file("animation_fuzzer", "")));
  const orvix1::image_loader_t images(resources);
  for (const auto& input : inputs) {
    SCOPED_TRACE(input.first);
    const orvix1_test::log_capture_t capture("orvix");
    const bool sound = input.second == nullptr;
    EXPECT_EQ(images.load_animation(input.first).IsOk(), sound);
    ASSERT_EQ(capture.warnings(), sound ? 0u : 1u);
    if (!sound) {
      EXPECT_NE(capture.entries()[0].message.find(input.second), std::string::npos);
    }
  }
}

}  // namespace
