#ifndef GALLERY_PAGES_IMAGES_PAGE_H
#define GALLERY_PAGES_IMAGES_PAGE_H

class wxWindow;

namespace gallery {

// Pictures and an animation from the gallery's resource archive, what the
// image helpers make of them, and the DPI scale they are loaded at.
wxWindow* create_images_page(wxWindow* parent);

// Names of the page's windows.
constexpr const char* k_images_animation = "archive_animation";
constexpr const char* k_images_pictures = "archive_pictures";

// Whether every picture and derived picture of the page could be made.
bool images_page_shows_every_picture(wxWindow* page);

}  // namespace gallery

#endif
