#ifndef ORVIX1_SRC_TAB_CROSS_IMAGES_H
#define ORVIX1_SRC_TAB_CROSS_IMAGES_H

// The close cross of tabs, 9 by 10 pixels, in its three looks.

namespace orvix1 {
namespace detail {

extern const char* const tab_cross_normal_xpm[];   // greys and white
extern const char* const tab_cross_hovered_xpm[];  // pale yellows and oranges
extern const char* const tab_cross_pressed_xpm[];  // reds and oranges

}  // namespace detail
}  // namespace orvix1

#endif
