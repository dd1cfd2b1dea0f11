#ifndef ORVIX1_PICTURE_H
#define ORVIX1_PICTURE_H
/// @file
/// A picture that knows where it came from: a named image of the resource
/// registry, a file, or a bitmap handed over directly. Tab buttons and tab
/// strips take their images as pictures.

#include <string>

#include <wx/bitmap.h>
#include <wx/image.h>
#include <wx/string.h>

#include "orvix1/export.h"
#include "orvix1/wxStaticPicture.h"

namespace orvix1 {
/// A picture that knows where it came from: a resource name, a file or a bitmap.
class ORVIX1_API picture_t : public static_picture_t {
 public:
  picture_t() = default;
  explicit picture_t(const wxBitmap& bitmap) : static_picture_t(bitmap) {}
  explicit picture_t(const wxImage& image) : static_picture_t(image) {}

  /// The image called `name` in the resource registry (scaled for the
  /// screen as the registry does); an empty picture, with the registry's
  /// warning, when there is none.
  static picture_t from_resource(const std::string& name);
  /// The image file at `path`; an empty picture and a warning on the
  /// "orvix.resources" logger when it cannot be read.
  static picture_t from_file(const wxString& path);

  /// The resource name or file path it was loaded from; "" otherwise.
  const std::string& GetSource() const { return m_source; }
  wxBitmap GetBitmap() const { return getBitmap(true); }

 private:
  std::string m_source;
};

}  // namespace orvix1

#endif
