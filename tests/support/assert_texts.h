#ifndef ORVIX1_TESTS_SUPPORT_ASSERT_TEXTS_H
#define ORVIX1_TESTS_SUPPORT_ASSERT_TEXTS_H

// The assertions recorded since the last take_asserts(), as texts that
// compare in one EXPECT_EQ and print readably when they differ.

#include <string>
#include <vector>

#include "support/wx_test_environment.h"

namespace orvix1_test {

using texts_t = std::vector<std::string>;

// The condition of each recorded assertion.
inline texts_t taken_conditions() {
  texts_t texts;
  for (const recorded_assert_t& recorded : take_asserts()) texts.push_back(recorded.condition);
  return texts;
}

// "function: condition" of each recorded assertion.
inline texts_t taken_function_conditions() {
  texts_t texts;
  for (const recorded_assert_t& recorded : take_asserts())
    texts.push_back(recorded.function + ": " + recorded.condition);
  return texts;
}

}  // namespace orvix1_test

#endif
