#ifndef TALVAR2_TESTS_SIGNAL_LISTENER_H
#define TALVAR2_TESTS_SIGNAL_LISTENER_H

// A subscriber that logs its calls into a shared list and may act inside the slot.

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "talvar2/functor/signal.h"

namespace talvar2_test {

using call_log_t = std::vector<std::string>;

class listener_t : public talvar2::subscriber_base_t {
 public:
  using action_t = std::function<void(int)>;

  listener_t(std::string name, call_log_t& log) : m_name(std::move(name)), m_log(log) {}

  // Runs after the call has been logged, inside the emission.
  void set_action(action_t action) { m_action = std::move(action); }

  void on_value(int value) {
    m_log.push_back(m_name + ":" + std::to_string(value));
    if (m_action) m_action(value);
  }
  void on_other_value(int value) { m_log.push_back(m_name + "/other:" + std::to_string(value)); }

 private:
  std::string m_name;
  call_log_t& m_log;
  action_t m_action;
};

// A signal that can count the entries of its array, emptied ones included.
template <class... A>
class inspectable_signal_t : public talvar2::signal_t<A...> {
 public:
  std::size_t node_count() const {
    const auto* core = this->current_core();
    return core == nullptr ? 0 : core->stored;
  }
};

}  // namespace talvar2_test

#endif
