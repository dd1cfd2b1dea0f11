// The GUI task scheduler: where each callback of a task runs, cancellation,
// refusal, batch cancels, waiting for groups, and a randomized stress run.

#include <atomic>
#include <chrono>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <random>
#include <stdexcept>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <wx/app.h>

#include "orvix1/tasks/ITask.h"
#include "orvix1/tasks/Scheduler.h"
#include "support/log_capture.h"
#include "support/wx_test_environment.h"
#include "tasks/pump_until.h"
#include "talvar2/threading/scheduler.h"
#include "talvar2/threading/stage.h"

namespace {

using orvix1_test::pump_until;
using orvix1::tasks::dialog_info_t;
using orvix1::tasks::IBatchCancel;
using orvix1::tasks::ITaskPtr;
using orvix1::tasks::Scheduler;
using orvix1::tasks::SchedulerPtr;

// Where and how often the callbacks of one task ran.
struct calls_t {
  std::atomic<int> started{0}, worked{0}, finished{0}, gui_work{0};
  std::atomic<bool> started_off_gui{false}, finished_off_gui{false}, worked_on_gui{false};
  std::atomic<bool> saw_cancel{false};

  static bool on_gui() { return wxThread::IsMain(); }
};

// A task that records its callbacks. With `wait_for_cancel` its work polls
// IsCanceled (for at most ten seconds), so that it is running while a test
// cancels it.
class probe_task_t : public orvix1::tasks::DefaultTaskImpl {
 public:
  explicit probe_task_t(bool long_task = false, bool wait_for_cancel = false)
      : m_long(long_task), m_wait_for_cancel(wait_for_cancel) {}

  calls_t calls;

  void TaskStarted() override {
    ++calls.started;
    if (!calls_t::on_gui()) calls.started_off_gui = true;
  }
  void DoTask() override {
    if (calls_t::on_gui()) calls.worked_on_gui = true;
    ++calls.worked;
    if (!m_wait_for_cancel) return;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!IsCanceled() && std::chrono::steady_clock::now() < deadline)
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    calls.saw_cancel = IsCanceled();
  }
  void TaskFinished() override {
    ++calls.finished;
    if (!calls_t::on_gui()) calls.finished_off_gui = true;
  }
  bool IsLongTask() override { return m_long; }

 private:
  bool m_long;
  bool m_wait_for_cancel;
};

// A task whose work ignores canceling and holds on until `release` is set
// (for at most ten seconds).
class held_task_t : public probe_task_t {
 public:
  std::atomic<bool> release{false};
  void DoTask() override {
    ++calls.worked;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!release && std::chrono::steady_clock::now() < deadline)
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
};

class probe_gui_task_t : public orvix1::tasks::GUITask {
 public:
  calls_t calls;

  void DoGUITask() override {
    ++calls.gui_work;
    if (!calls_t::on_gui()) calls.started_off_gui = true;
  }
  void DoTask() override { ++calls.worked; }
  void TaskFinished() override {
    ++calls.finished;
    if (!calls_t::on_gui()) calls.finished_off_gui = true;
  }
};

class completion_recorder_t : public orvix1::tasks::ISchedulerStatusCallback {
 public:
  std::atomic<int> completed{0};
  void OnTaskComplete(const ITaskPtr&) override { ++completed; }
};

// Each test starts with a fresh process-wide scheduler and ends it in order.
class SchedulerTest : public ::testing::Test {
 protected:
  void SetUp() override {
    orvix1_test::take_asserts();
    m_recorder = new completion_recorder_t;
    m_scheduler = Scheduler::Get(m_recorder);
    ASSERT_TRUE(m_scheduler);
  }
  void TearDown() override {
    m_scheduler->CancelAndWait(dialog_info_t(), false);
    m_scheduler.reset();
    Scheduler::Release();
    EXPECT_TRUE(orvix1_test::take_asserts().empty());
  }

  bool no_tasks_left() { return m_scheduler->GetTasks("").empty(); }

  talvar2::intrusive_pointer_t<completion_recorder_t> m_recorder;
  SchedulerPtr m_scheduler;
};

