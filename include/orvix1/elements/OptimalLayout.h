#ifndef ORVIX1_ELEMENTS_OPTIMALLAYOUT_H
#define ORVIX1_ELEMENTS_OPTIMALLAYOUT_H

#include <vector>

#include "orvix1/elements/Layout.h"

namespace orvix1 {
namespace elements {

/// Docks children to the sides of the remaining space, centres or stretches
/// them, and shrinks resizable children towards their minimum sizes when the
/// space runs out. The layout of every element that was given none, made
/// when first needed: a leaf makes one only when GetLayoutLogic() asks.
class ORVIX1_API OptimalLayout : public Layout {
 public:
  OptimalLayout();

  /// The child's rectangle from the last relayout; an empty one for a child
  /// it has not laid out.
  wxRect GetChildRect(const wxRect& parent_rect, const element_ptr_t& child) const override;
  void OnInvalidate() override;

 private:
  enum class outcome_t { fitted, width_exhausted, height_exhausted };

  /// Work space of one relayout, kept to spare allocations on the next: the
  /// children in placement order, each with the size it is placed with.
  struct placement_t {
    UIElement* element = nullptr;
    wxSize size;
    int group = 0;  ///< the place in the order, while it is worked out
  };

  /// Fills m_order with the children in placement order and their sizes,
  /// and drops the rectangles of the last relayout.
  void ArrangeChildren();
  /// Places the children into the element's rectangle, again and again while
  /// shrinking resizable children makes up for a shortage.
  outcome_t PlaceWithinRect(const UIElement& element);
  /// Takes `deficit` pixels along one axis from the resizable children, the
  /// last placed first; false when their minimum sizes do not allow it.
  bool CoverShortage(int deficit, bool horizontal);
  /// Places the children over an area stretched along the exhausted axis to
  /// the sum of their sizes.
  void PlaceOverVirtualArea(const UIElement& element, outcome_t exhausted);

  std::vector<placement_t> m_order;
  /// The children in list order, before they are put in order.
  std::vector<placement_t> m_listed;
};

}  // namespace elements
}  // namespace orvix1

#endif
