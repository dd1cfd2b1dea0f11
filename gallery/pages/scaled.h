#ifndef GALLERY_PAGES_SCALED_H
#define GALLERY_PAGES_SCALED_H

// The gallery's sizes are written for 96 dpi, as the library's are. wx's
// FromDIP leaves them alone on GTK (which scales only under GDK_SCALE), so
// they go through the library's scale, as a host's would.

#include <wx/gdicmn.h>

#include "orvix1/dpi.h"

namespace gallery {

inline int dip(int length) { return orvix1::calculate_DPI_scaled_length(length); }
inline wxSize dip(const wxSize& size) { return orvix1::calculate_DPI_scaled_size(size.x, size.y); }

}  // namespace gallery

#endif
