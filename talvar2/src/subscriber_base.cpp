#include <algorithm>

#include "talvar2/functor/signal.h"

namespace talvar2 {
namespace _internal {

subscriber_base_t::~subscriber_base_t() {
  threading::mutex_t* mutex = m_subscriber_mutex.load(std::memory_order_acquire);
  if (mutex == nullptr) return;  // never connected to
  {
    // Lock order: the subscriber, then each signal (the reverse of _insert).
    threading::mutex_guard_t guard(*mutex);
    for (signal_base_t* signal : m_signals) signal->on_subscriber_destroy(this);
    m_signals.clear();
  }
  delete mutex;
}

threading::mutex_t& subscriber_base_t::subscriber_mutex() {
  threading::mutex_t* mutex = m_subscriber_mutex.load(std::memory_order_acquire);
  if (mutex != nullptr) return *mutex;
  auto* created = new threading::mutex_t;
  if (m_subscriber_mutex.compare_exchange_strong(mutex, created, std::memory_order_acq_rel))
    return *created;
  delete created;  // another thread made it first
  return *mutex;
}

void subscriber_base_t::add_signal(signal_base_t* signal) {
  threading::mutex_guard_t guard(subscriber_mutex());
  m_signals.push_back(signal);
}

void subscriber_base_t::remove_signal(signal_base_t* signal) {
  threading::mutex_guard_t guard(subscriber_mutex());
  m_signals.erase(std::remove(m_signals.begin(), m_signals.end(), signal), m_signals.end());
}

}  // namespace _internal
}  // namespace talvar2
