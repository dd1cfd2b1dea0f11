#include "orvix1/ui_resources.h"

#include <memory>
#include <mutex>

#include <wx/module.h>

#include "core/log.h"

namespace orvix1 {
namespace {

const char k_logger[] = "orvix.resources";

// The live registry and the one reference the library keeps to it, so that
// archives added through a passing pointer stay registered.
std::mutex g_live_mutex;
ui_resources_t* g_live = nullptr;

// Lets go of the library's reference. A registry still held elsewhere is
// emptied, so that none of its wx objects outlives wxWidgets.
void release_live_registry() {
  ui_resources_t* live = nullptr;
  {
    const std::lock_guard<std::mutex> lock(g_live_mutex);
    std::swap(live, g_live);
  }
  if (live == nullptr) return;
  live->clear();
  live->release_ref();
}

// Looks up `name` among the host's values, then in the cache, then in the
// archives; `load` builds an archive object into a value.
template <class Value, class Load>
Value look_up(const std::map<std::string, Value>& host_values, std::map<std::string, Value>& cache,
              const std::string& name, Load load) {
  const auto host = host_values.find(name);
  if (host != host_values.end()) return host->second;
  const auto cached = cache.find(name);
  if (cached != cache.end()) return cached->second;
  Value value = load();
  cache.emplace(name, value);
  return value;
}

// A declared object of class T turned into a value; an invalid value when
// it is not declared or cannot be built.
template <class T>
T load_declared(const resource_loader_t& resources, const std::string& name, const char* class_name,
                const char* what) {
  if (!resources.has_object(name, class_name)) {
    ORVIX_LOG_WARNING(orvix1::log::get_logger(k_logger),
                      "no " << what << " named \"" << name << "\" in the resource archives");
    return T();
  }
  const std::unique_ptr<wxObject> object = resources.load_object(name, class_name);
  const T* value = dynamic_cast<const T*>(object.get());
  return value != nullptr ? *value : T();
}

// Ends the registry together with wxWidgets, before the XRC system that its
// archives' resource sets belong to.
class ui_resources_module_t : public wxModule {
 public:
  ui_resources_module_t() { AddDependency("wxXmlResourceModule"); }
  bool OnInit() override { return true; }
  void OnExit() override { release_live_registry(); }

 private:
  wxDECLARE_DYNAMIC_CLASS(ui_resources_module_t);
};
wxIMPLEMENT_DYNAMIC_CLASS(ui_resources_module_t, wxModule);

// A process that never ran wxWidgets' clean-up lets go at exit.
struct live_registry_guard_t {
  ~live_registry_guard_t() { release_live_registry(); }
} g_live_registry_guard;

}  // namespace

talvar2::intrusive_pointer_t<ui_resources_t> ui_resources_t::get() {
  const std::lock_guard<std::mutex> lock(g_live_mutex);
  if (g_live == nullptr) {
    g_live = new ui_resources_t;
    g_live->add_ref();
  }
  return talvar2::intrusive_pointer_t<ui_resources_t>(g_live);
}

ui_resources_t::ui_resources_t() : m_images(m_resources) {}

ui_resources_t::~ui_resources_t() = default;

bool ui_resources_t::add_archive(const std::string& path) {
  if (!m_resources.add_archive(path)) return false;
  forget_cached_values();
  return true;
}

bool ui_resources_t::remove_archive(const std::string& path) {
  if (!m_resources.remove_archive(path)) return false;
  forget_cached_values();
  return true;
}

std::vector<std::string> ui_resources_t::get_archives() const { return m_resources.get_archives(); }

void ui_resources_t::clear() {
  m_resources.clear();
  m_host_colors.clear();
  m_host_fonts.clear();
  forget_cached_values();
}

wxColour ui_resources_t::get_color(const std::string& name) const {
  return look_up(m_host_colors, m_cached_colors, name,
                 [&] { return load_declared<wxColour>(m_resources, name, "wxColour", "colour"); });
}

wxFont ui_resources_t::get_font(const std::string& name) const {
  return look_up(m_host_fonts, m_cached_fonts, name,
                 [&] { return load_declared<wxFont>(m_resources, name, "wxFont", "font"); });
}

void ui_resources_t::set_color(const std::string& name, const wxColour& colour) {
  if (colour.IsOk())
    m_host_colors[name] = colour;
  else
    m_host_colors.erase(name);
}

void ui_resources_t::set_font(const std::string& name, const wxFont& font) {
  if (font.IsOk())
    m_host_fonts[name] = font;
  else
    m_host_fonts.erase(name);
}

wxImage ui_resources_t::get_image(const std::string& name) const {
  return m_images.load_image(name);
}

wxBitmap ui_resources_t::get_bitmap(const std::string& name) const {
  return m_images.load_bitmap(name);
}

wxIcon ui_resources_t::get_icon(const std::string& name) const { return m_images.load_icon(name); }

wxAnimation ui_resources_t::get_animation(const std::string& name) const {
  return m_images.load_animation(name);
}

void ui_resources_t::forget_cached_values() {
  m_cached_colors.clear();
  m_cached_fonts.clear();
}

}  // namespace orvix1
