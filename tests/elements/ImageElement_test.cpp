#include "orvix1/elements/ImageElement.h"

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <wx/generic/animate.h>

#include "support/fake_element_host.h"
#include "support/log_capture.h"
#include "support/paint_canvas.h"
#include "support/resource_archive.h"
#include "support/scratch_dir.h"
#include "support/wx_test_environment.h"

namespace {

using namespace orvix1::elements;
using orvix1_test::fake_element_host_t;
using orvix1_test::paint_canvas_t;
using orvix1_test::scratch_folder_t;
using orvix1_test::take_asserts;

using requests_t = std::vector<std::string>;

const wxColour k_red(255, 0, 0);
const wxColour k_blue(0, 0, 255);
const wxColour k_green(0, 255, 0);
const wxColour k_white(255, 255, 255);

// --- GIF files written byte by byte -------------------------------------------

// One image of a GIF: its place on the logical screen, its delay in
// hundredths of a second, and one palette index per pixel (0 red, 1 blue,
// 2 green, 3 white).
struct gif_frame_t {
  wxRect place;
  int delay_cs;
  int index;
};

// A GIF whose frames after the first may cover only part of the screen, as
// optimising encoders write them; each frame stays in place under the next.
// `loops` < 0 writes no loop block: the animation plays once.
std::string gif_file(wxSize screen, const std::vector<gif_frame_t>& frames, int loops) {
  std::string gif = "GIF89a";
  const auto word = [&gif](int value) {
    gif += static_cast<char>(value & 0xff);
    gif += static_cast<char>((value >> 8) & 0xff);
  };
  word(screen.x);
  word(screen.y);
  gif += "\x81";  // a global palette of four colours follows
  gif += std::string(2, '\0');
  gif += std::string("\xff\x00\x00\x00\x00\xff\x00\xff\x00\xff\xff\xff", 12);
  if (loops >= 0) {
    gif += "\x21\xff\x0bNETSCAPE2.0\x03\x01";
    word(loops);
    gif += '\0';
  }
  for (const gif_frame_t& frame : frames) {
    gif += "\x21\xf9\x04\x04";  // control block: keep the frame in place
    word(frame.delay_cs);
    gif += std::string(2, '\0');
    gif += "\x2c";
    word(frame.place.x);
    word(frame.place.y);
    word(frame.place.width);
    word(frame.place.height);
    gif += '\0';
    // LZW at 3 bits a code: a clear code before every second pixel keeps
    // the code table (and the code width) from growing.
    gif += '\x02';
    std::vector<int> codes;
    for (int pixel = 0; pixel < frame.place.width * frame.place.height; ++pixel) {
      if (pixel % 2 == 0) codes.push_back(4);
      codes.push_back(frame.index);
    }
    codes.push_back(5);
    std::string data;
    unsigned bits = 0;
    int count = 0;
    for (const int code : codes) {
      bits |= static_cast<unsigned>(code) << count;
      for (count += 3; count >= 8; count -= 8, bits >>= 8) data += static_cast<char>(bits & 0xff);
    }
    if (count > 0) data += static_cast<char>(bits & 0xff);
    for (std::size_t at = 0; at < data.size(); at += 255) {
      const std::size_t length = std::min<std::size_t>(255, data.size() - at);
      gif += static_cast<char>(length);
      gif += data.substr(at, length);
    }
    gif += '\0';
  }
  gif += "\x3b";
  return gif;
}

// Red 8x8, then a blue 4x4 patch in the top-left corner; 100 ms each.
std::string patched_gif(int loops) {
  return gif_file(wxSize(8, 8), {{wxRect(0, 0, 8, 8), 10, 0}, {wxRect(0, 0, 4, 4), 10, 1}},
                  loops);
}

// --- an element on a clock of the test's own -----------------------------------

class clocked_image_t : public ImageElement {
 public:
  explicit clocked_image_t(element_ptr_t parent) : ImageElement(parent, pfLeft | pfTop) {
    SetTestID("img");
  }
  std::int64_t now = 1700000000LL * 1000000;
  void advance_ms(int milliseconds) { now += milliseconds * 1000LL; }

