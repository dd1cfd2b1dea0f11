#ifndef TALVAR2_DEBUG_ASSERTION_H
#define TALVAR2_DEBUG_ASSERTION_H

#include <functional>

#include "talvar2/export.h"

namespace talvar2 {
namespace debug {

/// Receives a failed debug assertion: the expression text, the path of the
/// source that raised it, the line and the full signature of the function.
using assertion_handler_t =
    std::function<void(const char* expression, const char* file, int line, const char* function)>;

/// Reports a failed assertion to the installed handler and returns: callers
/// go on with an empty result. Safe to call from any thread.
TALVAR2_API void assertion_failed(const char* expression, const char* file, int line,
                                  const char* function);

/// Installs a handler and returns the one it replaces. An empty handler
/// restores the default, which writes one line to stderr.
TALVAR2_API assertion_handler_t set_assertion_handler(assertion_handler_t handler);

/// Writes the report line of the default handler to stderr.
TALVAR2_API void print_assertion(const char* expression, const char* file, int line,
                                 const char* function);

}  // namespace debug
}  // namespace talvar2

/// Asserts `condition`, reporting `text` at a fixed `file` and `line`: the
/// template parts of the library report stable locations that hosts filter on.
#define TALVAR2_ASSERT_AT(condition, text, file, line)                                  \
  do {                                                                                  \
    if (!(condition)) ::talvar2::debug::assertion_failed(text, file, line, __PRETTY_FUNCTION__); \
  } while (0)

#define TALVAR2_ASSERT(condition) TALVAR2_ASSERT_AT(condition, #condition, __FILE__, __LINE__)

#endif
