#include "orvix1/elements/UIElement.h"

#include <memory>

#include <gtest/gtest.h>
#include <wx/dcmemory.h>

#include "support/assert_texts.h"
#include "elements/adapter_fixture.h"
#include "orvix1/elements/bindings.h"
#include "support/fake_element_host.h"
#include "support/wx_test_environment.h"

namespace {

using namespace orvix1::elements;
using namespace orvix1_test;

using probe_ptr_t = recording_ptr_t;
constexpr int k_fill = UIElement::pfHExpand | UIElement::pfVExpand;
constexpr int k_left = UIElement::pfLeft | UIElement::pfTop;

wxMouseEvent mouse(wxEventType type, int x, int y) {
  wxMouseEvent event(type);
  event.SetPosition(wxPoint(x, y));
  event.m_leftDown = type == wxEVT_LEFT_DOWN || type == wxEVT_MOTION;
  return event;
}

class UIElementTest : public ::testing::Test {
 protected:
  void SetUp() override { take_asserts(); }
  probe_ptr_t probe(element_ptr_t parent, int flags, wxSize size, const std::string& name) {
    probe_ptr_t element(new recording_element_t(parent, size, &m_log, name, flags));
    element->log_draws = true;
    return element;
  }
  void paint() {
    wxBitmap bitmap(100, 100);
    wxMemoryDC dc(bitmap);
    m_root->ProcessDraw(dc, wxRect(0, 0, 100, 100), false);
  }

