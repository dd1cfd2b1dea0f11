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

 private:
  const resource_loader_t& m_resources;
};

}  // namespace orvix1

#endif
