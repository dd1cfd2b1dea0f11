#ifndef ORVIX1_PICTURE_H
#define ORVIX1_PICTURE_H
/// @file
/// Pictures as values.
///
/// static_picture_t is a bitmap with its mask, cheap to copy (wx bitmaps
/// share their data); windowless holders such as elements keep one, and the
/// wxStaticPicture control shows one. picture_t also knows where it came
/// from: a named image of the resource registry, a file, or a bitmap handed
/// over directly. Tab buttons and tab strips take their images as pictures.

#include <string>

#include <wx/bitmap.h>
#include <wx/image.h>
#include <wx/string.h>

#include "orvix1/export.h"

namespace orvix1 {
/// A picture as a value: a bitmap with its mask, cheap to copy.
class ORVIX1_API static_picture_t {
 public:
  static_picture_t() = default;
  explicit static_picture_t(const wxBitmap& bitmap);
  /// The image's mask colour, if it has one, becomes the bitmap's mask.
  explicit static_picture_t(const wxImage& image);

  void SetBitmap(const wxBitmap& bitmap);
  void SetImage(const wxImage& image);

  bool IsOk() const { return m_bitmap.IsOk(); }
  /// (0, 0) for an empty picture.
  wxSize GetSize() const;

  /// The bitmap, with its mask when `with_mask` is true; otherwise a bitmap
  /// of the same pixels without a mask (the picture itself keeps its mask).
  /// An invalid bitmap for an empty picture.
  wxBitmap getBitmap(bool with_mask) const;
  /// The image as it was set; a picture set from a bitmap gives the bitmap
  /// converted. An invalid image for an empty picture.
  wxImage GetImage() const;

 private:
  wxBitmap m_bitmap;
  wxImage m_image;
};

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
