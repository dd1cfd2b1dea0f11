#include <algorithm>

#include "talvar2/functor/signal.h"

namespace talvar2 {
namespace _internal {

subscriber_base_t::~subscriber_base_t() {
  // Lock order: the subscriber, then each signal (the reverse of _insert).
  threading::mutex_guard_t guard(m_subscriber_mutex);
  for (signal_base_t* signal : m_signals) signal->on_subscriber_destroy(this);
  m_signals.clear();
}

void subscriber_base_t::add_signal(signal_base_t* signal) {
  threading::mutex_guard_t guard(m_subscriber_mutex);
  m_signals.push_back(signal);
}

void subscriber_base_t::remove_signal(signal_base_t* signal) {
  threading::mutex_guard_t guard(m_subscriber_mutex);
  m_signals.erase(std::remove(m_signals.begin(), m_signals.end(), signal), m_signals.end());
}

}  // namespace _internal
}  // namespace talvar2
