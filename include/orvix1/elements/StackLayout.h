#ifndef ORVIX1_ELEMENTS_STACKLAYOUT_H
#define ORVIX1_ELEMENTS_STACKLAYOUT_H

#include <vector>

#include "orvix1/elements/Layout.h"

namespace orvix1 {
namespace elements {

/// Stacks the children along one axis in list order; resizable children share
/// the length the others leave free.
class ORVIX1_API StackLayout : public Layout {
 public:
  StackLayout();

  /// false: top to bottom (the default); true: left to right.
  void SetOrientation(bool horizontal);
  bool GetOrientation() const { return m_horizontal; }

  /// Across the stack as any layout; along it the visible children's sizes
  /// add up.
  wxSize GetMinSize() const override;
  wxSize GetSize() const override;
  /// The child's rectangle from the last relayout; a child it has not laid
  /// out is reported.
  wxRect GetChildRect(const wxRect& parent_rect, const element_ptr_t& child) const override;
  /// Hidden children keep their place; what the share leaves over stays
  /// empty at the end.
  void OnInvalidate() override;

 private:
  wxSize StackedSize(bool minimum) const;

  /// Work space of one relayout, kept to spare allocations on the next: each
  /// child with its own length along the stack (resizable ones get the share).
  struct slot_t {
    UIElement* element;
    bool resizable;
    int length;
  };

  bool m_horizontal = false;
  std::vector<slot_t> m_slots;
};

}  // namespace elements
}  // namespace orvix1

#endif
