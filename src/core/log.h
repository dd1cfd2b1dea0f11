#ifndef ORVIX1_SRC_LOG_H
#define ORVIX1_SRC_LOG_H

#include "core/log4cplus_headers.h"

#include <sstream>
#include <string>

namespace orvix1 {
namespace log {

// The library's loggers, all under "orvix" ("orvix.native", "orvix.dialogs", ...).
log4cplus::Logger get_logger(const char* name);

// Error and warning messages are always written (forced past level checks),
// with the source file and line. An error also raises a debug assertion with
// the message as its text when ORVIX_DEBUG_USE_RELEASE_ASSERT is non-empty.
//
// Which level, judged from the call that writes the message:
// - A warning means input was ignored: a value, an entry of a file or a
//   candidate could not be used and the call went on without it (to the rest
//   of the file, the next archive, viewer or help source, a still picture).
//   Lookups that yield an empty value their callers go on with (resources,
//   pictures), program starts and the help openers are such candidates: the
//   library itself tries them in turn, so they warn, and the loss, if any, is
//   reported where the chain ends.
// - An error means work was lost: something the caller asked for did not
//   happen (nothing loaded, saved, split, set, added or started), or the
//   machine refused the means to do it (memory, pipes, processes), which no
//   other candidate would escape.
// Messages whose level the library has always documented keep it, even where
// this rule would choose the other one (the scheduler's, see Scheduler.cpp;
// show_error_dlg logs the host's message as an error).
void write_error(const log4cplus::Logger& logger, const std::string& message, const char* file,
                 int line, const char* function);
void write_warning(const log4cplus::Logger& logger, const std::string& message, const char* file,
                   int line, const char* function);

}  // namespace log
}  // namespace orvix1

#define ORVIX_LOG_ERROR(logger, stream_expression)                                        \
  do {                                                                                    \
    std::ostringstream orvix_log_stream_;                                                 \
    orvix_log_stream_ << stream_expression;                                               \
    ::orvix1::log::write_error(logger, orvix_log_stream_.str(), __FILE__, __LINE__,       \
                               __PRETTY_FUNCTION__);                                      \
  } while (0)

#define ORVIX_LOG_WARNING(logger, stream_expression)                                      \
  do {                                                                                    \
    std::ostringstream orvix_log_stream_;                                                 \
    orvix_log_stream_ << stream_expression;                                               \
    ::orvix1::log::write_warning(logger, orvix_log_stream_.str(), __FILE__, __LINE__,     \
                                 __PRETTY_FUNCTION__);                                    \
  } while (0)

#define ORVIX_LOG_DEBUG(logger, stream_expression) LOG4CPLUS_DEBUG(logger, stream_expression)
#define ORVIX_LOG_INFO(logger, stream_expression) LOG4CPLUS_INFO(logger, stream_expression)

#endif
