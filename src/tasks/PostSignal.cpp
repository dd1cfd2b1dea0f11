#include "orvix1/tasks/Scheduler.h"

#include "core/contract_sites.h"

namespace orvix1 {
namespace tasks {
namespace detail {

bool check_post_signal_scheduler() {
  // Reported under the name of the public template, where the misuse is.
  return contract_holds(Scheduler::IsInitialized(),
                        contract::site_t::post_signal_without_scheduler);
}

}  // namespace detail
}  // namespace tasks
}  // namespace orvix1