TEST_F(SchedulerTest, OneInstanceUntilReleasedAndEveryUnitRegistered) {
  EXPECT_TRUE(Scheduler::IsInitialized());
  EXPECT_EQ(Scheduler::Get(new completion_recorder_t).get(), m_scheduler.get());
  auto companion = talvar2::threading::get_scheduler();
  ASSERT_TRUE(companion);
  for (const char* unit : {"main", "service", "long tasks", "delay tasks"})
    EXPECT_TRUE(companion->find_unit(unit)) << unit;
  EXPECT_EQ(companion->find_unit("main"), m_scheduler->GetGUIUnit().GetQueuePtr());
}

TEST_F(SchedulerTest, GuiTaskWorksOnceOnGuiThreadAndNeverInWorkStage) {
  talvar2::intrusive_pointer_t<probe_gui_task_t> task(new probe_gui_task_t);
  ASSERT_EQ(m_scheduler->AddTask(task, "gui"), 0);
  EXPECT_EQ(task->calls.gui_work, 0);  // nothing runs before the loop turns
  ASSERT_TRUE(pump_until([&] { return task->calls.finished == 1 && no_tasks_left(); }));
  EXPECT_EQ(task->calls.gui_work, 1);
  EXPECT_EQ(task->calls.worked, 0);
  EXPECT_FALSE(task->calls.started_off_gui);
  EXPECT_FALSE(task->calls.finished_off_gui);
  EXPECT_EQ(m_recorder->completed, 1);
}

TEST_F(SchedulerTest, ServiceAndLongTasksWorkOnWorkersAndReportOnGuiThread) {
  talvar2::intrusive_pointer_t<probe_task_t> service(new probe_task_t(false, true));
  talvar2::intrusive_pointer_t<probe_task_t> long_task(new probe_task_t(true, true));
  ASSERT_EQ(m_scheduler->AddTask(service, "work"), 0);
  ASSERT_EQ(m_scheduler->AddTask(long_task, "work"), 0);
  ASSERT_TRUE(pump_until([&] { return service->calls.worked == 1 && long_task->calls.worked == 1; }));

  // While they run, both are registered under their group.
  EXPECT_EQ(m_scheduler->GetTasks("work").size(), 2u);
  EXPECT_TRUE(m_scheduler->GetTasks("elsewhere").empty());
  std::string group;
  EXPECT_TRUE(m_scheduler->GetTaskGroup(service, group));
  EXPECT_EQ(group, "work");

  m_scheduler->Cancel("work");
  ASSERT_TRUE(pump_until([&] {
    return service->calls.finished == 1 && long_task->calls.finished == 1 && no_tasks_left();
  }));
  for (probe_task_t* task : {service.get(), long_task.get()}) {
    EXPECT_EQ(task->calls.started, 1);
    EXPECT_FALSE(task->calls.worked_on_gui);
    EXPECT_FALSE(task->calls.started_off_gui);
    EXPECT_FALSE(task->calls.finished_off_gui);
    EXPECT_TRUE(task->calls.saw_cancel);
  }
  std::string after;
  EXPECT_FALSE(m_scheduler->GetTaskGroup(service, after));
  EXPECT_EQ(m_recorder->completed, 2);
}

TEST_F(SchedulerTest, TaskCanceledBeforeStartStillFinishesOnGuiThread) {
  talvar2::intrusive_pointer_t<probe_task_t> task(new probe_task_t);
  task->Cancel();
  ASSERT_EQ(m_scheduler->AddTask(task, ""), 0);
  ASSERT_TRUE(pump_until([&] { return task->calls.finished == 1 && no_tasks_left(); }));
  EXPECT_EQ(task->calls.started, 0);
  EXPECT_EQ(task->calls.worked, 0);
  EXPECT_FALSE(task->calls.finished_off_gui);
}

TEST_F(SchedulerTest, DelayedTasksWaitOnTheDelayUnitEvenForZero) {
  talvar2::intrusive_pointer_t<probe_task_t> task(new probe_task_t);
  ASSERT_EQ(m_scheduler->AddDelayedTask(task, 0, "delayed"), 0);
  // Nothing can finish before the GUI loop turns, so the task is still there.
  const auto scheduled = talvar2::threading::get_scheduler()->tasks("delayed");
  ASSERT_EQ(scheduled.size(), 1u);
  const auto stages = scheduled.front()->stages();
  ASSERT_EQ(stages.size(), 4u);
  EXPECT_TRUE(stages[0].stage->is_wait());
  EXPECT_EQ(stages[0].stage->unit_name(), "delay tasks");
  EXPECT_EQ(stages[0].stage->delay().count(), 0);
  EXPECT_EQ(stages[1].stage->unit_name(), "main");
  EXPECT_EQ(stages[2].stage->unit_name(), "service");
  EXPECT_EQ(stages[3].stage->unit_name(), "main");
  EXPECT_TRUE(stages[3].finalization);
  ASSERT_TRUE(pump_until([&] { return task->calls.finished == 1 && no_tasks_left(); }));
  EXPECT_EQ(task->calls.started, 1);
  EXPECT_EQ(task->calls.worked, 1);
}

