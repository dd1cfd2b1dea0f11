#ifndef TALVAR2_TESTS_ASSERTION_RECORDER_H
#define TALVAR2_TESTS_ASSERTION_RECORDER_H

// Captures the debug assertions raised while it lives, so that a test can
// check their texts and locations; restores the previous handler when it dies.
//
// Outside a recorder the test main installs a handler that fails the running
// test: an assertion nobody expected is a fault.

#include <cstddef>
#include <mutex>
#include <string>
#include <vector>

#include "talvar2/debug/assertion.h"

namespace talvar2_test {

struct recorded_assertion {
  std::string expression;
  std::string file;
  int line = 0;
  std::string function;
};

class assertion_recorder {
 public:
  assertion_recorder();
  ~assertion_recorder();
  assertion_recorder(const assertion_recorder&) = delete;
  assertion_recorder& operator=(const assertion_recorder&) = delete;

  std::vector<recorded_assertion> records() const;
  std::size_t count() const;
  // The only assertion recorded so far; fails the test unless there is exactly one.
  recorded_assertion single() const;
  void clear();

 private:
  void record(const char* expression, const char* file, int line, const char* function);

  mutable std::mutex m_mutex;
  std::vector<recorded_assertion> m_records;
  talvar2::debug::assertion_handler_t m_previous;
};

}  // namespace talvar2_test

#endif
