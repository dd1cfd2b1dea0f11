#include "orvix1/elements/RectangleElement.h"

#include <algorithm>

#include <wx/brush.h>
#include <wx/pen.h>

#include "orvix1/ui_settings.h"

namespace orvix1 {
namespace elements {
namespace {

const char k_background_key[] = "clBtnBgNormal";
const char k_border_key[] = "clBorderNormal";

// A style without the key gives an invalid colour: paint nothing with it
// rather than asking the toolkit for the parts of an invalid colour.
wxPen pen_of(const wxColour& colour, int width) {
  return colour.IsOk() ? wxPen(colour, width, wxPENSTYLE_SOLID) : *wxTRANSPARENT_PEN;
}

wxBrush brush_of(const wxColour& colour) {
  return colour.IsOk() ? wxBrush(colour, wxBRUSHSTYLE_SOLID) : *wxTRANSPARENT_BRUSH;
}

}  // namespace

// --- default style ------------------------------------------------------------

RectangleElement::default_style_t::default_style_t() { set_style_info(); }

void RectangleElement::default_style_t::set_style_info() {
  internal_set_color(k_background_key, m_settings->get_color(color_face));
  internal_set_color(k_border_key, m_settings->get_color(color_shadow_3d));
}

// --- construction -------------------------------------------------------------

RectangleElement::RectangleElement() { Init(); }

RectangleElement::RectangleElement(element_ptr_t parent) : UIElement(parent) { Init(); }

RectangleElement::RectangleElement(element_ptr_t parent, int position_flags)
    : UIElement(parent, position_flags) {
  Init();
}

void RectangleElement::Init() {
  // A style pushed down by the parent arrived while the base was being
  // built, before this class could take its colours.
  if (GetUiStyle())
    InvalidateColors();
  else
    SetUiStyle(new default_style_t);
}

// --- colours ------------------------------------------------------------------

void RectangleElement::SetBkColor(const wxColour& colour) { SetExplicitColor(m_bk_color, colour); }

void RectangleElement::SetBorderColor(const wxColour& colour) {
  SetExplicitColor(m_border_color, colour);
}

void RectangleElement::SetExplicitColor(talvar2::value_locker_t<wxColour>& slot,
                                        const wxColour& colour) {
  if (colour.IsOk()) {
    slot.lock(colour);
  } else {
    slot.unlock();
    InvalidateColors();
  }
  Invalidate(false);
}

void RectangleElement::InvalidateColors() {
  talvar2::intrusive_pointer_t<ui_style_t> style = GetUiStyle();
  // Without a style of its own the element follows the palette directly.
  if (!style) style = new default_style_t;
  m_bk_color.refresh(style->get_color(k_background_key));
  m_border_color.refresh(style->get_color(k_border_key));
}

// --- painting -----------------------------------------------------------------

wxRect RectangleElement::GetShapeRect(const wxRect& rect) const {
  wxRect shape = rect;
  const int thickness = m_border_thickness;
  if (thickness > 1) {
    shape.x += thickness / 2 + 1;
    shape.y += thickness / 2 + 1;
    shape.width = std::max(0, shape.width - thickness);
    shape.height = std::max(0, shape.height - thickness);
  }
  return shape;
}

void RectangleElement::OnDraw(wxDC& dc, const wxRect& rect) {
  // A hidden border is drawn in the fill colour, so the filled area is the
  // same size either way.
  const wxColour& outline = m_border_shown ? m_border_color.value : m_bk_color.value;
  dc.SetPen(pen_of(outline, m_border_thickness));
  dc.SetBrush(brush_of(m_bk_color.value));
  const wxRect shape = GetShapeRect(rect);
  if (m_border_style == border_square)
    dc.DrawRectangle(shape);
  else
    dc.DrawRoundedRectangle(shape, m_border_radius);
}

}  // namespace elements
}  // namespace orvix1
