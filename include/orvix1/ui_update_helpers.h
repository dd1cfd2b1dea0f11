#ifndef ORVIX1_UI_UPDATE_HELPERS_H
#define ORVIX1_UI_UPDATE_HELPERS_H
/// @file
/// Palette styles for plain wx windows: a font and two colours by palette
/// index, applied to a window tree by an updater that re-applies them when
/// the palette changes.

#include <map>

#include <wx/event.h>
#include <wx/window.h>

#include "orvix1/export.h"
#include "orvix1/ui_settings.h"
#include "talvar2/functor/signal.h"
#include "talvar2/pointers/intrusive_pointer.h"

namespace orvix1 {

/// Palette indices; -1 leaves the property as it is.
struct ORVIX1_API style_t {
  int font = -1;        ///< default_fonts_t
  int background = -1;  ///< default_colors_t
  int foreground = -1;  ///< default_colors_t

  style_t() = default;
  style_t(int font_index, int background_index, int foreground_index)
      : font(font_index), background(background_index), foreground(foreground_index) {}

  /// The normal font on the button face.
  static style_t create_dialog_style();
  /// The normal font on the window background.
  static style_t create_inplace_style();

  bool operator==(const style_t& other) const {
    return font == other.font && background == other.background && foreground == other.foreground;
  }
};

/// Applies `style` from `settings` to one window.
ORVIX1_API void set_font_and_colors(wxWindow* wnd, const style_t& style,
                                    const ui_settings_t& settings);
/// Applies a palette style to a window tree and again whenever the palette changes.
///
/// The library's own widgets (every window that takes a named style, IStyled)
/// keep their look: the walk passes them by and goes on into their children,
/// so a tab strip's captions stay in the font its style names. A window the
/// host registers with add() gets its style all the same.
class ORVIX1_API style_updater_t : public wxEvtHandler, public talvar2::subscriber_base_t {
 public:
  /// An empty updater: create() gives it a window tree.
  style_updater_t();
  /// Styles `root` and its children down to `depth` levels (-1: all) at once,
  /// and again whenever the palette changes.
  style_updater_t(wxWindow* root, const style_t& style, int depth);
  ~style_updater_t() override;
  style_updater_t(const style_updater_t&) = delete;
  style_updater_t& operator=(const style_updater_t&) = delete;

  /// Drops the exceptions and stores the three values; applies nothing.
  void create(wxWindow* root, const style_t& style, int depth);

  /// An exception: `window` gets its own style, at any depth. Applied at the
  /// next propagation; a destroyed window drops out by itself.
  void add(wxWindow* window, style_t style);
  bool is_wnd_registred(wxWindow* window) const;
  void disconnect_child(wxWindow* window);
  void disconnect_and_remove_all_children();

  void propagate_style();
  void on_ui_changed();
  void on_destroy_child(wxWindowDestroyEvent& event);

 private:
  void set_parent_style(wxWindow* window, unsigned depth);
  void watch_root(wxWindow* root);
  void on_destroy_root(wxWindowDestroyEvent& event);

  wxWindow* m_root = nullptr;
  style_t m_style;
  int m_depth = 0;
  std::map<wxWindow*, style_t> m_exceptions;
  talvar2::intrusive_pointer_t<ui_settings_t> m_settings;
};

}  // namespace orvix1

#endif
