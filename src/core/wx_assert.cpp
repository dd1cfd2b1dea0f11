#include "core/wx_assert.h"

namespace orvix1 {
namespace detail {

void report_wx_assert(const char* file, int line, const char* function, const char* condition,
                      const char* message) {
  if (wxTheAssertHandler == nullptr) return;
  if (message != nullptr)
    wxOnAssert(file, line, function, condition, message);
  else
    wxOnAssert(file, line, function, condition);
  if (wxTrapInAssert) {
    wxTrapInAssert = false;
    wxTrap();
  }
}

}  // namespace detail
}  // namespace orvix1
