#ifndef ORVIX1_TESTS_SCRATCH_DIR_H
#define ORVIX1_TESTS_SCRATCH_DIR_H

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include <dirent.h>

namespace orvix1_test {

// A fresh folder under /tmp for one test, removed with everything in it.
class scratch_folder_t {
 public:
  scratch_folder_t() {
    char pattern[] = "/tmp/orvix-test-XXXXXX";
    m_path = ::mkdtemp(pattern);
  }
  ~scratch_folder_t() {
    const std::string command = "rm -rf '" + m_path + "'";
    if (std::system(command.c_str()) != 0) std::perror("rm");
  }
  scratch_folder_t(const scratch_folder_t&) = delete;
  scratch_folder_t& operator=(const scratch_folder_t&) = delete;

  const std::string& path() const { return m_path; }
  std::string file(const std::string& name) const { return m_path + "/" + name; }

  void write(const std::string& name, const std::string& content) const {
    std::ofstream(file(name), std::ios::binary) << content;
  }
  std::string read(const std::string& name) const {
    std::ifstream in(file(name), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }
  std::vector<std::string> entries() const {
    std::vector<std::string> names;
    if (DIR* dir = ::opendir(m_path.c_str())) {
      while (const dirent* entry = ::readdir(dir)) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..") names.push_back(name);
      }
      ::closedir(dir);
    }
    return names;
  }

 private:
  std::string m_path;
};

}  // namespace orvix1_test

#endif
