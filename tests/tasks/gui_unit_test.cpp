// The GUI thread's unit: one wake-up event per queued job, one job per event.

#include <atomic>
#include <thread>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "orvix1/tasks/GUIUnit.h"
#include "support/wx_test_environment.h"
#include "talvar2/threading/default_task.h"
#include "talvar2/threading/scheduler.h"
#include "talvar2/threading/stage.h"

namespace {

using talvar2::threading::task_ptr_t;

class job_counter_t : public talvar2::threading::scheduler_status_callback_t, public talvar2::subscriber_base_t {
 public:
  std::atomic<int> runs{0}, completed{0};
  std::atomic<bool> off_gui{false};
  void Run(const task_ptr_t&) {
    ++runs;
    if (!wxThread::IsMain()) off_gui = true;
  }
  void task_complete(const task_ptr_t&) override { ++completed; }
  void task_exception(const task_ptr_t&, const std::string&) override {}
  void task_scheduling_error(const task_ptr_t&, const std::string&) override {}
};

TEST(GUIUnitTest, EachQueuedJobNeedsItsOwnDispatch) {
  const auto counter = boost::make_shared<job_counter_t>();
  orvix1::tasks::GUIUnit unit;
  const auto scheduler = talvar2::threading::create_default_scheduler(counter, nullptr, false);
  ASSERT_TRUE(scheduler);
  scheduler->register_unit("main", unit.GetQueuePtr());
  constexpr int jobs = 5;
  std::thread([&] {
    for (int i = 0; i < jobs; ++i) {
      talvar2::threading::stage_t::work_signal_t work;
      work.connect(counter.get(), &job_counter_t::Run);
      auto task = boost::make_shared<talvar2::threading::default_task_t>("gui job");
      task->push_stage(boost::make_shared<talvar2::threading::stage_t>("main", work));
      EXPECT_EQ(scheduler->schedule(task, "g"), 0);
    }
  }).join();
  for (int i = 0; i < jobs; ++i) {
    unit.ProcessPendingEvents();  // handles one pending event
    EXPECT_EQ(counter->runs, i + 1);
    EXPECT_EQ(unit.GetQueuePtr()->queued_jobs(), static_cast<std::size_t>(jobs - i - 1));
  }
  EXPECT_EQ(counter->completed, jobs);
  EXPECT_FALSE(counter->off_gui);
}

}  // namespace
