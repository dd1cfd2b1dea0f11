#ifndef ORVIX1_UI_RESOURCES_H
#define ORVIX1_UI_RESOURCES_H
/// @file
/// The process-wide registry of named colours, fonts, images and animations.

#include <map>
#include <string>
#include <vector>

#include <wx/animate.h>
#include <wx/bitmap.h>
#include <wx/colour.h>
#include <wx/font.h>
#include <wx/icon.h>
#include <wx/image.h>

#include "orvix1/export.h"
#include "orvix1/image_loader.h"
#include "orvix1/resource_loader.h"
#include "talvar2/pointers/intrusive_pointer.h"

namespace orvix1 {

/// Hosts register resource archives (zip files or folders, see
/// resource_loader_t) and values of their own; widgets and styles ask for
/// resources by name ("panel.clBg", "fnBig", "icons/close.png").
///
/// Colours and fonts are looked up in this order:
///   1. a value the host gave with set_color / set_font;
///   2. the object declared under that name in the newest archive's
///      resources.xrc that declares it (later archives override earlier ones).
/// What an archive yields is cached, and so is a miss: an unknown name gives
/// an invalid colour or a null font with one warning on the
/// "orvix.resources" logger, not one per paint. Adding or removing an
/// archive drops the cache.
///
/// The library keeps the registry alive from the first get() until
/// wxWidgets ends (or the process exits, if it never ran): archives added
/// through a passing pointer stay registered. When wxWidgets ends the
/// registry lets go of its archives and values, and the next get() makes a
/// new one. GUI thread only (the reference count and get() are thread-safe).
class ORVIX1_API ui_resources_t : public talvar2::intrusive_pointer_impl_t {
 public:
  /// The live registry, made on first use.
  static talvar2::intrusive_pointer_t<ui_resources_t> get();

  ~ui_resources_t() override;
  ui_resources_t(const ui_resources_t&) = delete;
  ui_resources_t& operator=(const ui_resources_t&) = delete;

  /// See resource_loader_t: false, with an error logged, leaves the registry
  /// as it was.
  bool add_archive(const std::string& path);
  bool remove_archive(const std::string& path);
  std::vector<std::string> get_archives() const;
  /// Forgets every archive, every value the host set and the cache.
  void clear();

  wxColour get_color(const std::string& name) const;
  wxFont get_font(const std::string& name) const;
  /// A host value overrides the archives under that name; an invalid colour
  /// or a null font removes the host value again.
  void set_color(const std::string& name, const wxColour& colour);
  void set_font(const std::string& name, const wxFont& font);

  /// See image_loader_t.
  wxImage get_image(const std::string& name) const;
  wxBitmap get_bitmap(const std::string& name) const;
  wxIcon get_icon(const std::string& name) const;
  wxAnimation get_animation(const std::string& name) const;

  const resource_loader_t& get_resource_loader() const { return m_resources; }
  const image_loader_t& get_image_loader() const { return m_images; }

 private:
  ui_resources_t();
  void forget_cached_values();

  resource_loader_t m_resources;
  image_loader_t m_images;
  std::map<std::string, wxColour> m_host_colors;
  std::map<std::string, wxFont> m_host_fonts;
  /// Archive values by name; an invalid colour or null font records a miss.
  mutable std::map<std::string, wxColour> m_cached_colors;
  mutable std::map<std::string, wxFont> m_cached_fonts;
};

}  // namespace orvix1

#endif
