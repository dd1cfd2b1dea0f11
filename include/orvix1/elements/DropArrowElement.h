#ifndef ORVIX1_ELEMENTS_DROPARROWELEMENT_H
#define ORVIX1_ELEMENTS_DROPARROWELEMENT_H
/// @file
/// The desktop's combo-box drop-down button, always drawn in its hover look.
/// Its size is the desktop's scroll-arrow size; a desktop that reports none
/// (GTK 3 never does) gives the scroll bar's width and height instead. Either
/// is multiplied by get_DPI_scale().

#include <wx/settings.h>

#include "orvix1/elements/UIElement.h"
#include "orvix1/export.h"

namespace orvix1 {
namespace elements {
/// The desktop's combo-box drop-down button, drawn as an element.
class ORVIX1_API DropArrowElement : public UIElement {
 public:
  DropArrowElement();
  explicit DropArrowElement(element_ptr_t parent);
  DropArrowElement(element_ptr_t parent, int position_flags);

  wxSize GetSize() const override;
  wxSize GetMinSize() const override;
  /// Needs the holder window for the desktop's renderer; without one it
  /// draws nothing and says so in the log.
  void OnDraw(wxDC& dc, const wxRect& rect) override;

 protected:
  /// The desktop's metric (wxSystemSettings); a seam for other sources.
  virtual int GetSystemMetric(wxSystemMetric metric) const;

 private:
  void Init();
};

}  // namespace elements
}  // namespace orvix1

#endif
