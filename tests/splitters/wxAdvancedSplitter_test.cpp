#include "orvix1/wxAdvancedSplitter.h"

#include <gtk/gtk.h>
#include <wx/button.h>

#include "accessibility/accessible.h"
#include "orvix1/wxQuadSplitter.h"
#include "support/atk_event_log.h"
#include "support/atk_probe.h"
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

namespace a11y = orvix1::accessibility;

double value_of(AtkObject* object) {
  gdouble value = -1;
  atk_value_get_value_and_text(ATK_VALUE(object), &value, nullptr);
  return value;
}

bool contains(const std::vector<std::string>& events, const std::string& event) {
  return std::find(events.begin(), events.end(), event) != events.end();
}

// A 400x400 splitter between two buttons; its sash's track runs from 3 to 397.
class SplitterAccessible : public tab_frame_test_t {
 protected:
  void SetUp() override {
    tab_frame_test_t::SetUp();
    m_before = new wxButton(m_host, wxID_ANY, "before", wxPoint(0, 410));
    m_splitter = make_splitter(false);
    m_after = new wxButton(m_host, wxID_ANY, "after", wxPoint(100, 410));
  }
  wxAdvancedSplitter* make_splitter(bool horizontal) {
    auto* splitter = new wxAdvancedSplitter(m_host, wxID_ANY, wxPoint(0, 0), wxSize(400, 400));
    splitter->EnableAnimation(false);
    auto* first = new wxPanel(splitter);
    auto* second = new wxPanel(splitter);
    m_in_first = new wxButton(first, wxID_ANY, "in first");
    m_in_second = new wxButton(second, wxID_ANY, "in second");
    EXPECT_TRUE(horizontal ? splitter->SplitHorizontally(first, second)
                           : splitter->SplitVertically(first, second));
    return splitter;
  }
  AtkObject* sash_of(wxAdvancedSplitter* splitter) {
    const std::vector<AtkObject*> found =
        find_by_role(a11y::accessible_of(splitter), ATK_ROLE_SEPARATOR);
    return found.size() == 1 ? found[0] : nullptr;
  }
  bool press(int key_code, bool shift = false) {
    wxKeyEvent event(wxEVT_KEY_DOWN);
    event.m_keyCode = key_code;
    event.SetShiftDown(shift);
    event.SetEventObject(m_splitter);
    m_splitter->ProcessWindowEvent(event);
    return !event.GetSkipped();
  }
  // Without a window manager no frame is active, and the toolkit moves no
  // focus in it: the frame takes the input focus first.
  bool activate() {
    gtk_window_present(GTK_WINDOW(m_frame->GetHandle()));
    gdk_display_sync(gtk_widget_get_display(m_frame->GetHandle()));
    pump_events();
    return gtk_window_is_active(GTK_WINDOW(m_frame->GetHandle()));
  }
  bool focus_reaches(wxWindow* window) {
    return orvix1::testing::pump_until([&] { return wxWindow::FindFocus() == window; },
                                       std::chrono::seconds(5));
  }
  wxButton* m_in_first = nullptr;
  wxButton* m_in_second = nullptr;
  wxButton* m_before = nullptr;
  wxButton* m_after = nullptr;
  wxAdvancedSplitter* m_splitter = nullptr;
};

