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
// The density from which an "@2x" twin beats an enlarged picture.
constexpr double k_twin_density = 1.5;

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

std::string image_loader_t::double_density_name(const std::string& name) {
  const size_t file = name.rfind('/') == std::string::npos ? 0 : name.rfind('/') + 1;
  const size_t dot = name.rfind('.');
  // A leading dot names a hidden file, not an extension.
  const size_t at = dot == std::string::npos || dot <= file ? name.size() : dot;
  return name.substr(0, at) + "@2x" + name.substr(at);
}

bool image_loader_t::twin_takes_precedence(const std::string& name,
                                           const std::string& twin) const {
  const int twin_archive = m_resources.find_archive(twin, "wxImage");
  return twin_archive >= 0 && twin_archive >= m_resources.find_archive(name, "wxImage");
}

wxImage image_loader_t::load_scaled(const std::string& name, double content_scale,
                                    bool& from_twin) const {
  from_twin = false;
  const auto load = [this](const std::string& which) {
    return load_named<wxImage>(m_resources, which, "wxImage", "image", detail::decode_image);
  };
  if (!get_image_loading_autoscale()) return load(name);
  const double density = get_DPI_scale() * content_scale;
  const std::string twin = double_density_name(name);
  if (density >= k_twin_density && twin_takes_precedence(name, twin)) {
    wxImage image = load(twin);
    if (image.IsOk()) {
      from_twin = true;
      const int width = static_cast<int>(image.GetWidth() / 2.0 * density);
      const int height = static_cast<int>(image.GetHeight() / 2.0 * density);
      if (image.GetSize() != wxSize(width, height))
        image = image.Scale(width, height, wxIMAGE_QUALITY_HIGH);
      return image;
    }
  }
  wxImage image = load(name);
  apply_DPI_scale(image);
  return image;
}

wxImage image_loader_t::load_image(const std::string& name) const {
  bool from_twin = false;
  return load_scaled(name, 1.0, from_twin);
}

wxBitmap image_loader_t::load_bitmap(const std::string& name) const {
  const double content_scale = get_content_scale_factor();
  bool from_twin = false;
  const wxImage image = load_scaled(name, content_scale, from_twin);
  if (!image.IsOk()) return wxBitmap();
  return wxBitmap(image, wxBITMAP_SCREEN_DEPTH, from_twin ? content_scale : 1.0);
}

wxIcon image_loader_t::load_icon(const std::string& name) const {
  const wxBitmap bitmap = load_bitmap(name);
  wxIcon icon;
  if (bitmap.IsOk()) icon.CopyFromBitmap(bitmap);  // keeps the scale factor
  return icon;
}

wxAnimation image_loader_t::load_animation(const std::string& name) const {
  return load_named<wxAnimation>(m_resources, name, "wxAnimation", "animation",
                                 detail::decode_animation);
}

}  // namespace orvix1
