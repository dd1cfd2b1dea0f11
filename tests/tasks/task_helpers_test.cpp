#include <mutex>
#include <string>
#include <thread>
#include <tuple>
#include <typeinfo>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "orvix1/tasks/AnimationTask.h"
#include "orvix1/tasks/ITask.h"
#include "orvix1/tasks/TaskHelper.h"
#include "tasks/pump_until.h"

namespace {

using orvix1::AnimationTask;
using orvix1::tasks::TaskHelper;
using orvix1_test::pump_events;
using orvix1_test::pump_until;

using TasksScheduled = orvix1_test::scheduler_fixture_t;

// Records the helper's signals with the thread each one fired on.
class helper_log_t : public talvar2::subscriber_base_t {
 public:
  explicit helper_log_t(TaskHelper& helper) {
    helper.started.connect(this, &helper_log_t::on_started);
    helper.work.connect(this, &helper_log_t::on_work);
    helper.finished.connect(this, &helper_log_t::on_finished);
    helper.canceled.connect(this, &helper_log_t::on_canceled);
  }
  std::vector<std::pair<std::string, std::thread::id>> events() {
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
    m_events.emplace_back(name, std::this_thread::get_id());
  }
  std::mutex m_mutex;
  std::vector<std::pair<std::string, std::thread::id>> m_events;
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
      std::thread canceling([&] { helper->Cancel(); });
      canceler = canceling.get_id();
      canceling.join();
    }
    ASSERT_EQ(0, m_scheduler->AddTask(helper.get(), "helpers"));
    ASSERT_TRUE(pump_until([&] { return log.events().size() >= run.signals.size(); }));
    std::vector<std::string> signals;
    for (const auto& [name, thread] : log.events()) {
      signals.push_back(name);
      const std::thread::id expected = name == "canceled" ? canceler : std::this_thread::get_id();
      EXPECT_EQ(name != "work", expected == thread) << name;
    }
    EXPECT_EQ(run.signals, signals);
  }
}

// Records the values an animation delivers and whether one came off the GUI thread.
class value_log_t : public talvar2::subscriber_base_t {
 public:
  explicit value_log_t(AnimationTask& task) { task.step.connect(this, &value_log_t::on_value); }
  std::vector<int> values;
  bool off_gui_thread = false;

 private:
  void on_value(int value) {
    off_gui_thread |= !wxThread::IsMain();
    values.push_back(value);
  }
};

// Increasing (or decreasing) values on the GUI thread, ending exactly on the target.
TEST_F(TasksScheduled, AnimationDeliversMonotonicValuesEndingOnTheTarget) {
  for (const auto& [duration, from, to] : {std::tuple{500, 0, 100}, std::tuple{200, 50, -50}}) {
    SCOPED_TRACE(to);
    talvar2::intrusive_pointer_t<AnimationTask> task(new AnimationTask(duration, from, to));
    value_log_t log(*task);
    ASSERT_EQ(0, m_scheduler->AddTask(task.get(), "animation"));
    ASSERT_TRUE(pump_until([&] { return task->step.empty(); }));
    pump_events();
    ASSERT_FALSE(log.values.empty());
    EXPECT_EQ(to, log.values.back());
    EXPECT_LE(log.values.size(), 11u);  // ten steps at most, then the target
    const int direction = to > from ? 1 : -1;
    for (size_t i = 1; i < log.values.size(); ++i)
      EXPECT_LT(direction * log.values[i - 1], direction * log.values[i]);
    EXPECT_GE(direction * log.values.front(), direction * from);
    EXPECT_FALSE(log.off_gui_thread);
  }
}

TEST_F(TasksScheduled, ACanceledAnimationDoesNotStep) {
  talvar2::intrusive_pointer_t<AnimationTask> task(new AnimationTask(100, 0, 10));
  value_log_t log(*task);
  task->Cancel();
  task->DoTask();
  pump_events();
  EXPECT_TRUE(log.values.empty());
}

using orvix1::tasks::DefaultTaskImpl;
using orvix1::tasks::WaitableTask;

TEST(TaskTest, EachKindChoosesItsThreadAndIsNamedAfterItsType) {
  struct gui_task_t : orvix1::tasks::GUITask {
    void DoGUITask() override {}
  };
  orvix1::tasks::ITaskPtr plain(new DefaultTaskImpl), gui(new gui_task_t), waitable(new WaitableTask);
  EXPECT_TRUE(plain->IsServiceThreadNeeded() && !plain->IsLongTask());
  EXPECT_TRUE(!gui->IsServiceThreadNeeded() && !gui->IsLongTask());
  EXPECT_TRUE(waitable->IsServiceThreadNeeded() && waitable->IsLongTask());
  EXPECT_EQ(plain->GetDisplayName(), typeid(DefaultTaskImpl).name());
}

}  // namespace