TEST_F(SplitterAccessible, TheSashIsASeparatorWhoseValueIsItsPositionAndWhoseActionsCloseThePane) {
  const struct {
    bool horizontal;
    wxAdvancedSplitter::PaneToClose pane;
    double closed_value;
    AtkStateType orientation;
  } cases[] = {{false, wxAdvancedSplitter::ptcSecond, 100, ATK_STATE_VERTICAL},
               {true, wxAdvancedSplitter::ptcFirst, 0, ATK_STATE_HORIZONTAL}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.horizontal);
    wxAdvancedSplitter* splitter = make_splitter(c.horizontal);
    splitter->SetPaneToClose(c.pane);
    AtkObject* window = a11y::accessible_of(splitter);
    EXPECT_EQ(atk_object_get_role(window), ATK_ROLE_SPLIT_PANE);
    AtkObject* sash = sash_of(splitter);
    ASSERT_NE(sash, nullptr);
    EXPECT_EQ(children_of(window).back(), sash);  // after the panes
    for (AtkStateType state :
         {c.orientation, ATK_STATE_FOCUSABLE, ATK_STATE_EXPANDABLE, ATK_STATE_EXPANDED})
      EXPECT_TRUE(has_state(sash, state)) << atk_state_type_get_name(state);
    EXPECT_FALSE(has_state(sash, ATK_STATE_COLLAPSED));
    EXPECT_DOUBLE_EQ(value_of(sash), 49.5);  // (198 - 3) / 394
    AtkRange* range = atk_value_get_range(ATK_VALUE(sash));
    EXPECT_EQ(atk_range_get_lower_limit(range), 0);
    EXPECT_EQ(atk_range_get_upper_limit(range), 100);
    atk_range_free(range);
    gint x, y, width, height;
    atk_component_get_extents(ATK_COMPONENT(sash), &x, &y, &width, &height, ATK_XY_PARENT);
    EXPECT_EQ(wxRect(x, y, width, height), splitter->GetSplitterElement()->GetSashRect());

    atk_event_log_t events;
    events.watch(sash);
    atk_value_set_value(ATK_VALUE(sash), 25);  // as a drag would
    EXPECT_EQ(splitter->GetSplitterElement()->GetSashPosition(), 102);
    EXPECT_TRUE(splitter->IsModifiedByUser());
    EXPECT_DOUBLE_EQ(value_of(sash), 25.1);
    EXPECT_EQ(events.take(), std::vector<std::string>{"value"});

    EXPECT_EQ(actions_of(sash), (std::vector<std::string>{"collapse", "expand"}));
    ASSERT_TRUE(run_action(sash, "collapse"));
    pump_events();
    EXPECT_TRUE(splitter->IsSecondPaneClosed());
    EXPECT_EQ(value_of(sash), c.closed_value);
    EXPECT_TRUE(has_state(sash, ATK_STATE_COLLAPSED) && !has_state(sash, ATK_STATE_EXPANDED));
    std::vector<std::string> seen = events.take();
    EXPECT_TRUE(contains(seen, "collapsed=1") && contains(seen, "expanded=0") &&
                contains(seen, "value"));
    ASSERT_TRUE(run_action(sash, "expand"));
    pump_events();
    EXPECT_NEAR(value_of(sash), 25, 0.5);  // back at its relative position
    seen = events.take();
    EXPECT_TRUE(contains(seen, "collapsed=0") && contains(seen, "expanded=1"));

    // A disabled button refuses clicks: assistive technology gets no way around it.
    splitter->EnableCloseButton(false);
    EXPECT_TRUE(actions_of(sash).empty());
    EXPECT_FALSE(has_state(sash, ATK_STATE_EXPANDABLE));
    splitter->Destroy();
    pump_events();
  }
}