TEST_F(SchedulerTest, CancelingCutsALongDelayShortAndStillFinishes) {
  talvar2::intrusive_pointer_t<probe_task_t> task(new probe_task_t);
  ASSERT_EQ(m_scheduler->AddDelayedTask(task, 60 * 60 * 1000, "sleepy"), 0);
  m_scheduler->Cancel("sleepy");
  ASSERT_TRUE(pump_until([&] { return task->calls.finished == 1 && no_tasks_left(); }));
  EXPECT_EQ(task->calls.started, 0);
  EXPECT_EQ(task->calls.worked, 0);
}

TEST_F(SchedulerTest, WorkStageFollowsTheTasksOwnChoice) {
  struct case_t {
    bool service;
    bool long_task;
    const char* unit;
  };
  class choosing_task_t : public orvix1::tasks::DefaultTaskImpl {
   public:
    choosing_task_t(bool service, bool long_task) : m_service(service), m_long(long_task) {}
    bool IsServiceThreadNeeded() override { return m_service; }
    bool IsLongTask() override { return m_long; }

   private:
    bool m_service, m_long;
  };
  for (const case_t& c : {case_t{false, true, "main"}, case_t{true, false, "service"},
                          case_t{true, true, "long tasks"}}) {
    ITaskPtr task(new choosing_task_t(c.service, c.long_task));
    ASSERT_EQ(m_scheduler->AddTask(task, "choice"), 0);
    const auto scheduled = talvar2::threading::get_scheduler()->tasks("choice");
    ASSERT_EQ(scheduled.size(), 1u);
    EXPECT_EQ(scheduled.front()->stages().at(1).stage->unit_name(), c.unit);
    EXPECT_EQ(scheduled.front()->display_name(), task->GetDisplayName());
    ASSERT_TRUE(pump_until([&] { return no_tasks_left(); }));
  }
}

TEST_F(SchedulerTest, RefusedWhileItsGroupIsCanceledWithOneWarningAndNoCallbacks) {
  talvar2::intrusive_pointer_t<held_task_t> running(new held_task_t);
  talvar2::intrusive_pointer_t<probe_task_t> refused(new probe_task_t);
  ASSERT_EQ(m_scheduler->AddTask(running, "busy"), 0);
  ASSERT_TRUE(pump_until([&] { return running->calls.worked == 1; }));

  orvix1_test::log_capture_t log("orvix.scheduler");
  int status = -1;
  bool listed = true;
  // Runs while the GUI thread waits inside CancelAndWait, which cannot end
  // before the running task is released here.
  wxTheApp->CallAfter([&] {
    status = m_scheduler->AddTask(refused, "busy");
    listed = false;
    for (const ITaskPtr& task : m_scheduler->GetTasks("")) listed = listed || task == refused;
    running->release = true;
  });
  m_scheduler->CancelAndWait("busy", dialog_info_t(), false);

  EXPECT_EQ(status, 3);
  EXPECT_FALSE(listed);
  EXPECT_EQ(running->calls.finished, 1);
  orvix1_test::pump_events();
  EXPECT_EQ(refused->calls.started + refused->calls.worked + refused->calls.finished, 0);
  ASSERT_EQ(log.entries().size(), 1u);
  EXPECT_EQ(log.entries()[0].level, log4cplus::WARN_LOG_LEVEL);
  EXPECT_EQ(log.entries()[0].message,
            "Failed to schedule task " + refused->GetDisplayName() + ", it's group busyis being canceled");
  EXPECT_EQ(refused->ref_count(), 1u);  // nothing kept it
  EXPECT_EQ(m_recorder->completed, 1);
}

