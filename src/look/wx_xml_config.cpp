#include "orvix1/wx_xml_config.h"

#include <charconv>

#include <wx/debug.h>

#include "core/file_values.h"
#include "core/log.h"
#include "talvar2/environment.h"

namespace orvix1 {
namespace {

using read_result_t = wx_xml_config_t::read_result_t;

// Parses the whole text as a value of T, or reports it malformed.
template <class T, class Parse>
read_result_t read_with(const wx_xml_config_t& config, const std::string& key, T& value,
                        Parse parse) {
  std::string text;
  if (!config.get_value(key, text)) return read_result_t::missing;
  T parsed;
  if (!parse(text, parsed)) return read_result_t::malformed;
  value = parsed;
  return read_result_t::ok;
}

// Palette files are not ours to trust: colours and fonts are checked by the
// file rules before wx parses anything.
bool parse_colour(const std::string& text, wxColour& colour) {
  return detail::parse_colour_text(wxString::FromUTF8(text), colour);
}

// wx makes some font of any text, filling in what is missing; a description
// is only taken when it names a family and a size in range.
bool parse_font(const std::string& text, wxFont& font) {
  const wxString description = wxString::FromUTF8(text);
  if (!detail::is_sane_font_description(description)) return false;
  wxFont parsed;
  if (!parsed.SetNativeFontInfoUserDesc(description) || !parsed.IsOk()) return false;
  font = parsed;
  return true;
}

bool parse_int(const std::string& text, int& number) {
  const char* first = text.data();
  const char* last = first + text.size();
  if (first != last && *first == '+') ++first;
  const std::from_chars_result result = std::from_chars(first, last, number);
  return first != last && result.ec == std::errc() && result.ptr == last;
}

bool parse_text(const std::string& text, std::string& value) {
  value = text;
  return true;
}

bool parse_wx_text(const std::string& text, wxString& value) {
  value = wxString::FromUTF8(text);
  return true;
}

bool is_plain_name(const std::string& name) {
  return !name.empty() && name != "." && name != ".." &&
         name.find_first_of(std::string("/\0", 2)) == std::string::npos;
}

// The folder the desktop's base folder rules give for configuration, or
// empty when neither variable names an absolute folder.
std::string config_home() {
  std::string folder;
  if (talvar2::get_environment_variable("XDG_CONFIG_HOME", folder) && !folder.empty() &&
      folder.front() == '/')
    return folder;
  std::string home;
  if (talvar2::get_environment_variable("HOME", home) && !home.empty() && home.front() == '/')
    return (talvar2::path_t(home) / ".config").as_string();
  return std::string();
}

}  // namespace

read_result_t wx_xml_config_t::read(const std::string& key, wxColour& colour) const {
  return read_with(*this, key, colour, parse_colour);
}

read_result_t wx_xml_config_t::read(const std::string& key, wxFont& font) const {
  return read_with(*this, key, font, parse_font);
}

read_result_t wx_xml_config_t::read(const std::string& key, int& number) const {
  return read_with(*this, key, number, parse_int);
}

read_result_t wx_xml_config_t::read(const std::string& key, std::string& text) const {
  return read_with(*this, key, text, parse_text);
}

read_result_t wx_xml_config_t::read(const std::string& key, wxString& text) const {
  return read_with(*this, key, text, parse_wx_text);
}

bool wx_xml_config_t::write(const std::string& key, const wxColour& colour) {
  if (!colour.IsOk()) return false;
  set_value(key, colour_to_text(colour));
  return true;
}

bool wx_xml_config_t::write(const std::string& key, const wxFont& font) {
  if (!font.IsOk()) return false;
  set_value(key, font_to_text(font));
  return true;
}

void wx_xml_config_t::write(const std::string& key, int number) {
  set_value(key, std::to_string(number));
}

void wx_xml_config_t::write(const std::string& key, const char* text) {
  wxCHECK_RET(text != nullptr, "a null text is not a value");
  set_value(key, text);
}

void wx_xml_config_t::write(const std::string& key, const std::string& text) {
  set_value(key, text);
}

void wx_xml_config_t::write(const std::string& key, const wxString& text) {
  set_value(key, text.utf8_string());
}

std::string wx_xml_config_t::colour_to_text(const wxColour& colour) {
  const long flags = colour.Alpha() == wxALPHA_OPAQUE ? wxC2S_HTML_SYNTAX : wxC2S_CSS_SYNTAX;
  return colour.GetAsString(flags).utf8_string();
}

std::string wx_xml_config_t::font_to_text(const wxFont& font) {
  return font.GetNativeFontInfoUserDesc().utf8_string();
}

std::string user_config_path(const std::string& app_name, const std::string& file_name) {
  static const log4cplus::Logger logger = log::get_logger("orvix.settings");
  if (!is_plain_name(app_name) || !is_plain_name(file_name)) {
    ORVIX_LOG_ERROR(logger, "no settings path for \"" << app_name << "\" and \"" << file_name
                                                       << "\": both must be plain names");
    return std::string();
  }
  const std::string home = config_home();
  if (home.empty()) {
    ORVIX_LOG_ERROR(logger, "no settings path for \"" << app_name
                                                       << "\": neither XDG_CONFIG_HOME nor HOME "
                                                          "is an absolute folder");
    return std::string();
  }
  return (talvar2::path_t(home) / app_name / file_name).as_string();
}

}  // namespace orvix1
