#include "orvix1/elements/BgImageElement.h"

#include "orvix1/wxStaticPicture.h"

namespace orvix1 {
namespace elements {

BgImageElement::BgImageElement() { Init(); }

BgImageElement::BgImageElement(element_ptr_t parent) : RectangleElement(parent) { Init(); }

BgImageElement::BgImageElement(element_ptr_t parent, int position_flags)
    : RectangleElement(parent, position_flags) {
  Init();
}

void BgImageElement::Init() { m_image_align = image_align_top_left; }

void BgImageElement::SetBgStaticPicture(const wxStaticPicture& control) {
  m_picture = control.GetPicture();
}

void BgImageElement::OnDraw(wxDC& dc, const wxRect& rect) {
  RectangleElement::OnDraw(dc, rect);
  const wxBitmap bitmap = m_picture.getBitmap(true);
  if (!bitmap.IsOk()) return;
  // Device-context coordinates on purpose: the picture belongs to the
  // holder's top row, not to the element's rectangle.
  switch (m_image_align) {
    case image_align_top_right:
      dc.DrawBitmap(bitmap, GetSize().x - bitmap.GetWidth(), 0, true);
      break;
    case image_align_top_left:
      dc.DrawBitmap(bitmap, 0, 0, true);
      break;
    default:
      break;
  }
}

}  // namespace elements
}  // namespace orvix1
