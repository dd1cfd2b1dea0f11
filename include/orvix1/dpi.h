#ifndef ORVIX1_DPI_H
#define ORVIX1_DPI_H
/// @file
/// The one scale factor of the library: pictures and sizes are authored for a
/// 96 dots-per-inch screen and enlarged on denser ones.

#include <wx/gdicmn.h>
#include <wx/image.h>
#include <wx/window.h>

#include "orvix1/export.h"

namespace orvix1 {

/// The screen's scale factor relative to 96 dpi, never below 1.0. The
/// desktop's own resolution setting is read once and cached.
ORVIX1_API double get_DPI_scale();

/// Forgets the cached desktop resolution, so that the next get_DPI_scale()
/// asks the desktop again (after the user changed the resolution).
ORVIX1_API void forget_DPI_scale();

/// Enlarges `image` by the scale factor; leaves it untouched at 1.0.
ORVIX1_API void apply_DPI_scale(wxImage& image);

/// (width × scale, height × scale), truncated.
ORVIX1_API wxSize calculate_DPI_scaled_size(int width, int height);

/// Sets the window's size (and, if asked, its minimum size) to the scaled
/// size, leaving its position. Nothing for a null window.
ORVIX1_API void set_DPI_scaled_window_size(wxWindow* window, int width, int height,
                                           bool also_min_size);

/// Whether the image loader scales what it loads (initially true).
ORVIX1_API bool get_image_loading_autoscale();
ORVIX1_API void set_image_loading_autoscale(bool autoscale);

/// Sets the autoscale flag for a scope and restores it afterwards; used to
/// load one image unscaled.
class ORVIX1_API autoscale_guard_t {
 public:
  explicit autoscale_guard_t(bool enable);
  ~autoscale_guard_t();
  autoscale_guard_t(const autoscale_guard_t&) = delete;
  autoscale_guard_t& operator=(const autoscale_guard_t&) = delete;

 private:
  bool m_saved;
};

}  // namespace orvix1

#endif
