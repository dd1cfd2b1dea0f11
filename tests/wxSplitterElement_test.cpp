#include "orvix1/wxSplitterElement.h"

#include <vector>

#include <gtest/gtest.h>
#include <wx/frame.h>

#include "support/paint_canvas.h"
#include "support/wx_test_environment.h"

namespace {

using orvix1::wxSplitterElement;
using orvix1_test::paint_canvas_t;

// Records what the element's signals carry.
struct listener_t : talvar2::_internal::subscriber_base_t {
  void on_position(int position) { positions.push_back(position); }
  std::vector<int> positions;
};

// A vertical sash 6 wide with a tolerance of 3 in a 200x100 holder.
class SplitterElementTest : public ::testing::Test {
 protected:
  void SetUp() override {
    m_frame = new wxFrame(nullptr, wxID_ANY, "holder", wxPoint(0, 0), wxDefaultSize);
    m_frame->SetClientSize(200, 100);
    m_element.reset(new wxSplitterElement(m_frame, true, 6, 3));
    m_element->SashPositionChanged().connect(&m_listener, &listener_t::on_position);
  }
  void TearDown() override {
    m_element.reset();
    m_frame->Destroy();
    orvix1_test::pump_events();
  }
  wxFrame* m_frame = nullptr;
  std::unique_ptr<wxSplitterElement> m_element;
  listener_t m_listener;
};

TEST_F(SplitterElementTest, PositionIsClampedToTheHolderAndReportedOnChange) {
  m_element->SetSashPosition(-5);
  EXPECT_EQ(m_element->GetSashPosition(), 3);
  m_element->SetSashPosition(500);
  EXPECT_EQ(m_element->GetMaxSashPosition(), 197);
  EXPECT_EQ(m_element->GetSashPosition(), 197);
  m_element->SetSashPosition(197);  // no change: no signal
  EXPECT_EQ(m_listener.positions, (std::vector<int>{3, 197}));
  EXPECT_EQ(m_element->GetSashRect(), wxRect(194, 0, 6, 100));

  // Pinned at 0 (a sash of size 0 at the left edge), it reports every time.
  m_element->SetSashSize(0);
  m_element->SetSashPosition(-1);
  m_element->SetSashPosition(0);
  EXPECT_EQ(m_listener.positions, (std::vector<int>{3, 197, 0, 0}));
}

TEST_F(SplitterElementTest, HitTestsWidenByTheToleranceAndASashOfSizeZeroIsNeverHit) {
  m_element->SetSashPosition(100);
  EXPECT_EQ(m_element->GetSashRect(), wxRect(97, 0, 6, 100));
  EXPECT_TRUE(m_element->SashHitTest(94, 5));
  EXPECT_FALSE(m_element->SashHitTest(93, 5));
  EXPECT_TRUE(m_element->SashHitTest(105, 5));
  EXPECT_FALSE(m_element->SashHitTest(106, 5));
  const wxRect button = m_element->GetButtonRect();
  EXPECT_EQ(button.GetSize(), wxSize(6, wxSplitterElement::DefaultButtonLength));
  EXPECT_TRUE(m_element->ButtonHitTest(100, 50));
  EXPECT_FALSE(m_element->ButtonHitTest(100, 5));

  m_element->SetSashSize(0);
  for (int x = 90; x <= 110; ++x) EXPECT_FALSE(m_element->SashHitTest(x, 50)) << x;
}

TEST_F(SplitterElementTest, ANullHolderIsReported) {
  orvix1_test::take_asserts();
  wxSplitterElement orphan(nullptr, false, 4, 2);
  const auto asserts = orvix1_test::take_asserts();
  ASSERT_EQ(asserts.size(), 1u);
  EXPECT_EQ(asserts[0].condition, "m_holder_wnd != __null");
  orphan.SetSashPosition(10);  // no holder: an extent of 0, and no crash
  EXPECT_EQ(orphan.GetSashRect(), wxRect());
}

TEST_F(SplitterElementTest, DrawsTheSashInItsStateColourAndTheButtonImageOfItsState) {
  const wxColour normal(10, 20, 30), lit(200, 100, 0), pressed(0, 0, 255);
  m_element->SetSashColor(normal, lit);
  m_element->InitializeDefaultColors();  // explicit colours stay
  EXPECT_EQ(m_element->GetSashNormalColor(), normal);
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