TEST_F(SplitterAccessible, TabReachesTheSashWhoseArrowKeysMoveItAndGoesOnIntoThePanesAndOut) {
  ASSERT_TRUE(activate());
  m_before->SetFocus();
  pump_events();
  AtkObject* sash = sash_of(m_splitter);
  ASSERT_NE(sash, nullptr);
  atk_event_log_t events;
  events.watch(sash);
  m_before->Navigate(wxNavigationKeyEvent::IsForward | wxNavigationKeyEvent::FromTab);
  ASSERT_TRUE(focus_reaches(m_splitter));
  EXPECT_TRUE(m_splitter->CanAcceptFocusFromKeyboard());
  EXPECT_TRUE(has_state(sash, ATK_STATE_FOCUSED));
  EXPECT_FALSE(has_state(a11y::accessible_of(m_splitter), ATK_STATE_FOCUSED));  // the sash has it
  EXPECT_EQ(events.take(), std::vector<std::string>{"focused=1"});

  atk_value_set_value(ATK_VALUE(sash), 50);
  const struct {
    int key;
    bool taken;
    double value;
    bool closed;
  } steps[] = {{WXK_RIGHT, true, 51, false}, {WXK_LEFT, true, 50, false},
               {WXK_DOWN, false, 50, false}, {WXK_END, true, 100, false},
               {WXK_HOME, true, 0, false},   {WXK_RETURN, true, 100, true},
               {WXK_SPACE, true, 0, false}};
  for (const auto& step : steps) {
    SCOPED_TRACE(step.key);
    EXPECT_EQ(press(step.key), step.taken);
    EXPECT_DOUBLE_EQ(value_of(sash), step.value);
    EXPECT_EQ(m_splitter->IsSecondPaneClosed(), step.closed);
  }

  atk_value_set_value(ATK_VALUE(sash), 50);  // both panes open
  // Tab goes on from the sash into each pane and out, Shift+Tab the other
  // way. The key goes to the focused window first; what it leaves alone the
  // toolkit turns into navigation.
  const auto tab = [this](bool forward) {
    wxWindow* focused = wxWindow::FindFocus();
    if (focused == m_splitter && press(WXK_TAB, !forward)) return;
    focused->Navigate(forward ? wxNavigationKeyEvent::IsForward : wxNavigationKeyEvent::IsBackward);
  };
  const struct {
    bool forward;
    wxWindow* reached;
  } tabs[] = {{true, m_in_first},  {true, m_in_second}, {true, m_after},   {false, m_in_second},
              {false, m_in_first}, {false, m_splitter}, {false, m_before}, {true, m_splitter},
              {true, m_in_first},  {true, m_in_second}, {true, m_after}};
  for (const auto& step : tabs) {
    SCOPED_TRACE(step.reached->GetLabel());
    tab(step.forward);
    ASSERT_TRUE(focus_reaches(step.reached));
  }
  EXPECT_FALSE(has_state(sash, ATK_STATE_FOCUSED));
  EXPECT_TRUE(contains(events.take(), "focused=0"));
  const double before_keys = value_of(sash);
  EXPECT_FALSE(press(WXK_RIGHT));  // an unfocused splitter leaves the keys alone
  EXPECT_EQ(value_of(sash), before_keys);
}

// The grid is no stop of its own: Tab goes on to the major sash, then the
// first minor one and its panes. (The quad comes after the buttons.)
TEST_F(SplitterAccessible, AQuadSplitterShowsAndReachesItsThreeSashes) {
  m_splitter->Destroy();
  auto* quad = new orvix1::wxQuadSplitter(m_host, wxID_ANY, wxPoint(0, 0), wxSize(400, 300));
  ASSERT_TRUE(
      quad->SplitVertically(new wxButton(quad, wxID_ANY, "1"), new wxButton(quad, wxID_ANY, "2"),
                            new wxButton(quad, wxID_ANY, "3"), new wxButton(quad, wxID_ANY, "4")));
  EXPECT_EQ(find_by_role(a11y::accessible_of(quad), ATK_ROLE_SEPARATOR).size(), 3u);
  EXPECT_EQ(find_by_role(a11y::accessible_of(quad), ATK_ROLE_SPLIT_PANE).size(), 3u);

  ASSERT_TRUE(activate());
  m_after->SetFocus();
  ASSERT_TRUE(focus_reaches(m_after));
  for (wxWindow* stop : {static_cast<wxWindow*>(quad->GetMajorSplitter()),
                         static_cast<wxWindow*>(quad->GetMinorSplitter1()),
                         quad->GetMinorSplitter1()->GetPanel1()}) {
    wxWindow::FindFocus()->Navigate();
    EXPECT_TRUE(focus_reaches(stop));
  }
}

}  // namespace
