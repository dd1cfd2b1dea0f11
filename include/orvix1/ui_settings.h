#ifndef ORVIX1_UI_SETTINGS_H
#define ORVIX1_UI_SETTINGS_H
/// @file
/// The palette every widget draws with: numbered colours, fonts and metrics,
/// filled from the desktop, overridable one by one (an override is locked and
/// survives every refresh), persisted to a settings file, and refreshed when
/// the desktop's colours change.

#include <map>

#include <wx/colour.h>
#include <wx/event.h>
#include <wx/font.h>
#include <wx/frame.h>
#include <wx/settings.h>

#include "orvix1/export.h"
#include "talvar2/functor/signal.h"
#include "talvar2/path.h"
#include "talvar2/pointers/intrusive_pointer.h"
#include "talvar2/value_locker.h"

namespace orvix1 {

/// Colours. The comment gives where each one comes from.
enum default_colors_t {
  color_window_bg = 0,          ///< system window background
  color_face = 1,               ///< system button face
  color_highlight_3d = 2,       ///< system button highlight
  color_light_3d = 3,           ///< system 3D light
  color_shadow_3d = 4,          ///< system button shadow
  color_dark_shadow_3d = 5,     ///< system 3D dark shadow
  color_button_text = 6,        ///< system button text
  color_window_text = 7,        ///< system window text
  color_selection_bg = 8,       ///< system selection background
  color_selection_text = 9,     ///< system selection text
  color_tooltip_bg = 10,        ///< system tooltip background
  color_tooltip_text = 11,      ///< system tooltip text
  color_info_text = 12,         ///< informational text (the tooltip text colour)
  color_black = 13,             ///< black
  color_white = 14,             ///< white
  color_pane_bg = 15,           ///< light grey pane background (222, 223, 222)
  color_pane_dark = 16,         ///< dark grey (49, 48, 49): gradient end, dark text
  color_active_bg = 17,         ///< follows the selection background, lock included
  color_active_text = 18,       ///< follows the selection text, lock included
  color_active_gradient = 19,   ///< active background blended towards the dark grey
  color_inactive_bg = 20,       ///< follows the pane background, lock included
  color_strip_bg = 21,          ///< tab strip background (210, 221, 226)
  color_strip_text = 22,        ///< tab strip text (black)
  color_strip_border = 23,      ///< tab strip border (129, 138, 143)
  color_note_bg = 24,           ///< pale yellow note background (255, 255, 225)
  color_note_text = 25,         ///< note text (black)
  colors_count = 26
};

enum default_fonts_t {
  font_small = 0,        ///< the normal font at 0.85 of its size
  font_normal = 1,       ///< the desktop's GUI font
  font_normal_bold = 2,  ///< the normal font, bold
  font_title = 3,        ///< the normal font, bold and 1.4 times larger
  font_tooltip = 4,      ///< the desktop's GUI font for tooltips
  font_fixed = 5,        ///< fixed pitch, the GUI font's size
  font_fixed_bold = 6,   ///< fixed pitch, bold
  fonts_count = 7
};

enum default_metrics_t {
  metric_indent = 0,         ///< twice the fixed-pitch font's point size
  metric_border_x = 1,       ///< window border width
  metric_border_y = 2,       ///< window border height
  metric_tooltip_delay = 3,  ///< tooltip show delay in milliseconds
  metric_cursor_x = 4,       ///< mouse cursor width
  metric_cursor_y = 5,       ///< mouse cursor height
  metrics_count = 6
};

/// The store that widgets read.
class ORVIX1_API ui_settings_t : public talvar2::intrusive_pointer_impl_t {
 public:
  using change_signal_t = talvar2::signal_t<>;

  ui_settings_t();
  ~ui_settings_t() override;
  ui_settings_t(const ui_settings_t&) = delete;
  ui_settings_t& operator=(const ui_settings_t&) = delete;

  /// The live store with a new reference; a plain empty store when there is none.
  static talvar2::intrusive_pointer_t<ui_settings_t> get();

  /// An invalid colour, a null font or -1 for an index without an entry.
  wxColour get_color(default_colors_t index) const;
  wxFont get_font(default_fonts_t index) const;
  int get_metric(default_metrics_t index) const;

