#ifndef GALLERY_SCREENSHOT_H
#define GALLERY_SCREENSHOT_H

#include <chrono>
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

// Saves with `save` (one of the two above) once the painted frame is on the
// X server. GTK hands it over at the end of its frame cycle, after the paint
// handlers ran, so the capture is tried again, pumping events in between,
// until it succeeds or `timeout` passes. Returns the last failure.
using save_png_t = std::string (*)(GdkWindow*, const std::string&);
std::string save_presented_png(save_png_t save, GdkWindow* window, const std::string& path,
                               std::chrono::milliseconds timeout);

}  // namespace gallery

#endif
