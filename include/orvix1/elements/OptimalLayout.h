#ifndef ORVIX1_ELEMENTS_OPTIMALLAYOUT_H
#define ORVIX1_ELEMENTS_OPTIMALLAYOUT_H

#include <vector>

#include "orvix1/elements/Layout.h"

namespace orvix1 {
namespace elements {

// Docks children to the sides of the remaining space, centres or stretches
// them, and shrinks resizable children towards their minimum sizes when the
// space runs out. Every parented element starts with one.
class ORVIX1_API OptimalLayout : public Layout {
 public:
  OptimalLayout();

  wxRect GetChildRect(const wxRect& parent_rect, const element_ptr_t& child) const override;
  void OnInvalidate() override;

 private:
  // Work space of one relayout, kept to spare allocations on the next.
  struct placement_t {
    UIElement* element;
    wxSize size;
  };
  mutable std::vector<placement_t> m_order;
};

}  // namespace elements
}  // namespace orvix1

#endif
