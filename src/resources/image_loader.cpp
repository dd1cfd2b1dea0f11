#include "orvix1/image_loader.h"

#include <memory>
#include <string>
#include <vector>

#include "resources/image_decoding.h"
#include "core/log.h"
#include "orvix1/dpi.h"
#include "orvix1/resource_loader.h"
#include "core/read_to_end.h"

namespace orvix1 {
namespace {

const char k_logger[] = "orvix.resources";

// A picture or animation by name: the object declared under that name in a
// resources.xrc (class_name), else the file of that path decoded by
// `decode(data, size, value, reason)`. An invalid T, with one warning, when
// neither yields one; a declared name never falls through to a file.
template <class T, class Decode>
T load_named(const resource_loader_t& resources, const std::string& name, const char* class_name,
             const char* what, Decode decode) {
  if (resources.has_object(name, class_name)) {
    // The loader has said why when it returns nothing.
    const std::unique_ptr<wxObject> object = resources.load_object(name, class_name);
    const T* declared = dynamic_cast<const T*>(object.get());
    return declared != nullptr ? *declared : T();
  }
  if (resources.find_file(name).empty()) {
    ORVIX_LOG_WARNING(orvix1::log::get_logger(k_logger),
                      "no " << what << " named \"" << name << "\" in the resource archives");
    return T();
  }
  const std::unique_ptr<wxFSFile> file = resources.open_file(name);
  if (!file) return T();  // the loader has said why
  // Read whole before decoding: the decoders seek, and seeking in a damaged
  // zip entry crashes wx instead of failing.
  std::vector<char> bytes;
  std::string reason = "the file is damaged or larger than " +
                       std::to_string(detail::k_most_picture_bytes) + " bytes";
  T value;
  if (file->GetStream() != nullptr &&
      detail::read_to_end(*file->GetStream(), bytes, detail::k_most_picture_bytes) &&
      decode(bytes.data(), bytes.size(), value, reason))
    return value;
  ORVIX_LOG_WARNING(orvix1::log::get_logger(k_logger),
                    "cannot decode the " << what << " \"" << name << "\": " << reason);
  return T();
}

}  // namespace

image_loader_t::image_loader_t(const resource_loader_t& resources) : m_resources(resources) {}

wxImage image_loader_t::load_image(const std::string& name) const {
  wxImage image =
      load_named<wxImage>(m_resources, name, "wxImage", "image", detail::decode_image);
  if (image.IsOk() && get_image_loading_autoscale()) apply_DPI_scale(image);
  return image;
}

wxBitmap image_loader_t::load_bitmap(const std::string& name) const {
  const wxImage image = load_image(name);
  return image.IsOk() ? wxBitmap(image) : wxBitmap();
}

wxIcon image_loader_t::load_icon(const std::string& name) const {
  const wxBitmap bitmap = load_bitmap(name);
  wxIcon icon;
  if (bitmap.IsOk()) icon.CopyFromBitmap(bitmap);
  return icon;
}

wxAnimation image_loader_t::load_animation(const std::string& name) const {
  return load_named<wxAnimation>(m_resources, name, "wxAnimation", "animation",
                                 detail::decode_animation);
}

}  // namespace orvix1
