#include <algorithm>
#include <chrono>
#include <thread>
#include <vector>

#include "talvar2/functor/signal.h"
#include "talvar2/threading/mutex.h"

namespace talvar2 {
namespace _internal {
namespace {
constexpr int k_yields_before_waiting = 64;
}  // namespace

// The signals that point at a subscriber, one entry per connection (entries
// may repeat), under the subscriber's own mutex.
struct subscriber_base_t::connections_t {
  threading::mutex_t mutex;
  std::vector<signal_base_t*> signals;
};

// Connecting locks the signal, then the subscriber. Dying needs both the
// other way round: the subscriber's lock keeps its signals from dying under
// it. So each signal's lock is only tried; when another thread holds it (an
// emission, a connect, the signal's own death, which takes this
// subscriber's lock next), this one lets go of its own lock and tries again,
// and never waits while holding it.
subscriber_base_t::~subscriber_base_t() {
  connections_t* connected = m_connections.load(std::memory_order_acquire);
  if (connected == nullptr) return;  // never connected to
  for (int attempt = 0;; ++attempt) {
    connected->mutex.acquire();
    if (connected->signals.empty()) break;
    signal_base_t* signal = connected->signals.back();
    if (!signal->try_lock_for_subscriber()) {
      connected->mutex.release();
      // An emission on another thread holds its signal's lock while its
      // slots run, which may take a while: past a few turns, wait a little.
      if (attempt < k_yields_before_waiting)
        std::this_thread::yield();
      else
        std::this_thread::sleep_for(std::chrono::microseconds(100));
      continue;
    }
    attempt = 0;
    signal->on_subscriber_destroy(this);
    signal->unlock_for_subscriber();
    auto& signals = connected->signals;
    signals.erase(std::remove(signals.begin(), signals.end(), signal), signals.end());
    connected->mutex.release();
  }
  connected->mutex.release();
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
