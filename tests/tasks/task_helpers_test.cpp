#include <chrono>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <wx/utils.h>

#include "orvix1/tasks/AnimationTask.h"
#include "orvix1/tasks/Scheduler.h"
#include "orvix1/tasks/TaskHelper.h"
#include "orvix1/tasks/dialog_info.h"
#include "support/wx_test_environment.h"
#include "tasks/pump_until.h"

namespace {

using orvix1::AnimationTask;
using orvix1::tasks::ISchedulerStatusCallbackPtr;
using orvix1::tasks::Scheduler;
using orvix1::tasks::SchedulerPtr;
using orvix1::tasks::TaskHelper;
using orvix1_test::pump_events;
using orvix1_test::pump_until;
using orvix1_test::take_asserts;

// A scheduler for the test, ended in order afterwards.
class with_scheduler : public ::testing::Test {
 protected:
  void SetUp() override {
    take_asserts();
    m_scheduler = Scheduler::Get(ISchedulerStatusCallbackPtr());
    ASSERT_TRUE(m_scheduler);
  }
  void TearDown() override {
    m_scheduler->CancelAndWait(orvix1::tasks::dialog_info_t(), false);
    m_scheduler.reset();
    Scheduler::Release();
    pump_events();
    EXPECT_TRUE(take_asserts().empty());
  }

  SchedulerPtr m_scheduler;
};

struct event_t {
  std::string name;
  std::thread::id thread;
};

// Records the helper's signals with the thread each one fired on.
class helper_log_t : public talvar2::subscriber_base_t {
 public:
  explicit helper_log_t(TaskHelper& helper) {
    helper.started.connect(this, &helper_log_t::on_started);
    helper.work.connect(this, &helper_log_t::on_work);
    helper.finished.connect(this, &helper_log_t::on_finished);
    helper.canceled.connect(this, &helper_log_t::on_canceled);
  }
  std::vector<event_t> events() {
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_events;
  }
  bool has(const std::string& name) {
    for (const event_t& event : events())
      if (event.name == name) return true;
    return false;
  }

 private:
  void on_started() { record("started"); }
  void on_work() { record("work"); }
  void on_finished() { record("finished"); }
  void on_canceled() { record("canceled"); }
  void record(const char* name) {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_events.push_back({name, std::this_thread::get_id()});
  }

  std::mutex m_mutex;
  std::vector<event_t> m_events;
};

using TaskHelperScheduled = with_scheduler;

TEST_F(TaskHelperScheduled, StartsAndFinishesOnTheGuiThreadAndWorksOnAWorker) {
  const std::thread::id gui = std::this_thread::get_id();
  for (const bool long_task : {false, true}) {
    SCOPED_TRACE(long_task ? "long" : "short");
    talvar2::intrusive_pointer_t<TaskHelper> helper(new TaskHelper(long_task));
    EXPECT_EQ(long_task, helper->IsLongTask());
    EXPECT_TRUE(helper->IsServiceThreadNeeded());
    helper_log_t log(*helper);
    ASSERT_EQ(0, m_scheduler->AddTask(helper.get(), "helpers"));
    ASSERT_TRUE(pump_until([&] { return log.has("finished"); }));

    const std::vector<event_t> events = log.events();
    ASSERT_EQ(3u, events.size());
    EXPECT_EQ("started", events[0].name);
    EXPECT_EQ(gui, events[0].thread);
    EXPECT_EQ("work", events[1].name);
    EXPECT_NE(gui, events[1].thread);
    EXPECT_EQ("finished", events[2].name);
    EXPECT_EQ(gui, events[2].thread);
    EXPECT_FALSE(helper->IsCanceled());
  }
}

TEST_F(TaskHelperScheduled, CanceledBeforeItStartsOnlyFinishes) {
  talvar2::intrusive_pointer_t<TaskHelper> helper(new TaskHelper);
  helper_log_t log(*helper);
  helper->Cancel();
  ASSERT_EQ(0, m_scheduler->AddTask(helper.get(), "helpers"));
  ASSERT_TRUE(pump_until([&] { return log.has("finished"); }));
  EXPECT_FALSE(log.has("started"));
  EXPECT_FALSE(log.has("work"));
}

TEST(TaskHelper, CancelSetsTheFlagAndSignalsOnTheCancelingThread) {
  TaskHelper helper;
  helper_log_t log(helper);
  EXPECT_FALSE(helper.IsCanceled());
  std::thread::id canceler;
  std::thread worker([&] {
    canceler = std::this_thread::get_id();
    helper.Cancel();
  });
  worker.join();
  EXPECT_TRUE(helper.IsCanceled());
  const std::vector<event_t> events = log.events();
  ASSERT_EQ(1u, events.size());
  EXPECT_EQ("canceled", events[0].name);
  EXPECT_EQ(canceler, events[0].thread);
}

// Records the values an animation delivers and the thread they arrive on;
// may cancel the task at the first value.
class value_log_t : public talvar2::subscriber_base_t {
 public:
  explicit value_log_t(AnimationTask& task, bool cancel_at_first = false)
      : m_task(task), m_cancel_at_first(cancel_at_first) {
    task.step.connect(this, &value_log_t::on_value);
  }
  std::vector<int> values;
  bool off_gui_thread = false;

