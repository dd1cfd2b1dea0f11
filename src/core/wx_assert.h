#ifndef ORVIX1_SRC_WX_ASSERT_H
#define ORVIX1_SRC_WX_ASSERT_H

// wx assertions that report a fixed line: the library's condition texts and
// their locations are part of its contract (hosts and tests filter on them),
// so they must not move when code above them changes. They take wxASSERT's
// path: the installed handler, then a trap into the debugger if it asks.

#include <wx/debug.h>

namespace orvix1 {
namespace detail {

void report_wx_assert(const char* file, int line, const char* function, const char* condition,
                      const char* message);

}  // namespace detail
}  // namespace orvix1

// Reports `condition_text` (with `message`, may be nullptr) at `line` when
// `condition` is false; evaluates to the condition.
#define ORVIX_ASSERT_AT(condition, condition_text, message, line)                              \
  ((condition) ? true                                                                          \
               : (::orvix1::detail::report_wx_assert(__FILE__, line, __func__, condition_text, \
                                                     message),                                 \
                  false))

// wxFAIL_MSG's form: condition text "Assert failure".
#define ORVIX_FAIL_AT(message, line) \
  ::orvix1::detail::report_wx_assert(__FILE__, line, __func__, "Assert failure", message)

#endif
