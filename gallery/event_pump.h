#ifndef GALLERY_EVENT_PUMP_H
#define GALLERY_EVENT_PUMP_H

#include <chrono>
#include <functional>

namespace gallery {

// Handles everything pending on both sides of the process: GTK's event
// sources (the host's and wx's windows), then the library's wx queues
// through its message pump. With `wait`, first waits for something to
// happen when nothing is pending.
void pump_once(bool wait = false);

// Pumps until `done` holds, waiting for events in between, for at most
// `timeout`. True when `done` held.
bool pump_until(const std::function<bool()>& done, std::chrono::milliseconds timeout);

}  // namespace gallery

#endif
