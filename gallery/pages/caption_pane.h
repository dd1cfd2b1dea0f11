#ifndef GALLERY_PAGES_CAPTION_PANE_H
#define GALLERY_PAGES_CAPTION_PANE_H

#include <wx/colour.h>
#include <wx/string.h>
#include <wx/window.h>

namespace gallery {

// A window of one colour with its caption in the middle: a splitter's pane,
// a card to rest the pointer on. Under a dark palette the colour is dimmed
// and the caption follows the palette's text colour.
class caption_pane_t : public wxWindow {
 public:
  caption_pane_t(wxWindow* parent, const wxString& caption, const wxColour& colour,
                 const wxSize& size = wxDefaultSize);

 private:
  void on_paint(wxPaintEvent& event);

  wxString m_caption;
  wxColour m_colour;
};

}  // namespace gallery

#endif
