#include "orvix1/elements/StackLayout.h"

#include <algorithm>

#include "core/contract_sites.h"

namespace orvix1 {
namespace elements {

namespace {

int& Along(wxSize& size, bool horizontal) { return horizontal ? size.x : size.y; }

int Along(const wxSize& size, bool horizontal) { return horizontal ? size.x : size.y; }

}  // namespace

StackLayout::StackLayout() = default;

void StackLayout::SetOrientation(bool horizontal) {
  if (horizontal == m_horizontal) return;
  m_horizontal = horizontal;
  // The rectangles are stale now; the next use of the tree lays it out again.
  if (controlled() != nullptr) controlled()->InvalidateLayout();
}

wxSize StackLayout::GetMinSize() const { return StackedSize(true); }

wxSize StackLayout::GetSize() const { return StackedSize(false); }

wxSize StackLayout::StackedSize(bool minimum) const {
  // Across the stack the children behave as for any layout; along it they
  // lie one after the other.
  wxSize visible_total;
  wxSize size = CalculateSize(minimum, &visible_total);
  Along(size, m_horizontal) = Along(visible_total, m_horizontal);
  return size;
}

wxRect StackLayout::GetChildRect(const wxRect& /*parent_rect*/, const element_ptr_t& child) const {
  // The rectangles were computed from the controlled element's own
  // rectangle, so the one the caller passes adds nothing.
  wxRect rect;
  const bool found = child && FindChildRect(*child, rect);
  contract_holds(found, contract::site_t::stack_child_unknown);
  return found ? rect : wxRect();
}

void StackLayout::OnInvalidate() {
  UIElement* element = RequireControlled();
  if (element == nullptr) return;
  const wxRect rect = element->GetRect();

  // Hidden children keep their place: a stack does not close up when one
  // of its members is hidden.
  m_slots.clear();
  int resizable_count = 0;
  int fixed_length = 0;
  // By index: what a child does when asked must not leave a dangling iterator.
  const std::vector<UIElement*>& children = ChildrenToLayOut();
  for (std::size_t i = 0; i < children.size(); ++i) {
    UIElement* child = children[i];
    slot_t slot{child, child->IsResizable(), 0};
    if (slot.resizable) {
      ++resizable_count;
    } else {
      slot.length = Along(child->GetLimitedSize(), m_horizontal);
      fixed_length += slot.length;
    }
    m_slots.push_back(slot);
  }
  int share = 0;
  if (resizable_count > 0) {
    const int free_length = std::max(Along(rect.GetSize(), m_horizontal) - fixed_length, 0);
    // What the division leaves over stays empty at the end of the stack.
    share = free_length / resizable_count;
  }

  int offset = 0;
  for (const slot_t& slot : m_slots) {
    const int length = slot.resizable ? share : slot.length;
    wxRect space(rect);
    if (m_horizontal) {
      space.x += offset;
      space.width = length;
    } else {
      space.y += offset;
      space.height = length;
    }
    offset += length;
    const wxSize extent = space.GetSize();
    StoreChildRect(*slot.element,
                   ProcessPositionCalculation(space, extent, slot.element->GetPositionFlags()));
  }
}

}  // namespace elements
}  // namespace orvix1
