#include "talvar2/assertion_recorder.h"

#include <gtest/gtest.h>

namespace talvar2_test {

assertion_recorder::assertion_recorder() {
  m_previous = talvar2::debug::set_assertion_handler(
      [this](const char* expression, const char* file, int line, const char* function) {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_records.push_back({expression, file, line, function});
      });
}

recorded_assertion assertion_recorder::single() const {
  const std::vector<recorded_assertion> all = records();
  EXPECT_EQ(all.size(), 1u) << "expected exactly one assertion";
  return all.empty() ? recorded_assertion{} : all.front();
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
