#include "pages/caption_pane.h"

#include <wx/dcbuffer.h>

#include "orvix1/ui_settings.h"

namespace gallery {

caption_pane_t::caption_pane_t(wxWindow* parent, const wxString& caption, const wxColour& colour,
                               const wxSize& size)
    : m_caption(caption), m_colour(colour) {
  // The paint handler covers every pixel; wx must not erase first.
  SetBackgroundStyle(wxBG_STYLE_PAINT);
  Create(parent, wxID_ANY, wxDefaultPosition, size, wxFULL_REPAINT_ON_RESIZE);
  Bind(wxEVT_PAINT, &caption_pane_t::on_paint, this);
}

void caption_pane_t::on_paint(wxPaintEvent&) {
  wxAutoBufferedPaintDC dc(this);
  const auto palette = orvix1::ui_settings_t::get();
  const bool dark = palette->get_color(orvix1::color_window_bg).GetLuminance() < 0.5;
  dc.SetBackground(wxBrush(dark ? m_colour.ChangeLightness(35) : m_colour));
  dc.Clear();
  dc.SetFont(GetFont());
  const wxColour ink = palette->get_color(orvix1::color_window_text);
  dc.SetTextForeground(ink.IsOk() ? ink : *wxBLACK);
  const wxSize text = dc.GetTextExtent(m_caption);
  const wxSize size = GetClientSize();
  dc.DrawText(m_caption, (size.x - text.x) / 2, (size.y - text.y) / 2);
}

}  // namespace gallery
