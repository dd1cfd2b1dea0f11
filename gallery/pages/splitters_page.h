#ifndef GALLERY_PAGES_SPLITTERS_PAGE_H
#define GALLERY_PAGES_SPLITTERS_PAGE_H

class wxWindow;

namespace gallery {

// Splitters: one with an animated collapse button, two whose sashes move
// together, and a four-pane grid; every pane says what it is.
wxWindow* create_splitters_page(wxWindow* parent);

// The name of the splitter whose second pane collapses.
constexpr const char* k_splitters_collapsible = "collapsible_splitter";

}  // namespace gallery

#endif
