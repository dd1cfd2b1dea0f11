#ifndef ORVIX1_UI_STYLE_H
#define ORVIX1_UI_STYLE_H
/// @file
/// Named styles: owner-drawn widgets ask a style for colours and fonts by key
/// ("clBg", "clBtnBgHover", "fnNormalBold", ...) whenever they paint. A style
/// refills itself from the palette when the palette changes and then tells
/// the widgets that use it.

#include <map>
#include <string>

#include <wx/colour.h>
#include <wx/font.h>

#include "orvix1/export.h"
#include "orvix1/ui_settings.h"
#include "talvar2/functor/signal.h"
#include "talvar2/pointers/intrusive_pointer.h"
#include "talvar2/value_locker.h"

namespace orvix1 {
/// A named style: colours and fonts by key, refilled from the palette when it changes.
class ORVIX1_API ui_style_t : public talvar2::intrusive_pointer_impl_t,
                              public talvar2::subscriber_base_t {
 public:
  using update_signal_t = talvar2::signal_t<>;

  /// Subscribes to the live palette's change signal. A widget's style class
  /// fills its keys by calling set_style_info() from its own constructor.
  ui_style_t();
  ~ui_style_t() override;
  ui_style_t(const ui_style_t&) = delete;
  ui_style_t& operator=(const ui_style_t&) = delete;

  /// A copy of the value under `key`; an invalid colour or a null font when
  /// there is none.
  virtual wxColour get_color(const std::string& key) const;
  virtual wxFont get_font(const std::string& key) const;

  /// Fills the keys from the palette; nothing here.
  virtual void set_style_info();

  /// Creates the entry if missing and assigns the value unless it is locked.
  void internal_set_color(const std::string& key, const wxColour& colour);
  void internal_set_font(const std::string& key, const wxFont& font);

  /// Sets a value explicitly: it stays through every refill.
  void lock_color(const std::string& key, const wxColour& colour);
  void lock_font(const std::string& key, const wxFont& font);

  /// Refills the style, then emits the update signal.
  void on_ui_settings_updated();

  update_signal_t& updated() { return m_updated; }
  const talvar2::intrusive_pointer_t<ui_settings_t>& get_settings() const { return m_settings; }

 protected:
  update_signal_t m_updated;
  std::map<std::string, talvar2::value_locker_t<wxColour>> m_colors;
  std::map<std::string, talvar2::value_locker_t<wxFont>> m_fonts;
  talvar2::intrusive_pointer_t<ui_settings_t> m_settings;
};

/// A style whose values come from the resource registry, under a name prefix:
/// made with the prefix "panel", it answers "clBg" with "panel.clBg".
class ORVIX1_API resource_style_t : public ui_style_t {
 public:
  explicit resource_style_t(std::string prefix);

  std::string get_full_res_name(const std::string& key) const;
  wxColour get_color(const std::string& key) const override;
  wxFont get_font(const std::string& key) const override;

 private:
  std::string m_prefix;
};

}  // namespace orvix1

#endif
