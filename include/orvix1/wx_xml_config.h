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

  /// Invalid colours and fonts are not written (false).
  bool write(const std::string& key, const wxColour& colour);
  bool write(const std::string& key, const wxFont& font);
  void write(const std::string& key, int number);

 private:
  static std::string colour_to_text(const wxColour& colour);
  static std::string font_to_text(const wxFont& font);
};

}  // namespace orvix1

#endif
