#ifndef ORVIX1_ELEMENTS_BGIMAGEELEMENT_H
#define ORVIX1_ELEMENTS_BGIMAGEELEMENT_H
/// @file
/// A rectangle with a picture pinned to a top corner of the holder window:
/// the background of a whole holder (a panel with a logo in its corner).
///
/// The picture is placed in the coordinates of the device context, not of
/// the element's rectangle, so it lands in the holder's top row wherever the
/// element sits: give this element the holder's whole client area.

#include <wx/image.h>

#include "orvix1/elements/RectangleElement.h"
#include "orvix1/export.h"
#include "orvix1/picture.h"

namespace orvix1 {
class wxStaticPicture;

namespace elements {
/// A rectangle with a picture pinned to a top corner of the holder window.
class ORVIX1_API BgImageElement : public RectangleElement {
 public:
  /// Where the picture goes. Any other value shows no picture.
  enum image_align_t : int {
    image_align_top_left = 5,   ///< at (0, 0)
    image_align_top_right = 6,  ///< at (element width - picture width, 0)
  };

  BgImageElement();
  explicit BgImageElement(element_ptr_t parent);
  BgImageElement(element_ptr_t parent, int position_flags);

  /// These only store the picture or the value; the caller repaints (the
  /// background is usually set up before the tree is hosted).
  void SetBgStaticPicture(const static_picture_t& picture) { m_picture = picture; }
  /// Takes the picture the control shows.
  void SetBgStaticPicture(const wxStaticPicture& control);
  void SetBgImage(const wxImage& image) { m_picture.SetImage(image); }
  const static_picture_t& GetBgStaticPicture() const { return m_picture; }
  wxImage GetBgImage() const { return m_picture.GetImage(); }

  /// Top left (5) until set otherwise.
  void SetImageAlign(int align) { m_image_align = align; }
  int GetImageAlign() const { return m_image_align; }

  void OnDraw(wxDC& dc, const wxRect& rect) override;

 private:
  void Init();

  static_picture_t m_picture;
  int m_image_align;
};

}  // namespace elements
}  // namespace orvix1

#endif
