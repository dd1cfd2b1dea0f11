#include "tabs/tab_art.h"

#include <algorithm>

#include "look/tab_cross_images.h"
#include "orvix1/dpi.h"
#include "orvix1/text_utils.h"

namespace orvix1 {
namespace detail {
namespace {

// Space between the border and the content, and between image and text,
// at 96 dpi.
const int k_tab_padding_x = 4;
const int k_tab_padding_y = 3;
const int k_tab_gap = 4;

int padding_x() { return calculate_DPI_scaled_length(k_tab_padding_x); }
int padding_y() { return calculate_DPI_scaled_length(k_tab_padding_y); }
int gap() { return calculate_DPI_scaled_length(k_tab_gap); }

wxSize logical_size(const wxBitmap& bitmap) {
  return bitmap.IsOk() ? bitmap.GetLogicalSize() : wxSize(0, 0);
}

}  // namespace

// --- geometry -----------------------------------------------------------------

wxSize tab_art_t::checkbox_size() const {
  const wxSize native = GetNativeCheckBoxSize(m_window);
  return wxSize(calculate_DPI_scaled_length(native.x), calculate_DPI_scaled_length(native.y));
}

wxSize tab_art_t::cross_size() { return tab_cross_size(get_DPI_scale()); }

wxRect tab_art_t::content_rect(const wxSize& client, bool crossed) {
  wxRect rect(client);
  rect.Deflate(padding_x(), padding_y());
  if (crossed) rect.width -= cross_size().x + gap();
  return rect;
}

wxRect tab_art_t::cross_rect(const wxSize& client) {
  const wxSize cross = cross_size();
  return wxRect(client.x - cross.x - padding_x(), (client.y - cross.y) / 2, cross.x, cross.y);
}

int tab_art_t::caption_width(const wxSize& client, bool crossed, const wxSize& image) {
  int width = content_rect(client, crossed).width;
  if (image.x > 0) width -= image.x + gap();
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
  draw_label(dc, shown_text, face.checkbox ? wxNullBitmap : face.image, label, alignment);
  draw_border(dc, wxRect(client), colours(look, state).border, look.border_sides);
  if (face.crossed) draw_cross(dc, cross_rect(client), state, colours(look, state).background);
}

wxRect tab_art_t::draw_image_part(wxDC& dc, const wxSize& client, const tab_face_t& face,
                                  const tab_state_t& state) const {
  wxRect label = content_rect(client, face.crossed);
  int taken = 0;
  if (face.checkbox) {
    const wxSize box = checkbox_size();
    draw_checkbox(dc, wxRect(label.x, label.y, box.x, label.height), state);
    taken = box.x + gap();
  } else if (face.animated && !face.image.IsOk()) {
    // The animation's own control draws it; the caption goes beside it.
    taken = face.animation.x + gap();
  }
  label.x += taken;
  label.width -= taken;
  return label;
}

// The desktop draws its check box at its own size, which a denser screen
// does not change (only GTK's own scaling does): under a user scale it
// grows with the rest of the tab.
void tab_art_t::draw_checkbox(wxDC& dc, const wxRect& rect, const tab_state_t& state) const {
  const double scale = get_DPI_scale();
  if (scale == 1.0) {
    DrawNativeCheckBox(m_window, dc, rect, state.selected, state.disabled);
    return;
  }
  double user_x = 1.0;
  double user_y = 1.0;
  dc.GetUserScale(&user_x, &user_y);
  dc.SetUserScale(user_x * scale, user_y * scale);
  const wxRect unscaled(wxRound(rect.x / scale), wxRound(rect.y / scale),
                        wxRound(rect.width / scale), wxRound(rect.height / scale));
  DrawNativeCheckBox(m_window, dc, unscaled, state.selected, state.disabled);
  dc.SetUserScale(user_x, user_y);
}

// wx's DrawLabel places a bitmap by its pixels and leaves 4 pixels before
// the text: right for plain bitmaps at 96 dpi. A bitmap with a scale factor
// is placed by its logical size, and the gap grows with the scale.
void tab_art_t::draw_label(wxDC& dc, const wxString& text, const wxBitmap& image,
                           const wxRect& rect, int alignment) {
  if (!image.IsOk() || (image.GetScaleFactor() == 1.0 && gap() == k_tab_gap)) {
    dc.DrawLabel(text, image, rect, alignment);
    return;
  }
  const wxSize size = logical_size(image);
  const int text_width = text.empty() ? 0 : dc.GetTextExtent(text).x + gap();
  int x = rect.x;
  if ((alignment & wxALIGN_CENTRE_HORIZONTAL) != 0)
    x += (rect.width - size.x - text_width) / 2;
  dc.DrawBitmap(image, x, rect.y + (rect.height - size.y) / 2, true);
  const int text_x = x + size.x + gap();
  dc.DrawLabel(text, wxRect(text_x, rect.y, rect.GetRight() + 1 - text_x, rect.height),
               wxALIGN_LEFT | wxALIGN_CENTRE_VERTICAL);
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
  int look = 0;
  if (state.cross_hovered) look = state.left_pressed ? 2 : 1;
  // The resting cross is drawn for light tabs; on a dark tab its negative
  // keeps it as visible (the hovered looks bring their own light colours).
  if (look == 0 && background.IsOk() && background.GetLuminance() < 0.5) look = 3;
  dc.DrawBitmap(cross_bitmap(look), rect.x, rect.y, true);
}

// Made again when the scale changes, or the window moves to a screen of
// another content scale.
const wxBitmap& tab_art_t::cross_bitmap(int look) const {
  static const char* const* const k_looks[] = {tab_cross_normal_xpm, tab_cross_hovered_xpm,
                                               tab_cross_pressed_xpm, tab_cross_normal_xpm};
  const double scale = get_DPI_scale();
  const double content_scale = m_window != nullptr ? m_window->GetContentScaleFactor() : 1.0;
  if (scale != m_crosses.scale || content_scale != m_crosses.content_scale) {
    m_crosses = crosses_t();
    m_crosses.scale = scale;
    m_crosses.content_scale = content_scale;
  }
  wxBitmap& bitmap = m_crosses.looks[look];
  if (!bitmap.IsOk()) bitmap = make_tab_cross(k_looks[look], scale, content_scale, look == 3);
  return bitmap;
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
  wxSize image = logical_size(face.image);
  if (face.checkbox) {
    if (m_checkbox == wxDefaultSize) m_checkbox = m_art.checkbox_size();
    image = m_checkbox;
  }
  const int padding_y2 = 2 * padding_y();
  int height = std::max(text.y, image.y) + padding_y2;
  if (face.animated) {
    height = std::max(height, face.animation.y + padding_y2);
    if (!face.image.IsOk() && !face.checkbox) image.x = face.animation.x;
  }
  // A check box keeps the width it was given.
  if (face.checkbox && face.width > 1) return wxSize(face.width, height);
  int width = text.x + image.x + 2 * padding_x();
  if (face.crossed) width += tab_art_t::cross_size().x + gap();
  if (text.x > 0) width += gap();  // between image and text
  return wxSize(width, height);
}

wxString tab_measurer_t::shown_text(const wxString& caption, int width, const wxFont& font) {
  return elide_text(dc_in(font), caption, width);
}

}  // namespace detail
}  // namespace orvix1