TEST_F(SchedulerTest, AddingAfterShutDownStillRunsButLogsAnError) {
  orvix1_test::log_capture_t log("orvix.scheduler");
  m_scheduler->CancelAndWait(dialog_info_t(), true);
  EXPECT_TRUE(log.entries().empty());

  talvar2::intrusive_pointer_t<probe_task_t> task(new probe_task_t);
  ASSERT_EQ(m_scheduler->AddTask(task, "late"), 0);
  ASSERT_EQ(log.entries().size(), 1u);
  EXPECT_EQ(log.entries()[0].level, log4cplus::ERROR_LOG_LEVEL);
  EXPECT_EQ(log.entries()[0].message,
            "Adding task after scheduler deitiliazed. Task name is: " + task->GetDisplayName());
  ASSERT_TRUE(pump_until([&] { return task->calls.finished == 1; }));
  EXPECT_EQ(task->calls.worked, 1);
}

TEST_F(SchedulerTest, CancelAndWaitReturnsOnlyWhenItsGroupHasFinished) {
  std::vector<talvar2::intrusive_pointer_t<probe_task_t>> waited;
  // One service and three long tasks, and one more service task elsewhere:
  // all run at once on the smallest pools (two service, four long threads).
  for (int i = 0; i < 4; ++i) {
    waited.emplace_back(new probe_task_t(i != 0, true));
    ASSERT_EQ(m_scheduler->AddTask(waited.back(), "waited"), 0);
  }
  talvar2::intrusive_pointer_t<probe_task_t> other(new probe_task_t(false, true));
  ASSERT_EQ(m_scheduler->AddTask(other, "other"), 0);
  ASSERT_TRUE(pump_until([&] {
    int running = other->calls.worked;
    for (const auto& task : waited) running += task->calls.worked;
    return running == 5;
  }));

  m_scheduler->CancelAndWait("waited", dialog_info_t(), false);

  for (const auto& task : waited) {
    EXPECT_EQ(task->calls.finished, 1);
    EXPECT_TRUE(task->calls.saw_cancel);
    EXPECT_FALSE(task->calls.finished_off_gui);
  }
  EXPECT_TRUE(m_scheduler->GetTasks("waited").empty());
  EXPECT_FALSE(other->IsCanceled());
  EXPECT_EQ(other->calls.finished, 0);
  EXPECT_EQ(m_scheduler->GetTasks("other").size(), 1u);

  m_scheduler->CancelAndWait(dialog_info_t(), false);
  EXPECT_EQ(other->calls.finished, 1);
  EXPECT_TRUE(no_tasks_left());
}

TEST_F(SchedulerTest, CancelAndWaitOffTheGuiThreadAssertsAndOnlyCancels) {
  talvar2::intrusive_pointer_t<probe_task_t> task(new probe_task_t(false, true));
  ASSERT_EQ(m_scheduler->AddTask(task, "g"), 0);
  ASSERT_TRUE(pump_until([&] { return task->calls.worked == 1; }));
  std::thread worker([&] { m_scheduler->CancelAndWait("g", dialog_info_t(), false); });
  worker.join();
  const auto asserts = orvix1_test::take_asserts();
  ASSERT_EQ(asserts.size(), 1u);
  EXPECT_EQ(asserts[0].condition, "wxThread::IsMain() == true");
  EXPECT_EQ(asserts[0].function, "CancelAndWait");
  EXPECT_TRUE(task->IsCanceled());
  ASSERT_TRUE(pump_until([&] { return task->calls.finished == 1; }));
}

