#include "tabs/tab_art.h"

#include <algorithm>

#include "look/tab_cross_images.h"
#include "orvix1/text_utils.h"

namespace orvix1 {
namespace detail {
namespace {

// Space between the border and the content, and between image and text.
const int k_tab_padding_x = 4;
const int k_tab_padding_y = 3;
const int k_tab_gap = 4;

}  // namespace

// --- geometry -----------------------------------------------------------------

wxSize tab_art_t::checkbox_size() const { return GetNativeCheckBoxSize(m_window); }

wxSize tab_art_t::cross_size() {
  static const wxSize size = wxBitmap(tab_cross_normal_xpm).GetSize();
  return size;
}

wxRect tab_art_t::content_rect(const wxSize& client, bool crossed) {
  wxRect rect(client);
  rect.Deflate(k_tab_padding_x, k_tab_padding_y);
  if (crossed) rect.width -= cross_size().x + k_tab_gap;
  return rect;
}

wxRect tab_art_t::cross_rect(const wxSize& client) {
  const wxSize cross = cross_size();
  return wxRect(client.x - cross.x - k_tab_padding_x, (client.y - cross.y) / 2, cross.x, cross.y);
}

int tab_art_t::caption_width(const wxSize& client, bool crossed, const wxSize& image) {
  int width = content_rect(client, crossed).width;
  if (image.x > 0) width -= image.x + k_tab_gap;
  return std::max(width, 0);
}

const tab_colours_t& tab_art_t::colours(const tab_look_t& look, const tab_state_t& state) {
  if (state.disabled) return look.disabled;
  if (state.selected || state.left_pressed) return look.pressed;
  if (state.hovered) return look.hovered;
  return look.normal;
}

// --- drawing ------------------------------------------------------------------

void tab_art_t::draw_tab(wxDC& dc, const wxSize& client, const tab_face_t& face,
                         const wxString& shown_text, const tab_state_t& state,
                         const tab_look_t& look, const wxFont& font) const {
  draw_background(dc, wxRect(client), look, state);
  const wxRect label = draw_image_part(dc, client, face, state);
  const wxColour& text = colours(look, state).text;
  dc.SetFont(font);
  if (text.IsOk()) dc.SetTextForeground(text);
  const int alignment =
      (look.centred_label ? wxALIGN_CENTRE_HORIZONTAL : wxALIGN_LEFT) | wxALIGN_CENTRE_VERTICAL;
  dc.DrawLabel(shown_text, face.checkbox ? wxNullBitmap : face.image, label, alignment);
  draw_border(dc, wxRect(client), colours(look, state).border, look.border_sides);
  if (face.crossed) draw_cross(dc, cross_rect(client), state, colours(look, state).background);
}

wxRect tab_art_t::draw_image_part(wxDC& dc, const wxSize& client, const tab_face_t& face,
                                  const tab_state_t& state) const {
  wxRect label = content_rect(client, face.crossed);
  int taken = 0;
  if (face.checkbox) {
    const wxSize box = checkbox_size();
    DrawNativeCheckBox(m_window, dc, wxRect(label.x, label.y, box.x, label.height), state.selected,
                       state.disabled);
    taken = box.x + k_tab_gap;
  } else if (face.animated && !face.image.IsOk()) {
    // The animation's own control draws it; the caption goes beside it.
    taken = face.animation.x + k_tab_gap;
  }
  label.x += taken;
  label.width -= taken;
  return label;
}

void tab_art_t::draw_background(wxDC& dc, const wxRect& rect, const tab_look_t& look,
                                const tab_state_t& state) {
  if (look.background.IsOk()) {
    const wxImage scaled = look.background.Scale(std::max(rect.width, 1), std::max(rect.height, 1));
    dc.DrawBitmap(wxBitmap(scaled), rect.x, rect.y);
    return;
  }
  const wxColour& background = colours(look, state).background;
  dc.SetBrush(background.IsOk() ? wxBrush(background) : *wxTRANSPARENT_BRUSH);
  dc.SetPen(*wxTRANSPARENT_PEN);
  dc.DrawRectangle(rect);
}

void tab_art_t::draw_border(wxDC& dc, const wxRect& rect, const wxColour& colour, int sides) {
  if (!colour.IsOk() || sides == 0) return;
  dc.SetPen(wxPen(colour, 1, wxPENSTYLE_SOLID));
  const int right = rect.GetRight();
  const int bottom = rect.GetBottom();
  if (sides & wxLEFT) dc.DrawLine(rect.x, rect.y, rect.x, bottom + 1);
  if (sides & wxTOP) dc.DrawLine(rect.x, rect.y, right + 1, rect.y);
  if (sides & wxRIGHT) dc.DrawLine(right, rect.y, right, bottom + 1);
  if (sides & wxBOTTOM) dc.DrawLine(rect.x, bottom, right + 1, bottom);
}

void tab_art_t::draw_cross(wxDC& dc, const wxRect& rect, const tab_state_t& state,
                           const wxColour& background) const {
  static const char* const* const k_looks[] = {tab_cross_normal_xpm, tab_cross_hovered_xpm,
                                               tab_cross_pressed_xpm};
  int look = 0;
  if (state.cross_hovered) look = state.left_pressed ? 2 : 1;
  // The resting cross is drawn for light tabs; on a dark tab its negative
  // keeps it as visible (the hovered looks bring their own light colours).
  const bool negative = look == 0 && background.IsOk() && background.GetLuminance() < 0.5;
  wxBitmap& bitmap = negative ? m_negative_cross : m_crosses[look];
  if (!bitmap.IsOk()) bitmap = negative ? negative_of(wxImage(k_looks[0])) : wxBitmap(k_looks[look]);
  dc.DrawBitmap(bitmap, rect.x, rect.y, true);
}

wxBitmap tab_art_t::negative_of(wxImage image) {
  unsigned char* rgb = image.GetData();
  for (int k = 0; k < 3 * image.GetWidth() * image.GetHeight(); ++k) rgb[k] = 255 - rgb[k];
  // The mask colour turned too: transparency stays where it was.
  if (image.HasMask())
    image.SetMaskColour(255 - image.GetMaskRed(), 255 - image.GetMaskGreen(), 255 - image.GetMaskBlue());
  return wxBitmap(image);
}

void tab_art_t::draw_two_coloured_rect(wxDC& dc, const wxRect& rect, const wxPen& top_left,
                                       const wxPen& bottom_right) {
  const int right = rect.GetRight();
  const int bottom = rect.GetBottom();
  dc.SetPen(top_left);
  dc.DrawLine(rect.x, bottom, rect.x, rect.y);
  dc.DrawLine(rect.x, rect.y, right, rect.y);
  dc.SetPen(bottom_right);
  dc.DrawLine(right, rect.y, right, bottom);
  dc.DrawLine(right, bottom, rect.x - 1, bottom);
}

// --- measuring ----------------------------------------------------------------

wxDC& tab_measurer_t::dc_in(const wxFont& font) {
  if (!m_dc) m_dc = std::make_unique<wxClientDC>(m_art.window());
  if (font.IsOk() && !font.IsSameAs(m_font)) {
    m_font = font;
    m_dc->SetFont(font);
  }
  return *m_dc;
}

wxSize tab_measurer_t::measure(const tab_face_t& face, const wxFont& font) {
  const wxSize text = face.caption.empty() ? wxSize(0, 0) : GetTextSize(dc_in(font), face.caption);
  wxSize image = face.image.IsOk() ? face.image.GetSize() : wxSize(0, 0);
  if (face.checkbox) {
    if (m_checkbox == wxDefaultSize) m_checkbox = m_art.checkbox_size();
    image = m_checkbox;
  }
  int height = std::max(text.y, image.y) + 2 * k_tab_padding_y;
  if (face.animated) {
    height = std::max(height, face.animation.y + 2 * k_tab_padding_y);
    if (!face.image.IsOk() && !face.checkbox) image.x = face.animation.x;
  }
  // A check box keeps the width it was given.
  if (face.checkbox && face.width > 1) return wxSize(face.width, height);
  int width = text.x + image.x + 2 * k_tab_padding_x;
  if (face.crossed) width += tab_art_t::cross_size().x + k_tab_gap;
  if (text.x > 0) width += k_tab_gap;  // between image and text
  return wxSize(width, height);
}

wxString tab_measurer_t::shown_text(const wxString& caption, int width, const wxFont& font) {
  return elide_text(dc_in(font), caption, width);
}

}  // namespace detail
}  // namespace orvix1
