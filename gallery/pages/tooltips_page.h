#ifndef GALLERY_PAGES_TOOLTIPS_PAGE_H
#define GALLERY_PAGES_TOOLTIPS_PAGE_H

class wxWindow;

namespace gallery {

// The library's own tooltip on plain windows and on a native button: each
// target carries one, with its own text, delay and offset.
wxWindow* create_tooltips_page(wxWindow* parent);

// The name of the target whose tooltip the page is best shown with.
constexpr const char* k_tooltips_first_target = "tooltip_target";

}  // namespace gallery

#endif
