#ifndef ORVIX1_IMAGE_LOADER_H
#define ORVIX1_IMAGE_LOADER_H
/// @file
/// Images, bitmaps, icons and animations from the resource archives.

#include <string>

#include <wx/animate.h>
#include <wx/bitmap.h>
#include <wx/icon.h>
#include <wx/image.h>

#include "orvix1/export.h"

namespace orvix1 {

class resource_loader_t;

/// A name is first looked up as an object declared in a resources.xrc
/// ("wxImage" for pictures, "wxAnimation" for animations), then as the path of
/// a file inside an archive ("icons/close.png"). A declared name never falls
/// through to a file of the same name.
///
/// While get_image_loading_autoscale() holds, images, bitmaps and icons are
/// enlarged by apply_DPI_scale; animations keep their authored size.
///
/// Sharp pictures on dense screens: a picture "name.png" may have a twin
/// "name@2x.png" with twice its pixels each way (a declared "logo", a
/// declared "logo@2x"). The twin is loaded instead of enlarging the picture
/// when
///   - the density wanted is at least 1.5: get_DPI_scale() for images;
///     get_DPI_scale() × get_content_scale_factor() for bitmaps and icons
///     (under GDK_SCALE=2 GTK draws each logical pixel with two device
///     pixels each way);
///   - and the twin comes from the same archive as the picture or a newer
///     one (resource_loader_t::find_archive), so that a newer archive's
///     picture is not replaced by an older archive's twin.
/// The twin is then resized to the picture's authored size (half its own)
/// × that density, truncated, with good quality (so at 1.5 a 32 × 32 twin
/// of a 16 × 16 icon becomes 24 × 24, and at 2.0 it is taken as it is). A
/// bitmap or icon made from a twin carries the content scale as its scale
/// factor, so it keeps the picture's authored size × get_DPI_scale() in
/// logical pixels (wxBitmap::GetLogicalSize) and GTK draws every pixel. A
/// twin that cannot be decoded is reported and the picture is used. With
/// autoscale off (autoscale_guard_t) the picture is loaded as it is and no
/// twin is looked for.
///
/// A name that cannot be loaded gives an invalid result and one warning on
/// the "orvix.resources" logger. GUI thread only.
class ORVIX1_API image_loader_t {
 public:
  /// `resources` must outlive the image loader.
  explicit image_loader_t(const resource_loader_t& resources);

  wxImage load_image(const std::string& name) const;
  wxBitmap load_bitmap(const std::string& name) const;
  wxIcon load_icon(const std::string& name) const;
  wxAnimation load_animation(const std::string& name) const;

  /// "icons/close.png" → "icons/close@2x.png", "logo" → "logo@2x".
  static std::string double_density_name(const std::string& name);

 private:
  /// The picture for `content_scale` device pixels to each logical pixel;
  /// `from_twin` tells whether it came from the "@2x" twin.
  wxImage load_scaled(const std::string& name, double content_scale, bool& from_twin) const;
  bool twin_takes_precedence(const std::string& name, const std::string& twin) const;

  const resource_loader_t& m_resources;
};

}  // namespace orvix1

#endif
