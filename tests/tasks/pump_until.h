#ifndef ORVIX1_TESTS_TASKS_PUMP_UNTIL_H
#define ORVIX1_TESTS_TASKS_PUMP_UNTIL_H

#include <chrono>
#include <functional>
#include <thread>

#include "support/wx_test_environment.h"

namespace orvix1_test {

// Pumps the GUI loop until `done` holds or ten seconds have passed; false
// on time-out. Workers get a millisecond between rounds.
inline bool pump_until(const std::function<bool()>& done) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (!done()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    pump_events();
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}

}  // namespace orvix1_test

#endif
