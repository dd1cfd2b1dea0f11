#include "orvix1/tasks/Scheduler.h"

#include "core/wx_assert.h"

namespace orvix1 {
namespace tasks {
namespace detail {

bool check_post_signal_scheduler() {
  if (Scheduler::IsInitialized()) return true;
  // Reported under the name of the public template, where the misuse is.
  ::orvix1::detail::report_wx_assert(
      __FILE__, __LINE__, "PostSignal", "Scheduler::IsInitialized()",
      "Attempt to schedule a task in uninitialized Scheduler. Task will not complete.");
  return false;
}

}  // namespace detail
}  // namespace tasks
}  // namespace orvix1