  log_t m_log;
  element_ptr_t m_root{new UIElement()};
  fake_element_host_t m_host{m_root};
};

TEST_F(UIElementTest, TopOfTheListWinsHitsButIsPaintedFirstAndBothGetTheMouse) {
  probe_ptr_t top = probe(m_root, k_fill, wxSize(10, 10), "top");
  probe_ptr_t under = probe(m_root, k_fill, wxSize(10, 10), "under");
  EXPECT_EQ(m_root->GetElementFromPoint(wxPoint(50, 50)), top);

  paint();
  EXPECT_EQ(m_log, (log_t{"top draw", "under draw"}));  // the later one lands on top

  m_log.clear();
  m_root->ProcessMouse(mouse(wxEVT_LEFT_DOWN, 50, 50));
  EXPECT_EQ(m_log, (log_t{"top down", "under down"}));
  m_log.clear();
  probe(top, k_fill, wxSize(10, 10), "inner");
  top->propagate = false;  // a handler can stop the propagation to its children
  m_root->ProcessMouse(mouse(wxEVT_MOTION, 50, 50));
  EXPECT_EQ(m_log, (log_t{"top move", "under move"}));

  m_root->ChangeZOrderToTop(under);
  EXPECT_EQ(m_root->GetElementFromPoint(wxPoint(50, 50)), under);
  EXPECT_EQ(m_root->GetElementFromPoint(wxPoint(150, 50)), element_ptr_t());
  EXPECT_FALSE(m_root->HitTest(wxPoint(100, 100)));  // the edge is outside
}

TEST_F(UIElementTest, InvisibleChildrenAreNeitherHitNorPaintedNorSentTheMouse) {
  probe_ptr_t hidden = probe(m_root, k_fill, wxSize(10, 10), "hidden");
  hidden->SetAcceptFocus(true);
  hidden->SetVisible(false);
  m_log.clear();
  EXPECT_EQ(m_root->GetElementFromPoint(wxPoint(5, 5)), m_root);
  paint();
  m_root->ProcessMouse(mouse(wxEVT_LEFT_DOWN, 5, 5));
  EXPECT_TRUE(m_log.empty());

  m_root->ProcessVisibilityChanged();  // still visited
  EXPECT_EQ(m_log, (log_t{"hidden hidden"}));
  EXPECT_TRUE(m_root->ProcessChangeFocus(true));  // and still focusable this way
  EXPECT_TRUE(hidden->IsFocused());
}

TEST_F(UIElementTest, LeavesOutsideTheContextAreSkippedButSqueezedOnesStillDraw) {
  // Docked from the left in a 100-wide root: 0-59, 60-99 and an empty one.
  probe(m_root, k_left, wxSize(60, 10), "inside");
  probe(m_root, k_left, wxSize(60, 10), "outside");
  probe(m_root, k_left, wxSize(0, 10), "squeezed");
  wxBitmap narrow(50, 100);  // paints only the left half
  wxMemoryDC dc(narrow);
  m_root->ProcessDraw(dc, wxRect(0, 0, 100, 100), false);
  EXPECT_EQ(m_log, (log_t{"inside draw", "squeezed draw"}));
}

TEST_F(UIElementTest, MarginsLargerThanTheRectangleLeaveAnEmptyInsideAndFrozenElementsNeitherRelayoutNorRepaint) {
  probe_ptr_t child = probe(m_root, k_left, wxSize(10, 8), "child");
  child->SetMargin(margin_t(6, 5, 7, 4));
  paint();
  EXPECT_EQ(child->drawn.back(), wxRect(6, 5, 0, 0));
  EXPECT_FALSE(m_root->IsLayoutDirty());
  const int requests = m_host.holder_requests;
  child->FreezeUpdates(true);
  child->Invalidate(true);
  EXPECT_FALSE(m_root->IsLayoutDirty());
  EXPECT_EQ(m_host.holder_requests, requests);

  child->FreezeUpdates(false);
  child->Invalidate(true);
  EXPECT_TRUE(m_root->IsLayoutDirty());
  EXPECT_EQ(m_host.holder_requests, requests + 1);
}

// root: a(0) [b(0) c(0) d(5)] e(2, not focusable) f(9)
TEST_F(UIElementTest, TabWalkGoesDepthFirstInTabOrderBothWays) {
  probe_ptr_t a = probe(m_root, k_left, wxSize(10, 10), "a");
  probe_ptr_t b = probe(a, k_left, wxSize(1, 1), "b");
  probe_ptr_t c = probe(a, k_left, wxSize(1, 1), "c");
  probe_ptr_t d = probe(a, k_left, wxSize(1, 1), "d");
  probe_ptr_t e = probe(m_root, k_left, wxSize(10, 10), "e");
  probe_ptr_t f = probe(m_root, k_left, wxSize(10, 10), "f");
  c->SetTabOrder(0);  // equal to b: only the first in list order is reachable
  d->SetTabOrder(5);
  e->SetTabOrder(2);
  f->SetTabOrder(9);
  EXPECT_FALSE(b->SetFocus(true));  // focus needs consent
  for (probe_ptr_t element : {b, c, d, f}) element->SetAcceptFocus(true);

  EXPECT_EQ(m_root->MoveFocusForward(element_ptr_t()), b);  // nothing focused: from the top
  EXPECT_EQ(m_root->MoveFocusForward(b), d);
  EXPECT_EQ(m_root->MoveFocusForward(d), f);  // e has no children and takes no focus
  EXPECT_EQ(m_root->MoveFocusForward(f), element_ptr_t());  // no wrap-around

  EXPECT_EQ(m_root->MoveFocusBack(f), d);
  EXPECT_EQ(m_root->MoveFocusBack(b), element_ptr_t());
  EXPECT_EQ(m_root->MoveFocusBack(element_ptr_t()), f);

  d->SetVisible(false);  // invisible ones are passed over
  EXPECT_EQ(m_root->MoveFocusForward(b), f);
  EXPECT_EQ(m_host.requests.back(), "focus f");
}

TEST_F(UIElementTest, TabOrdersOfNewChildren) {
  probe_ptr_t first = probe(m_root, k_left, wxSize(1, 1), "first");
  probe_ptr_t second = probe(m_root, k_left, wxSize(1, 1), "second");
  EXPECT_EQ(first->GetTabOrder(), 0);
  EXPECT_EQ(second->GetTabOrder(), 1);
  first->SetTabOrder(3);
  second->SetTabOrder(7);
  EXPECT_EQ(m_root->GenerateUniqueTabOrder(), 8);

  probe_ptr_t other_parent = probe(m_root, k_left, wxSize(1, 1), "other");
  probe_ptr_t moved = probe(other_parent, k_left, wxSize(1, 1), "moved");
  moved->ChangeParent(m_root);
  EXPECT_EQ(moved->GetTabOrder(), 9);  // among 3, 7, 8 and its own 0

  // The largest order falls when its holder leaves or lowers it.
  m_root->RemoveChild(moved);
  EXPECT_EQ(m_root->GenerateUniqueTabOrder(), 9);
  other_parent->SetTabOrder(2);
  EXPECT_EQ(m_root->GenerateUniqueTabOrder(), 8);
  second->SetTabOrder(1);
  EXPECT_EQ(m_root->GenerateUniqueTabOrder(), 4);
}

TEST_F(UIElementTest, TreeOperationsAndTheirSignals) {
  // Names are read at the end: a child joins its parent before it has one.
  auto events = std::make_shared<std::vector<std::pair<char, element_ptr_t>>>();
  bindings::bind_signal(m_root, m_root->ChildAdded,
                        [events](element_ptr_t, element_ptr_t child) { events->emplace_back('+', child); });
  bindings::bind_signal(m_root, m_root->ChildRemoved,
                        [events](element_ptr_t, element_ptr_t child) { events->emplace_back('-', child); });
  probe_ptr_t a = probe(m_root, k_left, wxSize(1, 1), "a");
  probe_ptr_t b = probe(m_root, k_left, wxSize(1, 1), "b");
  probe_ptr_t c = probe(m_root, k_left, wxSize(1, 1), "c");
  m_root->ChangeZOrderToBack(a);
  m_root->ChangeZOrderToBeforeElement(c, b);
  auto order = [this] {
    std::string names;
    for (const element_ptr_t& child : m_root->GetChildren()) names += child->GetTestID();
    return names;
  };
  EXPECT_EQ(order(), "cba");
  m_root->ChangeZOrderToAfterElement(c, a);
  EXPECT_EQ(order(), "bac");

  element_ptr_t d(new UIElement());
  d->SetTestID("d");
  m_root->ReplaceChild(a, d);
  b->Destroy();
  EXPECT_EQ(order(), "dc");
  std::string names;
  for (const auto& event : *events) names += event.first + event.second->GetTestID() + " ";
  EXPECT_EQ(names, "+a +b +c -a +d -b ");

  // Misuse is reported and changes nothing.
  m_root->AddChild(c);
  m_root->RemoveChild(a);
  m_root->ChangeZOrderToTop(a);
  m_root->ChangeZOrderToBeforeElement(c, a);
  EXPECT_EQ(taken_function_conditions(),
            (texts_t{"AddChild: std::find(m_children.begin(),m_children.end(),element) == m_children.end()",
                     "RemoveChild: std::find(m_children.begin(),m_children.end(),element) != m_children.end()",
                     "ChangeZOrderToTop: element != m_children.end()",
                     "ChangeZOrderToBeforeElement: pos != m_children.end()"}));
  EXPECT_EQ(order(), "dc");
}

TEST_F(UIElementTest, DestroyingAParentTakesItsChildrenAndTimersAlong) {
  probe_ptr_t parent = probe(m_root, k_left, wxSize(10, 10), "parent");
  probe_ptr_t child = probe(parent, k_left, wxSize(5, 5), "child");
  child->SetTimer(100);
  parent->Destroy();
  EXPECT_TRUE(child->IsDestroyed());
  EXPECT_TRUE(m_root->GetChildren().empty());
  EXPECT_EQ(m_host.requests, (std::vector<std::string>{"timer child 100", "kill child"}));
}

// What goes through the root needs a host to answer it.
TEST_F(UIElementTest, ADetachedTreeReportsTimerCaptureRectangleAndHolderRequests) {
  element_ptr_t detached(new UIElement());
  detached->SetTimer(10);
  detached->CaptureMouse();
  EXPECT_FALSE(detached->IsTimerRunning());
  EXPECT_EQ(detached->GetRect(), wxRect());
  EXPECT_EQ(detached->GetHolder(), nullptr);
  EXPECT_EQ(taken_function_conditions(),
            (texts_t{"SetTimer: GetRootElement()->RequestSetTimer.empty() == false",
                     "CaptureMouse: GetRootElement()->RequestCaptureMouse.empty() == false",
                     "GetRect: RequestClientRect.empty() == false",
                     "GetHolder: RequestHolderWindow.empty() == false"}));
}

TEST_F(UIElementTest, StylesPropagateToNewChildrenAndColoursAreDropped) {
  talvar2::intrusive_pointer_t<orvix1::ui_style_t> style(new orvix1::ui_style_t);
  probe_ptr_t parent = probe(m_root, k_left, wxSize(10, 10), "parent");
  parent->SetStylePropagation(true);
  parent->SetUiStyle(style);
  probe_ptr_t child = probe(parent, k_left, wxSize(5, 5), "child");
  EXPECT_EQ(child->GetUiStyle(), style);
  probe_ptr_t unstyled = probe(m_root, k_left, wxSize(5, 5), "unstyled");

  m_log.clear();
  style->on_ui_settings_updated();  // the style changed: its users drop colours
  EXPECT_EQ(m_log, (log_t{"parent colours", "child colours"}));

  m_log.clear();
  m_root->ProcessSysColorChanged();  // only unstyled elements drop theirs
  EXPECT_EQ(m_log, (log_t{"unstyled colours"}));
}

}  // namespace
