// The GUI thread's unit: one wake-up event per queued job, one job per event.

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "orvix1/tasks/GUIUnit.h"
#include "support/wx_test_environment.h"
#include "talvar2/threading/default_task.h"
#include "talvar2/threading/scheduler.h"
#include "talvar2/threading/stage.h"

namespace {

using talvar2::threading::task_ptr_t;

class completions_t : public talvar2::threading::scheduler_status_callback_t {
 public:
  std::atomic<int> completed{0};
  void task_complete(const task_ptr_t&) override { ++completed; }
  void task_exception(const task_ptr_t&, const std::string&) override {}
  void task_scheduling_error(const task_ptr_t&, const std::string&) override {}
};

class job_counter_t : public talvar2::subscriber_base_t {
 public:
  std::atomic<int> runs{0};
  std::atomic<bool> off_gui{false};
  void Run(const task_ptr_t&) {
    ++runs;
    if (!wxThread::IsMain()) off_gui = true;
  }
};

class GUIUnitTest : public ::testing::Test {
 protected:
  void SetUp() override {
    m_scheduler = talvar2::threading::create_default_scheduler(m_completions, nullptr, false);
    ASSERT_TRUE(m_scheduler);
    m_scheduler->register_unit("main", m_unit.GetQueuePtr());
  }

  // A task of one stage on "main".
  task_ptr_t make_task() {
    talvar2::threading::stage_t::work_signal_t work;
    work.connect(&m_counter, &job_counter_t::Run);
    auto task = boost::make_shared<talvar2::threading::default_task_t>("gui job");
    task->push_stage(boost::make_shared<talvar2::threading::stage_t>("main", work));
    return task;
  }

  boost::shared_ptr<completions_t> m_completions = boost::make_shared<completions_t>();
  orvix1::tasks::GUIUnit m_unit;
  job_counter_t m_counter;
  boost::shared_ptr<talvar2::threading::scheduler_t> m_scheduler;
};

TEST_F(GUIUnitTest, EachQueuedJobNeedsItsOwnDispatch) {
  constexpr int jobs = 5;
  for (int i = 0; i < jobs; ++i) ASSERT_EQ(m_scheduler->schedule(make_task(), "g"), 0);
  EXPECT_EQ(m_unit.GetQueuePtr()->queued_jobs(), static_cast<std::size_t>(jobs));
  for (int i = 0; i < jobs; ++i) {
    m_unit.ProcessPendingEvents();  // handles one pending event
    EXPECT_EQ(m_counter.runs, i + 1);
    EXPECT_EQ(m_unit.GetQueuePtr()->queued_jobs(), static_cast<std::size_t>(jobs - i - 1));
  }
  EXPECT_EQ(m_completions->completed, jobs);
  EXPECT_FALSE(m_counter.off_gui);
}

TEST_F(GUIUnitTest, JobsQueuedFromWorkersRunOnTheGuiThread) {
  std::vector<std::thread> workers;
  for (int i = 0; i < 4; ++i)
    workers.emplace_back([this] {
      for (int j = 0; j < 25; ++j) m_scheduler->schedule(make_task(), "");
    });
  for (auto& worker : workers) worker.join();
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (m_completions->completed < 100 && std::chrono::steady_clock::now() < deadline)
    orvix1_test::pump_events();
  EXPECT_EQ(m_counter.runs, 100);
  EXPECT_EQ(m_completions->completed, 100);
  EXPECT_FALSE(m_counter.off_gui);
  EXPECT_EQ(m_unit.GetQueuePtr()->queued_jobs(), 0u);
}

}  // namespace
