#include "orvix1/elements/SpacerElement.h"

namespace orvix1 {
namespace elements {

SpacerElement::SpacerElement() = default;

SpacerElement::SpacerElement(element_ptr_t parent) : UIElement(parent) {}

SpacerElement::SpacerElement(element_ptr_t parent, int position_flags)
    : UIElement(parent, position_flags) {}

// The parent was told of the new child by the base constructor; its next
// relayout finds the size in place.
SpacerElement::SpacerElement(element_ptr_t parent, int position_flags, const wxSize& size)
    : UIElement(parent, position_flags), m_size(size) {}

void SpacerElement::SetSize(const wxSize& size) {
  m_size = size;
  Invalidate(true);
}

wxSize SpacerElement::GetSize() const { return LimitSize(m_size); }

wxSize SpacerElement::GetMinSize() const { return LimitSize(m_size); }

bool SpacerElement::IsResizable() const { return false; }

}  // namespace elements
}  // namespace orvix1
