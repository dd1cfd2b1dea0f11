#ifndef GALLERY_PAGES_PALETTE_PAGE_H
#define GALLERY_PAGES_PALETTE_PAGE_H

#include <wx/string.h>

class wxWindow;

namespace gallery {

// The palette: every colour, font and metric with its index and name, a
// theme choice that loads a light or a dark palette file into the live
// palette, and buttons that save it to a file, change a colour and load it
// back. Styled windows repaint on every change.
wxWindow* create_palette_page(wxWindow* parent);

// Names of the page's windows.
constexpr const char* k_palette_theme_choice = "theme_choice";
constexpr const char* k_palette_save_button = "save_palette";
constexpr const char* k_palette_status = "palette_status";

// Where the save button writes the palette: the temporary folder, unless
// set before the page is made (the tour keeps its own beside its pictures,
// so two tours at once never share one).
wxString palette_page_file();
void set_palette_page_file(const wxString& path);

}  // namespace gallery

#endif
