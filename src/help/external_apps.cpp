#include "orvix1/external_apps.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/log.h"

namespace orvix1 {
namespace {

// The status of a child whose exec failed, as a shell reports a command it
// cannot run.
constexpr int k_exec_failed_status = 127;

// How long a program lookup may take before it is given up.
constexpr std::chrono::milliseconds k_lookup_timeout(5000);

log4cplus::Logger help_logger() { return log::get_logger("orvix.help"); }

std::string error_text(int error) { return std::strerror(error); }

// Both ends of a pipe; what is still open is closed on destruction (in the
// parent: a forked child leaves through exec or _exit).
class pipe_t {
 public:
  pipe_t() = default;
  ~pipe_t() {
    close_read();
    close_write();
  }
  pipe_t(const pipe_t&) = delete;
  pipe_t& operator=(const pipe_t&) = delete;

  bool open(int flags) { return ::pipe2(m_fds, flags) == 0; }
  int read_end() const { return m_fds[0]; }
  int write_end() const { return m_fds[1]; }
  void close_read() { close_end(m_fds[0]); }
  void close_write() { close_end(m_fds[1]); }

 private:
  static void close_end(int& fd) {
    if (fd >= 0) ::close(fd);
    fd = -1;
  }

  int m_fds[2] = {-1, -1};
};

bool mark_close_on_exec(int fd) {
  const int flags = ::fcntl(fd, F_GETFD);
  if (flags == -1) return false;
  return ::fcntl(fd, F_SETFD, flags | FD_CLOEXEC) != -1;
}

void write_fully(int fd, const void* data, std::size_t size) {
  const char* bytes = static_cast<const char*>(data);
  while (size > 0) {
    const ssize_t written = ::write(fd, bytes, size);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return;
    bytes += written;
    size -= static_cast<std::size_t>(written);
  }
}

[[noreturn]] void report_exec_error_and_exit(int error_fd, int error) {
  if (error_fd >= 0) {
    write_fully(error_fd, &error, sizeof error);
    ::close(error_fd);
  }
  // Not exit(): the host's atexit handlers and static destructors (wx,
  // logging, open windows) belong to the parent and must not run twice.
  ::_exit(k_exec_failed_status);
}

// What a started program should not inherit from the host: blocked signals,
// an ignored SIGCHLD or SIGPIPE (ignored dispositions survive exec), and the
// host's open descriptors other than the standard three (they are closed by
// the exec, so an error descriptor still works until then).
void leave_host_state_behind() {
  sigset_t none;
  sigemptyset(&none);
  ::pthread_sigmask(SIG_SETMASK, &none, nullptr);
  ::signal(SIGCHLD, SIG_DFL);
  ::signal(SIGPIPE, SIG_DFL);
  ::close_range(3, ~0U, CLOSE_RANGE_CLOEXEC);  // best effort: older kernels lack it
}

// Collects a child; false when it did not end with status 0. A child that is
// already gone (the host ignores SIGCHLD or reaped it) counts as clean.
bool reap(pid_t child) {
  int status = 0;
  while (::waitpid(child, &status, 0) == -1) {
    if (errno != EINTR) return errno == ECHILD;
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// The launcher child: forks the program off and ends at once, so that the
// program is no child of the host and the host has nothing to reap later.
[[noreturn]] void launch_detached(const std::string& program,
                                  const std::vector<std::string>& arguments, pipe_t& report) {
  report.close_read();
  const pid_t grandchild = ::fork();
  if (grandchild == 0) {
    leave_host_state_behind();
    run_app_in_child_process(program, arguments, report.write_end());
  }
  if (grandchild < 0) report_exec_error_and_exit(report.write_end(), errno);
  ::_exit(0);
}

enum class exec_report_t { executed, failed, unreadable };

// Reads the child's report: end of file without a byte means the exec
// closed the pipe (success), the 4 bytes of an errno mean it failed.
exec_report_t read_exec_report(int fd, int& error) {
  char buffer[sizeof(int)];
  std::size_t received = 0;
  while (received < sizeof buffer) {
    const ssize_t count = ::read(fd, buffer + received, sizeof buffer - received);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) {
      error = errno;
      return exec_report_t::unreadable;
    }
    if (count == 0) break;
    received += static_cast<std::size_t>(count);
  }
  if (received == 0) return exec_report_t::executed;
  error = 0;
  if (received == sizeof buffer) std::memcpy(&error, buffer, sizeof error);
  return exec_report_t::failed;
}

// Reads everything `fd` delivers until end of file; false when that takes
// longer than `timeout` or reading fails.
bool read_all(int fd, std::chrono::milliseconds timeout, std::string& text) {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  char buffer[512];
  for (;;) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        deadline - std::chrono::steady_clock::now());
    if (left.count() <= 0) return false;
    pollfd readable{fd, POLLIN, 0};
    const int ready = ::poll(&readable, 1, static_cast<int>(left.count()));
    if (ready < 0 && errno == EINTR) continue;
    if (ready <= 0) return false;
    const ssize_t count = ::read(fd, buffer, sizeof buffer);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    if (count == 0) return true;
    text.append(buffer, static_cast<std::size_t>(count));
  }
}

// The first path in the output of "whereis NAME": "NAME: path path ...".
std::string first_listed_path(const std::string& output, const std::string& name) {
  const char* blanks = " \t\r\n";
  std::string::size_type colon = std::string::npos;
  if (output.compare(0, name.size() + 1, name + ":") == 0) colon = name.size();
  else colon = output.find(':');
  if (colon == std::string::npos) return std::string();
  const std::string::size_type start = output.find_first_not_of(blanks, colon + 1);
  if (start == std::string::npos) return std::string();
  return output.substr(start, output.find_first_of(blanks, start) - start);
}

// Asks the system's "whereis" where `program` is; empty when it knows no
// place. The lookup is bounded: a "whereis" that hangs is killed.
std::string locate_program(const std::string& program) {
  pipe_t output;
  if (!output.open(O_CLOEXEC)) {
    ORVIX_LOG_ERROR(help_logger(), "cannot create a pipe to locate '" << program
                                       << "': " << error_text(errno));
    return std::string();
  }
  const pid_t child = ::fork();
  if (child < 0) {
    ORVIX_LOG_ERROR(help_logger(), "cannot fork to locate '" << program
                                       << "': " << error_text(errno));
    return std::string();
  }
  if (child == 0) {
    // dup2 leaves the new standard output open across the exec.
    if (::dup2(output.write_end(), STDOUT_FILENO) == -1) ::_exit(k_exec_failed_status);
    leave_host_state_behind();
    run_app_in_child_process("whereis", {program}, -1);
  }
  output.close_write();
  std::string text;
  const bool complete = read_all(output.read_end(), k_lookup_timeout, text);
  if (!complete) ::kill(child, SIGKILL);
  const bool clean = reap(child);
  if (!complete) {
    ORVIX_LOG_WARNING(help_logger(), "\"whereis " << program << "\" gave no answer in time");
    return std::string();
  }
  if (!clean && text.empty()) {
    ORVIX_LOG_WARNING(help_logger(), "\"whereis\" could not be run to locate '" << program << "'");
    return std::string();
  }
  return first_listed_path(text, program);
}

}  // namespace

