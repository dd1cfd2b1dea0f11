#include "orvix1/ui_settings.h"

#include <atomic>

#include <wx/app.h>
#include <wx/gdicmn.h>

#include "core/log.h"
#include "orvix1/locked_color.h"
#include "orvix1/wx_xml_config.h"
#include "core/contract_sites.h"

namespace orvix1 {
namespace {

// Only these ranges are persisted; the narrow colour range is intentional.
constexpr int k_persisted_colors = 2;

// a + (b - a) × 0.8 per channel, in floating point, truncated; opaque.
wxColour gradient(const wxColour& a, const wxColour& b) {
  auto channel = [](unsigned char from, unsigned char to) {
    const double start = from / 255.0;
    return static_cast<unsigned char>((start + (to / 255.0 - start) * 0.8) * 255.0);
  };
  return wxColour(channel(a.Red(), b.Red()), channel(a.Green(), b.Green()),
                  channel(a.Blue(), b.Blue()), wxALPHA_OPAQUE);
}

wxFont scaled(wxFont font, float factor) {
  font.SetPointSize(static_cast<int>(static_cast<float>(font.GetPointSize()) * factor));
  return font;
}

std::string indexed_key(const char* prefix, int index) {
  return prefix + std::to_string(index);
}

// Reads one persisted entry; a value of the wrong form is reported and skipped.
template <class T, class Setter>
void load_entry(const wx_xml_config_t& config, const std::string& key, const std::string& path,
                Setter set) {
  T value;
  switch (config.read(key, value)) {
    case wx_xml_config_t::read_result_t::ok:
      set(value);
      break;
    case wx_xml_config_t::read_result_t::malformed:
      ORVIX_LOG_WARNING(log::get_logger("orvix.settings"),
                        "settings file \"" << path << "\": ignoring \"" << key
                                           << "\", its value is not of the expected form");
      break;
    case wx_xml_config_t::read_result_t::missing:
      break;
  }
}

// Widgets ask for the palette when they are built: asked for while wx is not
// running (before start-up), it can only be empty, and every widget built then stays without colours
// and fonts. One line per process says why.
void report_palette_before_startup() {
  static std::atomic<bool> reported{false};
  if (wxApp::GetInstance() != nullptr || reported.exchange(true)) return;
  ORVIX_LOG_WARNING(log::get_logger("orvix.settings"),
                    "the palette was asked for while wxWidgets was not running, so widgets "
                    "get no colours or fonts: start the library with orvix1::host_session_t "
                    "first");
}

}  // namespace

ui_settings_t* ui_settings_t::m_self = nullptr;

ui_settings_t::ui_settings_t() { m_self = this; }

ui_settings_t::~ui_settings_t() {
  if (m_self == this) m_self = nullptr;
}

talvar2::intrusive_pointer_t<ui_settings_t> ui_settings_t::get() {
  report_palette_before_startup();
  if (m_self != nullptr) return m_self;
  return new ui_settings_t;
}

wxColour ui_settings_t::get_color(default_colors_t index) const {
  const auto found = m_colors.find(index);
  return found != m_colors.end() ? found->second.value : wxColour();
}

wxFont ui_settings_t::get_font(default_fonts_t index) const {
  const auto found = m_fonts.find(index);
  return found != m_fonts.end() ? found->second.value : wxFont();
}

int ui_settings_t::get_metric(default_metrics_t index) const {
  const auto found = m_metrics.find(index);
  return found != m_metrics.end() ? found->second.value : -1;
}

ui_settings_configure_t::ui_settings_configure_t() {
  // The monitor is a window: it needs a running wx.
  if (wxTheApp != nullptr) {
    m_colors_monitor = new syscolor_handler_t(nullptr, wxID_ANY, "internal syscolor_change handler",
                                              wxDefaultPosition, wxDefaultSize,
                                              wxDEFAULT_FRAME_STYLE);
    m_colors_monitor->Show(false);
    m_colors_monitor->Bind(wxEVT_DESTROY, &ui_settings_configure_t::on_sys_colors_monitor_destroyed,
                           this);
  }
  update_system_settings();
}

// The monitor serves this store only: it goes with it.
ui_settings_configure_t::~ui_settings_configure_t() {
  if (m_colors_monitor == nullptr) return;
  m_colors_monitor->Unbind(wxEVT_DESTROY, &ui_settings_configure_t::on_sys_colors_monitor_destroyed,
                           this);
  m_colors_monitor->Destroy();
  m_colors_monitor = nullptr;
}

talvar2::intrusive_pointer_t<ui_settings_configure_t> ui_settings_configure_t::get() {
  report_palette_before_startup();
  if (auto* live = dynamic_cast<ui_settings_configure_t*>(m_self)) return live;
  return new ui_settings_configure_t;
}

void ui_settings_configure_t::set_color(default_colors_t index, const wxColour& colour) {
  set_locked_color(m_colors[index], colour);
}

void ui_settings_configure_t::set_font(default_fonts_t index, const wxFont& font) {
  m_fonts[index].lock(font);
}

void ui_settings_configure_t::set_metric(default_metrics_t index, int value) {
  m_metrics[index].lock(value);
}

bool ui_settings_configure_t::load(const talvar2::path_t& path) {
  wx_xml_config_t config;
  if (!read_config(config, path, "palette")) return false;
  read_entries(config, path.as_string(), k_persisted_colors);
  return true;
}

bool ui_settings_configure_t::apply_theme(const talvar2::path_t& path) {
  wx_xml_config_t config;
  if (!read_config(config, path, "theme")) return false;
  // The theme replaces the whole colour palette; fonts and metrics change
  // only where it names them.
  for (auto& entry : m_colors) entry.second.unlock();
  read_entries(config, path.as_string(), colors_count);
  update_system_settings();
  m_changed();
  return true;
}

bool ui_settings_configure_t::unlock_color(default_colors_t index) {
  if (index < 0 || index >= colors_count) return false;
  m_colors[index].unlock();
  update_colors();
  return true;
}

bool ui_settings_configure_t::unlock_font(default_fonts_t index) {
  if (index < 0 || index >= fonts_count) return false;
  m_fonts[index].unlock();
  update_fonts_and_metrics();
  return true;
}

bool ui_settings_configure_t::read_config(wx_xml_config_t& config, const talvar2::path_t& path,
                                          const char* what) {
  std::string error;
  if (config.load(path, &error)) return true;
  ORVIX_LOG_ERROR(log::get_logger("orvix.settings"), "cannot load the " << what << ": " << error);
  return false;
}

void ui_settings_configure_t::read_entries(const wx_xml_config_t& config, const std::string& file,
                                           int color_count) {
  for (int i = 0; i < color_count; ++i) {
    const auto index = static_cast<default_colors_t>(i);
    load_entry<wxColour>(config, indexed_key("color_", i), file,
                         [this, index](const wxColour& value) { set_color(index, value); });
  }
  for (int i = 0; i < fonts_count; ++i) {
    const auto index = static_cast<default_fonts_t>(i);
    load_entry<wxFont>(config, indexed_key("font_", i), file,
                       [this, index](const wxFont& value) { set_font(index, value); });
  }
  for (int i = 0; i < metrics_count; ++i) {
    const auto index = static_cast<default_metrics_t>(i);
    load_entry<int>(config, indexed_key("metric_", i), file,
                    [this, index](int value) { set_metric(index, value); });
  }
}

bool ui_settings_configure_t::save(const talvar2::path_t& path) const {
  wx_xml_config_t config;
  for (int i = 0; i < k_persisted_colors; ++i)
    config.write(indexed_key("color_", i), get_color(static_cast<default_colors_t>(i)));
  for (int i = 0; i < fonts_count; ++i)
    config.write(indexed_key("font_", i), get_font(static_cast<default_fonts_t>(i)));
  for (int i = 0; i < metrics_count; ++i)
    config.write(indexed_key("metric_", i), get_metric(static_cast<default_metrics_t>(i)));
  std::string error;
  if (!config.save(path, &error)) {
    ORVIX_LOG_ERROR(log::get_logger("orvix.settings"), "cannot save the palette: " << error);
    return false;
  }
  return true;
}

void ui_settings_configure_t::update_system_settings() {
  update_colors();
  update_fonts_and_metrics();
}

void ui_settings_configure_t::update_colors() {
  struct system_source_t {
    default_colors_t index;
    wxSystemColour colour;
  };
  static const system_source_t system_sources[] = {
      {color_window_bg, wxSYS_COLOUR_WINDOW},          {color_face, wxSYS_COLOUR_BTNFACE},
      {color_highlight_3d, wxSYS_COLOUR_BTNHIGHLIGHT}, {color_light_3d, wxSYS_COLOUR_3DLIGHT},
      {color_shadow_3d, wxSYS_COLOUR_BTNSHADOW},       {color_dark_shadow_3d, wxSYS_COLOUR_3DDKSHADOW},
      {color_button_text, wxSYS_COLOUR_BTNTEXT},       {color_window_text, wxSYS_COLOUR_WINDOWTEXT},
      {color_selection_bg, wxSYS_COLOUR_HIGHLIGHT},    {color_selection_text, wxSYS_COLOUR_HIGHLIGHTTEXT},
      {color_tooltip_bg, wxSYS_COLOUR_INFOBK},         {color_tooltip_text, wxSYS_COLOUR_INFOTEXT},
  };
  auto refresh = [this](default_colors_t index, const wxColour& colour) {
    m_colors[index].refresh(colour);
  };
  for (const system_source_t& source : system_sources)
    refresh(source.index, get_system_color(source.colour));
  refresh(color_info_text, get_system_color_ex(color_info_text));
  refresh(color_black, *wxBLACK);
  refresh(color_white, *wxWHITE);
  refresh(color_pane_bg, wxColour(222, 223, 222));
  refresh(color_pane_dark, wxColour(49, 48, 49));
  // These follow their source whatever their own lock, and take its lock too.
  m_colors[color_active_bg] = m_colors[color_selection_bg];
  m_colors[color_active_text] = m_colors[color_selection_text];
  refresh(color_active_gradient,
          gradient(m_colors[color_active_bg].value, m_colors[color_pane_dark].value));
  m_colors[color_inactive_bg] = m_colors[color_pane_bg];
  refresh(color_strip_bg, wxColour(210, 221, 226));
  refresh(color_strip_text, *wxBLACK);
  refresh(color_strip_border, wxColour(129, 138, 143));
  refresh(color_note_bg, wxColour(255, 255, 225));
  refresh(color_note_text, *wxBLACK);
}

// One working font is carried from step to step.
void ui_settings_configure_t::update_fonts_and_metrics() {
  auto refresh = [this](default_fonts_t index, const wxFont& font) { m_fonts[index].refresh(font); };
  wxFont working = get_system_default_font(font_normal);
  refresh(font_normal, working);
  working = working.Bold();
  refresh(font_normal_bold, working);
  working = scaled(working, 1.4f);
  refresh(font_title, working);
  working = scaled(m_fonts[font_normal].value, 0.85f);  // an explicit font 1 included
  refresh(font_small, working);
  refresh(font_tooltip, get_system_default_font(font_tooltip));
  working = get_system_default_font(font_fixed);
  refresh(font_fixed, working);
  working = working.Bold();
  refresh(font_fixed_bold, working);

  m_metrics[metric_indent].refresh(working.GetPointSize() * 2);
  m_metrics[metric_border_x].refresh(get_system_metric(wxSYS_BORDER_X, 1));
  m_metrics[metric_border_y].refresh(get_system_metric(wxSYS_BORDER_Y, 1));
  m_metrics[metric_tooltip_delay].refresh(500);
  m_metrics[metric_cursor_x].refresh(get_system_metric(wxSYS_CURSOR_X, 14));
  m_metrics[metric_cursor_y].refresh(get_system_metric(wxSYS_CURSOR_Y, 14));
}

int ui_settings_configure_t::get_system_metric(wxSystemMetric metric, int fallback) const {
  const int value = wxSystemSettings::GetMetric(metric);
  return value < 0 ? fallback : value;
}

void ui_settings_configure_t::on_sys_colors_monitor_destroyed(wxWindowDestroyEvent& event) {
  if (event.GetEventObject() == m_colors_monitor) m_colors_monitor = nullptr;
  event.Skip();
}

wxBEGIN_EVENT_TABLE(syscolor_handler_t, wxFrame)
  EVT_SYS_COLOUR_CHANGED(syscolor_handler_t::OnSysColourChanged)
wxEND_EVENT_TABLE()

syscolor_handler_t::syscolor_handler_t(wxWindow* parent, wxWindowID id, const wxString& title,
                                       const wxPoint& position, const wxSize& size, long style)
    : wxFrame(parent, id, title, position, size, style) {}

void syscolor_handler_t::OnSysColourChanged(wxSysColourChangedEvent& event) {
  event.Skip();
  talvar2::intrusive_pointer_t<ui_settings_configure_t> settings(
      dynamic_cast<ui_settings_configure_t*>(ui_settings_t::get().get()));
  if (settings.operator->() == nullptr) return;  // asserted "m_ptr != 0"
  settings->update_system_settings();
  settings->changed()();
}

const char* get_color_name(default_colors_t index) {
  static const char* const names[colors_count] = {
      "color_window_bg",   "color_face",           "color_highlight_3d", "color_light_3d",
      "color_shadow_3d",   "color_dark_shadow_3d", "color_button_text",  "color_window_text",
      "color_selection_bg", "color_selection_text", "color_tooltip_bg",  "color_tooltip_text",
      "color_info_text",   "color_black",          "color_white",        "color_pane_bg",
      "color_pane_dark",   "color_active_bg",      "color_active_text",  "color_active_gradient",
      "color_inactive_bg", "color_strip_bg",       "color_strip_text",   "color_strip_border",
      "color_note_bg",     "color_note_text"};
  return index >= 0 && index < colors_count ? names[index] : "";
}

const char* get_font_name(default_fonts_t index) {
  static const char* const names[fonts_count] = {"font_small",   "font_normal", "font_normal_bold",
                                                 "font_title",   "font_tooltip", "font_fixed",
                                                 "font_fixed_bold"};
  return index >= 0 && index < fonts_count ? names[index] : "";
}

const char* get_metric_name(default_metrics_t index) {
  static const char* const names[metrics_count] = {"metric_indent",        "metric_border_x",
                                                   "metric_border_y",      "metric_tooltip_delay",
                                                   "metric_cursor_x",      "metric_cursor_y"};
  return index >= 0 && index < metrics_count ? names[index] : "";
}

wxColour get_system_color(wxSystemColour colour) { return wxSystemSettings::GetColour(colour); }

wxColour get_system_color_ex(default_colors_t index) {
  if (index == color_info_text) return get_system_color(wxSYS_COLOUR_INFOTEXT);
  contract_fails(contract::site_t::system_color_ex_unsupported);
  return wxColour();
}

wxFont get_system_default_font(default_fonts_t index) {
  const wxFont gui = wxSystemSettings::GetFont(wxSYS_DEFAULT_GUI_FONT);
  if (index != font_fixed) return gui;
  return *wxTheFontList->FindOrCreateFont(gui.GetPointSize(), wxFONTFAMILY_MODERN, gui.GetStyle(),
                                          gui.GetWeight(), false, wxEmptyString,
                                          wxFONTENCODING_DEFAULT);
}

}  // namespace orvix1
