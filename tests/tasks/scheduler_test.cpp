#include <algorithm>
#include <atomic>
#include <list>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/frame.h>
#include <wx/timer.h>

#include "support/log_capture.h"
#include "tasks/pump_until.h"
#include "talvar2/threading/scheduler.h"
#include "talvar2/threading/stage.h"
#include "talvar2/threading/thread_pool_unit.h"

namespace {

using orvix1_test::hold_until;
using orvix1_test::pump_until;
using orvix1::tasks::dialog_info_t;
using orvix1::tasks::IBatchCancel;
using orvix1::tasks::ITaskPtr;
using SchedulerTest = orvix1_test::scheduler_fixture_t;

// Kept outside the task when it must be checked after the task is gone.
struct calls_t {
  std::atomic<int> started{0}, worked{0}, finished{0}, gui_work{0}, destroyed{0}, late_calls{0};
  std::atomic<bool> wrong_thread{false}, saw_cancel{false}, accepted{false};
  const std::atomic<int>* throw_after = nullptr;  // the callback counting here throws
  bool throw_standard = true;
};

class recording_t {
 public:
  explicit recording_t(calls_t* outside) : calls(outside != nullptr ? *outside : m_own) {}
  virtual ~recording_t() { ++calls.destroyed; }
  calls_t& calls;

 protected:
  void count(std::atomic<int>& counter, bool belongs_on_gui = true) {
    ++counter;
    if (wxThread::IsMain() != belongs_on_gui) calls.wrong_thread = true;
    if (calls.destroyed != 0) ++calls.late_calls;
    if (&counter != calls.throw_after) return;
    if (calls.throw_standard) throw std::runtime_error("broken");
    throw 42;  // not even a std::exception
  }

 private:
  calls_t m_own;
};

struct kind_t {
  bool service, long_task;
};
constexpr kind_t service_kind{true, false}, long_kind{true, true}, gui_though_long_kind{false, true};

// How long a task's work holds its worker.
enum class hold_t { none, until_canceled, until_released };

class probe_task_t : public orvix1::tasks::DefaultTaskImpl, public recording_t {
 public:
  probe_task_t(kind_t kind, hold_t hold, calls_t* outside) : recording_t(outside), m_kind(kind), m_hold(hold) {}

  std::atomic<bool> release{false};

  void TaskStarted() override { count(calls.started); }
  void DoTask() override {
    count(calls.worked, !m_kind.service);
    if (m_hold == hold_t::until_canceled) hold_until([this] { return IsCanceled(); });
    if (m_hold == hold_t::until_released) hold_until([this] { return release.load(); });
    calls.saw_cancel = IsCanceled();
  }
  void TaskFinished() override { count(calls.finished); }
  bool IsServiceThreadNeeded() override { return m_kind.service; }
  bool IsLongTask() override { return m_kind.long_task; }

