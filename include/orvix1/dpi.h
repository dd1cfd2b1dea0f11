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
/// desktop's own resolution setting is read once and cached. Everything the
/// library draws in pixels (paddings, crosses, arrows, sashes, hit areas)
/// is multiplied by it and truncated; at 1.0 nothing changes.
ORVIX1_API double get_DPI_scale();

/// Forgets the cached desktop resolution, so that the next get_DPI_scale()
/// asks the desktop again (after the user changed the resolution).
ORVIX1_API void forget_DPI_scale();

/// Makes get_DPI_scale() return `scale` (at least 1.0) instead of asking the
/// desktop, until called again; 0 or less hands the decision back to the
/// desktop. For hosts that keep a scale setting of their own, and for tests
/// that need a fixed scale without changing the desktop's fonts. Windows
/// made before keep the sizes they were given.
ORVIX1_API void set_DPI_scale_override(double scale);

/// `length` × get_DPI_scale(), truncated.
ORVIX1_API int calculate_DPI_scaled_length(int length);

/// How many device pixels the toolkit itself gives one logical pixel of the
/// default screen: 2 under GDK_SCALE=2 (or a desktop's window scaling),
/// otherwise 1. GTK then doubles every size by itself, so get_DPI_scale()
/// stays at the desktop's resolution factor; only pictures need twice the
/// pixels (a wxBitmap with scale factor 2) to stay sharp.
ORVIX1_API double get_content_scale_factor();

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
