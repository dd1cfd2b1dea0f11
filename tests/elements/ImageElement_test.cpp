#include "orvix1/elements/ImageElement.h"

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <wx/frame.h>
#include <wx/generic/animate.h>

#include "support/fake_element_host.h"
#include "support/log_capture.h"
#include "support/paint_canvas.h"
#include "support/resource_archive.h"
#include "support/scratch_dir.h"
#include "support/wx_test_environment.h"

namespace {

using namespace orvix1::elements;
using namespace orvix1_test;

using requests_t = std::vector<std::string>;

const wxColour k_red(255, 0, 0);
const wxColour k_blue(0, 0, 255);
const wxColour k_green(0, 255, 0);
const wxColour k_white(255, 255, 255);

// Red 8x8, then a blue 4x4 patch in the top-left corner that covers only
// part of the screen, as optimising encoders write frames; each frame stays
// in place under the next, 100 ms each. Without the loop block the
// animation plays once.
std::string patched_gif(bool loop) {
  // Screen 8x8 with a global palette of four: red, blue, green, white.
  std::string gif("GIF89a\x08\0\x08\0\x81\0\0\xff\0\0\0\0\xff\0\xff\0\xff\xff\xff", 25);
  if (loop) gif += std::string("\x21\xff\x0bNETSCAPE2.0\x03\x01\0\0\0", 19);
  for (const int side : {8, 4}) {
    // Control block (keep in place, 10 cs), then the image at (0, 0).
    gif += std::string("\x21\xf9\x04\x04\x0a\0\0\0\x2c\0\0\0\0", 13);
    gif += {static_cast<char>(side), '\0', static_cast<char>(side), '\0', '\0', '\x02'};
    // LZW at 3 bits a code: a clear code (4) before every second pixel keeps
    // the code width from growing; 5 ends the data.
    std::string data;
    unsigned bits = 0;
    int count = 0;
    const auto put = [&](unsigned code) {
      bits |= code << count;
      for (count += 3; count >= 8; count -= 8, bits >>= 8) data += static_cast<char>(bits & 0xff);
    };
    for (int pixel = 0; pixel < side * side; ++pixel) {
      if (pixel % 2 == 0) put(4);
      put(side == 8 ? 0 : 1);
    }
    put(5);
    if (count > 0) data += static_cast<char>(bits & 0xff);
    gif += static_cast<char>(data.size());  // 37 bytes at most: one sub-block
    gif += data + '\0';
  }
  return gif + ';';
}

class clocked_image_t : public ImageElement {
 public:
  explicit clocked_image_t(element_ptr_t parent) : ImageElement(parent, pfLeft | pfTop) {
    SetTestID("img");
  }
  std::int64_t now = 1700000000LL * 1000000;
  void advance_ms(int milliseconds) { now += milliseconds * 1000LL; }
  void tick_after(int milliseconds) {
    advance_ms(milliseconds);
    ProcessTimer();
  }

 protected:
  std::int64_t GetCurrentTime() const override { return now; }
};

using clocked_ptr_t = talvar2::intrusive_pointer_t<clocked_image_t>;

class ImageElementTest : public ::testing::Test {
 protected:
  void SetUp() override {
    take_asserts();
    m_files.write("loop.gif", patched_gif(true));
    m_files.write("once.gif", patched_gif(false));
  }
  void TearDown() override { EXPECT_TRUE(take_asserts().empty()); }

  std::string path(const std::string& name) const { return m_files.file(name); }
  wxString location(const std::string& name) const { return wxString::FromUTF8(path(name)); }
  requests_t take_requests() {
    requests_t taken;
    taken.swap(m_host.requests);
    return taken;
  }
  // The image element drawn at (2, 3) of a white 20x20 canvas.
  paint_canvas_t draw() {
    paint_canvas_t canvas(20, 20);
    canvas.paint([&](wxDC& dc) { m_image->OnDraw(dc, wxRect(2, 3, 16, 16)); });
    return canvas;
  }

