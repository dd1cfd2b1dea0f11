#ifndef ORVIX1_SRC_ELEMENTS_PLACEMENT_ORDER_H
#define ORVIX1_SRC_ELEMENTS_PLACEMENT_ORDER_H

// The order in which the optimal layout fills its space: children docked on
// both axes first, so that they claim their sides; then children centred or
// stretched on one axis (those docked left or top in list order, the others
// from the end of the list backwards, so that the last one takes the outer
// edge); then children centred or stretched both ways, which take what is
// left; invisible children last.

#include <cstddef>
#include <vector>

#include "orvix1/elements/UIElement.h"

namespace orvix1 {
namespace elements {
namespace detail {

enum placement_group_t {
  docked_group,
  one_axis_from_start_group,
  one_axis_from_end_group,
  both_axes_group,
  invisible_group,
  placement_group_count
};

inline placement_group_t PlacementGroup(const UIElement& element) {
  if (!element.IsVisible()) return invisible_group;
  const int flags = element.GetPositionFlags();
  const bool horizontal = (flags & (UIElement::pfHCenter | UIElement::pfHExpand)) != 0;
  const bool vertical = (flags & (UIElement::pfVCenter | UIElement::pfVExpand)) != 0;
  if (!horizontal && !vertical) return docked_group;
  if (horizontal && vertical) return both_axes_group;
  return (flags & (UIElement::pfLeft | UIElement::pfTop)) != 0 ? one_axis_from_start_group
                                                               : one_axis_from_end_group;
}

// Copies `listed` (in child-list order) into `arranged` in placement order;
// `group_of(entry)` gives an entry's group. A counting sort: two walks over
// contiguous memory, and no allocation once `arranged` has the capacity.
template <class Entry, class GroupOf>
void ArrangeInPlacementOrder(const std::vector<Entry>& listed, std::vector<Entry>& arranged,
                             GroupOf group_of) {
  std::size_t next[placement_group_count] = {};
  for (const Entry& entry : listed) ++next[group_of(entry)];
  // Each group's range starts where the one before ends; the group filled
  // backwards starts from the end of its range.
  std::size_t start = 0;
  for (int group = 0; group != placement_group_count; ++group) {
    const std::size_t count = next[group];
    next[group] = group == one_axis_from_end_group ? start + count : start;
    start += count;
  }
  arranged.resize(listed.size());
  for (const Entry& entry : listed) {
    const placement_group_t group = group_of(entry);
    if (group == one_axis_from_end_group)
      arranged[--next[group]] = entry;
    else
      arranged[next[group]++] = entry;
  }
}

}  // namespace detail
}  // namespace elements
}  // namespace orvix1

#endif
