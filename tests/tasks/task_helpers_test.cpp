#include <atomic>
#include <cstdint>
#include <functional>
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
#include "talvar2/functor/signal.h"
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

using orvix1_test::hold_until;
using TaskProgress = orvix1_test::scheduler_fixture_t;

// Progress reported from DoTask reaches the GUI thread coalesced, before
// TaskFinished and never after it, in one queue with posted signals.

// What reached the GUI thread, in order; only the GUI thread writes it.
struct gui_record_t : talvar2::subscriber_base_t {
  std::vector<std::string> entries;
  bool off_gui = false;
  void add(const std::string& entry) {
    if (!wxThread::IsMain()) off_gui = true;
    entries.push_back(entry);
  }
  void on_progress(std::uint64_t done, std::uint64_t total, const std::string& text) {
    add(std::to_string(done) + "/" + std::to_string(total) + " " + text);
  }
};

// DoTask waits for `go`, so that the test decides whether the GUI loop turns
// while it works; TaskFinished reports once more, too late to be delivered.
class reporting_task_t : public orvix1::tasks::DefaultTaskImpl {
 public:
  reporting_task_t(gui_record_t& record, std::function<void(reporting_task_t&)> work)
      : m_record(record), m_work(std::move(work)) {}
  std::atomic<bool> started{false}, go{false}, worked{false};
  talvar2::signal_t<int> posted;

  void TaskStarted() override { started = true; }
  void DoTask() override {
    hold_until([this] { return go.load(); });
    m_work(*this);
    worked = true;
  }
  void TaskFinished() override {
    m_record.add("finished");
    ReportProgress(9, 9, "from TaskFinished");
  }

 private:
  gui_record_t& m_record;
  std::function<void(reporting_task_t&)> m_work;
};
using reporting_ptr = talvar2::intrusive_pointer_t<reporting_task_t>;

TEST_F(TaskProgress, PendingDeliveryCarriesTheLatestReportAheadOfPostedSignalsAndTaskFinished) {
  gui_record_t record;
  reporting_ptr task(new reporting_task_t(record, [](reporting_task_t& self) {
    self.ReportProgress(1, 4, "a");
    self.ReportProgress(2, 4, "b");
    orvix1::tasks::PostSignal(self.posted, 7);
    self.ReportProgress(4, 4, "d");  // still the one pending delivery, queued before the post
  }));
  task->progress.connect(&record, &gui_record_t::on_progress);
  task->posted.connect(&record, [&record](int value) { record.add("posted " + std::to_string(value)); });
  ASSERT_EQ(m_scheduler->AddTask(task, "progress"), 0);
  ASSERT_TRUE(pump_until([&] { return task->started.load(); }));
  task->go = true;
  hold_until([&] { return task->worked.load(); });  // the GUI loop stands still meanwhile
  ASSERT_TRUE(task->worked);
  ASSERT_TRUE(pump_until([&] { return !record.entries.empty() && record.entries.back() == "finished"; }));
  task->ReportProgress(5, 5, "after the end");
  ASSERT_TRUE(pump_until([&] { return no_tasks_left(); }));
  orvix1_test::pump_events();
  EXPECT_EQ(record.entries, (std::vector<std::string>{"4/4 d", "posted 7", "finished"}));
  EXPECT_FALSE(record.off_gui);
}

TEST_F(TaskProgress, EveryReportIsDeliveredWhenTheGuiKeepsUp) {
  gui_record_t record;
  std::atomic<int> delivered{0};
  reporting_ptr task(new reporting_task_t(record, [&delivered](reporting_task_t& self) {
    for (int step = 1; step <= 3; ++step) {
      self.ReportProgress(step, 3, "step");
      hold_until([&] { return delivered.load() == step; });
    }
  }));
  task->progress.connect(&record, [&](std::uint64_t done, std::uint64_t total, const std::string& text) {
    record.on_progress(done, total, text);
    ++delivered;
  });
  task->go = true;
  ASSERT_EQ(m_scheduler->AddTask(task, "progress"), 0);
  ASSERT_TRUE(pump_until([&] { return !record.entries.empty() && record.entries.back() == "finished"; }));
  EXPECT_EQ(record.entries, (std::vector<std::string>{"1/3 step", "2/3 step", "3/3 step", "finished"}));
}

}  // namespace
