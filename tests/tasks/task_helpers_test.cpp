#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "orvix1/tasks/AnimationTask.h"
#include "orvix1/tasks/TaskHelper.h"
#include "tasks/pump_until.h"

namespace {

using orvix1::AnimationTask;
using orvix1::tasks::TaskHelper;
using orvix1_test::pump_events;
using orvix1_test::pump_until;

using TasksScheduled = orvix1_test::scheduler_fixture_t;

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

// Start and finish signal on the GUI thread, work on a worker, and a
// cancel on the canceling thread; a helper canceled first only finishes.
TEST_F(TasksScheduled, EachSignalFiresOnItsOwnThread) {
  struct run_t {
    bool long_task, cancel_first;
    std::vector<std::string> signals;
  };
  for (const run_t& run : {run_t{false, false, {"started", "work", "finished"}},
                           run_t{true, false, {"started", "work", "finished"}},
                           run_t{false, true, {"canceled", "finished"}}}) {
    SCOPED_TRACE(std::to_string(run.long_task) + std::to_string(run.cancel_first));
    talvar2::intrusive_pointer_t<TaskHelper> helper(new TaskHelper(run.long_task));
    helper_log_t log(*helper);
    std::thread::id canceler;
    if (run.cancel_first) {
      std::thread([&] {
        canceler = std::this_thread::get_id();
        helper->Cancel();
      }).join();
    }
    EXPECT_EQ(run.cancel_first, helper->IsCanceled());
    ASSERT_EQ(0, m_scheduler->AddTask(helper.get(), "helpers"));
    ASSERT_TRUE(pump_until([&] { return log.events().size() >= run.signals.size(); }));
    std::vector<std::string> signals;
    for (const event_t& event : log.events()) {
      signals.push_back(event.name);
      if (event.name == "work") {
        EXPECT_NE(std::this_thread::get_id(), event.thread);
      } else {
        EXPECT_EQ(event.name == "canceled" ? canceler : std::this_thread::get_id(), event.thread) << event.name;
      }
    }
    EXPECT_EQ(run.signals, signals);
  }
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


// Values move towards the target on the GUI thread and end exactly on it;
// canceled at the first value, only steps already on their way may follow
// (an uncanceled run would bring about five steps and the target).
TEST_F(TasksScheduled, DeliversMonotonicValuesEndingOnTheTargetUnlessCanceled) {
  struct run_t {
    int duration, from, to;
    bool cancel_at_first;
  };
  for (const run_t run : {run_t{500, 0, 100, false}, run_t{200, 50, -50, false}, run_t{1000, 0, 100, true}}) {
    SCOPED_TRACE(std::to_string(run.to) + (run.cancel_at_first ? " canceled" : ""));
    talvar2::intrusive_pointer_t<AnimationTask> task(new AnimationTask(run.duration, run.from, run.to));
    value_log_t log(*task, run.cancel_at_first);
    ASSERT_EQ(0, m_scheduler->AddTask(task.get(), "animation"));
    ASSERT_TRUE(pump_until([&] { return task->step.empty(); }));
    pump_events();

    ASSERT_FALSE(log.values.empty());
    EXPECT_EQ(!run.cancel_at_first, run.to == log.values.back());
    EXPECT_LE(log.values.size(), run.cancel_at_first ? 3u : 11u);  // ten steps at most, then the target
    const int direction = run.to > run.from ? 1 : -1;
    for (size_t i = 1; i < log.values.size(); ++i)
      EXPECT_LT(direction * log.values[i - 1], direction * log.values[i]);
    EXPECT_GE(direction * log.values.front(), direction * run.from);
    EXPECT_FALSE(log.off_gui_thread);
  }
}

TEST_F(TasksScheduled, ACanceledTaskDoesNotStep) {
  talvar2::intrusive_pointer_t<AnimationTask> task(new AnimationTask(100, 0, 10));
  value_log_t log(*task);
  task->Cancel();
  task->DoTask();
  pump_events();
  EXPECT_TRUE(log.values.empty());
}

}  // namespace
