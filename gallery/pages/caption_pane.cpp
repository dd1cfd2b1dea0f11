#include "pages/caption_pane.h"

#include <wx/dcbuffer.h>

namespace gallery {

caption_pane_t::caption_pane_t(wxWindow* parent, const wxString& caption, const wxColour& colour,
                               const wxSize& size)
    : m_caption(caption) {
  // The paint handler covers every pixel; wx must not erase first.
  SetBackgroundStyle(wxBG_STYLE_PAINT);
  Create(parent, wxID_ANY, wxDefaultPosition, size, wxFULL_REPAINT_ON_RESIZE);
  SetBackgroundColour(colour);
  Bind(wxEVT_PAINT, &caption_pane_t::on_paint, this);
}

void caption_pane_t::on_paint(wxPaintEvent&) {
  wxAutoBufferedPaintDC dc(this);
  dc.SetBackground(wxBrush(GetBackgroundColour()));
  dc.Clear();
  dc.SetFont(GetFont());
  dc.SetTextForeground(*wxBLACK);
  const wxSize text = dc.GetTextExtent(m_caption);
  const wxSize size = GetClientSize();
  dc.DrawText(m_caption, (size.x - text.x) / 2, (size.y - text.y) / 2);
}

}  // namespace gallery
