#ifndef GALLERY_PAGES_HELP_PAGE_H
#define GALLERY_PAGES_HELP_PAGE_H

class wxWindow;

namespace gallery {

// Help actions: the gallery's bundled PDF guide in a PDF viewer, and its
// HTML page in the browser (or in the library's help window without one).
wxWindow* create_help_page(wxWindow* parent);

}  // namespace gallery

#endif
