#include "orvix1/ui_style.h"

#include "orvix1/locked_color.h"
#include "orvix1/ui_resources.h"

namespace orvix1 {
namespace {

template <class Map, class Value>
Value find_value(const Map& map, const std::string& key) {
  const auto found = map.find(key);
  return found != map.end() ? found->second.value : Value();
}

}  // namespace

ui_style_t::ui_style_t() : m_settings(ui_settings_t::get()) {
  m_settings->changed().connect(this, &ui_style_t::on_ui_settings_updated);
}

// The subscriber base cuts the palette connection.
ui_style_t::~ui_style_t() = default;

wxColour ui_style_t::get_color(const std::string& key) const {
  return find_value<decltype(m_colors), wxColour>(m_colors, key);
}

wxFont ui_style_t::get_font(const std::string& key) const {
  return find_value<decltype(m_fonts), wxFont>(m_fonts, key);
}

void ui_style_t::set_style_info() {}

void ui_style_t::internal_set_color(const std::string& key, const wxColour& colour) {
  talvar2::value_locker_t<wxColour>& entry = m_colors[key];
  if (&entry.value != &colour) entry.refresh(colour);
}

void ui_style_t::internal_set_font(const std::string& key, const wxFont& font) {
  talvar2::value_locker_t<wxFont>& entry = m_fonts[key];
  if (&entry.value != &font) entry.refresh(font);
}

void ui_style_t::lock_color(const std::string& key, const wxColour& colour) {
  set_locked_color(m_colors[key], colour);
}

void ui_style_t::lock_font(const std::string& key, const wxFont& font) { m_fonts[key].lock(font); }

void ui_style_t::on_ui_settings_updated() {
  set_style_info();
  m_updated();
}

resource_style_t::resource_style_t(std::string prefix) : m_prefix(std::move(prefix)) {}

std::string resource_style_t::get_full_res_name(const std::string& key) const {
  return m_prefix + "." + key;
}

wxColour resource_style_t::get_color(const std::string& key) const {
  return ui_resources_t::get()->get_color(get_full_res_name(key));
}

wxFont resource_style_t::get_font(const std::string& key) const {
  return ui_resources_t::get()->get_font(get_full_res_name(key));
}

}  // namespace orvix1
