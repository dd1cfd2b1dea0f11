#include "orvix1/wxAdvancedSplitter.h"

#include "support/dpi_scale.h"
#include "support/tab_fixture.h"

namespace {

using namespace orvix1_test;
using orvix1::wxAdvancedSplitter;
using orvix1::wxSplitterElement;

// Splitters of 400x200 with two panels each; the sash runs from 3 to 397.
class AdvancedSplitterTest : public tab_frame_test_t {
 protected:
  void SetUp() override {
    tab_frame_test_t::SetUp();
    m_splitter = make_splitter(wxPoint(0, 0));
  }
  wxAdvancedSplitter* make_splitter(wxPoint where) {
    auto* splitter = new wxAdvancedSplitter(m_host, wxID_ANY, where, wxSize(400, 200));
    EXPECT_TRUE(splitter->SplitVertically(new wxPanel(splitter), new wxPanel(splitter)));
    return splitter;
  }
  int sash() const { return m_splitter->GetSplitterElement()->GetSashPosition(); }
  int max_sash() const { return m_splitter->GetSplitterElement()->GetMaxSashPosition(); }
  void mouse(wxEventType type, int x, int y, bool left_held = false) {
    send_mouse(m_splitter, type, wxPoint(x, y), left_held);
  }
  void click(int x, int y) {
    mouse(wxEVT_LEFT_DOWN, x, y);
    mouse(wxEVT_LEFT_UP, x, y);
  }
  // Ticks the animation until it stops (at most 200 ticks); the positions seen.
  std::vector<int> run_animation() {
    std::vector<int> positions;
    wxTimerEvent tick(m_splitter->GetAnimationTimer());
    for (int i = 0; i < 200 && m_splitter->IsAnimating(); ++i) {
      m_splitter->OnTimer(tick);
      positions.push_back(sash());
    }
    return positions;
  }
  wxAdvancedSplitter* m_splitter = nullptr;
};

TEST_F(AdvancedSplitterTest, AClosedPaneReopensFromAnywhereOnTheSashAnOpenOneOnlyFromTheButton) {
  m_splitter->EnableAnimation(false);
  ASSERT_EQ(sash(), 198);
  const int top = 5, button = 100;
  click(sash(), top);
  EXPECT_FALSE(m_splitter->IsSecondPaneClosed() || m_splitter->IsModifiedByUser());
  click(sash(), button);
  EXPECT_TRUE(m_splitter->IsSecondPaneClosed() && m_splitter->IsModifiedByUser());
  EXPECT_EQ(sash(), max_sash());
  click(sash(), top);
  EXPECT_EQ(m_splitter->GetPanel1()->GetSize(), wxSize(195, 200));  // open again at 198
}

// Sash, hit tolerance and collapse button grow with the scale; the button
// is hit as far out as the tolerance reaches, and no farther.
TEST_F(AdvancedSplitterTest, SashToleranceAndButtonGrowWithTheScale) {
  const scoped_DPI_scale_t scale(1.5);  // sash 6, tolerance 3, button 36 at 96 dpi
  const auto element = make_splitter(wxPoint(0, 220))->GetSplitterElement();
  EXPECT_EQ(element->GetSashSize(), 9);
  EXPECT_EQ(element->GetHitTolerance(), 4);
  const wxRect button = element->GetButtonRect();
  EXPECT_EQ(button.GetSize(), wxSize(9, 54));
  const int y = button.y + button.height / 2;
  EXPECT_TRUE(element->ButtonHitTest(button.x - 4, y));
  EXPECT_FALSE(element->ButtonHitTest(button.x - 5, y));
  EXPECT_TRUE(element->ButtonHitTest(button.x + 1, button.GetBottom() + 4));
}

TEST_F(AdvancedSplitterTest, DraggingMovesTheSashByThePointersMovement) {
  const int start = sash();
  mouse(wxEVT_MOTION, start + 2, 10);
  EXPECT_EQ(m_splitter->GetSplitterElement()->GetSashState(), wxSplitterElement::vsHighlighted);
  mouse(wxEVT_LEFT_DOWN, start, 10);
  EXPECT_EQ(wxWindow::GetCapture(), m_splitter);
  mouse(wxEVT_MOTION, start + 20, 12, true);
  mouse(wxEVT_MOTION, start + 50, 40, true);
  EXPECT_EQ(m_splitter->GetPanel1()->GetSize().x, start + 50 - 3);
  mouse(wxEVT_LEFT_UP, start + 50, 40);
  EXPECT_TRUE(wxWindow::GetCapture() == nullptr && m_splitter->IsModifiedByUser());
  EXPECT_EQ(sash(), start + 50);
  // The release's own point, now on the moved sash, decides the hover.
  EXPECT_EQ(m_splitter->GetSplitterElement()->GetSashState(), wxSplitterElement::vsHighlighted);
  mouse(wxEVT_LEAVE_WINDOW, start + 90, 40);
  EXPECT_EQ(m_splitter->GetSplitterElement()->GetSashState(), wxSplitterElement::vsNormal);
}

TEST_F(AdvancedSplitterTest, CollapseAcceleratesAndBothWaysEndExactlyOnTarget) {
  m_splitter->ChangePaneState(false);
  ASSERT_TRUE(m_splitter->IsAnimating());
  EXPECT_FALSE(m_splitter->IsSecondPaneClosed());  // not before it has closed
  const std::vector<int> closing = run_animation();
  ASSERT_GE(closing.size(), 3u);
  EXPECT_EQ(closing.back(), max_sash());
  EXPECT_TRUE(!m_splitter->GetAnimationTimer().IsRunning() && m_splitter->IsSecondPaneClosed());
  EXPECT_LT(closing[1] - closing[0], closing[2] - closing[1]);

  m_splitter->ChangePaneState(true);
  EXPECT_EQ(run_animation().back(), 198);
}

TEST_F(AdvancedSplitterTest, RelativePositionIsClampedAndKeptAcrossResizes) {
  m_splitter->SetRelativeSashPosition(1.5f);
  EXPECT_FLOAT_EQ(m_splitter->GetRelativeSashPosition(), 1.0f);
  EXPECT_EQ(sash(), max_sash());
  m_splitter->SetRelativeSashPosition(0.25f);
  m_splitter->SetSize(800, 200);
  EXPECT_EQ(sash(), 199);  // (800 - 3) * 0.25

  delete m_splitter->GetPanel2();  // forgotten, not left dangling
  EXPECT_EQ(m_splitter->GetPanel2(), nullptr);
  m_splitter->SetSize(600, 200);
  m_splitter->ChangePaneState(false);
}

TEST_F(AdvancedSplitterTest, LinkedSplittersFollowEachOther) {
  wxAdvancedSplitter* other = make_splitter(wxPoint(0, 250));
  ASSERT_TRUE(other->SynchronizeWith(m_splitter->GetSplitterElement()));
  ASSERT_TRUE(m_splitter->SynchronizeWith(other->GetSplitterElement()));
  m_splitter->SetRelativeSashPosition(0.75f);
  EXPECT_EQ(other->GetSplitterElement()->GetSashPosition(), sash());
  EXPECT_EQ(other->GetPanel1()->GetSize().x, m_splitter->GetPanel1()->GetSize().x);
  other->SetRelativeSashPosition(0.1f);
  EXPECT_EQ(sash(), other->GetSplitterElement()->GetSashPosition());
}

TEST_F(AdvancedSplitterTest, StateIsSavedAndRestored) {
  m_splitter->EnableAnimation(false);
  m_splitter->SetRelativeSashPosition(0.25f);
  m_splitter->ChangePaneState(false);
  const std::string saved = m_splitter->SaveState();
  EXPECT_EQ(saved, "position=0.2500;closed=1");

  wxAdvancedSplitter* restored = make_splitter(wxPoint(0, 250));
  for (const char* bad : {"position=2;closed=1", "position=0.25;closed=1;"})
    EXPECT_FALSE(restored->RestoreState(bad)) << bad;
  EXPECT_FALSE(restored->IsSecondPaneClosed());  // bad text changes nothing
  ASSERT_TRUE(restored->RestoreState(saved));
  EXPECT_EQ(restored->GetSplitterElement()->GetSashPosition(), max_sash());  // closed
}

}  // namespace
