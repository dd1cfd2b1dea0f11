#ifndef GALLERY_PAGES_WELCOME_PAGE_H
#define GALLERY_PAGES_WELCOME_PAGE_H

class wxWindow;

namespace gallery {

// The first page: a window of our own, painted with a buffered DC inside
// the host's GTK window. A line at its bottom shows the last click the host
// forwarded through the library's mouse signal.
wxWindow* create_welcome_page(wxWindow* parent);

// The name of that line's window.
constexpr const char* k_welcome_click_line = "host_click_line";

}  // namespace gallery

#endif
