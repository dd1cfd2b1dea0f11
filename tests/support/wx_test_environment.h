#ifndef ORVIX1_TESTS_WX_TEST_ENVIRONMENT_H
#define ORVIX1_TESTS_WX_TEST_ENVIRONMENT_H

// One wx application per test process, started by a global test environment
// (so listing the tests needs no display), and the helpers the tests share.

#include <string>
#include <vector>

namespace orvix1_test {

// A failed wx assertion (talvar2 assertions arrive through wx as well).
struct recorded_assert_t {
  std::string file;
  int line = 0;
  std::string function;
  std::string condition;
  std::string message;
};

// Assertions recorded since the last take_asserts().
std::vector<recorded_assert_t> take_asserts();

// Handles what is pending, with a bound: queued and pending events, idle.
void pump_events();

// Starts wx again in this process if a test ended it.
void ensure_wx_running();

}  // namespace orvix1_test

#endif
