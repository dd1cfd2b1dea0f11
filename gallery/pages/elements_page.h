#ifndef GALLERY_PAGES_ELEMENTS_PAGE_H
#define GALLERY_PAGES_ELEMENTS_PAGE_H

#include <wx/gdicmn.h>

class wxWindow;
namespace orvix1 {
class wxCustomTooltip;
}

namespace gallery {

// A page built only from elements on one adapter: nested layouts, labels
// that cut with "...", rectangles, an animation, a drop arrow, Tab focus and
// tooltips.
wxWindow* create_elements_page(wxWindow* parent);

// Where in the page the animated picture is, which carries a tooltip, and
// that tooltip (null until it has been made).
wxPoint elements_page_tooltip_point(wxWindow* page);
orvix1::wxCustomTooltip* elements_page_tooltip(wxWindow* page);

}  // namespace gallery

#endif
