#include "orvix1/elements/Layout.h"

#include <algorithm>
#include <climits>

#include "elements/placement_order.h"
#include "core/contract_sites.h"

namespace orvix1 {
namespace elements {

namespace {

constexpr int horizontal_docks = UIElement::pfLeft | UIElement::pfRight;
constexpr int vertical_docks = UIElement::pfTop | UIElement::pfBottom;
constexpr int horizontal_spreads = UIElement::pfHCenter | UIElement::pfHExpand;
constexpr int vertical_spreads = UIElement::pfVCenter | UIElement::pfVExpand;

// One axis of the remaining rectangle: where it starts and how long it is.
struct span_t {
  int& origin;
  int& length;
};

// Places along one axis; the result is (position, extent). The first flag
// that is set wins; without one the child gets nothing on this axis.
std::pair<int, int> PlaceHorizontally(span_t remaining, int wanted, int flags) {
  if (flags & UIElement::pfLeft) {
    const int extent = std::min(wanted, remaining.length);
    const int position = remaining.origin;
    remaining.origin += extent;
    remaining.length -= extent;
    return {position, extent};
  }
  if (flags & UIElement::pfRight) {
    // A child wider than the space keeps its right edge on the space's right
    // edge and sticks out to the left by the excess.
    const int position = remaining.origin + remaining.length - wanted;
    const int extent = std::min(wanted, remaining.length);
    remaining.length -= extent;
    return {position, extent};
  }
  if (flags & UIElement::pfHCenter) {
    const int extent = std::min(wanted, remaining.length);
    return {remaining.origin + remaining.length / 2 - extent / 2, extent};
  }
  if (flags & UIElement::pfHExpand) return {remaining.origin, remaining.length};
  return {0, 0};
}

std::pair<int, int> PlaceVertically(span_t remaining, int wanted, int flags) {
  if (flags & UIElement::pfTop) {
    const int position = remaining.origin;
    const int extent = std::min(wanted, remaining.length);
    remaining.origin += extent;
    remaining.length -= extent;
    return {position, extent};
  }
  if (flags & UIElement::pfBottom) {
    // Unlike right docking this is not clamped: a child taller than the
    // space keeps its full height, and the space left turns negative, so
    // that the next bottom child lies higher still.
    const int position = remaining.origin + remaining.length - wanted;
    remaining.length -= wanted;
    return {position, wanted};
  }
  if (flags & UIElement::pfVCenter) {
    const int extent = std::min(wanted, remaining.length);
    return {remaining.origin + remaining.length / 2 - extent / 2, extent};
  }
  if (flags & UIElement::pfVExpand) return {remaining.origin, remaining.length};
  return {0, 0};
}

}  // namespace

Layout::Layout() = default;

Layout::~Layout() = default;

wxSize Layout::GetMinSize() const { return CalculateSize(true); }

wxSize Layout::GetSize() const { return CalculateSize(false); }

wxRect Layout::CalcElementPosition(const wxRect& rect, const wxSize& size, int flags) const {
  wxRect remaining(rect);
  return ProcessPositionCalculation(remaining, size, flags);
}

void Layout::OnInvalidate() {}

wxRect Layout::ProcessPositionCalculation(wxRect& remaining, const wxSize& size, int flags) const {
  const auto horizontal = PlaceHorizontally({remaining.x, remaining.width}, size.x, flags);
  const auto vertical = PlaceVertically({remaining.y, remaining.height}, size.y, flags);
  return wxRect(horizontal.first, vertical.first, horizontal.second, vertical.second);
}

void Layout::SetControlledElement(UIElement* element) {
  m_element = element;
  // Rectangles a former layout of the element left on its children are not
  // this layout's: until it lays them out, it has none.
  ClearChildRects();
}

element_ptr_t Layout::GetControlledElement() const {
  contract_holds(m_element != nullptr, contract::site_t::layout_element_null);
  return element_ptr_t(m_element);
}

UIElement* Layout::RequireControlled() const {
  // An empty pointer costs no reference; the call is for its report.
  if (m_element == nullptr) GetControlledElement();
  return m_element;
}

void Layout::Invalidate() {
  UIElement* element = RequireControlled();
  if (element == nullptr) return;
  // The children are held by reference while they are laid out, so that
  // one that leaves its parent meanwhile lives until it is thawed again.
  // A relayout that a child starts from inside this one gets a list of its
  // own.
  std::vector<UIElement*> nested;
  std::vector<UIElement*>& held = m_held == nullptr ? m_held_children : nested;
  held.clear();
  for (const element_ptr_t& child : element->GetChildren()) {
    UIElement* current = child.get();
    current->add_ref();
    current->FreezeUpdates(true);
    held.push_back(current);
  }
  const std::vector<UIElement*>* outer = m_held;
  m_held = &held;
  OnInvalidate();
  m_held = outer;
  for (UIElement* current : held) {
    current->FreezeUpdates(false);
    current->release_ref();
  }
  held.clear();
}

const std::vector<UIElement*>& Layout::ChildrenToLayOut() {
  if (m_held != nullptr) return *m_held;
  m_held_children.clear();
  if (m_element != nullptr)
    for (const element_ptr_t& child : m_element->GetChildren()) m_held_children.push_back(child.get());
  return m_held_children;
}

void Layout::ClearChildRects() const {
  if (m_element == nullptr) return;
  for (const element_ptr_t& child : m_element->GetChildren()) child.get()->m_has_layout_rect = false;
}

void Layout::ClearChildRect(UIElement& child) const { child.m_has_layout_rect = false; }

void Layout::StoreChildRect(UIElement& child, const wxRect& rect) const {
  child.m_layout_rect = rect;
  child.m_has_layout_rect = true;
}

bool Layout::FindChildRect(const UIElement& child, wxRect& rect) const {
  if (m_element == nullptr || child.m_parent != m_element || !child.m_has_layout_rect) return false;
  rect = child.m_layout_rect;
  return true;
}

std::size_t Layout::CountChildRects() const {
  if (m_element == nullptr) return 0;
  const UIElement* parent = m_element;
  const auto has_rect = [parent](const UIElement* child) {
    return child->m_parent == parent && child->m_has_layout_rect;
  };
  // During a relayout the held children are at hand in contiguous memory; a
  // walk over the child list would chase one pointer per child. A held child
  // may have left the element meanwhile.
  if (m_held != nullptr)
    return static_cast<std::size_t>(std::count_if(m_held->begin(), m_held->end(), has_rect));
  const auto& children = m_element->GetChildren();
  return static_cast<std::size_t>(std::count_if(
      children.begin(), children.end(),
      [&has_rect](const element_ptr_t& child) { return has_rect(child.get()); }));
}

wxSize Layout::CalculateSize(bool minimum, wxSize* visible_total) const {
  if (visible_total != nullptr) *visible_total = wxSize(0, 0);
  const UIElement* element = RequireControlled();
  if (element == nullptr) return wxSize(0, 0);

  // One call per child: a child's size may itself be computed from its
  // children, and asking twice would double the cost at every level.
  wxSize docked(0, 0);
  wxSize spread_sum(0, 0);
  wxSize spread_max(INT_MIN, INT_MIN);
  bool all_spread_horizontally = true;
  bool all_spread_vertically = true;
  for (const element_ptr_t& child : element->GetChildren()) {
    const UIElement& current = *child;
    if (!current.IsVisible()) continue;
    const wxSize size = minimum ? current.GetLimitedMinSize() : current.GetLimitedSize();
    const int flags = current.GetPositionFlags();
    if (flags & horizontal_docks) docked.x += size.x;
    if (flags & vertical_docks) docked.y += size.y;
    if (flags & horizontal_spreads) {
      spread_sum.x += size.x;
      spread_max.x = std::max(spread_max.x, size.x);
    } else {
      all_spread_horizontally = false;
    }
    if (flags & vertical_spreads) {
      spread_sum.y += size.y;
      spread_max.y = std::max(spread_max.y, size.y);
    } else {
      all_spread_vertically = false;
    }
    if (visible_total != nullptr) *visible_total += size;
  }
  // Children that all share the axis lie across each other, so the largest
  // counts; otherwise they lie beside the docked ones.
  const int width = all_spread_horizontally ? std::max(docked.x, spread_max.x) : docked.x + spread_sum.x;
  const int height = all_spread_vertically ? std::max(docked.y, spread_max.y) : docked.y + spread_sum.y;
  return wxSize(width, height);
}

std::list<element_ptr_t> ArrangeElementsByPriority(const std::list<element_ptr_t>& children) {
  std::vector<UIElement*> listed;
  listed.reserve(children.size());
  for (const element_ptr_t& child : children)
    if (child) listed.push_back(child.get());  // an empty pointer has no place
  std::vector<UIElement*> arranged;
  detail::ArrangeInPlacementOrder(listed, arranged,
                                  [](const UIElement* child) { return detail::PlacementGroup(*child); });
  return std::list<element_ptr_t>(arranged.begin(), arranged.end());
}

}  // namespace elements
}  // namespace orvix1
