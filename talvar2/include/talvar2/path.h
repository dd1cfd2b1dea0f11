#ifndef TALVAR2_PATH_H
#define TALVAR2_PATH_H

#include <string>

#include "talvar2/export.h"

namespace talvar2 {

/// A file-system path as UTF-8 text.
class TALVAR2_API path_t {
 public:
  path_t() = default;
  path_t(std::string path) : m_path(std::move(path)) {}  // NOLINT: converts like a string
  path_t(const char* path) : m_path(path != nullptr ? path : "") {}  // NOLINT

  const std::string& as_string() const { return m_path; }
  bool empty() const { return m_path.empty(); }

  /// Whether anything (file, folder, ...) exists at the path.
  bool exists() const;
  bool is_directory() const;
  bool is_regular_file() const;

  /// The folder part ("." for a bare file name) and the last component.
  path_t parent() const;
  std::string filename() const;

  /// This path with `child` appended as a further component.
  path_t operator/(const std::string& child) const;

  bool operator==(const path_t& other) const { return m_path == other.m_path; }
  bool operator!=(const path_t& other) const { return m_path != other.m_path; }

 private:
  std::string m_path;
};

}  // namespace talvar2

#endif
