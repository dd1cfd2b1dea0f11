#include "event_pump.h"

#include <glib.h>

#include "orvix1/wx_dll_application.h"

namespace gallery {

void pump_once(bool wait) {
  if (wait) g_main_context_iteration(nullptr, TRUE);
  while (g_main_context_iteration(nullptr, FALSE)) {
  }
  // The host runs no wx loop: the library's queued events, idle work and
  // deferred deletions happen here.
  orvix1::process_message_loop();
}

bool pump_until(const std::function<bool()>& done, std::chrono::milliseconds timeout) {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  for (;;) {
    pump_once();
    if (done()) return true;
    if (std::chrono::steady_clock::now() >= deadline) return false;
    // Nothing left to handle now: wait for the X server's next event.
    g_usleep(2000);
  }
}

}  // namespace gallery
