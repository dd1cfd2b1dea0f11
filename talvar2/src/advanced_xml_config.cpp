#include "talvar2/xml/advanced_xml_config.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include <pugixml.hpp>

namespace talvar2 {
namespace {

const char* const k_value_element = "value";
const char* const k_key_attribute = "key";

void set_error(std::string* error, const std::string& text) {
  if (error != nullptr) *error = text;
}

std::string system_error(const std::string& what, const std::string& path) {
  return what + " \"" + path + "\": " + std::strerror(errno);
}

// The file mode a new settings file gets: the old file's, or rw-r--r--.
mode_t mode_for(const std::string& path) {
  struct stat info;
  if (::stat(path.c_str(), &info) == 0) return info.st_mode & 07777;
  return 0644;
}

// Writes the document to a fresh temporary file in the target's folder and
// renames it over the target.
bool write_atomically(const pugi::xml_document& document, const path_t& path,
                      std::string* error) {
  // mkstemp replaces the six trailing X's with a unique suffix.
  std::string temporary = path.as_string() + "." + std::string(6, 'X');
  const int descriptor = ::mkstemp(&temporary[0]);
  if (descriptor < 0) {
    set_error(error, system_error("cannot create a temporary file for", path.as_string()));
    return false;
  }
  ::fchmod(descriptor, mode_for(path.as_string()));
  FILE* file = ::fdopen(descriptor, "wb");
  if (file == nullptr) {
    set_error(error, system_error("cannot write", temporary));
    ::close(descriptor);
    ::unlink(temporary.c_str());
    return false;
  }
  pugi::xml_writer_file writer(file);
  document.save(writer, "  ", pugi::format_default, pugi::encoding_utf8);
  const bool written = std::ferror(file) == 0 && std::fflush(file) == 0 && ::fsync(descriptor) == 0;
  const bool closed = std::fclose(file) == 0;
  if (!written || !closed) {
    set_error(error, system_error("cannot write", temporary));
    ::unlink(temporary.c_str());
    return false;
  }
  if (std::rename(temporary.c_str(), path.as_string().c_str()) != 0) {
    set_error(error, system_error("cannot replace", path.as_string()));
    ::unlink(temporary.c_str());
    return false;
  }
  return true;
}

// Makes `folder` and any missing folders above it. New folders are private
// (rwx------): settings folders hold a user's own choices, and the base
// folder rules of the desktop ask for that mode.
bool make_folders(const path_t& folder, std::string* error) {
  if (folder.is_directory()) return true;
  const path_t above = folder.parent();
  if (above != folder && !make_folders(above, error)) return false;
  if (::mkdir(folder.as_string().c_str(), 0700) == 0 || errno == EEXIST) {
    if (folder.is_directory()) return true;
    errno = ENOTDIR;
  }
  set_error(error, system_error("cannot create the folder", folder.as_string()));
  return false;
}

// Settings files are a few kilobytes; anything this large is not one, and
// reading it whole would stall the caller.
constexpr off_t k_largest_settings_file = 16 * 1024 * 1024;

// Why the path cannot be read as a settings file; empty when it can. A FIFO
// or a device would block or never end, so only regular files are read.
std::string unreadable_reason(const path_t& path) {
  const std::string& name = path.as_string();
  struct stat info;
  if (::stat(name.c_str(), &info) != 0)
    return errno == ENOENT ? "\"" + name + "\" does not exist" : system_error("cannot read", name);
  if (S_ISDIR(info.st_mode)) return "\"" + name + "\" is a folder, not a settings file";
  if (!S_ISREG(info.st_mode)) return "\"" + name + "\" is not a regular file";
  if (info.st_size > k_largest_settings_file)
    return "\"" + name + "\" is too large for a settings file (" + std::to_string(info.st_size) +
           " bytes)";
  return std::string();
}

}  // namespace

advanced_xml_config_t::advanced_xml_config_t() = default;
advanced_xml_config_t::~advanced_xml_config_t() = default;

bool advanced_xml_config_t::load(const path_t& path, std::string* error) {
  const std::string reason = unreadable_reason(path);
  if (!reason.empty()) {
    set_error(error, reason);
    return false;
  }
  pugi::xml_document document;
  // Values come back as they were saved: line ends are not normalised (a
  // carriage return is saved as a character reference) and a value of
  // blanks alone is kept.
  const unsigned parse_options =
      (pugi::parse_default & ~pugi::parse_eol) | pugi::parse_ws_pcdata_single;
  const pugi::xml_parse_result parsed =
      document.load_file(path.as_string().c_str(), parse_options);
  if (!parsed) {
    set_error(error, "cannot read \"" + path.as_string() + "\": " + parsed.description() +
                         " at offset " + std::to_string(parsed.offset));
    return false;
  }
  const pugi::xml_node root = document.document_element();
  if (std::strcmp(root.name(), root_name()) != 0) {
    set_error(error, "\"" + path.as_string() + "\" is not a settings file (its root is <" +
                         root.name() + ">)");
    return false;
  }
  for (const pugi::xml_node node : root.children(k_value_element)) {
    const std::string key = node.attribute(k_key_attribute).as_string();
    if (!key.empty()) set_value(key, node.child_value());
  }
  return true;
}

bool advanced_xml_config_t::save(const path_t& path, std::string* error) const {
  if (path.is_directory()) {
    set_error(error, "\"" + path.as_string() + "\" is a folder, not a settings file");
    return false;
  }
  pugi::xml_document document;
  pugi::xml_node declaration = document.append_child(pugi::node_declaration);
  declaration.append_attribute("version") = "1.0";
  declaration.append_attribute("encoding") = "UTF-8";
  pugi::xml_node root = document.append_child(root_name());
  for (const std::string& key : m_order) {
    pugi::xml_node node = root.append_child(k_value_element);
    node.append_attribute(k_key_attribute) = key.c_str();
    node.text().set(m_values.at(key).c_str());
  }
  if (!make_folders(path.parent(), error)) return false;
  return write_atomically(document, path, error);
}

bool advanced_xml_config_t::has_value(const std::string& key) const {
  return m_values.count(key) != 0;
}

bool advanced_xml_config_t::get_value(const std::string& key, std::string& value) const {
  const auto found = m_values.find(key);
  if (found == m_values.end()) return false;
  value = found->second;
  return true;
}

void advanced_xml_config_t::set_value(const std::string& key, const std::string& value) {
  if (m_values.count(key) == 0) m_order.push_back(key);
  m_values[key] = value;
}

bool advanced_xml_config_t::remove_value(const std::string& key) {
  if (m_values.erase(key) == 0) return false;
  m_order.erase(std::find(m_order.begin(), m_order.end(), key));
  return true;
}

void advanced_xml_config_t::clear() {
  m_values.clear();
  m_order.clear();
}

std::vector<std::string> advanced_xml_config_t::keys() const { return m_order; }

}  // namespace talvar2
