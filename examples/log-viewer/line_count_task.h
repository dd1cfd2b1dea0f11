#ifndef LOG_VIEWER_LINE_COUNT_TASK_H
#define LOG_VIEWER_LINE_COUNT_TASK_H

#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

#include <orvix1/tasks/ITask.h>
#include <talvar2/functor/signal.h>

// Counts the lines of a file on a worker of the "service" unit. A last line
// without a newline counts too. Progress goes out in bytes, once per chunk.
class line_count_task_t : public orvix1::tasks::DefaultTaskImpl {
 public:
  // (lines, complete) on the GUI thread; complete is false when the count
  // was canceled or the file could not be read.
  talvar2::signal_t<std::uint64_t, bool> finished;

  explicit line_count_task_t(std::string path) : m_path(std::move(path)) {}

  void DoTask() override {
    std::ifstream file(m_path, std::ios::binary);
    if (!file) return;
    file.seekg(0, std::ios::end);
    const std::uint64_t total = static_cast<std::uint64_t>(file.tellg());
    file.seekg(0);
    std::vector<char> chunk(64 * 1024);
    std::uint64_t done = 0, lines = 0;
    char last = '\n';
    while (!IsCanceled()) {
      file.read(chunk.data(), static_cast<std::streamsize>(chunk.size()));
      const auto read = static_cast<std::size_t>(file.gcount());
      if (read == 0) break;
      for (std::size_t i = 0; i < read; ++i) lines += chunk[i] == '\n' ? 1 : 0;
      last = chunk[read - 1];
      done += read;
      ReportProgress(done, total, m_path);
    }
    if (IsCanceled() || done != total) return;
    m_lines = lines + (last != '\n' ? 1 : 0);
    m_complete = true;
  }

  // On the GUI thread, after every progress delivery; DoTask is over.
  void TaskFinished() override { finished(m_lines, m_complete && !IsCanceled()); }

 private:
  const std::string m_path;
  std::uint64_t m_lines = 0;
  bool m_complete = false;
};

#endif
