#include "support/log_capture.h"

namespace orvix1_test {

class log_capture_t::appender_t : public log4cplus::Appender {
 public:
  ~appender_t() override { destructorImpl(); }
  std::vector<captured_log_t> entries;
  void close() override {}

 protected:
  void append(const log4cplus::spi::InternalLoggingEvent& event) override {
    entries.push_back({event.getLoggerName(), static_cast<int>(event.getLogLevel()),
                       event.getMessage(), event.getFile(), event.getLine()});
  }
};

log_capture_t::log_capture_t(const char* logger_name)
    : m_logger(log4cplus::Logger::getInstance(logger_name)), m_appender(new appender_t) {
  m_logger.addAppender(m_appender);
}

log_capture_t::~log_capture_t() {
  m_logger.removeAppender(m_appender);
  m_appender->close();
}

const std::vector<captured_log_t>& log_capture_t::entries() const {
  return static_cast<const appender_t&>(*m_appender).entries;
}

size_t log_capture_t::at_level(int level) const {
  size_t count = 0;
  for (const captured_log_t& entry : entries()) count += entry.level == level ? 1 : 0;
  return count;
}

size_t log_capture_t::warnings() const { return at_level(log4cplus::WARN_LOG_LEVEL); }

size_t log_capture_t::errors() const { return at_level(log4cplus::ERROR_LOG_LEVEL); }

}  // namespace orvix1_test