  /// Emitted after the system-derived entries have been re-read.
  change_signal_t& changed() { return m_changed; }

 protected:
  std::map<default_colors_t, talvar2::value_locker_t<wxColour>> m_colors;
  std::map<default_fonts_t, talvar2::value_locker_t<wxFont>> m_fonts;
  std::map<default_metrics_t, talvar2::value_locker_t<int>> m_metrics;
  change_signal_t m_changed;

  /// The newest live store; not counted.
  static ui_settings_t* m_self;
};

class syscolor_handler_t;
class wx_xml_config_t;

/// The writable store: desktop defaults, explicit overrides, the settings file.
class ORVIX1_API ui_settings_configure_t : public wxEvtHandler, public ui_settings_t {
 public:
  ui_settings_configure_t();
  ~ui_settings_configure_t() override;

  /// The live store if it is writable; otherwise a new writable one, which
  /// becomes the live store.
  static talvar2::intrusive_pointer_t<ui_settings_configure_t> get();

  /// Store the value and lock it. No signal is emitted.
  void set_color(default_colors_t index, const wxColour& colour);
  void set_font(default_fonts_t index, const wxFont& font);
  void set_metric(default_metrics_t index, int value);

  /// Reads "color_0", "color_1", "font_0".."font_6", "metric_0".."metric_5";
  /// what is read is locked. A file that cannot be read changes nothing and
  /// gives false; a value of the wrong form is skipped with a warning.
  bool load(const talvar2::path_t& path);
  /// Writes the same keys from the current entries. False when it fails.
  bool save(const talvar2::path_t& path) const;

  /// Switches to the theme in `path`, a file of the same form with
  /// "color_0" to "color_25" (the library ships light.xml and dark.xml in
  /// share/orvix1/themes). The theme replaces the whole colour palette:
  /// every colour it names is locked, every other colour goes back to the
  /// desktop, including colours set before. Fonts and metrics change only
  /// where it names them. Emits changed() once. A file that cannot be read
  /// changes nothing, emits nothing and gives false.
  bool apply_theme(const talvar2::path_t& path);
  /// Hand one entry back to the desktop: it is unlocked and re-derived at
  /// once. No signal is emitted, as with set_color. False for an index out
  /// of range.
  bool unlock_color(default_colors_t index);
  bool unlock_font(default_fonts_t index);

  /// Re-derives every unlocked entry from the desktop.
  void update_system_settings();

  /// The desktop's metric, or `fallback` when it cannot tell.
  int get_system_metric(wxSystemMetric metric, int fallback) const;

  /// The hidden window that hears of desktop colour changes; null once gone.
  syscolor_handler_t* get_colors_monitor() const { return m_colors_monitor; }
  void on_sys_colors_monitor_destroyed(wxWindowDestroyEvent& event);

 private:
  static bool read_config(wx_xml_config_t& config, const talvar2::path_t& path, const char* what);
  void read_entries(const wx_xml_config_t& config, const std::string& file, int color_count);
  void update_colors();
  void update_fonts_and_metrics();

  syscolor_handler_t* m_colors_monitor = nullptr;
};

/// A hidden frame: top-level windows are told of desktop colour changes.
class ORVIX1_API syscolor_handler_t : public wxFrame {
 public:
  syscolor_handler_t(wxWindow* parent, wxWindowID id, const wxString& title,
                     const wxPoint& position, const wxSize& size, long style);

  bool ShouldPreventAppExit() const override { return false; }

 private:
  void OnSysColourChanged(wxSysColourChangedEvent& event);

  wxDECLARE_EVENT_TABLE();
};

/// The name of an index as it stands in this header ("color_window_bg"), for
/// settings editors and diagnostics; "" for an index out of range.
ORVIX1_API const char* get_color_name(default_colors_t index);
ORVIX1_API const char* get_font_name(default_fonts_t index);
ORVIX1_API const char* get_metric_name(default_metrics_t index);

ORVIX1_API wxColour get_system_color(wxSystemColour colour);
/// The colours the desktop gives only indirectly; index 12 only.
ORVIX1_API wxColour get_system_color_ex(default_colors_t index);
/// The fixed-pitch font for index 5, the GUI font otherwise.
ORVIX1_API wxFont get_system_default_font(default_fonts_t index);

}  // namespace orvix1

#endif
