#include <cstdlib>

#include <glib-object.h>
#include <gtest/gtest.h>

#include "orvix1/native_window.h"
#include "support/log_capture.h"
#include "support/wx_test_environment.h"

namespace {

using orvix1_test::log_capture_t;
using orvix1_test::take_asserts;

// A run-time failure that the library reports through its log.
void fail_at_run_time() {
  GObject* not_a_window = G_OBJECT(g_object_new(G_TYPE_OBJECT, nullptr));
  EXPECT_EQ(orvix1::create_dummy_wrapper(not_a_window), nullptr);
  g_object_unref(not_a_window);
}

// Errors are written whatever the level, with their logger, file and line;
// ORVIX_DEBUG_USE_RELEASE_ASSERT turns them into assertions as well.
TEST(Logging, ErrorsAreWrittenWhateverTheLevelAndTheReleaseAssertSwitchTurnsThemIntoAssertions) {
  log4cplus::Logger orvix = log4cplus::Logger::getInstance("orvix");
  const log4cplus::LogLevel previous = orvix.getLogLevel();
  orvix.setLogLevel(log4cplus::OFF_LOG_LEVEL);
  take_asserts();
  log_capture_t capture;
  fail_at_run_time();
  orvix.setLogLevel(previous);
  EXPECT_TRUE(take_asserts().empty());
  ASSERT_EQ(capture.entries().size(), 1u);
  const auto& entry = capture.entries()[0];
  EXPECT_EQ(entry.logger, "orvix.native");
  EXPECT_EQ(entry.level, log4cplus::ERROR_LOG_LEVEL);
  EXPECT_NE(entry.message.find("create_dummy_wrapper"), std::string::npos);
  EXPECT_NE(entry.file.find("native_window.cpp"), std::string::npos);
  EXPECT_GT(entry.line, 0);

  setenv("ORVIX_DEBUG_USE_RELEASE_ASSERT", "1", 1);
  fail_at_run_time();
  unsetenv("ORVIX_DEBUG_USE_RELEASE_ASSERT");
  const auto asserts = take_asserts();
  ASSERT_EQ(asserts.size(), 1u);
  ASSERT_EQ(capture.entries().size(), 2u);
  EXPECT_EQ(asserts[0].condition, capture.entries()[1].message);
  EXPECT_NE(asserts[0].file.find("native_window.cpp"), std::string::npos);
}

}  // namespace
