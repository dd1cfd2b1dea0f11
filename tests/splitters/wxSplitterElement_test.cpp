#include "orvix1/wxSplitterElement.h"

#include <string>

#include "orvix1/ui_settings.h"
#include "support/paint_canvas.h"
#include "support/tab_fixture.h"

namespace {

using namespace orvix1_test;
using orvix1::wxSplitterElement;

// A vertical sash 6 wide with a tolerance of 3 in a 200x100 holder.
class SplitterElementTest : public tab_frame_test_t {
 protected:
  void SetUp() override {
    tab_frame_test_t::SetUp();
    auto* holder = new wxWindow(m_host, wxID_ANY, wxPoint(0, 0), wxSize(200, 100));
    m_element.reset(new wxSplitterElement(holder, true, 6, 3));
    m_element->SashPositionChanged().connect(&m_positions, &int_recorder_t::on);
  }
  void TearDown() override {
    m_element.reset();
    tab_frame_test_t::TearDown();
  }
  std::unique_ptr<wxSplitterElement> m_element;
  int_recorder_t m_positions;
};

// Clamped to the holder and reported on change; hit tests widen by the
// tolerance; a sash of size 0 is never hit.
TEST_F(SplitterElementTest, PositionIsClampedAndASashOfSizeZeroIsNeverHit) {
  m_element->SetSashPosition(-5);
  EXPECT_EQ(m_element->GetSashPosition(), 3);
  m_element->SetSashPosition(500);
  EXPECT_EQ(m_element->GetSashPosition(), 197);
  m_element->SetSashPosition(197);  // no change: no signal
  EXPECT_EQ(m_positions.values, (std::vector<int>{3, 197}));
  EXPECT_EQ(m_element->GetSashRect(), wxRect(194, 0, 6, 100));
  m_element->SetSashPosition(100);  // the sash covers 97..102
  for (int x : {94, 105}) EXPECT_TRUE(m_element->SashHitTest(x, 5)) << x;
  for (int x : {93, 106}) EXPECT_FALSE(m_element->SashHitTest(x, 5)) << x;
  EXPECT_TRUE(m_element->ButtonHitTest(100, 50));
  EXPECT_FALSE(m_element->ButtonHitTest(100, 5));

  m_element->SetSashSize(0);
  for (int x = 90; x <= 110; ++x) EXPECT_FALSE(m_element->SashHitTest(x, 50)) << x;
  // Pinned at 0 (a sash of size 0 at the left edge), it reports every time.
  m_element->SetSashPosition(-1);
  m_element->SetSashPosition(0);
  EXPECT_EQ(m_positions.values, (std::vector<int>{3, 197, 100, 0, 0}));
}

TEST_F(SplitterElementTest, ANullHolderIsReported) {
  wxSplitterElement orphan(nullptr, false, 4, 2);
  const auto asserts = take_asserts();
  ASSERT_EQ(asserts.size(), 1u);
  EXPECT_EQ(asserts[0].condition, "m_holder_wnd != __null");
  orphan.SetSashPosition(10);  // no holder: an extent of 0, and no crash
  EXPECT_EQ(orphan.GetSashRect(), wxRect());
}

// The sash follows a theme switch until a colour is set for it.
TEST(SplitterElementLook, SashFollowsThePaletteUntilColoursAreSet) {
  talvar2::intrusive_pointer_t<orvix1::ui_settings_configure_t> palette(new orvix1::ui_settings_configure_t);
  auto* frame = new wxFrame(nullptr, wxID_ANY, "sash", wxDefaultPosition, wxSize(200, 100));
  {
    wxSplitterElement sash(frame, true);
    sash.SetSashPosition(50);
    for (const char* theme : {"dark", "light"}) {
      ASSERT_TRUE(palette->apply_theme(std::string(ORVIX1_THEMES_DIR "/") + theme + ".xml"));
      EXPECT_EQ(sash.GetSashNormalColor(), palette->get_color(orvix1::color_face)) << theme;
      paint_canvas_t canvas(200, 100);
      canvas.paint([&](wxDC& dc) { sash.Draw(dc); });
      EXPECT_EQ(canvas.at(50, 5), palette->get_color(orvix1::color_face)) << theme;
    }
    sash.SetSashColor(*wxRED, *wxGREEN);
    ASSERT_TRUE(palette->apply_theme(ORVIX1_THEMES_DIR "/dark.xml"));
    EXPECT_EQ(sash.GetSashNormalColor(), *wxRED);
  }
  frame->Destroy();
}

}  // namespace