void run_app_in_child_process(const std::string& program,
                              const std::vector<std::string>& arguments, int error_fd) {
  // Names and arguments are already the bytes the system expects: file
  // names are UTF-8 throughout the library.
  std::vector<char*> argv;
  argv.reserve(arguments.size() + 2);
  argv.push_back(const_cast<char*>(program.c_str()));
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  ::execvp(program.c_str(), argv.data());
  report_exec_error_and_exit(error_fd, errno);
}

bool run_app_with_params(const std::string& program, const std::vector<std::string>& arguments) {
  if (program.empty()) {
    ORVIX_LOG_WARNING(help_logger(), "no program to start");
    return false;
  }
  pipe_t report;
  if (!report.open(0)) {
    ORVIX_LOG_ERROR(help_logger(), "cannot create a pipe to start '" << program
                                       << "': " << error_text(errno));
    return false;
  }
  // The exec closes the write end: the parent's read then ends without data.
  if (!mark_close_on_exec(report.write_end())) {
    ORVIX_LOG_ERROR(help_logger(), "cannot prepare the pipe to start '" << program
                                       << "': " << error_text(errno));
    return false;
  }
  const pid_t launcher = ::fork();
  if (launcher < 0) {
    ORVIX_LOG_ERROR(help_logger(), "cannot fork to start '" << program
                                       << "': " << error_text(errno));
    return false;
  }
  if (launcher == 0) launch_detached(program, arguments, report);

  report.close_write();
  const bool launcher_clean = reap(launcher);
  int error = 0;
  switch (read_exec_report(report.read_end(), error)) {
    case exec_report_t::failed:
      ORVIX_LOG_WARNING(help_logger(), "cannot start '" << program << "': " << error_text(error));
      return false;
    case exec_report_t::unreadable:
      ORVIX_LOG_ERROR(help_logger(), "cannot learn whether '" << program
                                         << "' started: " << error_text(error));
      return false;
    case exec_report_t::executed:
      break;
  }
  if (!launcher_clean) {
    ORVIX_LOG_WARNING(help_logger(), "the launcher of '" << program << "' ended abnormally");
    return false;
  }
  return true;
}

bool run_app_with_file(const std::string& program, const talvar2::path_t& file) {
  if (program.empty()) {
    ORVIX_LOG_WARNING(help_logger(), "no program to open '" << file.as_string() << "' with");
    return false;
  }
  const std::vector<std::string> arguments{file.as_string()};
  if (talvar2::path_t(program).exists()) {
    // A bare name would be searched along PATH instead of meaning this file.
    const bool has_folder = program.find('/') != std::string::npos;
    return run_app_with_params(has_folder ? program : "./" + program, arguments);
  }
  const std::string found = locate_program(program);
  if (found.empty()) {
    ORVIX_LOG_DEBUG(help_logger(), "'" << program << "' is not installed");
    return false;
  }
  return run_app_with_params(found, arguments);
}

}  // namespace orvix1