 protected:
  std::int64_t GetCurrentTime() const override { return now; }
};

using clocked_ptr_t = talvar2::intrusive_pointer_t<clocked_image_t>;

class ImageElementTest : public ::testing::Test {
 protected:
  void SetUp() override {
    take_asserts();
    m_files.write("loop.gif", patched_gif(0));
    m_files.write("once.gif", patched_gif(-1));
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

TEST_F(ImageElementTest, WithoutPictureOrAnimationItHasNoSizeAndDrawsNothing) {
  EXPECT_EQ(m_image->GetMinSize(), wxSize(0, 0));
  EXPECT_EQ(m_image->GetSize(), wxSize(0, 0));
  EXPECT_TRUE(draw().all(wxRect(0, 0, 20, 20), k_white));
  m_image->ProcessTimer();  // a stray tick asks for nothing more
  EXPECT_EQ(take_requests(), (requests_t{"kill img"}));
}

TEST_F(ImageElementTest, AStillPictureIsDrawnAtTheTopLeftThroughItsMask) {
  const wxImage picture = orvix1_test::half_masked_image(wxSize(6, 4), k_green, wxColour(1, 2, 3));
  const int repaints = m_host.holder_requests;
  m_image->SetImage(picture);
  EXPECT_GT(m_host.holder_requests, repaints);
  EXPECT_EQ(m_image->GetMinSize(), wxSize(6, 4));
  EXPECT_EQ(m_image->GetSize(), wxSize(6, 4));
  const paint_canvas_t canvas = draw();
  EXPECT_TRUE(canvas.all(wxRect(5, 3, 3, 4), k_green));
  EXPECT_TRUE(canvas.all(wxRect(2, 3, 3, 4), k_white));
  EXPECT_EQ(canvas.count(wxRect(0, 0, 20, 20), k_green), 12);
}

TEST_F(ImageElementTest, AnAnimationTicksAtEachFrameDelayAndPollsWhenNothingChanged) {
  ASSERT_TRUE(m_image->SetAnimationFile(location("loop.gif")));
  EXPECT_TRUE(m_image->HasAnimation());
  EXPECT_TRUE(m_image->GetAnimation().IsOk());
  EXPECT_EQ(take_requests(), (requests_t{"kill img", "timer img 100"}));
  EXPECT_EQ(m_image->GetMinSize(), wxSize(8, 8));
  EXPECT_EQ(m_image->GetImage().GetSize(), wxSize(8, 8));

  m_image->advance_ms(40);  // early tick: same frame, look again soon
  m_image->ProcessTimer();
  EXPECT_EQ(take_requests(), (requests_t{"kill img", "timer img 10"}));
  EXPECT_TRUE(m_image->IsTimerRunning());

  m_image->advance_ms(60);  // the second frame is due
  m_image->ProcessTimer();
  EXPECT_EQ(take_requests(), (requests_t{"kill img", "timer img 100"}));
  m_image->advance_ms(100);  // and the first again: it loops
  m_image->ProcessTimer();
  EXPECT_EQ(take_requests(), (requests_t{"kill img", "timer img 100"}));
}

TEST_F(ImageElementTest, PartialFramesOfAnOptimisedGifAreDrawnWhole) {
  ASSERT_TRUE(m_image->SetAnimationFile(location("loop.gif")));
  paint_canvas_t canvas = draw();
  EXPECT_TRUE(canvas.all(wxRect(2, 3, 8, 8), k_red));
  EXPECT_TRUE(m_image->GetImage().IsOk());
  EXPECT_EQ(m_image->GetImage().GetRed(7, 7), 255);  // the first frame is the image

  m_image->advance_ms(100);
  m_image->ProcessTimer();
  canvas = draw();
  EXPECT_TRUE(canvas.all(wxRect(2, 3, 4, 4), k_blue));  // the patch
  EXPECT_TRUE(canvas.all(wxRect(6, 3, 4, 8), k_red));   // the first frame around it
  EXPECT_TRUE(canvas.all(wxRect(2, 7, 4, 4), k_red));
  EXPECT_TRUE(canvas.all(wxRect(10, 0, 10, 20), k_white));
}

TEST_F(ImageElementTest, AFrameShownForEverAsksForNoMoreTicks) {
  ASSERT_TRUE(m_image->SetAnimationFile(location("once.gif")));
  take_requests();
  m_image->advance_ms(100);
  m_image->ProcessTimer();
  EXPECT_EQ(take_requests(), (requests_t{"kill img", "timer img 100"}));
  m_image->advance_ms(100);  // played once: the last frame stays
  m_image->ProcessTimer();
  EXPECT_EQ(take_requests(), (requests_t{"kill img"}));
  EXPECT_FALSE(m_image->IsTimerRunning());
  EXPECT_TRUE(draw().all(wxRect(2, 3, 4, 4), k_blue));

  m_image->SetVisible(false);
  m_image->SetVisible(true);  // showing it again starts nothing either
  EXPECT_EQ(take_requests(), requests_t{});
}

TEST_F(ImageElementTest, HiddenAnimationsHoldNoTimer) {
  ASSERT_TRUE(m_image->SetAnimationFile(location("loop.gif")));
  take_requests();
  m_image->advance_ms(30);
  m_image->SetVisible(false);
  EXPECT_EQ(take_requests(), (requests_t{"kill img"}));
  m_image->SetVisible(true);  // the frame's delay as of the last tick
  EXPECT_EQ(take_requests(), (requests_t{"timer img 100"}));

  m_root->SetVisible(false);  // hiding an ancestor hides it as well
  EXPECT_EQ(take_requests(), (requests_t{"kill img"}));
  ASSERT_TRUE(m_image->SetAnimationFile(location("once.gif")));
  EXPECT_EQ(take_requests(), (requests_t{"kill img"}));
  m_root->SetVisible(true);
  EXPECT_EQ(take_requests(), (requests_t{"timer img 100"}));
}

TEST_F(ImageElementTest, AnAnimationLoadedByWxSharesItsFrames) {
  wxAnimation animation;
  ASSERT_TRUE(animation.LoadFile(location("loop.gif")));
  m_image->SetAnimation(animation);
  EXPECT_TRUE(m_image->HasAnimation());
  EXPECT_EQ(take_requests(), (requests_t{"kill img", "timer img 100"}));
  m_image->advance_ms(100);
  m_image->ProcessTimer();
  const paint_canvas_t canvas = draw();
  EXPECT_TRUE(canvas.all(wxRect(2, 3, 4, 4), k_blue));
  EXPECT_TRUE(canvas.all(wxRect(6, 7, 4, 4), k_red));
}

TEST_F(ImageElementTest, AGenericAnimationIsShownStillWithAWarning) {
  orvix1_test::log_capture_t log("orvix.elements");
  wxAnimation animation = wxGenericAnimationCtrl::CreateCompatibleAnimation();
  ASSERT_TRUE(animation.LoadFile(location("loop.gif")));
  m_image->SetAnimation(animation);
  EXPECT_FALSE(m_image->HasAnimation());
  EXPECT_TRUE(m_image->GetAnimation().IsOk());
  EXPECT_EQ(take_requests(), (requests_t{"kill img"}));
  EXPECT_EQ(m_image->GetMinSize(), wxSize(8, 8));
  EXPECT_TRUE(draw().all(wxRect(2, 3, 8, 8), k_red));
  EXPECT_EQ(log.entries().size(), 1u);
}

TEST_F(ImageElementTest, UnreadableAnimationsChangeNothingAndAreLogged) {
  orvix1_test::log_capture_t log("orvix.elements");
  ASSERT_TRUE(m_image->SetAnimationFile(location("loop.gif")));
  take_requests();
  m_files.write("broken.gif", patched_gif(0).substr(0, 20));
  m_files.write("empty.gif", "");
  EXPECT_FALSE(m_image->SetAnimationFile(location("missing.gif")));
  EXPECT_FALSE(m_image->SetAnimationFile(location("broken.gif")));
  EXPECT_FALSE(m_image->SetAnimationFile(location("empty.gif")));
  EXPECT_EQ(log.entries().size(), 3u);
  EXPECT_EQ(take_requests(), requests_t{});  // the running animation goes on
  EXPECT_TRUE(m_image->HasAnimation());
  EXPECT_EQ(m_image->GetMinSize(), wxSize(8, 8));
}

TEST_F(ImageElementTest, AnimationsComeFromArchivesToo) {
  orvix1_test::write_zip(path("res.zip"), {{"anim/busy.gif", patched_gif(0)}});
  ASSERT_TRUE(m_image->SetAnimationFile(location("res.zip") + "#zip:anim/busy.gif"));
  EXPECT_TRUE(m_image->HasAnimation());
  EXPECT_EQ(m_image->GetMinSize(), wxSize(8, 8));
  EXPECT_FALSE(m_image->SetAnimationFile(location("res.zip") + "#zip:anim/none.gif"));
}

TEST_F(ImageElementTest, AStillPictureReplacesTheAnimationAndItsTimer) {
  ASSERT_TRUE(m_image->SetAnimationFile(location("loop.gif")));
  take_requests();
  wxImage picture(3, 3);
  picture.SetRGB(wxRect(0, 0, 3, 3), 0, 255, 0);
  m_image->SetImage(picture);
  EXPECT_EQ(take_requests(), (requests_t{"kill img"}));
  EXPECT_FALSE(m_image->HasAnimation());
  EXPECT_FALSE(m_image->GetAnimation().IsOk());
  EXPECT_EQ(m_image->GetMinSize(), wxSize(3, 3));
  const paint_canvas_t canvas = draw();
  EXPECT_EQ(canvas.count(wxRect(0, 0, 20, 20), k_green), 9);
  EXPECT_EQ(canvas.count(wxRect(0, 0, 20, 20), k_red), 0);

  m_image->SetAnimation(wxAnimation());  // an empty animation empties the element
  EXPECT_EQ(m_image->GetMinSize(), wxSize(0, 0));
  EXPECT_TRUE(draw().all(wxRect(0, 0, 20, 20), k_white));
}

TEST_F(ImageElementTest, ResettingTheIteratorStartsFromTheFirstFrame) {
  ASSERT_TRUE(m_image->SetAnimationFile(location("loop.gif")));
  m_image->advance_ms(100);
  m_image->ProcessTimer();
  EXPECT_TRUE(draw().all(wxRect(2, 3, 4, 4), k_blue));
  m_image->ResetIter();
  EXPECT_TRUE(draw().all(wxRect(2, 3, 8, 8), k_red));
}

}  // namespace
