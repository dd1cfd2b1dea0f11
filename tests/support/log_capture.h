#ifndef ORVIX1_TESTS_LOG_CAPTURE_H
#define ORVIX1_TESTS_LOG_CAPTURE_H

// Captures what the library's loggers write while it is alive.

#include "core/log.h"  // the library's one way into log4cplus

#include <string>
#include <vector>

namespace orvix1_test {

struct captured_log_t {
  std::string logger;
  int level = 0;
  std::string message;
  std::string file;
  int line = 0;
};

class log_capture_t {
 public:
  explicit log_capture_t(const char* logger_name = "orvix");
  ~log_capture_t();
  log_capture_t(const log_capture_t&) = delete;
  log_capture_t& operator=(const log_capture_t&) = delete;

  const std::vector<captured_log_t>& entries() const;
  size_t warnings() const;
  size_t errors() const;

 private:
  size_t at_level(int level) const;
  class appender_t;
  log4cplus::Logger m_logger;
  log4cplus::SharedAppenderPtr m_appender;
};

}  // namespace orvix1_test

#endif
