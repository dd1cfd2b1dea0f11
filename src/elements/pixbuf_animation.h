#ifndef ORVIX1_SRC_ELEMENTS_PIXBUF_ANIMATION_H
#define ORVIX1_SRC_ELEMENTS_PIXBUF_ANIMATION_H

// GdkPixbuf animations for frame-by-frame drawing. wx's GTK animation keeps
// its frames to itself; GdkPixbuf hands out fully composed frames (partial
// frames of optimised GIFs already laid over what came before) and each
// frame's delay. Times are microseconds of the real-time clock.
//
// What carries ORVIX1_API is exported for the fuzz targets only: this header
// is not installed.

#include <cstdint>
#include <string>

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <wx/animate.h>
#include <wx/image.h>

#include "orvix1/export.h"

namespace orvix1 {
namespace elements {
namespace pixbuf {

// The animation in `bytes` (any format GdkPixbuf reads; a still picture
// becomes a one-frame animation), with a reference of its own for the
// caller; null with a reason in `error` when the bytes are not a picture,
// declare more than 8192 x 4096 pixels or hold a GIF frame without pixels
// (both refused before anything is decoded).
ORVIX1_API GdkPixbufAnimation* load_animation(const std::string& bytes, std::string& error);

// The animation behind a wx animation made by wx's GTK implementation, with
// a reference of its own for the caller; null for an empty animation or
// one made by the generic implementation.
GdkPixbufAnimation* animation_of(const wxAnimation& animation);

// An iterator that starts at `start_us`.
ORVIX1_API GdkPixbufAnimationIter* start_iter(GdkPixbufAnimation* animation,
                                               std::int64_t start_us);
// Moves the iterator to `now_us`; true when the frame changed.
ORVIX1_API bool advance_iter(GdkPixbufAnimationIter* iter, std::int64_t now_us);

// A copy of the pixels, alpha included; an invalid image for null.
ORVIX1_API wxImage to_image(GdkPixbuf* frame);

}  // namespace pixbuf
}  // namespace elements
}  // namespace orvix1

#endif
