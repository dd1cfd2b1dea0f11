#include "talvar2/path.h"

#include <sys/stat.h>

namespace talvar2 {
namespace {

bool stat_path(const std::string& path, struct stat& info) {
  return !path.empty() && ::stat(path.c_str(), &info) == 0;
}

}  // namespace

bool path_t::exists() const {
  struct stat info;
  return stat_path(m_path, info);
}

bool path_t::is_directory() const {
  struct stat info;
  return stat_path(m_path, info) && S_ISDIR(info.st_mode);
}

bool path_t::is_regular_file() const {
  struct stat info;
  return stat_path(m_path, info) && S_ISREG(info.st_mode);
}

path_t path_t::parent() const {
  std::string path = m_path;
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  const std::string::size_type slash = path.rfind('/');
  if (slash == std::string::npos) return path_t(".");
  if (slash == 0) return path_t("/");
  return path_t(path.substr(0, slash));
}

std::string path_t::filename() const {
  std::string path = m_path;
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  const std::string::size_type slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

path_t path_t::operator/(const std::string& child) const {
  if (m_path.empty()) return path_t(child);
  if (m_path.back() == '/') return path_t(m_path + child);
  return path_t(m_path + "/" + child);
}

}  // namespace talvar2
