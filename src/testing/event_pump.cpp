#include <glib.h>

#include "orvix1/testing.h"
#include "orvix1/wx_dll_application.h"

namespace orvix1 {
namespace testing {

void pump_once(bool wait) {
  if (wait) g_main_context_iteration(nullptr, TRUE);
  while (g_main_context_iteration(nullptr, FALSE)) {
  }
  // A host runs no wx loop: the library's queued events, idle work and
  // deferred deletions happen here.
  process_message_loop();
}

bool pump_until(const std::function<bool()>& done, std::chrono::milliseconds timeout) {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  for (;;) {
    pump_once();
    if (done()) return true;
    if (std::chrono::steady_clock::now() >= deadline) return false;
    // Nothing left to handle now: give the X server time for its next event.
    g_usleep(2000);
  }
}

}  // namespace testing
}  // namespace orvix1
