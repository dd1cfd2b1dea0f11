#ifndef ORVIX1_ELEMENTS_SPACERELEMENT_H
#define ORVIX1_ELEMENTS_SPACERELEMENT_H

#include "orvix1/elements/UIElement.h"

namespace orvix1 {
namespace elements {

/// A fixed-size empty element: a gap. Never resizable.
class ORVIX1_API SpacerElement : public UIElement {
 public:
  SpacerElement();
  explicit SpacerElement(element_ptr_t parent);
  SpacerElement(element_ptr_t parent, int position_flags);
  SpacerElement(element_ptr_t parent, int position_flags, const wxSize& size);

  void SetSize(const wxSize& size);
  wxSize GetSize() const override;
  wxSize GetMinSize() const override;
  bool IsResizable() const override;

 private:
  wxSize m_size;
};

}  // namespace elements
}  // namespace orvix1

#endif
