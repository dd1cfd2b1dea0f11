#ifndef TALVAR2_XML_ADVANCED_XML_CONFIG_H
#define TALVAR2_XML_ADVANCED_XML_CONFIG_H
/// @file
/// A settings file: named text values in a small XML document that people can
/// read and edit by hand:
///
///     <?xml version="1.0" encoding="UTF-8"?>
///     <settings>
///       <value key="color_0">#FFFFFF</value>
///       <value key="metric_3">500</value>
///     </settings>
///
/// Keys are unique; values are kept exactly as written (no trimming).

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "talvar2/export.h"
#include "talvar2/path.h"

namespace talvar2 {
/// A settings file: named text values in a small XML document.
class TALVAR2_API advanced_xml_config_t {
 public:
  advanced_xml_config_t();
  virtual ~advanced_xml_config_t();
  advanced_xml_config_t(const advanced_xml_config_t&) = delete;
  advanced_xml_config_t& operator=(const advanced_xml_config_t&) = delete;

  /// Reads a settings file. All or nothing: on failure (missing, unreadable,
  /// a folder, not XML, not a settings document) the values held so far stay
  /// and `error` (when given) says why.
  bool load(const path_t& path, std::string* error = nullptr);

  /// Writes the values. Atomic: a temporary file beside the target is written,
  /// flushed to disk and renamed over it, so a crash never leaves half a file.
  /// Missing folders on the way are made first (mode rwx------). On failure
  /// (a part of the path is a file, no permission, disk full) the old file
  /// stays as it was and `error` (when given) says why; folders made before
  /// the failure stay.
  bool save(const path_t& path, std::string* error = nullptr) const;

  bool has_value(const std::string& key) const;
  /// False (and `value` untouched) when the key is absent.
  bool get_value(const std::string& key, std::string& value) const;
  void set_value(const std::string& key, const std::string& value);
  bool remove_value(const std::string& key);
  void clear();
  /// The keys in the order they were first set or read.
  std::vector<std::string> keys() const;

  /// The document's root element name.
  static const char* root_name() { return "settings"; }

 private:
  std::vector<std::string> m_order;
  std::map<std::string, std::string> m_values;
};

}  // namespace talvar2

#endif
