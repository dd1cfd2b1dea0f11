#include "orvix1/wxSplitterElement.h"

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

TEST_F(SplitterElementTest, PositionIsClampedToTheHolderAndReportedOnChange) {
  m_element->SetSashPosition(-5);
  EXPECT_EQ(m_element->GetSashPosition(), 3);
  m_element->SetSashPosition(500);
  EXPECT_EQ(m_element->GetSashPosition(), 197);
  m_element->SetSashPosition(197);  // no change: no signal
  EXPECT_EQ(m_positions.values, (std::vector<int>{3, 197}));
  EXPECT_EQ(m_element->GetSashRect(), wxRect(194, 0, 6, 100));

  // Pinned at 0 (a sash of size 0 at the left edge), it reports every time.
  m_element->SetSashSize(0);
  m_element->SetSashPosition(-1);
  m_element->SetSashPosition(0);
  EXPECT_EQ(m_positions.values, (std::vector<int>{3, 197, 0, 0}));
}

TEST_F(SplitterElementTest, HitTestsWidenByTheToleranceAndASashOfSizeZeroIsNeverHit) {
  m_element->SetSashPosition(100);  // the sash covers 97..102
  for (int x : {94, 105}) EXPECT_TRUE(m_element->SashHitTest(x, 5)) << x;
  for (int x : {93, 106}) EXPECT_FALSE(m_element->SashHitTest(x, 5)) << x;
  EXPECT_EQ(m_element->GetButtonRect().GetSize(),
            wxSize(6, wxSplitterElement::DefaultButtonLength));
  EXPECT_TRUE(m_element->ButtonHitTest(100, 50));
  EXPECT_FALSE(m_element->ButtonHitTest(100, 5));

  m_element->SetSashSize(0);
  for (int x = 90; x <= 110; ++x) EXPECT_FALSE(m_element->SashHitTest(x, 50)) << x;
}

TEST_F(SplitterElementTest, ANullHolderIsReported) {
  wxSplitterElement orphan(nullptr, false, 4, 2);
  const auto asserts = take_asserts();
  ASSERT_EQ(asserts.size(), 1u);
  EXPECT_EQ(asserts[0].condition, "m_holder_wnd != __null");
  orphan.SetSashPosition(10);  // no holder: an extent of 0, and no crash
  EXPECT_EQ(orphan.GetSashRect(), wxRect());
}

TEST_F(SplitterElementTest, DrawsTheSashInItsStateColourAndTheButtonImageOfItsState) {
  const wxColour normal(10, 20, 30), lit(200, 100, 0), pressed(0, 0, 255);
  m_element->SetSashColor(normal, lit);
  m_element->InitializeDefaultColors();  // explicit colours stay
  m_element->SetSashPosition(100);
  wxImage plain(6, 10), blue(6, 10);
  blue.SetRGB(wxRect(0, 0, 6, 10), 0, 0, 255);
  EXPECT_FALSE(m_element->SetButtonImage(wxSplitterElement::bdRight, plain, wxImage(), blue));
  ASSERT_TRUE(m_element->SetButtonImage(wxSplitterElement::bdRight, plain, plain, blue));
  m_element->SetButtonState(wxSplitterElement::vsPressed);
  m_element->SetSashState(wxSplitterElement::vsHighlighted);

  paint_canvas_t canvas(200, 100);
  canvas.paint([&](wxDC& dc) { m_element->Draw(dc); });
  EXPECT_EQ(canvas.at(100, 5), lit);
  EXPECT_EQ(canvas.at(100, 50), pressed);
  EXPECT_EQ(canvas.at(50, 50), *wxWHITE);

  m_element->SetSashState(wxSplitterElement::vsNormal);
  m_element->ShowButton(false);
  canvas.paint([&](wxDC& dc) { m_element->Draw(dc); });
  EXPECT_EQ(canvas.at(100, 50), normal);
}

}  // namespace
