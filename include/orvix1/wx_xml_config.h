#ifndef ORVIX1_WX_XML_CONFIG_H
#define ORVIX1_WX_XML_CONFIG_H
/// @file
/// A settings file with wx values. The forms are meant to be edited by hand:
///
///   colour   "#RRGGBB" for an opaque colour, "rgba(r, g, b, a)" otherwise;
///            any form wxColour understands is read ("red", "rgb(1, 2, 3)").
///   font     the desktop's font description: family, style and weight
///            words, then the point size: "Sans Bold Italic 11", "Monospace 10".
///   int      decimal digits with an optional sign: "500", "-1".
///   text     kept exactly as given (UTF-8).
///
/// Where such a file belongs: user_config_path().

#include <string>

#include <wx/colour.h>
#include <wx/font.h>

#include "orvix1/export.h"
#include "talvar2/xml/advanced_xml_config.h"

namespace orvix1 {
/// A settings file with wx values (colours, fonts, sizes) in forms meant to be edited by hand.
class ORVIX1_API wx_xml_config_t : public talvar2::advanced_xml_config_t {
 public:
  enum class read_result_t {
    ok,         ///< the value was read
    missing,    ///< no such key: the value is untouched
    malformed,  ///< the key holds something else: the value is untouched
  };

  read_result_t read(const std::string& key, wxColour& colour) const;
  read_result_t read(const std::string& key, wxFont& font) const;
  read_result_t read(const std::string& key, int& number) const;
  read_result_t read(const std::string& key, std::string& text) const;
  read_result_t read(const std::string& key, wxString& text) const;

  /// Invalid colours and fonts are not written (false).
  bool write(const std::string& key, const wxColour& colour);
  bool write(const std::string& key, const wxFont& font);
  void write(const std::string& key, int number);
  /// Text is written as it is; a null pointer is a broken precondition.
  void write(const std::string& key, const char* text);
  void write(const std::string& key, const std::string& text);
  void write(const std::string& key, const wxString& text);
  /// Any other type would reach one of the above through a conversion that
  /// says nothing at the call (a wide literal becoming a colour, a char or a
  /// bool becoming a number): such calls do not compile. Convert explicitly.
  template <class T>
  void write(const std::string& key, T value) = delete;

 private:
  static std::string colour_to_text(const wxColour& colour);
  static std::string font_to_text(const wxFont& font);
};

/// Where an application keeps a settings file of the current user:
/// `$XDG_CONFIG_HOME/<app_name>/<file_name>` when XDG_CONFIG_HOME is set to an
/// absolute path, otherwise `$HOME/.config/<app_name>/<file_name>` (a relative
/// or empty XDG_CONFIG_HOME is ignored, as the desktop's base folder rules
/// say). Nothing is made on disk: wx_xml_config_t::save() makes the folders.
/// Empty, with an error in the log, when `app_name` or `file_name` is not a
/// plain name (empty, ".", "..", or holding '/' or a NUL), or when HOME is
/// needed and not an absolute path.
ORVIX1_API std::string user_config_path(const std::string& app_name,
                                        const std::string& file_name = "settings.xml");

}  // namespace orvix1

#endif
