#include "orvix1/picture.h"

#include <string>
#include <vector>

#include <wx/filename.h>
#include <wx/wfstream.h>

#include "resources/image_decoding.h"
#include "core/log.h"
#include "orvix1/ui_resources.h"
#include "core/read_to_end.h"

namespace orvix1 {

// --- the picture --------------------------------------------------------------

static_picture_t::static_picture_t(const wxBitmap& bitmap) { SetBitmap(bitmap); }

static_picture_t::static_picture_t(const wxImage& image) { SetImage(image); }

void static_picture_t::SetBitmap(const wxBitmap& bitmap) {
  m_bitmap = bitmap;
  m_image = wxImage();
}

void static_picture_t::SetImage(const wxImage& image) {
  m_image = image;
  m_bitmap = image.IsOk() ? wxBitmap(image) : wxBitmap();
}

wxSize static_picture_t::GetSize() const {
  // A bitmap with a scale factor (a sharp picture for GDK_SCALE=2) is drawn
  // at its logical size.
  return m_bitmap.IsOk() ? m_bitmap.GetLogicalSize() : wxSize(0, 0);
}

wxBitmap static_picture_t::getBitmap(bool with_mask) const {
  if (with_mask || !m_bitmap.IsOk() || m_bitmap.GetMask() == nullptr) return m_bitmap;
  // The copy takes its own data before it drops the mask: the picture's
  // bitmap keeps its own.
  wxBitmap plain = m_bitmap;
  plain.SetMask(nullptr);
  return plain;
}

wxImage static_picture_t::GetImage() const {
  if (m_image.IsOk()) return m_image;
  return m_bitmap.IsOk() ? m_bitmap.ConvertToImage() : wxImage();
}

// --- a picture with its source --------------------------------------------------


picture_t picture_t::from_resource(const std::string& name) {
  picture_t picture(ui_resources_t::get()->get_bitmap(name));
  picture.m_source = name;
  return picture;
}

picture_t picture_t::from_file(const wxString& path) {
  wxBitmap bitmap;
  std::string reason = "the file does not exist";
  if (wxFileName::FileExists(path)) {
    // Read whole and decoded by the probed format's decoder, as pictures
    // from resource archives are.
    wxFFileInputStream file(path);
    std::vector<char> bytes;
    wxImage image;
    reason = "the file cannot be read or is larger than " +
             std::to_string(detail::k_most_picture_bytes) + " bytes";
    if (file.IsOk() && detail::read_to_end(file, bytes, detail::k_most_picture_bytes) &&
        detail::decode_image(bytes.data(), bytes.size(), image, reason))
      bitmap = wxBitmap(image);
  }
  if (!bitmap.IsOk())
    ORVIX_LOG_WARNING(log::get_logger("orvix.resources"),
                      "cannot read the image file \"" << path.utf8_string() << "\": " << reason);
  picture_t picture(bitmap);
  picture.m_source = path.utf8_string();
  return picture;
}

}  // namespace orvix1
