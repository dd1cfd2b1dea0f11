#include "orvix1/elements/OptimalLayout.h"

#include <algorithm>

#include "elements/placement_order.h"
#include "core/contract_sites.h"

namespace orvix1 {
namespace elements {

OptimalLayout::OptimalLayout() = default;

wxRect OptimalLayout::GetChildRect(const wxRect& /*parent_rect*/, const element_ptr_t& child) const {
  wxRect rect;
  if (child && FindChildRect(*child, rect)) return rect;
  return wxRect();
}

void OptimalLayout::OnInvalidate() {
  UIElement* element = RequireControlled();
  if (element == nullptr) return;
  ArrangeChildren();
  const outcome_t outcome = PlaceWithinRect(*element);
  if (outcome != outcome_t::fitted) PlaceOverVirtualArea(*element, outcome);
  contract_holds(CountChildRects() == element->GetChildren().size(),
                 contract::site_t::optimal_child_lost);
}

void OptimalLayout::ArrangeChildren() {
  // With thousands of children every walk over them costs more than the
  // arithmetic of the whole relayout: the rectangles of the last relayout
  // are forgotten on the way.
  m_listed.clear();
  for (UIElement* child : ChildrenToLayOut()) {
    ClearChildRect(*child);
    m_listed.push_back({child, wxSize(), detail::PlacementGroup(*child)});
  }
  detail::ArrangeInPlacementOrder(m_listed, m_order, [](const placement_t& placement) {
    return static_cast<detail::placement_group_t>(placement.group);
  });
  // Sizes are asked for once the order stands, by index: a child may do
  // anything in GetSize(), even change its siblings.
  for (std::size_t i = 0; i < m_order.size(); ++i) m_order[i].size = m_order[i].element->GetLimitedSize();
}

OptimalLayout::outcome_t OptimalLayout::PlaceWithinRect(const UIElement& element) {
  for (;;) {
    wxRect remaining = element.GetRect();
    bool repeat = false;
    bool restart = false;
    for (std::size_t i = 0; i < m_order.size() && !restart; ++i) {
      UIElement& child = *m_order[i].element;
      if (!child.IsVisible()) {
        StoreChildRect(child, wxRect());
        continue;
      }
      wxSize& size = m_order[i].size;
      const int flags = child.GetPositionFlags();
      const wxRect rect = ProcessPositionCalculation(remaining, size, flags);
      StoreChildRect(child, rect);
      // What a centred or top-docked child got is what it keeps asking for.
      if (flags & UIElement::pfHCenter) size.x = rect.width;
      if (flags & (UIElement::pfVCenter | UIElement::pfTop)) size.y = rect.height;

      // A shortage shows when the space is used up exactly and the child got
      // less than it needs.
      if (remaining.width != 0 && remaining.height != 0) continue;
      const wxSize minimum = child.GetLimitedMinSize();
      if (remaining.width == 0 && rect.width < minimum.x) {
        if (!CoverShortage(minimum.x - rect.width, true)) return outcome_t::width_exhausted;
        // Children placed earlier may have shrunk: run the pass again when done.
        repeat = true;
      }
      if (remaining.height == 0 && rect.height < minimum.y) {
        if (!CoverShortage(minimum.y - rect.height, false)) return outcome_t::height_exhausted;
        restart = true;
      }
    }
    if (!repeat && !restart) return outcome_t::fitted;
  }
}

bool OptimalLayout::CoverShortage(int deficit, bool horizontal) {
  for (std::size_t i = m_order.size(); i-- > 0;) {
    const UIElement& candidate = *m_order[i].element;
    if (!candidate.IsVisible() || !candidate.IsResizable()) continue;
    const wxSize minimum = candidate.GetLimitedMinSize();
    int& length = horizontal ? m_order[i].size.x : m_order[i].size.y;
    const int spare = length - (horizontal ? minimum.x : minimum.y);
    // A negative take lifts a child that fell below its minimum back to it.
    const int take = std::min(spare, deficit);
    if (take > 0) deficit -= take;
    length -= take;
    if (deficit < 1) return true;
  }
  return false;
}

void OptimalLayout::PlaceOverVirtualArea(const UIElement& element, outcome_t exhausted) {
  wxRect area = element.GetRect();
  wxSize total(0, 0);
  for (const placement_t& placement : m_order) total += placement.size;
  if (exhausted == outcome_t::width_exhausted) area.width = total.x;
  if (exhausted == outcome_t::height_exhausted) area.height = total.y;
  // The children may reach past the element now; each one is clipped to its
  // own rectangle when painted.
  for (const placement_t& placement : m_order) {
    UIElement& child = *placement.element;
    const wxRect rect = child.IsVisible()
                            ? ProcessPositionCalculation(area, placement.size, child.GetPositionFlags())
                            : wxRect();
    StoreChildRect(child, rect);
  }
}

}  // namespace elements
}  // namespace orvix1
