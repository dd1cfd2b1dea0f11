#ifndef ORVIX1_TESTS_FAKE_PROGRAMS_H
#define ORVIX1_TESTS_FAKE_PROGRAMS_H

// Fake programs: shell scripts in a scratch folder that is the whole PATH
// while the object lives. A fake viewer records its start in a marker file
// (written whole, by rename); a fake "whereis" records each name asked for.

#include <chrono>
#include <cstdlib>
#include <dirent.h>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "support/scratch_dir.h"

namespace orvix1_test {

inline std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> result;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) result.push_back(line);
  return result;
}

// Waits for a file the launched program writes: it runs in a process of its
// own, so there is nothing to pump; gives up after 10 s.
inline bool wait_for_file(const std::string& path) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (::access(path.c_str(), F_OK) != 0) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return true;
}

struct started_program_t {
  long pid = 0;
  std::vector<std::string> arguments;
};

class fake_programs_t {
 public:
  // `path_tail` follows the fake folder in PATH ("" for nothing else).
  explicit fake_programs_t(const std::string& path_tail = "") : m_saved_path(std::getenv("PATH")) {
    ::mkdir(bin().c_str(), 0755);
    ::setenv("PATH", (path_tail.empty() ? bin() : bin() + ":" + path_tail).c_str(), 1);
  }
  ~fake_programs_t() { ::setenv("PATH", m_saved_path.c_str(), 1); }

  const scratch_folder_t& folder() const { return m_folder; }
  std::string program(const std::string& name) const { return bin() + "/" + name; }

  void add_viewer(const std::string& name) const { add_file(name, record_start(name), 0755); }
  // Runs on until release() (10 s at most), then records its end.
  void add_lingering_viewer(const std::string& name) const {
    add_file(name, record_start(name) + "i=0\nwhile [ ! -e '" + m_folder.file(name + ".release") +
                       "' ] && [ $i -lt 1000 ]; do /bin/sleep 0.01; i=$((i+1)); done\n: > '" +
                       m_folder.file(name + ".ended") + "'\n", 0755);
  }
  void release(const std::string& name) const { m_folder.write(name + ".release", ""); }
  bool wait_for_end(const std::string& name) const { return wait_for_file(m_folder.file(name + ".ended")); }
  void add_whereis() const {
    add_file("whereis", "echo \"$1\" >> '" + m_folder.file("whereis.calls") + "'\nif [ -x '" + bin() +
                            "'/\"$1\" ]; then echo \"$1: " + bin() + "/$1\"; else echo \"$1:\"; fi\n", 0755);
  }
  void add_non_executable(const std::string& name) const { add_file(name, "not a program\n", 0644); }

  std::vector<std::string> whereis_calls() const { return lines_of(m_folder.read("whereis.calls")); }

  // A pid of 0 when the program did not start.
  started_program_t wait_for_start(const std::string& name) const {
    started_program_t start;
    if (!wait_for_file(m_folder.file(name + ".started"))) return start;
    const std::vector<std::string> recorded = lines_of(m_folder.read(name + ".started"));
    start.pid = std::stol(recorded.at(0));
    start.arguments.assign(recorded.begin() + 2, recorded.end());
    return start;
  }

 private:
  // Script lines writing the process id, the argument count and the arguments.
  std::string record_start(const std::string& name) const {
    const std::string marker = m_folder.file(name + ".started");
    return "printf '%s\\n' \"$$\" \"$#\" \"$@\" > '" + marker + ".part' && /bin/mv '" + marker + ".part' '" +
           marker + "'\n";
  }
  void add_file(const std::string& name, const std::string& body, mode_t mode) const {
    std::ofstream(program(name)) << (mode & 0100 ? "#!/bin/sh\n" : "") << body;
    ::chmod(program(name).c_str(), mode);
  }

  std::string bin() const { return m_folder.file("bin"); }

  scratch_folder_t m_folder;
  std::string m_saved_path;
};

// The parent id and state letter of `pid` from /proc; false when it is gone.
inline bool read_process_state(long pid, long& parent, char& state) {
  std::ifstream stat_file("/proc/" + std::to_string(pid) + "/stat");
  const std::string text((std::istreambuf_iterator<char>(stat_file)), std::istreambuf_iterator<char>());
  const std::string::size_type name_end = text.rfind(')');
  std::istringstream fields(name_end == std::string::npos ? "" : text.substr(name_end + 1));
  return static_cast<bool>(fields >> state >> parent);
}

inline std::vector<long> zombie_children() {
  std::vector<long> zombies;
  DIR* proc = ::opendir("/proc");
  while (const dirent* entry = proc != nullptr ? ::readdir(proc) : nullptr) {
    char* end = nullptr;
    const long pid = std::strtol(entry->d_name, &end, 10);
    long parent = 0;
    char state = 0;
    if (*end == '\0' && pid > 0 && read_process_state(pid, parent, state) && parent == ::getpid() && state == 'Z')
      zombies.push_back(pid);
  }
  if (proc != nullptr) ::closedir(proc);
  return zombies;
}

}  // namespace orvix1_test

#endif
