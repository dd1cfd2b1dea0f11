#ifndef GALLERY_PAGES_ELEMENTS_PAGE_H
#define GALLERY_PAGES_ELEMENTS_PAGE_H

class wxWindow;

namespace gallery {

// A page built only from elements on one adapter: nested layouts, labels
// that cut with "...", rectangles, an animation, a drop arrow, Tab focus and
// tooltips.
wxWindow* create_elements_page(wxWindow* parent);

}  // namespace gallery

#endif
