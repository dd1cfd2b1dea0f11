#ifndef ORVIX1_IMAGE_HELPERS_H
#define ORVIX1_IMAGE_HELPERS_H
/// @file
/// Pictures derived from other pictures. Wrong input is reported through the
/// wx assertion path and yields an invalid (or the unchanged) image.

#include <wx/colour.h>
#include <wx/image.h>

#include "orvix1/export.h"

namespace orvix1 {
/// Pictures derived from other pictures.
class ORVIX1_API image_helpers_t {
 public:
  /// A monochrome, opaque picture of the image's shape: `front` where the
  /// image is opaque, `back` where it is transparent, blended in between.
  static wxImage create_watermark_image(wxImage image, const wxColour& front,
                                        const wxColour& back);
  /// The same in the window text colour over the window colour.
  static wxImage create_watermark_image(wxImage image);
  /// `image_front` laid over `image_back` by the front's alpha.
  static wxImage create_composite_image(const wxImage& image_front, const wxImage& image_back);
  /// `image` made transparent where the mask's red channel is 0.
  static wxImage create_alpha_image(const wxImage& image_alpha_mask, const wxImage& image);
  /// `image` without its palette.
  static wxImage create_paletteless_image(wxImage image);
};

}  // namespace orvix1

#endif
