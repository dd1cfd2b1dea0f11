#include <algorithm>
#include <vector>

#include "talvar2/functor/signal.h"

namespace talvar2 {
namespace _internal {

// The signals that point at a subscriber, one entry per connection (entries
// may repeat), under the subscriber's own mutex.
struct subscriber_base_t::connections_t {
  threading::mutex_t mutex;
  std::vector<signal_base_t*> signals;
};

subscriber_base_t::~subscriber_base_t() {
  connections_t* connected = m_connections.load(std::memory_order_acquire);
  if (connected == nullptr) return;  // never connected to
  {
    // Lock order: the subscriber, then each signal (the reverse of _insert).
    threading::mutex_guard_t guard(connected->mutex);
    for (signal_base_t* signal : connected->signals) signal->on_subscriber_destroy(this);
    connected->signals.clear();
  }
  delete connected;
}

subscriber_base_t::connections_t& subscriber_base_t::connections() {
  connections_t* existing = m_connections.load(std::memory_order_acquire);
  if (existing != nullptr) return *existing;
  auto* created = new connections_t;
  if (m_connections.compare_exchange_strong(existing, created, std::memory_order_acq_rel))
    return *created;
  delete created;  // another thread made it first
  return *existing;
}

void subscriber_base_t::add_signal(signal_base_t* signal) {
  connections_t& connected = connections();
  threading::mutex_guard_t guard(connected.mutex);
  connected.signals.push_back(signal);
}

void subscriber_base_t::remove_signal(signal_base_t* signal) {
  connections_t& connected = connections();
  threading::mutex_guard_t guard(connected.mutex);
  auto& signals = connected.signals;
  signals.erase(std::remove(signals.begin(), signals.end(), signal), signals.end());
}

}  // namespace _internal
}  // namespace talvar2