 private:
  kind_t m_kind;
  hold_t m_hold;
};
using probe_ptr = talvar2::intrusive_pointer_t<probe_task_t>;

probe_ptr probe(kind_t kind = service_kind, hold_t hold = hold_t::none, calls_t* outside = nullptr) {
  return probe_ptr(new probe_task_t(kind, hold, outside));
}

class probe_gui_task_t : public orvix1::tasks::GUITask, public recording_t {
 public:
  explicit probe_gui_task_t(calls_t* outside = nullptr) : recording_t(outside) {}
  void TaskStarted() override { count(calls.started); GUITask::TaskStarted(); }
  void DoGUITask() override { count(calls.gui_work); }
  void DoTask() override { count(calls.worked, false); }
  void TaskFinished() override { count(calls.finished); }
};

// Start and finish run on "main", the work where the task asks (no service
// thread wins over long), after the delay unit for any delay, even zero. A GUI
// task does its job once, in its start, and never works; a task canceled before
// it starts (or during an hour's delay) never starts. All finish once.
TEST_F(SchedulerTest, StagesFollowTheTasksChoiceAndGuiOrCanceledTasksFinishWithoutWork) {
  EXPECT_EQ(orvix1::tasks::Scheduler::Get(new orvix1_test::completion_recorder_t).get(), m_scheduler.get());
  struct case_t {
    kind_t kind;
    int delay_ms;  // negative: not delayed
    std::vector<std::string> units;
  };
  const case_t cases[] = {
      {gui_though_long_kind, -1, {"main", "main", "main"}},
      {service_kind, -1, {"main", "service", "main"}},
      {long_kind, -1, {"main", "long tasks", "main"}},
      {service_kind, 0, {"delay tasks", "main", "service", "main"}},
  };
  std::vector<std::pair<recording_t*, int>> expected_work;  // the tasks kept alive in `tasks`
  std::vector<ITaskPtr> tasks;
  for (const case_t& c : cases) {
    const std::string group = "kinds" + std::to_string(tasks.size());
    SCOPED_TRACE(group);
    probe_ptr task = probe(c.kind);
    tasks.push_back(task);
    expected_work.emplace_back(task.get(), 1);
    ASSERT_EQ(c.delay_ms < 0 ? m_scheduler->AddTask(task, group) : m_scheduler->AddDelayedTask(task, c.delay_ms, group),
              0);
    // Nothing can finish before the GUI loop turns, so the task is still there.
    const auto scheduled = talvar2::threading::get_scheduler()->tasks(group);
    ASSERT_EQ(scheduled.size(), 1u);
    const auto stages = scheduled.front()->stages();
    ASSERT_EQ(stages.size(), c.units.size());
    for (std::size_t i = 0; i < stages.size(); ++i) EXPECT_EQ(stages[i].stage->unit_name(), c.units[i]);
    const auto& first = *stages[0].stage;
    EXPECT_EQ(first.is_wait() ? static_cast<int>(first.delay().count()) : -1, c.delay_ms);
  }
  talvar2::intrusive_pointer_t<probe_gui_task_t> gui(new probe_gui_task_t);
  probe_ptr canceled_first = probe(), sleepy = probe();
  canceled_first->Cancel();
  ASSERT_EQ(m_scheduler->AddTask(gui, "gui"), 0);
  ASSERT_EQ(m_scheduler->AddTask(canceled_first, ""), 0);
  ASSERT_EQ(m_scheduler->AddDelayedTask(sleepy, 60 * 60 * 1000, "sleepy"), 0);
  m_scheduler->Cancel("sleepy");
  EXPECT_EQ(gui->calls.gui_work, 0);  // nothing runs before the loop turns
  for (recording_t* task : std::initializer_list<recording_t*>{gui.get(), canceled_first.get(), sleepy.get()})
    expected_work.emplace_back(task, 0);
  ASSERT_TRUE(pump_until([&] { return m_recorder->completed == 7 && no_tasks_left(); }));
  for (const auto& [task, work] : expected_work) {
    EXPECT_EQ(task->calls.finished, 1);
    EXPECT_EQ(task->calls.worked, work);
    EXPECT_FALSE(task->calls.wrong_thread);
  }
  EXPECT_EQ(gui->calls.gui_work, 1);
  EXPECT_EQ(canceled_first->calls.started + sleepy->calls.started, 0);
}

// Status 3 while the group is canceled; a task added after the shut-down logs.
TEST_F(SchedulerTest, RefusedWhileItsGroupIsCanceledWithOneWarningAndNoCallbacks) {
  probe_ptr running = probe(service_kind, hold_t::until_released);
  probe_ptr refused = probe();
  ASSERT_EQ(m_scheduler->AddTask(running, "busy"), 0);
  ASSERT_TRUE(pump_until([&] { return running->calls.worked == 1; }));

  orvix1_test::log_capture_t log("orvix.scheduler");
  // Runs inside CancelAndWait, which cannot return before this releases the running task.
  wxTheApp->CallAfter([&] {
    EXPECT_EQ(m_scheduler->AddTask(refused, "busy"), 3);
    for (const ITaskPtr& task : m_scheduler->GetTasks("")) EXPECT_NE(task, refused);
    running->release = true;
  });
  m_scheduler->CancelAndWait("busy", dialog_info_t(), false);
  orvix1_test::pump_events();
  EXPECT_EQ(refused->calls.started + refused->calls.worked + refused->calls.finished, 0);
  ASSERT_EQ(log.entries().size(), 1u);
  EXPECT_EQ(log.entries()[0].level, log4cplus::WARN_LOG_LEVEL);
  EXPECT_EQ(log.entries()[0].message,
            "Failed to schedule task " + refused->GetDisplayName() + ", it's group busyis being canceled, at file: src/tasks/Scheduler");
  EXPECT_EQ(refused->ref_count(), 1u);  // nothing kept it

  // After the shut-down a task still runs, with an error logged.
  probe_ptr early = probe(long_kind, hold_t::until_canceled), late = probe();
  ASSERT_EQ(m_scheduler->AddTask(early, "early"), 0);
  m_scheduler->CancelAndWait(dialog_info_t(), true);
  EXPECT_EQ(early->calls.finished, 1);  // every group was waited for
  ASSERT_EQ(m_scheduler->AddTask(late, "late"), 0);
  ASSERT_EQ(log.entries().size(), 2u);
  EXPECT_EQ(log.entries()[1].level, log4cplus::ERROR_LOG_LEVEL);
  EXPECT_EQ(log.entries()[1].message,
            "Adding task after scheduler deitiliazed. Task name is: " + late->GetDisplayName());
  ASSERT_TRUE(pump_until([&] { return late->calls.finished == 1; }));
}

// One service and three long tasks and one in another group, all at once.
TEST_F(SchedulerTest, WorkersDoTheWorkAndCancelAndWaitReturnsWhenTheGroupHasFinished) {
  std::vector<probe_ptr> waited;
  for (int i = 0; i < 4; ++i) {
    waited.push_back(probe(i == 0 ? service_kind : long_kind, hold_t::until_canceled));
    ASSERT_EQ(m_scheduler->AddTask(waited.back(), "waited"), 0);
  }
  probe_ptr other = probe(service_kind, hold_t::until_canceled);
  ASSERT_EQ(m_scheduler->AddTask(other, "other"), 0);
  ASSERT_TRUE(pump_until([&] {
    int running = other->calls.worked;
    for (probe_ptr task : waited) running += task->calls.worked;
    return running == 5;
  }));
  std::string group;
  EXPECT_TRUE(m_scheduler->GetTaskGroup(other, group) && group == "other");

  m_scheduler->CancelAndWait("waited", dialog_info_t(), false);
  for (probe_ptr task : waited) {
    EXPECT_EQ(task->calls.finished, 1);
    EXPECT_TRUE(task->calls.saw_cancel);
    EXPECT_FALSE(task->calls.wrong_thread);
  }
  EXPECT_EQ(m_recorder->completed, 4);

  // Off the GUI thread it asserts and only cancels.
  std::thread([&] { m_scheduler->CancelAndWait("other", dialog_info_t(), false); }).join();
  const auto asserts = orvix1_test::take_asserts();
  ASSERT_EQ(asserts.size(), 1u);
  EXPECT_EQ(asserts[0].condition, "wxThread::IsMain() == true");
  EXPECT_EQ(asserts[0].function, "CancelAndWait");
  EXPECT_TRUE(other->IsCanceled());
  ASSERT_TRUE(pump_until([&] { return other->calls.finished == 1 && no_tasks_left(); }));
  EXPECT_FALSE(m_scheduler->GetTaskGroup(other, group));
}

// The dialog, over the window given, over work that ignores the cancel
// refuses a close while it runs.
TEST_F(SchedulerTest, CancelAndWaitWithDialogInfoKeepsTheDialogUpUntilTheGroupHasLeft) {
  probe_ptr task = probe(service_kind, hold_t::until_released);
  ASSERT_EQ(m_scheduler->AddTask(task, "shown"), 0);
  ASSERT_TRUE(pump_until([&] { return task->calls.worked == 1; }));
  bool saw_dialog = false, refused_close = false;
  wxFrame* parent = new wxFrame(nullptr, wxID_ANY, "parent");
  wxTimer inside_the_wait;
  inside_the_wait.Bind(wxEVT_TIMER, [&](wxTimerEvent&) {
    wxWindow* dialog = wxWindow::FindWindowByName("scheduler_wait_dialog");
    saw_dialog = dialog != nullptr && dialog->GetParent() == parent;
    if (dialog != nullptr) refused_close = !dialog->Close() && dialog->IsShown();
    task->release = true;  // in every case, so that a failure cannot hang
  });
  inside_the_wait.StartOnce(50);
  dialog_info_t info;
  info.caption = "Closing";
  info.text = "Waiting for the work to end.";
  m_scheduler->CancelAndWait("shown", info, false, parent);
  parent->Destroy();
  EXPECT_TRUE(saw_dialog);
  EXPECT_TRUE(refused_close);
  EXPECT_EQ(task->calls.finished, 1);
}

// Before the first task the counts rebuild the worker pools, and later
// schedulers are made with them (0 restores a default); once a task has
// been taken they are refused with one warning.
TEST_F(SchedulerTest, WorkerCountsAreSetBeforeTheFirstTaskOnly) {
  using orvix1::tasks::Scheduler;
  auto threads_of = [](const char* unit) -> std::size_t {
    auto pool = boost::dynamic_pointer_cast<talvar2::threading::thread_pool_unit_t>(
        talvar2::threading::get_scheduler()->find_unit(unit));
    return pool ? pool->thread_count() : 0;
  };
  const std::size_t cores = std::max(1u, std::thread::hardware_concurrency());
  EXPECT_EQ(threads_of("service"), std::max<std::size_t>(2, cores));
  EXPECT_EQ(threads_of("long tasks"), std::max<std::size_t>(4, cores));
  ASSERT_TRUE(Scheduler::set_worker_counts(3, 5));
  EXPECT_EQ(threads_of("service"), 3u);
  EXPECT_EQ(threads_of("long tasks"), 5u);

  probe_ptr task = probe(long_kind);
  ASSERT_EQ(m_scheduler->AddTask(task, "counted"), 0);
  ASSERT_TRUE(pump_until([&] { return task->calls.finished == 1; }));
  orvix1_test::log_capture_t log("orvix.scheduler");
  EXPECT_FALSE(Scheduler::set_worker_counts(1, 1));
  ASSERT_EQ(log.entries().size(), 1u);
  EXPECT_EQ(log.entries()[0].level, log4cplus::WARN_LOG_LEVEL);
  EXPECT_EQ(log.entries()[0].message,
            "Worker counts can only be set before the first task: the scheduler keeps its workers");
  EXPECT_EQ(threads_of("service"), 3u);

  m_scheduler->CancelAndWait(dialog_info_t(), false);
  m_scheduler.reset();
  Scheduler::Release();
  m_scheduler = Scheduler::Get(m_recorder);
  EXPECT_EQ(threads_of("long tasks"), 5u);
  EXPECT_TRUE(Scheduler::set_worker_counts(0, 0));
  EXPECT_EQ(threads_of("service"), std::max<std::size_t>(2, cores));
  EXPECT_EQ(threads_of("long tasks"), std::max<std::size_t>(4, cores));
}

// A waitable task wakes its waiting workers when it finishes; waiting on
// the GUI thread (which runs TaskFinished itself) asserts and returns.
TEST_F(SchedulerTest, WaitableTaskWakesWorkersWhenFinished) {
  class held_waitable_t : public orvix1::tasks::WaitableTask {
   public:
    std::atomic<bool> release{false};
    void DoTask() override { hold_until([this] { return release.load(); }); }
  };
  talvar2::intrusive_pointer_t<held_waitable_t> task(new held_waitable_t);
  task->Wait();
  const auto asserts = orvix1_test::take_asserts();
  ASSERT_EQ(asserts.size(), 1u);
  EXPECT_EQ(asserts[0].condition, "wxThread::IsMain() == false");
  EXPECT_EQ(asserts[0].function, "Wait");
  ASSERT_EQ(m_scheduler->AddTask(task, "w"), 0);
  std::atomic<int> woken{0};
  std::vector<std::thread> waiters(3);
  for (auto& waiter : waiters) waiter = std::thread([&] { task->Wait(); ++woken; });
  orvix1_test::pump_events();
  EXPECT_EQ(woken.load(), 0);
  task->release = true;
  const bool all_woken = pump_until([&] { return woken == 3; });
  task->TaskFinished();  // frees the waiters should the test have failed
  for (auto& waiter : waiters) waiter.join();
  EXPECT_TRUE(all_woken);
}

// Every context cancels the listed tasks and groups and leaves the rest; an
// unknown one asserts but still cancels; empty lists make no batch at all.
TEST_F(SchedulerTest, BatchCancelCancelsListedTasksAndGroupsOnEveryContext) {
  EXPECT_FALSE(m_scheduler->BatchCancel({}, {}, IBatchCancel::main_context));
  const auto unknown_context = static_cast<IBatchCancel::signal_context_t>(7);
  for (auto context : {IBatchCancel::main_context, IBatchCancel::service_context,
                       IBatchCancel::long_tasks_context, unknown_context}) {
    SCOPED_TRACE(context);
    probe_ptr listed = probe(service_kind, hold_t::until_canceled);
    probe_ptr in_group = probe(long_kind, hold_t::until_canceled);
    probe_ptr spared = probe(long_kind, hold_t::until_canceled);  // leaves a service thread free
    ITaskPtr unregistered = probe();
    ASSERT_EQ(m_scheduler->AddTask(listed, "a"), 0);
    ASSERT_EQ(m_scheduler->AddTask(in_group, "b"), 0);
    ASSERT_EQ(m_scheduler->AddTask(spared, "a"), 0);
    ASSERT_TRUE(pump_until([&] { return listed->calls.worked + in_group->calls.worked + spared->calls.worked == 3; }));
    auto batch = m_scheduler->BatchCancel({listed, unregistered}, {"b"}, context);
    ASSERT_TRUE(batch);
    EXPECT_EQ(batch->Execute(), 0);
    ASSERT_TRUE(pump_until([&] { return listed->calls.finished == 1 && in_group->calls.finished == 1; }));
    EXPECT_TRUE(listed->calls.saw_cancel && in_group->calls.saw_cancel);
    EXPECT_FALSE(spared->IsCanceled() || unregistered->IsCanceled());
    m_scheduler->CancelAndWait("a", dialog_info_t(), false);
    std::vector<std::string> reported;
    for (const auto& assertion : orvix1_test::take_asserts()) reported.push_back(assertion.message);
    EXPECT_EQ(reported, std::vector<std::string>(context == unknown_context ? 1 : 0, "Invalid condition"));
  }
}

TEST_F(SchedulerTest, ThrowsFromEveryCallbackAreLoggedOnceAndTheSchedulerGoesOn) {
  for (const auto where : {&calls_t::started, &calls_t::worked, &calls_t::finished}) {
    for (const bool standard : {true, false}) {
      const bool in_work = where == &calls_t::worked;
      SCOPED_TRACE(std::string(where == &calls_t::started ? "start" : in_work ? "work" : "finish") +
                   (standard ? " std::exception" : " int"));
      probe_ptr task = probe(), next = probe();
      task->calls.throw_after = &(task->calls.*where);
      task->calls.throw_standard = standard;
      orvix1_test::log_capture_t log("orvix.scheduler");
      ASSERT_EQ(m_scheduler->AddTask(task, "x"), 0);
      ASSERT_EQ(m_scheduler->AddTask(next, "x"), 0);
      ASSERT_TRUE(pump_until([&] { return next->calls.finished == 1 && no_tasks_left(); }));
      EXPECT_EQ(task->calls.finished, 1);
      EXPECT_EQ(task->calls.worked, where == &calls_t::started ? 0 : 1);
      EXPECT_EQ(m_recorder->take_threw(), std::vector<const orvix1::tasks::ITask*>{task.get()});
      ASSERT_EQ(log.entries().size(), 1u);
      EXPECT_EQ(log.entries()[0].level, log4cplus::ERROR_LOG_LEVEL);
      if (in_work && standard) {
        EXPECT_EQ(log.entries()[0].message, "Task: " + task->GetDisplayName() +
                                                "has generated exception which wasn't appropriately handled., at file: src/tasks/Scheduler");
      }
    }
  }
}

// Three threads add, cancel and batch-cancel thousands of tasks in four
// groups while the GUI thread cancels groups and waits. Fixed counts and seeds.
TEST_F(SchedulerTest, StressEveryTaskFinishesOnceOnGuiThreadAndNoneIsKept) {
  constexpr int adders = 3, per_adder = 1000;
  const std::vector<std::string> groups = {"r1", "r2", "r3", "r4"};
  std::vector<calls_t> records(adders * per_adder + groups.size());
  // Each group first runs one task to its end, so the run has tasks that
  // started however the threads are scheduled later: under load the adders
  // can fill and cancel every group before the GUI thread starts any.
  for (std::size_t g = 0; g < groups.size(); ++g) {
    calls_t& record = records[adders * per_adder + g];
    ASSERT_EQ(m_scheduler->AddTask(ITaskPtr(probe(service_kind, hold_t::none, &record)), groups[g]), 0);
    record.accepted = true;
    ASSERT_TRUE(pump_until([&] { return record.finished == 1; }));
  }
  std::atomic<int> adders_done{0};
  std::vector<std::thread> workers;
  for (int a = 0; a < adders; ++a) {
    workers.emplace_back([&, a] {
      std::mt19937 random(77u + static_cast<unsigned>(a));
      const auto some_group = [&]() -> const std::string& { return groups[random() % groups.size()]; };
      for (int i = 0; i < per_adder; ++i) {
        calls_t& record = records[a * per_adder + i];
        // The adder lets go of the task at once: the scheduler alone keeps it.
        const kind_t kinds[] = {service_kind, long_kind, gui_though_long_kind};
        ITaskPtr task = random() % 4 == 0 ? ITaskPtr(new probe_gui_task_t(&record))
                                          : ITaskPtr(probe(kinds[random() % 3], hold_t::none, &record));
        if (random() % 10 == 0) task->Cancel();
        const int status = random() % 4 == 0
                               ? m_scheduler->AddDelayedTask(task, static_cast<int>(random() % 3), some_group())
                               : m_scheduler->AddTask(task, some_group());
        EXPECT_TRUE(status == 0 || status == 3) << status;  // 3: its group was being canceled
        record.accepted = status == 0;
        if (random() % 20 == 0) m_scheduler->Cancel(some_group());
        if (random() % 20 != 0) continue;
        const std::vector<ITaskPtr> live = m_scheduler->GetTasks(some_group());
        const std::list<ITaskPtr> some(live.begin(), live.begin() + std::min<std::size_t>(live.size(), 3));
        const auto context = static_cast<IBatchCancel::signal_context_t>(random() % 3);
        EXPECT_EQ(m_scheduler->BatchCancel(some, {some_group()}, context)->Execute(), 0);
      }
      ++adders_done;
    });
  }

  // Whatever a group held when its wait began has finished when it returns.
  for (int wait = 0; wait < 6; ++wait) {
    for (int i = 0; i < 20; ++i) orvix1_test::pump_events();
    const std::string& group = groups[wait % groups.size()];
    std::vector<ITaskPtr> held = m_scheduler->GetTasks(group);
    m_scheduler->CancelAndWait(group, dialog_info_t(), false);
    for (ITaskPtr& task : held) EXPECT_EQ(dynamic_cast<recording_t&>(*task).calls.finished, 1) << group;
  }
  const bool workers_finished = pump_until([&] { return adders_done == adders; });
  for (auto& worker : workers) worker.join();
  ASSERT_TRUE(workers_finished);
  ASSERT_TRUE(pump_until([&] {
    return std::all_of(records.begin(), records.end(), [](const calls_t& record) { return record.destroyed > 0; });
  }));

  int accepted = 0, started = 0;
  for (const calls_t& record : records) {
    EXPECT_TRUE(record.destroyed == 1 && record.late_calls == 0 && !record.wrong_thread);
    EXPECT_LE(record.started, record.accepted ? 1 : 0);
    EXPECT_EQ(record.finished, record.accepted ? 1 : 0);
    started += record.started;
    accepted += record.accepted;
  }
  // Some tasks were canceled before they started.
  EXPECT_LT(started, accepted);
  EXPECT_EQ(m_recorder->completed.load(), accepted);
  EXPECT_TRUE(no_tasks_left());
}

}  // namespace
