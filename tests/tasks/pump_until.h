#ifndef ORVIX1_TESTS_TASKS_PUMP_UNTIL_H
#define ORVIX1_TESTS_TASKS_PUMP_UNTIL_H

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "orvix1/tasks/Scheduler.h"
#include "orvix1/testing.h"
#include "support/wx_test_environment.h"

namespace orvix1_test {

// Pumps the GUI loop until `done` holds; false after ten seconds, so that a
// broken test ends instead of hanging.
inline bool pump_until(const std::function<bool()>& done) {
  return orvix1::testing::pump_until(done, std::chrono::seconds(10));
}
// Waits, without pumping, for a worker to make `done` hold; the same bound.
inline void hold_until(const std::function<bool()>& done) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (!done() && std::chrono::steady_clock::now() < deadline)
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

class completion_recorder_t : public orvix1::tasks::ISchedulerStatusCallback {
 public:
  std::atomic<int> completed{0};
  void OnTaskComplete(const orvix1::tasks::ITaskPtr&) override { ++completed; }
  void OnTaskException(const orvix1::tasks::ITaskPtr& task, const std::string&) override {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_threw.push_back(task.get());
  }
  // The tasks reported as having thrown, oldest first; the list starts over.
  std::vector<const orvix1::tasks::ITask*> take_threw() {
    std::lock_guard<std::mutex> lock(m_mutex);
    return std::exchange(m_threw, {});
  }

 private:
  std::mutex m_mutex;
  std::vector<const orvix1::tasks::ITask*> m_threw;
};

// A fresh scheduler per test; no assertion may be left unchecked.
class scheduler_fixture_t : public ::testing::Test {
 protected:
  void SetUp() override {
    take_asserts();
    m_recorder = new completion_recorder_t;
    m_scheduler = orvix1::tasks::Scheduler::Get(m_recorder);
    ASSERT_TRUE(m_scheduler);
  }
  void TearDown() override {
    m_scheduler->CancelAndWait(orvix1::tasks::dialog_info_t(), false);
    m_scheduler.reset();
    orvix1::tasks::Scheduler::Release();
    pump_events();
    EXPECT_TRUE(take_asserts().empty());
  }

  bool no_tasks_left() { return m_scheduler->GetTasks("").empty(); }

  talvar2::intrusive_pointer_t<completion_recorder_t> m_recorder;
  orvix1::tasks::SchedulerPtr m_scheduler;
};

}  // namespace orvix1_test

#endif
