#ifndef GALLERY_PAGES_WELCOME_PAGE_H
#define GALLERY_PAGES_WELCOME_PAGE_H

class wxWindow;

namespace gallery {

// The first page: a window of our own, painted with a buffered DC inside
// the host's GTK window.
wxWindow* create_welcome_page(wxWindow* parent);

}  // namespace gallery

#endif