  scratch_folder_t m_files;
  element_ptr_t m_root{new UIElement()};
  fake_element_host_t m_host{m_root};
  clocked_ptr_t m_image{new clocked_image_t(m_root)};
};


// The animation comes from an archive; unreadable ones afterwards change nothing.
TEST_F(ImageElementTest, AnAnimationTicksAtEachFrameDelayAndPollsWhenNothingChanged) {
  write_zip(path("res.zip"), {{"anim/busy.gif", patched_gif(true)}});
  ASSERT_TRUE(m_image->SetAnimationFile(location("res.zip") + "#zip:anim/busy.gif"));
  EXPECT_EQ(take_requests(), (requests_t{"kill img", "timer img 100"}));
  EXPECT_EQ(m_image->GetMinSize(), wxSize(8, 8));

  m_image->tick_after(40);  // early tick: same frame, look again soon
  EXPECT_EQ(take_requests(), (requests_t{"kill img", "timer img 10"}));
  m_image->tick_after(60);  // the second frame is due
  EXPECT_EQ(take_requests(), (requests_t{"kill img", "timer img 100"}));
  m_image->tick_after(100);  // and the first again: it loops
  EXPECT_EQ(take_requests(), (requests_t{"kill img", "timer img 100"}));

  log_capture_t log("orvix.elements");
  m_files.write("broken.gif", patched_gif(true).substr(0, 20));
  m_files.write("empty.gif", "");
  for (const char* name : {"missing.gif", "broken.gif", "empty.gif", "res.zip#zip:anim/none.gif"})
    EXPECT_FALSE(m_image->SetAnimationFile(location(name))) << name;
  EXPECT_EQ(log.entries().size(), 4u);
  EXPECT_EQ(log.errors(), 4u);  // no animation was set
  EXPECT_EQ(take_requests(), requests_t{});  // the running animation goes on
  EXPECT_TRUE(m_image->HasAnimation());
}

TEST_F(ImageElementTest, PartialFramesOfAnOptimisedGifAreDrawnWholeUntilTheIteratorIsReset) {
  ASSERT_TRUE(m_image->SetAnimationFile(location("loop.gif")));
  EXPECT_TRUE(draw().all(wxRect(2, 3, 8, 8), k_red));

  m_image->tick_after(100);
  const paint_canvas_t canvas = draw();
  EXPECT_TRUE(canvas.all(wxRect(2, 3, 4, 4), k_blue));  // the patch
  EXPECT_TRUE(canvas.all(wxRect(6, 3, 4, 8), k_red));   // the first frame around it
  m_image->ResetIter();
  EXPECT_TRUE(draw().all(wxRect(2, 3, 8, 8), k_red));
}

TEST_F(ImageElementTest, HiddenAnimationsAndFramesShownForEverHoldNoTimer) {
  ASSERT_TRUE(m_image->SetAnimationFile(location("loop.gif")));
  take_requests();
  m_image->advance_ms(30);
  m_image->SetVisible(false);
  EXPECT_EQ(take_requests(), (requests_t{"kill img"}));
  m_image->SetVisible(true);  // the frame's delay as of the last tick
  EXPECT_EQ(take_requests(), (requests_t{"timer img 100"}));

  m_root->SetVisible(false);  // hiding an ancestor hides it as well
  EXPECT_EQ(take_requests(), (requests_t{"kill img"}));
  m_root->SetVisible(true);
  EXPECT_EQ(take_requests(), (requests_t{"timer img 100"}));

  // A window not shown yet: the element's own visibility starts the
  // animation, since showing a frame tells its children nothing.
  wxFrame* unshown = new wxFrame(nullptr, wxID_ANY, "later");
  m_host.m_holder = unshown;
  ASSERT_TRUE(m_image->SetAnimationFile(location("once.gif")));
  EXPECT_EQ(take_requests(), (requests_t{"kill img", "timer img 100"}));
  m_host.m_holder = nullptr;
  unshown->Destroy();
  m_image->tick_after(100);
  take_requests();
  m_image->tick_after(100);  // played once: the last frame stays
  EXPECT_EQ(take_requests(), (requests_t{"kill img"}));
  EXPECT_TRUE(draw().all(wxRect(2, 3, 4, 4), k_blue));
}

TEST_F(ImageElementTest, AnAnimationLoadedByWxSharesItsFramesAGenericOneIsShownStill) {
  wxAnimation animation;
  ASSERT_TRUE(animation.LoadFile(location("loop.gif")));
  m_image->SetAnimation(animation);
  EXPECT_EQ(take_requests(), (requests_t{"kill img", "timer img 100"}));
  m_image->tick_after(100);
  EXPECT_TRUE(draw().all(wxRect(2, 3, 4, 4), k_blue));

  log_capture_t log("orvix.elements");
  wxAnimation generic = wxGenericAnimationCtrl::CreateCompatibleAnimation();
  ASSERT_TRUE(generic.LoadFile(location("loop.gif")));
  take_requests();
  m_image->SetAnimation(generic);
  EXPECT_EQ(take_requests(), (requests_t{"kill img"}));
  EXPECT_TRUE(draw().all(wxRect(2, 3, 8, 8), k_red));
  EXPECT_EQ(log.entries().size(), 1u);
  EXPECT_EQ(log.warnings(), 1u);  // shown, if still
}


TEST_F(ImageElementTest, WithoutPictureOrAnimationItHasNoSizeAndAStillPictureReplacesTheAnimation) {
  EXPECT_EQ(m_image->GetSize(), wxSize(0, 0));
  ASSERT_TRUE(m_image->SetAnimationFile(location("loop.gif")));
  take_requests();
  m_image->SetImage(half_masked_image(wxSize(6, 4), k_green, wxColour(1, 2, 3)));
  EXPECT_EQ(take_requests(), (requests_t{"kill img"}));
  EXPECT_FALSE(m_image->HasAnimation());
  EXPECT_EQ(m_image->GetMinSize(), wxSize(6, 4));
  const paint_canvas_t canvas = draw();  // at the top left, through the mask
  EXPECT_TRUE(canvas.all(wxRect(5, 3, 3, 4), k_green));
  EXPECT_EQ(canvas.count(wxRect(0, 0, 20, 20), k_green), 12);

  m_image->SetAnimation(wxAnimation());  // an empty animation empties the element
  EXPECT_EQ(m_image->GetMinSize(), wxSize(0, 0));
  EXPECT_TRUE(draw().all(wxRect(0, 0, 20, 20), k_white));
}

}  // namespace
