#include "orvix1/elements/Layout.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <wx/bitmap.h>
#include <wx/dcmemory.h>

#include "orvix1/elements/OptimalLayout.h"
#include "orvix1/elements/RectangleElement.h"
#include "orvix1/elements/SpacerElement.h"
#include "orvix1/elements/StackLayout.h"
#include "support/assert_texts.h"
#include "support/fake_element_host.h"
#include "support/paint_canvas.h"
#include "support/wx_test_environment.h"

namespace {

using namespace orvix1::elements;
using namespace orvix1_test;

constexpr int left = UIElement::pfLeft;
constexpr int right = UIElement::pfRight;
constexpr int top = UIElement::pfTop;
constexpr int bottom = UIElement::pfBottom;
constexpr int v_center = UIElement::pfVCenter;
constexpr int v_expand = UIElement::pfVExpand;
constexpr int h_center = UIElement::pfHCenter;
constexpr int h_expand = UIElement::pfHExpand;

// A child with its own size and minimum size; `on_size_asked`, when set,
// runs once from inside the next GetSize(), that is from inside a relayout.
class sized_t : public UIElement {
 public:
  sized_t(element_ptr_t parent, int flags, wxSize size, wxSize minimum)
      : UIElement(parent, flags), m_size(size), m_minimum(minimum) {}
  wxSize GetSize() const override {
    if (on_size_asked) {
      const std::function<void()> hook = std::move(on_size_asked);
      on_size_asked = nullptr;
      hook();
    }
    return m_size;
  }
  wxSize GetMinSize() const override { return m_minimum; }

  mutable std::function<void()> on_size_asked;

 private:
  wxSize m_size;
  wxSize m_minimum;
};

using sized_ptr_t = talvar2::intrusive_pointer_t<sized_t>;

// A root answered by a fake host, and helpers to fill and lay it out.
class layout_fixture_t : public ::testing::Test {
 protected:
  void SetUp() override { take_asserts(); }
  void TearDown() override { EXPECT_EQ(taken_function_conditions(), texts_t()); }

  element_ptr_t spacer(int flags, wxSize size) { return new SpacerElement(m_root, flags, size); }
  sized_ptr_t sized(int flags, wxSize size, wxSize minimum, bool resizable) {
    sized_ptr_t child(new sized_t(m_root, flags, size, minimum));
    child->SetResizable(resizable);
    return child;
  }
  talvar2::intrusive_pointer_t<StackLayout> use_stack(bool horizontal) {
    talvar2::intrusive_pointer_t<StackLayout> stack(new StackLayout);
    stack->SetOrientation(horizontal);
    m_root->SetLayoutLogic(stack);
    return stack;
  }
  void relayout() { m_root->GetLayoutLogic()->Invalidate(); }
  wxRect rect_of(const element_ptr_t& child) const {
    return m_root->GetLayoutLogic()->GetChildRect(wxRect(), child);
  }
  wxSize size() const { return m_root->GetLayoutLogic()->GetSize(); }
  wxSize min_size() const { return m_root->GetLayoutLogic()->GetMinSize(); }

