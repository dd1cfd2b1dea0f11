#include "talvar2/assertion_recorder.h"

#include <gtest/gtest.h>

#include <utility>

namespace talvar2_test {

assertion_recorder::assertion_recorder() {
  m_previous = talvar2::debug::set_assertion_handler(
      [this](const char* expression, const char* file, int line, const char* function) {
        record(expression, file, line, function);
      });
}

assertion_recorder::~assertion_recorder() {
  talvar2::debug::set_assertion_handler(std::move(m_previous));
}

void assertion_recorder::record(const char* expression, const char* file, int line,
                                const char* function) {
  std::lock_guard<std::mutex> lock(m_mutex);
  m_records.push_back({expression, file, line, function});
}

std::vector<recorded_assertion> assertion_recorder::records() const {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_records;
}

std::size_t assertion_recorder::count() const {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_records.size();
}

recorded_assertion assertion_recorder::single() const {
  std::lock_guard<std::mutex> lock(m_mutex);
  EXPECT_EQ(m_records.size(), 1u) << "expected exactly one assertion";
  return m_records.empty() ? recorded_assertion{} : m_records.front();
}

void assertion_recorder::clear() {
  std::lock_guard<std::mutex> lock(m_mutex);
  m_records.clear();
}

}  // namespace talvar2_test

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  // Assertions that a test does not capture with a recorder are failures.
  talvar2::debug::set_assertion_handler(
      [](const char* expression, const char* file, int line, const char* function) {
        ADD_FAILURE() << "unexpected assertion \"" << expression << "\" at " << file << ":" << line
                      << " in " << function;
      });
  return RUN_ALL_TESTS();
}
