#ifndef GALLERY_PAGES_TABS_PAGE_H
#define GALLERY_PAGES_TABS_PAGE_H

class wxWindow;

namespace gallery {

// A tabbed workspace of its own: documents and tools in two strips,
// closable tabs that ask before losing changes, images and a busy tab, the
// overflow menu and keyboard navigation.
wxWindow* create_tabs_page(wxWindow* parent);

// The name of the documents' strip.
constexpr const char* k_tabs_documents = "documents";

}  // namespace gallery

#endif