  element_ptr_t m_root{new UIElement()};
  fake_element_host_t m_host{m_root, wxRect(0, 0, 100, 50)};
};

class LayoutPositionTest : public layout_fixture_t {
 protected:
  wxRect place(wxRect& remaining, wxSize size, int flags) const {
    return m_layout->ProcessPositionCalculation(remaining, size, flags);
  }
  talvar2::intrusive_pointer_t<Layout> m_layout{new OptimalLayout};
};

// Each run places its children one after another in one remaining space.
TEST_F(LayoutPositionTest, DockingTakesFromTheRemainingSpaceAndCentringLeavesIt) {
  struct step_t {
    wxSize size;
    int flags;
    wxRect expected;
    wxRect remaining_after;
  };
  struct run_t {
    const char* rule;
    wxRect start;
    std::vector<step_t> steps;
  };
  const run_t runs[] = {
      {"left and top docking take their length and clamp to the space", wxRect(10, 20, 100, 50),
       {{wxSize(30, 10), left | top, wxRect(10, 20, 30, 10), wxRect(40, 30, 70, 40)},
        {wxSize(200, 100), left | top, wxRect(40, 30, 70, 40), wxRect(110, 70, 0, 0)}}},
      {"right docking gives a wide child the remaining width", wxRect(0, 0, 100, 20),
       {{wxSize(30, 20), right | v_expand, wxRect(70, 0, 30, 20), wxRect(0, 0, 70, 20)}}},
      {"a right-docked child wider than the space starts left of it", wxRect(10, 0, 50, 20),
       {{wxSize(80, 5), right | v_expand, wxRect(-20, 0, 50, 20), wxRect(10, 0, 0, 20)}}},
      {"bottom docking is not clamped and drives the space negative", wxRect(0, 0, 10, 40),
       {{wxSize(1, 50), h_expand | bottom, wxRect(0, -10, 10, 50), wxRect(0, 0, 10, -10)},
        {wxSize(1, 30), h_expand | bottom, wxRect(0, -40, 10, 30), wxRect(0, 0, 10, -40)}}},
      {"centring halves are truncated and leave the space alone", wxRect(5, 0, 7, 9),
       {{wxSize(4, 4), h_center | v_center, wxRect(6, 2, 4, 4), wxRect(5, 0, 7, 9)},
        {wxSize(20, 20), h_center | v_center, wxRect(5, 0, 7, 9), wxRect(5, 0, 7, 9)},
        {wxSize(1, 1), h_expand | v_expand, wxRect(5, 0, 7, 9), wxRect(5, 0, 7, 9)}}},
  };
  for (const run_t& run : runs) {
    SCOPED_TRACE(run.rule);
    wxRect remaining = run.start;
    for (const step_t& step : run.steps) {
      EXPECT_EQ(place(remaining, step.size, step.flags), step.expected);
      EXPECT_EQ(remaining, step.remaining_after);
    }
  }
}

TEST_F(LayoutPositionTest, AnAxisWithoutFlagsGetsNothingAndTheFirstFlagOfAGroupWins) {
  const std::pair<int, wxRect> cases[] = {
      {0, wxRect(0, 0, 0, 0)},
      {left | right | h_center | h_expand | top, wxRect(0, 0, 10, 10)},
      {right | h_center | h_expand | top, wxRect(90, 0, 10, 10)},
      {h_center | h_expand | top, wxRect(45, 0, 10, 10)},
      {bottom | v_center | v_expand | left, wxRect(0, 90, 10, 10)},
      {v_center | v_expand | left, wxRect(0, 45, 10, 10)},
  };
  for (const auto& [flags, expected] : cases) {
    wxRect space(0, 0, 100, 100);
    EXPECT_EQ(place(space, wxSize(10, 10), flags), expected) << "flags 0x" << std::hex << flags;
  }
}

using LayoutSizeTest = layout_fixture_t;

TEST_F(LayoutSizeTest, DockedChildrenAddUpAndCentredOnesAddUnlessAllAreCentred) {
  sized(left | top, wxSize(10, 5), wxSize(4, 2), true);
  spacer(right | bottom, wxSize(20, 7));
  spacer(h_center | v_center, wxSize(15, 9));
  spacer(left | top, wxSize(500, 500))->SetVisible(false);
  EXPECT_EQ(size(), wxSize(45, 21));
  EXPECT_EQ(min_size(), wxSize(39, 18));  // the children's minimum sizes
}

TEST_F(LayoutSizeTest, WhenAllAreCentredTheLargestOrTheDockedSumCounts) {
  spacer(h_center | v_expand, wxSize(15, 9));
  spacer(h_expand | v_center, wxSize(12, 20));
  EXPECT_EQ(size(), wxSize(15, 20));

  // Docked and centred at once: the docked sum is larger than any one child.
  element_ptr_t a = spacer(left | h_center | v_center, wxSize(40, 10));
  element_ptr_t b = spacer(left | h_center | v_center, wxSize(30, 10));
  EXPECT_EQ(size(), wxSize(70, 20));
  a->SetVisible(false);
  b->SetVisible(false);

  // A child without vertical flags makes the vertical spread add up.
  spacer(h_center, wxSize(5, 100));
  EXPECT_EQ(size(), wxSize(15, 29));
}

// Sizes asked for without subclassing: a fixed axis is kept, a minimum is a
// floor, wxDefaultCoord leaves the axis to the element; layouts place by them.
TEST_F(LayoutSizeTest, FixedAndMinimumSizesOverrideWhatAnElementComputes) {
  const struct {
    wxSize fixed, minimum, size, min_size;
  } cases[] = {
      {wxDefaultSize, wxDefaultSize, wxSize(10, 5), wxSize(4, 2)},
      {wxSize(20, 12), wxDefaultSize, wxSize(20, 12), wxSize(20, 12)},
      {wxSize(20, -1), wxDefaultSize, wxSize(20, 5), wxSize(20, 2)},
      {wxDefaultSize, wxSize(8, 3), wxSize(10, 5), wxSize(8, 3)},
      {wxSize(-1, 7), wxSize(30, 30), wxSize(30, 7), wxSize(30, 7)},
  };
  for (const auto& c : cases) {
    // sized_t overrides GetSize() and GetMinSize(): only the layout's view changes.
    sized_ptr_t child = sized(left | top, wxSize(10, 5), wxSize(4, 2), false);
    child->SetFixedSize(c.fixed);
    child->SetMinSize(c.minimum);
    EXPECT_EQ(size(), c.size) << c.fixed.x << "," << c.fixed.y;
    EXPECT_EQ(min_size(), c.min_size) << c.fixed.x << "," << c.fixed.y;
    relayout();
    EXPECT_EQ(rect_of(child), wxRect(wxPoint(0, 0), c.size));
    child->Destroy();
  }
  // Elements that compute their size themselves report the limits too.
  element_ptr_t plain(new UIElement(m_root, left | top));
  plain->SetFixedSize(wxSize(9, 4));
  element_ptr_t gap = spacer(left | top, wxSize(6, 6));
  gap->SetMinSize(wxSize(10, -1));
  EXPECT_EQ(plain->GetSize(), wxSize(9, 4));
  EXPECT_EQ(plain->GetMinSize(), wxSize(9, 4));
  EXPECT_EQ(gap->GetSize(), wxSize(10, 6));
}

// A colour swatch: a rectangle with no children has no size of its own.
TEST_F(LayoutSizeTest, AFixedSizeSwatchIsPlacedAndDrawn) {
  talvar2::intrusive_pointer_t<RectangleElement> swatch(new RectangleElement(m_root, left | top));
  swatch->SetBkColor(*wxRED);
  swatch->SetBorderColor(*wxRED);
  swatch->SetFixedSize(wxSize(20, 12));
  paint_canvas_t canvas(100, 50);
  canvas.paint([&](wxDC& dc) { m_root->ProcessDraw(dc, m_host.m_client, true); });
  EXPECT_EQ(swatch->GetRect(), wxRect(0, 0, 20, 12));
  EXPECT_EQ(canvas.at(10, 6), *wxRED);
  EXPECT_EQ(canvas.at(25, 6), *wxWHITE);
}

using LayoutCacheTest = layout_fixture_t;

TEST_F(LayoutCacheTest, WithoutAControlledElementTheLayoutReportsAndGivesNothing) {
  talvar2::intrusive_pointer_t<Layout> loose(new OptimalLayout);
  EXPECT_EQ(loose->GetControlledElement(), element_ptr_t());
  EXPECT_EQ(loose->GetSize(), wxSize(0, 0));
  loose->Invalidate();
  EXPECT_EQ(taken_function_conditions(), texts_t(3, "GetControlledElement: element != __null"));
}

// Children are frozen while laid out; a relayout started from inside one
// leaves them as they were, thawed and placed.
TEST_F(LayoutCacheTest, ChildrenAreFrozenWhileLaidOutEvenWhenTheRelayoutNests) {
  sized_ptr_t first = sized(left | top, wxSize(10, 10), wxSize(10, 10), false);
  sized_ptr_t second = sized(left | top, wxSize(20, 10), wxSize(20, 10), false);
  std::vector<bool> frozen;
  first->on_size_asked = [&] {
    frozen = {first->IsUpdatesFrozen(), second->IsUpdatesFrozen(), m_root->IsUpdatesFrozen()};
    m_root->GetLayoutLogic()->Invalidate();
  };
  relayout();
  EXPECT_EQ(frozen, (std::vector<bool>{true, true, false}));
  EXPECT_EQ(rect_of(first), wxRect(0, 0, 10, 10));
  EXPECT_EQ(rect_of(second), wxRect(10, 10, 20, 10));
  EXPECT_FALSE(first->IsUpdatesFrozen() || second->IsUpdatesFrozen());
}

TEST_F(LayoutCacheTest, RectanglesBelongToTheLayoutThatComputedThemAndAChildAddedMidwayIsLost) {
  sized_ptr_t child = sized(left | top, wxSize(10, 10), wxSize(10, 10), false);
  child->on_size_asked = [this] { spacer(left | top, wxSize(5, 5)); };
  relayout();
  EXPECT_EQ(taken_function_conditions(), (texts_t{"OnInvalidate: m_rects.size() == children.size()"}));
  EXPECT_EQ(rect_of(child), wxRect(0, 0, 10, 10));
  use_stack(false);  // a new layout has computed nothing yet
  EXPECT_EQ(rect_of(child), wxRect());
  relayout();
  m_root->RemoveChild(child);  // nor does it know former children
  EXPECT_EQ(rect_of(child), wxRect());
  EXPECT_EQ(taken_function_conditions(), texts_t(2, "GetChildRect: it != m_rects.end()"));
}

using LayoutPriorityTest = layout_fixture_t;

TEST_F(LayoutPriorityTest, DockedFirstThenOneAxisFromEachEndThenBothAxesThenInvisible) {
  const int flags[] = {left | top,   h_center | top,    right | v_center, h_expand | v_expand,        left | top,
                       left | bottom, bottom | h_expand, left | v_center, 0, left | h_center | v_center, h_expand | v_expand};
  std::string id = "a";
  for (const int child_flags : flags) {
    element_ptr_t child = spacer(child_flags, wxSize());
    child->SetTestID(id);
    child->SetVisible(id != "e" && id != "k");
    ++id[0];
  }
  std::string order;
  for (const element_ptr_t& child : ArrangeElementsByPriority(m_root->GetChildren()))
    order += child->GetTestID();
  EXPECT_EQ(order, "afibhgcdjek");
}

using StackLayoutTest = layout_fixture_t;

// Turning the stack marks the layout dirty, and the sizes follow the new axis.
TEST_F(StackLayoutTest, SizeStacksTheVisibleChildrenAlongTheAxisOnly) {
  talvar2::intrusive_pointer_t<StackLayout> stack = use_stack(false);
  sized(left | top, wxSize(10, 5), wxSize(4, 2), false);
  spacer(h_center | v_center, wxSize(30, 7));
  spacer(top, wxSize(6, 20));   // no horizontal flag
  spacer(left, wxSize(8, 50));  // no vertical flag
  spacer(left | top, wxSize(99, 99))->SetVisible(false);
  EXPECT_EQ(size(), wxSize(48, 82));
  EXPECT_EQ(min_size(), wxSize(42, 79));

  wxBitmap bitmap(100, 100);
  wxMemoryDC dc(bitmap);
  m_root->ProcessDraw(dc, m_host.m_client, false);  // lays the tree out and leaves it clean
  stack->SetOrientation(true);
  EXPECT_TRUE(m_root->IsLayoutDirty());
  EXPECT_EQ(size(), wxSize(54, 32));
  EXPECT_EQ(min_size(), wxSize(48, 29));
}

// One child of a case: a spacer unless it has a minimum size of its own.
struct placed_child_t {
  int flags;
  wxSize size;
  wxRect expected;
  wxSize minimum = wxDefaultSize;
  bool resizable = false;
  bool visible = true;
};

enum class logic_t { optimal, stack_down, stack_across };

struct placement_case_t {
  const char* rule;
  wxRect client;
  std::vector<placed_child_t> children;
  logic_t logic = logic_t::optimal;
};

TEST(LayoutPlacementTest, PlacesEachCaseAsExpected) {
  take_asserts();
  const wxRect wide(0, 0, 100, 50);
  const placement_case_t cases[] = {
      {"docks to the sides and fills the rest; hidden and unplaced children get nothing",
       wxRect(5, 7, 100, 50),
       {{left | v_expand, wxSize(10, 1), wxRect(5, 7, 10, 50)},
        {right | v_expand, wxSize(20, 1), wxRect(85, 15, 20, 36)},
        {top | h_expand, wxSize(1, 8), wxRect(15, 7, 90, 8)},
        {bottom | h_expand, wxSize(1, 6), wxRect(15, 51, 90, 6)},
        {h_expand | v_expand, wxSize(1, 1), wxRect(15, 15, 70, 36)},
        {left | v_expand, wxSize(30, 1), wxRect(0, 0, 0, 0), wxDefaultSize, false, false},
        {0, wxSize(30, 30), wxRect(0, 0, 0, 0)}}},
      {"the last of the right-docked children takes the outer edge", wide,
       {{h_expand | v_expand, wxSize(1, 1), wxRect(5, 5, 65, 45)},
        {right | v_expand, wxSize(10, 1), wxRect(70, 5, 10, 45)},
        {right | v_expand, wxSize(20, 1), wxRect(80, 5, 20, 45)},
        {left | top, wxSize(5, 5), wxRect(0, 0, 5, 5)}}},
      {"a width shortage is covered by shrinking resizable children", wide,
       {{left | v_expand, wxSize(60, 1), wxRect(0, 0, 50, 50), wxSize(30, 1), true},
        {left | v_expand, wxSize(50, 1), wxRect(50, 0, 50, 50)}}},
      {"a covered shortage lifts a child below its minimum back to it", wide,
       {{left | v_expand, wxSize(70, 1), wxRect(0, 0, 35, 50), wxSize(20, 1), true},
        {left | v_expand, wxSize(40, 1), wxRect(35, 0, 40, 50)},
        {left | v_expand, wxSize(10, 1), wxRect(75, 0, 25, 50), wxSize(25, 1), true}}},
      // The centred child got nothing in the short pass and keeps asking for
      // that; the child after it was not placed in it, so it kept its height.
      {"a height shortage restarts the pass at once", wxRect(0, 0, 100, 40),
       {{h_expand | top, wxSize(1, 40), wxRect(0, 0, 100, 32), wxSize(1, 10), true},
        {left | v_center, wxSize(10, 8), wxRect(0, 36, 10, 0), wxSize(10, 8)},
        {left | v_center, wxSize(10, 5), wxRect(10, 34, 10, 5), wxSize(0, 0)}}},
      {"resizable children are lifted while the height is shared", wxRect(0, 0, 100, 40),
       {{h_expand | top, wxSize(1, 40), wxRect(0, 0, 100, 10), wxSize(1, 10), true},
        {h_expand | top, wxSize(1, 30), wxRect(0, 10, 100, 30), wxSize(1, 30), true}}},
      // The area is as wide as all sizes together, the hidden child's too.
      {"when the width runs out children spread over the sum of their widths", wxRect(0, 0, 50, 20),
       {{left | v_center, wxSize(30, 10), wxRect(0, 5, 30, 10)},
        {left | v_center, wxSize(40, 10), wxRect(30, 5, 40, 10)},
        {left | v_center, wxSize(20, 10), wxRect(70, 5, 20, 10)},
        {right | v_center, wxSize(10, 10), wxRect(190, 5, 10, 10)},
        {left | v_center, wxSize(100, 10), wxRect(0, 0, 0, 0), wxDefaultSize, false, false}}},
      {"an uncovered shortage keeps what the resizable children gave up", wxRect(0, 0, 50, 50),
       {{left | v_expand, wxSize(40, 1), wxRect(0, 0, 30, 50), wxSize(30, 1), true},
        {left | v_expand, wxSize(70, 1), wxRect(30, 0, 70, 50)}}},
      // A top-docked child keeps the height it got before the space ran out.
      {"when the height runs out children spread over the sum of their heights", wxRect(0, 0, 40, 50),
       {{top | h_center, wxSize(10, 30), wxRect(15, 0, 10, 30)},
        {top | h_center, wxSize(10, 40), wxRect(15, 30, 10, 20)},
        {top | h_center, wxSize(10, 15), wxRect(15, 50, 10, 15)}}},
      {"a stack gives fixed children their length; hidden ones keep their place", wxRect(3, 4, 100, 50),
       {{left | top, wxSize(10, 5), wxRect(3, 4, 100, 5)},
        {left | top, wxSize(10, 20), wxRect(3, 9, 100, 20), wxDefaultSize, false, false},
        {h_center | v_center, wxSize(20, 7), wxRect(3, 29, 100, 7)},
        {0, wxSize(20, 7), wxRect(0, 0, 0, 0)}},
       logic_t::stack_down},
      // 130 - 30 = 100 shared by three: 33 each, the pixel left over stays empty.
      {"resizable children of a stack share the free length; a spacer never is resizable",
       wxRect(0, 0, 130, 20),
       {{left | v_expand, wxSize(1, 1), wxRect(0, 0, 33, 20), wxSize(1, 1), true},
        {left | v_expand, wxSize(30, 1), wxRect(33, 0, 30, 20), wxDefaultSize, true},
        {left | v_expand, wxSize(1, 1), wxRect(63, 0, 33, 20), wxSize(1, 1), true},
        {left | v_expand, wxSize(1, 1), wxRect(96, 0, 33, 20), wxSize(1, 1), true}},
       logic_t::stack_across},
      {"without free length resizable children of a stack get nothing", wxRect(0, 0, 20, 20),
       {{left | v_expand, wxSize(1, 1), wxRect(0, 0, 0, 20), wxSize(1, 1), true},
        {left | v_expand, wxSize(30, 1), wxRect(0, 0, 30, 20), wxDefaultSize, true},
        {left | v_expand, wxSize(1, 1), wxRect(30, 0, 0, 20), wxSize(1, 1), true}},
       logic_t::stack_across},
  };
  for (const placement_case_t& c : cases) {
    SCOPED_TRACE(c.rule);
    element_ptr_t root(new UIElement());
    fake_element_host_t host(root, c.client);
    if (c.logic != logic_t::optimal) {
      talvar2::intrusive_pointer_t<StackLayout> stack(new StackLayout);
      stack->SetOrientation(c.logic == logic_t::stack_across);
      root->SetLayoutLogic(stack);
    }
    std::vector<element_ptr_t> children;
    for (const placed_child_t& child : c.children) {
      children.push_back(child.minimum == wxDefaultSize
                             ? element_ptr_t(new SpacerElement(root, child.flags, child.size))
                             : element_ptr_t(new sized_t(root, child.flags, child.size, child.minimum)));
      children.back()->SetResizable(child.resizable);
      children.back()->SetVisible(child.visible);
    }
    root->GetLayoutLogic()->Invalidate();
    for (std::size_t i = 0; i < children.size(); ++i)
      EXPECT_EQ(root->GetLayoutLogic()->GetChildRect(wxRect(), children[i]), c.children[i].expected) << i;
  }
  EXPECT_EQ(taken_function_conditions(), texts_t());
}

}  // namespace
