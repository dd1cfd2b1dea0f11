#include "core/log.h"

#include <memory>

#include "talvar2/debug/assertion.h"
#include "talvar2/environment.h"

namespace orvix1 {
namespace log {
namespace {

// Configures the "orvix" loggers once, when the library is loaded. A host that
// configured log4cplus itself (an appender on "orvix" or on the root) keeps
// its configuration; otherwise messages go to stderr with file and line.
class logging_setup_t {
 public:
  logging_setup_t() {
    log4cplus::Logger orvix = log4cplus::Logger::getInstance("orvix");
    if (!orvix.getAllAppenders().empty() ||
        !log4cplus::Logger::getRoot().getAllAppenders().empty())
      return;
    log4cplus::SharedAppenderPtr appender(new log4cplus::ConsoleAppender(true, true));
    appender->setLayout(std::make_unique<log4cplus::PatternLayout>(
        "%D{%H:%M:%S.%q} %-5p %c: %m (%b:%L)%n"));
    orvix.addAppender(appender);
    orvix.setAdditivity(false);
    orvix.setLogLevel(log4cplus::WARN_LOG_LEVEL);
  }

 private:
  log4cplus::Initializer m_initializer;
};

const logging_setup_t g_logging_setup;

void write_forced(const log4cplus::Logger& logger, log4cplus::LogLevel level,
                  const std::string& message, const char* file, int line, const char* function) {
  logger.forcedLog(level, message, file, line, function);
}

}  // namespace

log4cplus::Logger get_logger(const char* name) { return log4cplus::Logger::getInstance(name); }

void write_error(const log4cplus::Logger& logger, const std::string& message, const char* file,
                 int line, const char* function) {
  write_forced(logger, log4cplus::ERROR_LOG_LEVEL, message, file, line, function);
  if (talvar2::environment_flag_set("ORVIX_DEBUG_USE_RELEASE_ASSERT"))
    talvar2::debug::assertion_failed(message.c_str(), file, line, function);
}

void write_warning(const log4cplus::Logger& logger, const std::string& message, const char* file,
                   int line, const char* function) {
  write_forced(logger, log4cplus::WARN_LOG_LEVEL, message, file, line, function);
}

}  // namespace log
}  // namespace orvix1
