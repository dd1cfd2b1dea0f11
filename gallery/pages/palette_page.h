#ifndef GALLERY_PAGES_PALETTE_PAGE_H
#define GALLERY_PAGES_PALETTE_PAGE_H

class wxWindow;

namespace gallery {

// The palette: every colour, font and metric with its index and name, and
// buttons that save it to a file, change a colour and load it back. Styled
// windows repaint on every change.
wxWindow* create_palette_page(wxWindow* parent);

}  // namespace gallery

#endif
