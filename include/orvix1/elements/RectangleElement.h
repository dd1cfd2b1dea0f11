#ifndef ORVIX1_ELEMENTS_RECTANGLEELEMENT_H
#define ORVIX1_ELEMENTS_RECTANGLEELEMENT_H
/// @file
/// A filled rectangle with an optional square or rounded border: the plain
/// background and frame that other elements and widgets are built on.
///
/// A new rectangle shows a square border 1 pixel wide (radius 3 once the
/// style is rounded).
///
/// Colours come from the element's style under "clBtnBgNormal" (fill) and
/// "clBorderNormal" (border) unless the caller set them. A colour set by the
/// caller is locked: style changes and InvalidateColors() leave it alone
/// until the caller sets an invalid colour, which hands it back to the style.

#include <wx/colour.h>
#include <wx/dc.h>
#include <wx/gdicmn.h>

#include "orvix1/elements/UIElement.h"
#include "orvix1/export.h"
#include "orvix1/ui_style.h"
#include "talvar2/value_locker.h"

namespace orvix1 {
namespace elements {
/// A filled rectangle with an optional square or rounded border.
class ORVIX1_API RectangleElement : public UIElement {
 public:
  /// The style a rectangle takes when it has none: the palette's button
  /// face as "clBtnBgNormal" and its button shadow as "clBorderNormal".
  class ORVIX1_API default_style_t : public ui_style_t {
   public:
    default_style_t();
    void set_style_info() override;
  };

  /// 0 draws square corners; any other value rounds them by the radius.
  enum border_style_t : int {
    border_square = 0,
    border_rounded = 1,
  };

  RectangleElement();
  explicit RectangleElement(element_ptr_t parent);
  RectangleElement(element_ptr_t parent, int position_flags);

  /// Store the colour, lock it against the style, and repaint. An invalid
  /// colour unlocks: the style's colour is taken again.
  void SetBkColor(const wxColour& colour);
  wxColour GetBkColor() const { return m_bk_color.value; }
  void SetBorderColor(const wxColour& colour);
  wxColour GetBorderColor() const { return m_border_color.value; }

  /// These only store the value; the caller repaints.
  void ShowBorder(bool show) { m_border_shown = show; }
  bool IsBorderShown() const { return m_border_shown; }
  void SetBorderStyle(border_style_t style) { m_border_style = style; }
  border_style_t GetBorderStyle() const { return m_border_style; }
  void SetBorderRadius(double radius) { m_border_radius = radius; }
  double GetBorderRadius() const { return m_border_radius; }
  void SetBorderThickness(int thickness) { m_border_thickness = thickness; }
  int GetBorderThickness() const { return m_border_thickness; }

  void OnDraw(wxDC& dc, const wxRect& rect) override;
  /// Takes the style's colours again where the caller has not set them.
  void InvalidateColors() override;

 protected:
  /// The rectangle that OnDraw fills inside `rect`: all of it for a border
  /// of 1 pixel or less, else moved in by half the thickness plus one and
  /// made smaller by the thickness, so that a wide pen stays inside.
  wxRect GetShapeRect(const wxRect& rect) const;

 private:
  void Init();
  void SetExplicitColor(talvar2::value_locker_t<wxColour>& slot, const wxColour& colour);

  talvar2::value_locker_t<wxColour> m_bk_color;
  talvar2::value_locker_t<wxColour> m_border_color;
  bool m_border_shown = true;
  border_style_t m_border_style = border_square;
  double m_border_radius = 3;
  int m_border_thickness = 1;
};

}  // namespace elements
}  // namespace orvix1

#endif
