#include "orvix1/picture.h"

#include <wx/filename.h>

#include "log.h"
#include "orvix1/ui_resources.h"
#include "wx_log_capture.h"

namespace orvix1 {

picture_t picture_t::from_resource(const std::string& name) {
  picture_t picture(ui_resources_t::get()->get_bitmap(name));
  picture.m_source = name;
  return picture;
}

picture_t picture_t::from_file(const wxString& path) {
  wxBitmap bitmap;
  const wx_log_capture_t capture;
  if (!wxFileName::FileExists(path) || !bitmap.LoadFile(path, wxBITMAP_TYPE_ANY)) {
    ORVIX_LOG_WARNING(log::get_logger("orvix.resources"),
                      "cannot read the image file \"" << path.utf8_string() << "\""
                                                      << (capture.text().empty() ? "" : ": ")
                                                      << capture.text().utf8_string());
    bitmap = wxBitmap();
  }
  picture_t picture(bitmap);
  picture.m_source = path.utf8_string();
  return picture;
}

}  // namespace orvix1