 private:
  void on_value(int value) {
    if (!wxThread::IsMain()) off_gui_thread = true;
    values.push_back(value);
    if (m_cancel_at_first) m_task.Cancel();
  }
  AnimationTask& m_task;
  bool m_cancel_at_first;
};

using AnimationTaskScheduled = with_scheduler;

TEST_F(AnimationTaskScheduled, DeliversMonotonicValuesEndingExactlyOnTheTarget) {
  struct run_t {
    int duration, from, to;
  };
  for (const run_t run : {run_t{500, 0, 100}, run_t{200, 50, -50}}) {
    SCOPED_TRACE(run.to);
    talvar2::intrusive_pointer_t<AnimationTask> task(new AnimationTask(run.duration, run.from, run.to));
    value_log_t log(*task);
    ASSERT_EQ(0, m_scheduler->AddTask(task.get(), "animation"));
    ASSERT_TRUE(pump_until([&] { return task->step.empty(); }));
    pump_events();

    ASSERT_FALSE(log.values.empty());
    EXPECT_EQ(run.to, log.values.back());
    EXPECT_LE(log.values.size(), 11u);  // ten steps at most, then the target
    const int direction = run.to > run.from ? 1 : -1;
    for (size_t i = 1; i < log.values.size(); ++i)
      EXPECT_LT(direction * log.values[i - 1], direction * log.values[i]);
    EXPECT_GE(direction * log.values.front(), direction * run.from);
    EXPECT_FALSE(log.off_gui_thread);
  }
}

TEST_F(AnimationTaskScheduled, CanceledMidwayPostsNothingMoreNotEvenTheTarget) {
  talvar2::intrusive_pointer_t<AnimationTask> task(new AnimationTask(1000, 0, 100));
  value_log_t log(*task, true);
  ASSERT_EQ(0, m_scheduler->AddTask(task.get(), "animation"));
  ASSERT_TRUE(pump_until([&] { return task->step.empty(); }));
  pump_events();
  ASSERT_FALSE(log.values.empty());
  EXPECT_TRUE(task->IsCanceled());
  // Steps already on their way when the first one arrived may follow; an
  // uncanceled run would bring about five steps and the target.
  EXPECT_LE(log.values.size(), 3u);
  EXPECT_LT(log.values.back(), 100);
}

TEST_F(AnimationTaskScheduled, ACanceledTaskDoesNotStep) {
  talvar2::intrusive_pointer_t<AnimationTask> task(new AnimationTask(100, 0, 10));
  value_log_t log(*task);
  task->Cancel();
  task->DoTask();
  pump_events();
  EXPECT_TRUE(log.values.empty());
  task->TaskFinished();
  EXPECT_TRUE(task->step.empty());
}

}  // namespace
