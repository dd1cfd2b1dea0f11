#ifndef ORVIX1_SRC_TAB_CROSS_IMAGES_H
#define ORVIX1_SRC_TAB_CROSS_IMAGES_H

// The close cross of tabs, 9 by 10 pixels, in its three looks, and the
// cross as drawn at a scale.

#include <wx/bitmap.h>
#include <wx/gdicmn.h>

namespace orvix1 {
namespace detail {

extern const char* const tab_cross_normal_xpm[];   // greys and white
extern const char* const tab_cross_hovered_xpm[];  // pale yellows and oranges
extern const char* const tab_cross_pressed_xpm[];  // reds and oranges

// The cross's size in logical pixels at `scale`: 9 by 10 times the scale,
// truncated.
wxSize tab_cross_size(double scale);

// The cross of `xpm` at tab_cross_size(scale), with `content_scale` device
// pixels to each logical one (the bitmap's scale factor); `negative` turns
// its colours, not its transparency. At scale and content scale 1 it is the
// XPM itself.
wxBitmap make_tab_cross(const char* const* xpm, double scale, double content_scale,
                        bool negative);

}  // namespace detail
}  // namespace orvix1

#endif
