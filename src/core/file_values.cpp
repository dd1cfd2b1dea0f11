#include "core/file_values.h"

#include <cstring>

#include <pango/pango.h>
#include <wx/gdicmn.h>

namespace orvix1 {
namespace detail {
namespace {

constexpr std::size_t k_max_name_length = 128;
constexpr std::size_t k_max_colour_name_length = 32;
constexpr std::size_t k_max_font_description_length = 256;
constexpr std::size_t k_max_family_length = 128;

bool is_ascii_letter(wxUniChar c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool is_ascii_digit(wxUniChar c) { return c >= '0' && c <= '9'; }

int hex_value(wxUniChar c) {
  if (is_ascii_digit(c)) return static_cast<int>(c.GetValue() - '0');
  if (c >= 'a' && c <= 'f') return static_cast<int>(c.GetValue() - 'a') + 10;
  if (c >= 'A' && c <= 'F') return static_cast<int>(c.GetValue() - 'A') + 10;
  return -1;
}

bool parse_hex_colour(const wxString& text, wxColour& colour) {
  if (text.length() != 7 && text.length() != 9) return false;
  unsigned char channels[4] = {0, 0, 0, wxALPHA_OPAQUE};
  for (std::size_t i = 1, channel = 0; i < text.length(); i += 2, ++channel) {
    const int high = hex_value(text[i]);
    const int low = hex_value(text[i + 1]);
    if (high < 0 || low < 0) return false;
    channels[channel] = static_cast<unsigned char>(high * 16 + low);
  }
  colour.Set(channels[0], channels[1], channels[2], channels[3]);
  return true;
}

// "rgb(r, g, b)" or "rgba(r, g, b, a)"; channels 0..255, alpha 0..1.
bool parse_functional_colour(const wxString& text, wxColour& colour) {
  wxString arguments;
  bool with_alpha = false;
  if (text.StartsWith("rgba(", &arguments))
    with_alpha = true;
  else if (!text.StartsWith("rgb(", &arguments))
    return false;
  if (!arguments.EndsWith(")", &arguments)) return false;
  const wxArrayString parts = wxSplit(arguments, ',', '\0');
  if (parts.size() != (with_alpha ? 4u : 3u)) return false;
  double channels[4] = {0, 0, 0, 1};
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const wxString part = wxString(parts[i]).Trim(true).Trim(false);
    const double high = i == 3 ? 1 : 255;
    if (!parse_bounded_number(part, 0, high, channels[i])) return false;
    if (i < 3 && channels[i] != static_cast<int>(channels[i])) return false;
  }
  colour.Set(static_cast<unsigned char>(channels[0]), static_cast<unsigned char>(channels[1]),
             static_cast<unsigned char>(channels[2]),
             static_cast<unsigned char>(channels[3] * 255 + 0.5));
  return true;
}

bool parse_named_colour(const wxString& text, wxColour& colour) {
  if (text.empty() || text.length() > k_max_colour_name_length) return false;
  for (const wxUniChar c : text)
    if (!is_ascii_letter(c) && c != ' ') return false;
  const wxColour found = wxTheColourDatabase->Find(text);
  if (!found.IsOk()) return false;
  colour = found;
  return true;
}

}  // namespace

bool is_plain_text(const wxString& text, std::size_t max_length) {
  if (text.length() > max_length) return false;
  for (const wxUniChar c : text) {
    const wxUniChar::value_type code = c.GetValue();
    if ((code < 0x20 && code != '\t' && code != '\n') || code == 0x7f) return false;
  }
  return true;
}

bool is_safe_name(const wxString& name) {
  if (name.empty() || name.length() > k_max_name_length) return false;
  if (!is_ascii_letter(name[0]) && name[0] != '_') return false;
  for (const wxUniChar c : name) {
    if (!is_ascii_letter(c) && !is_ascii_digit(c) && wxString("_-.:/@").Find(c) == wxNOT_FOUND)
      return false;
  }
  return true;
}

bool parse_colour_text(const wxString& text, wxColour& colour) {
  wxColour parsed;
  const bool ok = text.StartsWith("#") ? parse_hex_colour(text, parsed)
                                       : parse_functional_colour(text, parsed) ||
                                             parse_named_colour(text, parsed);
  if (ok) colour = parsed;
  return ok;
}

bool parse_bounded_number(const wxString& text, double low, double high, double& number) {
  // Digits with at most one point: wx and the C library read more forms
  // (exponents, "inf", "nan", hexadecimal), none of which a file needs.
  if (text.empty() || text.length() > 16) return false;
  bool seen_point = false;
  bool seen_digit = false;
  for (const wxUniChar c : text) {
    if (c == '.' && !seen_point)
      seen_point = true;
    else if (is_ascii_digit(c))
      seen_digit = true;
    else
      return false;
  }
  double value = 0;
  if (!seen_digit || !text.ToCDouble(&value) || value < low || value > high) return false;
  number = value;
  return true;
}

bool is_sane_font_description(const wxString& text) {
  if (text.length() > k_max_font_description_length || !is_plain_text(text)) return false;
  PangoFontDescription* description = pango_font_description_from_string(text.utf8_str());
  const PangoFontMask fields = pango_font_description_get_set_fields(description);
  const char* family = pango_font_description_get_family(description);
  const double points = static_cast<double>(pango_font_description_get_size(description)) /
                        PANGO_SCALE;
  const bool sane = (fields & PANGO_FONT_MASK_FAMILY) != 0 && family != nullptr &&
                    *family != '\0' && std::strlen(family) <= k_max_family_length &&
                    (fields & PANGO_FONT_MASK_SIZE) != 0 && points >= k_min_font_points &&
                    points <= k_max_font_points;
  pango_font_description_free(description);
  return sane;
}

}  // namespace detail
}  // namespace orvix1