TEST_F(SchedulerTest, WaitableTaskWakesWorkersWhenFinished) {
  class held_waitable_t : public orvix1::tasks::WaitableTask {
   public:
    std::atomic<bool> release{false};
    void DoTask() override {
      const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
      while (!release && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  };
  talvar2::intrusive_pointer_t<held_waitable_t> task(new held_waitable_t);
  ASSERT_EQ(m_scheduler->AddTask(task, "w"), 0);
  std::atomic<int> woken{0};
  std::vector<std::thread> waiters;
  for (int i = 0; i < 3; ++i)
    waiters.emplace_back([&] {
      task->Wait();
      ++woken;
    });
  orvix1_test::pump_events();
  EXPECT_EQ(woken.load(), 0);
  EXPECT_FALSE(task->IsFinished());
  task->release = true;
  const bool all_woken = pump_until([&] { return woken == 3; });
  task->TaskFinished();  // frees the waiters should the test have failed
  for (auto& waiter : waiters) waiter.join();
  EXPECT_TRUE(all_woken);
  EXPECT_TRUE(task->IsFinished());
}

TEST_F(SchedulerTest, BatchCancelOfNothingIsEmpty) {
  EXPECT_FALSE(m_scheduler->BatchCancel({}, {}, IBatchCancel::main_context));
}

TEST_F(SchedulerTest, BatchCancelCancelsListedTasksAndGroupsOnItsUnit) {
  talvar2::intrusive_pointer_t<probe_task_t> listed(new probe_task_t(false, true));
  talvar2::intrusive_pointer_t<probe_task_t> in_group(new probe_task_t(true, true));
  talvar2::intrusive_pointer_t<probe_task_t> spared(new probe_task_t(false, true));
  ITaskPtr unregistered(new probe_task_t);
  ASSERT_EQ(m_scheduler->AddTask(listed, "a"), 0);
  ASSERT_EQ(m_scheduler->AddTask(in_group, "b"), 0);
  ASSERT_EQ(m_scheduler->AddTask(spared, "a"), 0);
  ASSERT_TRUE(pump_until([&] {
    return listed->calls.worked + in_group->calls.worked + spared->calls.worked == 3;
  }));

  for (auto context : {IBatchCancel::main_context, IBatchCancel::service_context,
                       IBatchCancel::long_tasks_context}) {
    auto batch = m_scheduler->BatchCancel({listed, unregistered}, {"b"}, context);
    ASSERT_TRUE(batch);
    EXPECT_EQ(batch->Execute(), 0);
  }
  ASSERT_TRUE(pump_until([&] { return listed->calls.finished == 1 && in_group->calls.finished == 1; }));
  EXPECT_TRUE(listed->calls.saw_cancel);
  EXPECT_TRUE(in_group->calls.saw_cancel);
  EXPECT_FALSE(spared->IsCanceled());
  EXPECT_FALSE(unregistered->IsCanceled());
}

TEST_F(SchedulerTest, BatchCancelWithAnUnknownContextAssertsAndUsesTheServiceUnit) {
  talvar2::intrusive_pointer_t<probe_task_t> task(new probe_task_t(false, true));
  ASSERT_EQ(m_scheduler->AddTask(task, "c"), 0);
  ASSERT_TRUE(pump_until([&] { return task->calls.worked == 1; }));
  auto batch = m_scheduler->BatchCancel({}, {"c"}, static_cast<IBatchCancel::signal_context_t>(7));
  ASSERT_TRUE(batch);
  EXPECT_EQ(batch->Execute(), 0);
  const auto asserts = orvix1_test::take_asserts();
  ASSERT_EQ(asserts.size(), 1u);
  EXPECT_EQ(asserts[0].message, "Invalid condition");
  ASSERT_TRUE(pump_until([&] { return task->calls.finished == 1; }));
  EXPECT_TRUE(task->calls.saw_cancel);
}

TEST_F(SchedulerTest, ThrowsFromEveryCallbackAreLoggedOnceAndTheSchedulerGoesOn) {
  enum where_t { in_started, in_work, in_finished };
  class throwing_task_t : public probe_task_t {
   public:
    throwing_task_t(where_t where, bool standard) : m_where(where), m_standard(standard) {}
    void TaskStarted() override {
      probe_task_t::TaskStarted();
      if (m_where == in_started) raise();
    }
    void DoTask() override {
      probe_task_t::DoTask();
      if (m_where == in_work) raise();
    }
    void TaskFinished() override {
      probe_task_t::TaskFinished();
      if (m_where == in_finished) raise();
    }

   private:
    void raise() {
      if (m_standard) throw std::runtime_error("broken");
      throw 42;  // not even a std::exception
    }
    where_t m_where;
    bool m_standard;
  };
  for (const where_t where : {in_started, in_work, in_finished}) {
    for (const bool standard : {true, false}) {
      talvar2::intrusive_pointer_t<throwing_task_t> task(new throwing_task_t(where, standard));
      talvar2::intrusive_pointer_t<probe_task_t> next(new probe_task_t);
      orvix1_test::log_capture_t log("orvix.scheduler");
      ASSERT_EQ(m_scheduler->AddTask(task, "x"), 0);
      ASSERT_EQ(m_scheduler->AddTask(next, "x"), 0);
      ASSERT_TRUE(pump_until([&] { return next->calls.finished == 1 && no_tasks_left(); }))
          << where << standard;
      EXPECT_EQ(task->calls.finished, 1) << where << standard;
      EXPECT_EQ(task->calls.worked, where == in_started ? 0 : 1) << where << standard;
      EXPECT_EQ(next->calls.worked, 1);
      ASSERT_EQ(log.entries().size(), 1u) << where << standard;
      EXPECT_EQ(log.entries()[0].level, log4cplus::ERROR_LOG_LEVEL);
      if (where == in_work && standard) {
        EXPECT_EQ(log.entries()[0].message, "Task: " + task->GetDisplayName() +
                                                "has generated exception which wasn't appropriately handled.");
      }
    }
  }
}

// Thousands of tasks of every kind, added from several threads into several
// groups, with tasks and groups canceled at random (seeded): every task
// finishes exactly once on the GUI thread and the scheduler keeps none.
TEST_F(SchedulerTest, StressEveryTaskFinishesOnceAndNoneIsKept) {
  constexpr int threads = 4;
  constexpr int per_thread = 800;
  const std::vector<std::string> groups = {"", "g1", "g2", "g3", "g4", "g5"};

  class stress_gui_task_t : public orvix1::tasks::GUITask {
   public:
    calls_t calls;
    void DoGUITask() override { ++calls.gui_work; }
    void TaskFinished() override {
      ++calls.finished;
      if (!calls_t::on_gui()) calls.finished_off_gui = true;
    }
  };
  struct entry_t {
    ITaskPtr task;
    calls_t* calls;
  };
  std::vector<std::vector<entry_t>> made(threads);
  std::atomic<int> rejected{0};
  std::atomic<int> adders_done{0};

  std::vector<std::thread> adders;
  for (int t = 0; t < threads; ++t) {
    adders.emplace_back([&, t] {
      std::mt19937 random(1234u + static_cast<unsigned>(t));
      for (int i = 0; i < per_thread; ++i) {
        const std::string& group = groups[random() % groups.size()];
        entry_t entry;
        switch (random() % 4) {
          case 0: {
            auto* task = new stress_gui_task_t;
            entry = {task, &task->calls};
            break;
          }
          default: {
            auto* task = new probe_task_t(random() % 2 == 0);
            entry = {task, &task->calls};
            break;
          }
        }
        if (random() % 10 == 0) entry.task->Cancel();
        const int status = random() % 3 == 0
                               ? m_scheduler->AddDelayedTask(entry.task, static_cast<int>(random() % 3), group)
                               : m_scheduler->AddTask(entry.task, group);
        if (status != 0) ++rejected;
        if (random() % 50 == 0) m_scheduler->Cancel(groups[1 + random() % (groups.size() - 1)]);
        made[t].push_back(entry);
      }
      ++adders_done;
    });
  }
  // The GUI thread keeps turning meanwhile, as it would in a program.
  const bool added = pump_until([&] { return adders_done == threads; });
  for (auto& adder : adders) adder.join();
  ASSERT_TRUE(added);
  EXPECT_EQ(rejected.load(), 0);

  ASSERT_TRUE(pump_until([&] {
    for (const auto& list : made)
      for (const entry_t& entry : list)
        if (entry.calls->finished == 0 || entry.task->ref_count() != 1) return false;
    return true;
  }));
  int started = 0;
  for (const auto& list : made)
    for (const entry_t& entry : list) {
      EXPECT_EQ(entry.calls->finished, 1);
      EXPECT_FALSE(entry.calls->finished_off_gui);
      EXPECT_LE(entry.calls->started + entry.calls->gui_work, 1);
      started += entry.calls->started + entry.calls->gui_work;
    }
  // The run took both ways: tasks that started and tasks canceled before.
  EXPECT_GT(started, 0);
  EXPECT_LT(started, threads * per_thread);
  EXPECT_TRUE(no_tasks_left());
  EXPECT_EQ(m_recorder->completed.load(), threads * per_thread);
}

}  // namespace

namespace {

// What happened to one task, kept outside it so that it can be checked
// after the task is gone.
struct task_record_t {
  std::atomic<int> started{0}, finished{0}, destroyed{0}, late_calls{0};
  std::atomic<bool> accepted{false};
};

// A task that its owner lets go of as soon as it is added: the scheduler
// alone keeps it alive, and any callback after its death is counted.
class tracked_task_t : public orvix1::tasks::DefaultTaskImpl {
 public:
  tracked_task_t(task_record_t& record, bool long_task) : m_record(record), m_long(long_task) {}
  ~tracked_task_t() override { ++m_record.destroyed; }
  void TaskStarted() override {
    check_alive();
    ++m_record.started;
  }
  void DoTask() override { check_alive(); }
  void TaskFinished() override {
    check_alive();
    ++m_record.finished;
  }
  bool IsLongTask() override { return m_long; }
  const task_record_t& record() const { return m_record; }

 private:
  void check_alive() {
    if (m_record.destroyed != 0) ++m_record.late_calls;
  }
  task_record_t& m_record;
  bool m_long;
};

// Two threads add tasks into four groups while a third cancels groups and
// runs batch cancels on every context, and the GUI thread cancels groups
// and waits for them. Fixed counts and seeds; only the interleaving varies.
TEST_F(SchedulerTest, StressCancelsAndWaitsRaceTasksWhoseOwnersLetGo) {
  constexpr int adders = 2;
  constexpr int per_adder = 1000;
  constexpr int cancel_rounds = 300;
  constexpr int waits = 6;
  const std::vector<std::string> groups = {"r1", "r2", "r3", "r4"};
  std::vector<task_record_t> records(adders * per_adder);
  std::atomic<int> workers_done{0};
  std::atomic<int> refused{0};

  std::vector<std::thread> workers;
  for (int a = 0; a < adders; ++a) {
    workers.emplace_back([&, a] {
      std::mt19937 random(77u + static_cast<unsigned>(a));
      for (int i = 0; i < per_adder; ++i) {
        task_record_t& record = records[a * per_adder + i];
        ITaskPtr task(new tracked_task_t(record, random() % 2 == 0));
        const std::string& group = groups[random() % groups.size()];
        const int status = random() % 4 == 0
                               ? m_scheduler->AddDelayedTask(task, static_cast<int>(random() % 3), group)
                               : m_scheduler->AddTask(task, group);
        EXPECT_TRUE(status == 0 || status == 3) << status;  // 3: its group was being canceled
        record.accepted = status == 0;
        if (status != 0) ++refused;
      }
      ++workers_done;
    });
  }
  workers.emplace_back([&] {
    std::mt19937 random(99u);
    for (int round = 0; round < cancel_rounds; ++round) {
      const std::string& group = groups[random() % groups.size()];
      if (random() % 2 == 0) {
        m_scheduler->Cancel(group);
      } else {
        const std::vector<ITaskPtr> live = m_scheduler->GetTasks(group);
        const std::list<ITaskPtr> some(live.begin(), live.begin() + std::min<std::size_t>(live.size(), 3));
        const auto context = static_cast<IBatchCancel::signal_context_t>(random() % 3);
        auto batch = m_scheduler->BatchCancel(some, {groups[random() % groups.size()]}, context);
        EXPECT_EQ(batch->Execute(), 0);
      }
      std::this_thread::yield();
    }
    ++workers_done;
  });

  // Whatever a group held when its wait began has finished when it returns.
  for (int w = 0; w < waits; ++w) {
    for (int i = 0; i < 20; ++i) orvix1_test::pump_events();
    const std::string& group = groups[w % groups.size()];
    const std::vector<ITaskPtr> held = m_scheduler->GetTasks(group);
    m_scheduler->CancelAndWait(group, dialog_info_t(), false);
    for (const ITaskPtr& task : held)
      EXPECT_EQ(static_cast<const tracked_task_t*>(task.get())->record().finished, 1) << group;
  }
  const bool workers_finished = pump_until([&] { return workers_done == adders + 1; });
  for (auto& worker : workers) worker.join();
  ASSERT_TRUE(workers_finished);
  ASSERT_TRUE(pump_until([&] {
    for (const task_record_t& record : records)
      if (record.destroyed == 0) return false;
    return true;
  }));

  int accepted = 0;
  for (const task_record_t& record : records) {
    EXPECT_EQ(record.destroyed, 1);
    EXPECT_EQ(record.late_calls, 0);
    EXPECT_LE(record.started, 1);
    if (record.accepted) {
      ++accepted;
      EXPECT_EQ(record.finished, 1);
    } else {
      EXPECT_EQ(record.started + record.finished, 0);  // refused: no callbacks at all
    }
  }
  EXPECT_EQ(accepted + refused, adders * per_adder);
  EXPECT_EQ(m_recorder->completed.load(), accepted);
  EXPECT_TRUE(no_tasks_left());
}

}  // namespace
