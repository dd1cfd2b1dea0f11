#ifndef GALLERY_SCREENSHOT_H
#define GALLERY_SCREENSHOT_H

#include <string>

#include <gdk/gdk.h>

namespace gallery {

// Saves what `window` shows, its child windows included, as a PNG file.
// Returns an empty string on success, otherwise what went wrong. A capture
// of a single colour counts as a failure: nothing was painted.
std::string save_window_png(GdkWindow* window, const std::string& path);

// The same for what the screen shows where `window` is: popups over it,
// such as tooltips, are in the picture too.
std::string save_screen_area_png(GdkWindow* window, const std::string& path);

}  // namespace gallery

#endif
