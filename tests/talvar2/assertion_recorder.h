#ifndef TALVAR2_TESTS_ASSERTION_RECORDER_H
#define TALVAR2_TESTS_ASSERTION_RECORDER_H

// Captures the debug assertions raised while it lives. Outside a recorder the
// test main's handler fails the running test.

#include <mutex>
#include <string>
#include <utility>
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
  ~assertion_recorder() { talvar2::debug::set_assertion_handler(std::move(m_previous)); }
  assertion_recorder(const assertion_recorder&) = delete;
  assertion_recorder& operator=(const assertion_recorder&) = delete;

  std::vector<recorded_assertion> records() const {
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_records;
  }
  // The only assertion recorded so far; fails the test unless there is exactly one.
  recorded_assertion single() const;
  void clear() {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_records.clear();
  }

 private:
  mutable std::mutex m_mutex;
  std::vector<recorded_assertion> m_records;
  talvar2::debug::assertion_handler_t m_previous;
};

}  // namespace talvar2_test

#endif
