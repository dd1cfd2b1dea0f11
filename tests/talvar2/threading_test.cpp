#include <gtest/gtest.h>

#include <stdexcept>

#include <boost/pointer_cast.hpp>

#include "talvar2/assertion_recorder.h"
#include "talvar2/threading/thread_pool_unit.h"
#include "talvar2/threading_support.h"

namespace talvar2_test {
namespace {

using SchedulerStages = scheduler_test;

// Waits of 0 and 40 ms hold the next stage back without a stage of their own.
TEST_F(SchedulerStages, RunInOrderOneAtATimeEachOnItsUnitAfterTheirWaits) {
  const auto scheduled_at = std::chrono::steady_clock::now();
  std::vector<boost::shared_ptr<probe_task_t>> tasks;
  for (int i = 0; i < 40; ++i) {
    auto task = probe();
    task->add(service_unit_name, "a");
    task->add(long_tasks_unit_name, "b");
    task->add(main_unit_name, "c");
    task->add_wait(delay_tasks_unit_name, i % 2 * 40);
    task->add(service_unit_name, "d");
    task->add_final(main_unit_name, "e");
    ASSERT_EQ(scheduler->schedule(task, "stages"), schedule_accepted);
    tasks.push_back(task);
  }
  ASSERT_TRUE(drive_until(*main, [&] { return status->completed() == tasks.size(); }));
  EXPECT_GE(std::chrono::steady_clock::now() - scheduled_at, std::chrono::milliseconds(40));
  for (const auto& task : tasks) {
    EXPECT_EQ(task->steps(), (strings{"a@service", "b@long tasks", "c@test thread", "d@service", "e@test thread"}));
    EXPECT_EQ(task->overlaps(), 0);
    EXPECT_EQ(status->completions_of(task), 1);
  }
}

TEST_F(SchedulerStages, LongTasksHoldingEveryLongWorkerDoNotDelayServiceTasks) {
  const auto long_workers = static_cast<long>(
      boost::dynamic_pointer_cast<thread_pool_unit_t>(scheduler->find_unit(long_tasks_unit_name))->thread_count());
  gate_t release;
  counter_t blocked, served;
  for (long i = 0; i <= long_workers; ++i) {  // one more than there are workers
    scheduled("long", long_tasks_unit_name, "block", [&] {
      blocked.add();
      release.wait_open();
    });
  }
  ASSERT_TRUE(blocked.wait_for_at_least(long_workers));

  scheduled("service", service_unit_name, "serve", [&] { served.add(); });
  EXPECT_TRUE(served.wait_for_at_least(1));
  EXPECT_EQ(blocked.value(), long_workers);  // the extra one still queued
  release.open();
  EXPECT_TRUE(status->wait_completed(long_workers + 2));
}

// A work function has no state of its own: it learns whom it serves from
// the task it is given.
std::mutex g_served_mutex;
std::map<const task_t*, int> g_served;
void serve(const task_ptr_t& task) {
  std::lock_guard<std::mutex> lock(g_served_mutex);
  ++g_served[task.get()];
}

TEST_F(SchedulerStages, OneFunctionStageServesEveryTaskThatHoldsIt) {
  {  // tasks of an earlier repeat freed their addresses
    std::lock_guard<std::mutex> lock(g_served_mutex);
    g_served.clear();
  }
  const auto shared = boost::make_shared<stage_t>(service_unit_name, &serve);
  std::vector<task_ptr_t> tasks;
  for (int i = 0; i < 40; ++i) {
    auto task = boost::make_shared<default_task_t>();
    task->push_stage(shared);
    task->push_finalization_stage(shared);
    ASSERT_EQ(scheduler->schedule(task, "shared"), schedule_accepted);
    tasks.push_back(task);
  }
  ASSERT_TRUE(status->wait_completed(tasks.size()));
  for (const auto& task : tasks) EXPECT_EQ(locked(g_served_mutex, g_served)[task.get()], 2);

  assertion_recorder recorder;
  const stage_t without_work(service_unit_name, stage_t::work_function_t());
  EXPECT_EQ(recorder.single().expression, "work != nullptr");
}

using SchedulerCancel = scheduler_test;

// A stage that throws is reported and skips the rest of the ordinary stages
// too, without canceling the task; every finalization stage still runs.
TEST_F(SchedulerCancel, CancelingOrAThrowSkipsTheRestOfTheOrdinaryStagesOnly) {
  gate_t release;
  counter_t working;
  auto make = [&](const std::string& group, bool cancel_first = false) {
    auto task = probe();
    task->add(service_unit_name, "work", [&] {
      working.add();
      release.wait_open();
    });
    task->add(long_tasks_unit_name, "more");
    task->add_final(main_unit_name, "final");
    task->add(service_unit_name, "after final");
    task->add_final(service_unit_name, "last final");
    if (cancel_first) task->cancel();
    EXPECT_EQ(scheduler->schedule(task, group), schedule_accepted);
    return task;
  };
  auto early = make("early", true), canceled = make("doomed"), spared = make("spared");
  auto thrower = boost::make_shared<probe_task_t>();
  thrower->add(service_unit_name, "throws", [] { throw std::runtime_error("disk on fire"); });
  thrower->add_final(main_unit_name, "final throws", [] { throw 42; });
  thrower->add(service_unit_name, "skipped");
  thrower->add_final(long_tasks_unit_name, "final runs");
  ASSERT_EQ(scheduler->schedule(thrower, "thrown"), schedule_accepted);
  ASSERT_TRUE(working.wait_for_at_least(2));
  scheduler->cancel("doomed");
  release.open();
  ASSERT_TRUE(finish(canceled) && finish(spared) && finish(early) && finish(thrower));

  EXPECT_EQ(canceled->steps(), (strings{"work@service", "final@test thread", "last final@service"}));
  EXPECT_EQ(spared->steps(), (strings{"work@service", "more@long tasks", "final@test thread",
                                      "after final@service", "last final@service"}));
  EXPECT_EQ(early->steps(), (strings{"final@test thread", "last final@service"}));
  EXPECT_EQ(thrower->steps(), (strings{"throws", "final throws", "final runs"}));
  EXPECT_FALSE(thrower->is_canceled());
  const auto reports = status->exceptions();
  ASSERT_EQ(reports.size(), 2u);
  EXPECT_EQ(reports[0].task, thrower);
  EXPECT_EQ(reports[0].what, "disk on fire");
  EXPECT_EQ(reports[1].what, "unknown exception");
}

using SchedulerStatus = scheduler_test;

TEST_F(SchedulerStatus, ScheduleSaysWhyATaskIsRefused) {
  EXPECT_EQ(scheduler->schedule(nullptr, "g"), schedule_invalid_task);
  auto nowhere = probe();
  nowhere->add("nowhere", "x");
  EXPECT_EQ(scheduler->schedule(nowhere, "g"), schedule_unknown_unit);
  auto queue_wait = probe();
  queue_wait->add_wait(main_unit_name, 10);  // a wait needs a timed unit
  EXPECT_EQ(scheduler->schedule(queue_wait, "g"), schedule_unknown_unit);

  auto parked = probe();
  parked->add_wait(delay_tasks_unit_name, 600000);
  ASSERT_EQ(scheduler->schedule(parked, "g"), schedule_accepted);
  EXPECT_EQ(scheduler->schedule(parked, "other"), schedule_invalid_task);  // already in
  std::string group;
  EXPECT_TRUE(scheduler->task_group(parked, group));
  EXPECT_EQ(group, "g");
  EXPECT_FALSE(scheduler->task_group(nowhere, group));
  EXPECT_EQ(scheduler->tasks("g"), std::vector<task_ptr_t>{parked});
  EXPECT_FALSE(scheduler->cancel_task(nowhere));

  auto empty = probe();  // no stages: it completes inside schedule
  ASSERT_EQ(scheduler->schedule(empty, "g"), schedule_accepted);
  EXPECT_EQ(status->completions_of(empty), 1);
  EXPECT_EQ(scheduler->task_count("g"), 1u);

  EXPECT_TRUE(scheduler->cancel_task(parked));
  ASSERT_TRUE(finish(parked));  // within the test bound, not ten minutes
  EXPECT_EQ(parked->cancel_place(), "test thread");
  EXPECT_FALSE(scheduler->cancel_task(parked));  // it has left
}

class SchedulerCancelAndWait : public scheduler_test {
 protected:
  // `count` tasks in `group` whose work ignores canceling, counts itself in
  // `started` and holds until `release` opens; then a final stage on "main".
  std::vector<boost::shared_ptr<probe_task_t>> stubborn_tasks(int count, const std::string& group,
                                                              const char* work_unit, gate_t& release,
                                                              bool with_main = true) {
    std::vector<boost::shared_ptr<probe_task_t>> tasks;
    for (int i = 0; i < count; ++i) {
      auto task = probe();
      task->add(work_unit, "work", [this, &release] {
        started.add();
        release.wait_open();
      });
      if (with_main) task->add_final(main_unit_name, "final");
      EXPECT_EQ(scheduler->schedule(task, group), schedule_accepted);
      tasks.push_back(task);
    }
    return tasks;
  }

  counter_t started;
};

TEST_F(SchedulerCancelAndWait, ReturnsOnlyWhenEveryTaskOfTheGroupHasLeftAndRefusesItMeanwhile) {
  gate_t release;
  // Both pools have at least two workers: every work starts.
  auto tasks = stubborn_tasks(2, "g", service_unit_name, release);
  auto more = stubborn_tasks(2, "g", long_tasks_unit_name, release);
  tasks.insert(tasks.end(), more.begin(), more.end());
  ASSERT_TRUE(started.wait_for_at_least(4));
  auto other = probe(), late = probe(), elsewhere = probe();
  other->add_wait(delay_tasks_unit_name, 600000);
  ASSERT_EQ(scheduler->schedule(other, "other"), schedule_accepted);

  int same_group = -1, other_group = -1;
  const auto callback = boost::make_shared<driving_wait_t>(main, [&](int call) {
    if (call == 1) {
      same_group = scheduler->schedule(late, "g");
      other_group = scheduler->schedule(elsewhere, "h");
    }
    if (call == 3) release.open();
  });
  scheduler->cancel_and_wait("g", callback);
  EXPECT_GE(callback->calls(), 3);
  for (const auto& task : tasks) {
    EXPECT_EQ(status->completions_of(task), 1);
    EXPECT_EQ(task->steps().size(), 2u);  // work and final
  }
  EXPECT_EQ(scheduler->task_count(""), 1u);
  EXPECT_FALSE(other->is_canceled());
  EXPECT_EQ(same_group, schedule_group_canceling);
  EXPECT_EQ(other_group, schedule_accepted);
  EXPECT_EQ(scheduler->schedule(late, "g"), schedule_accepted);
}

// Without a given callback it uses the scheduler's default one; without
// either it blocks and processes nothing.
TEST_F(SchedulerCancelAndWait, WithoutAGivenCallbackItUsesTheDefaultOrBlocksProcessingNothing) {
  gate_t release, second_release, third_release;
  // Work on the workers only: nobody drains "main" while the test thread waits.
  auto tasks = stubborn_tasks(2, "g", service_unit_name, release, false);
  ASSERT_TRUE(started.wait_for_at_least(2));
  scheduled("gui", main_unit_name, "gui");
  std::thread opener([&] {
    const auto deadline = std::chrono::steady_clock::now() + k_timeout;
    while (!(tasks[0]->is_canceled() && tasks[1]->is_canceled()) && std::chrono::steady_clock::now() < deadline)
      release.wait_open(std::chrono::milliseconds(1));
    release.open();
  });
  scheduler->cancel_and_wait("g");
  opener.join();
  for (const auto& task : tasks) EXPECT_EQ(status->completions_of(task), 1);
  EXPECT_EQ(main->queued_jobs(), 1u);  // the GUI job waits

  scheduler.reset();
  const auto default_wait = boost::make_shared<driving_wait_t>(nullptr, [&](int) { third_release.open(); });
  create(default_wait);
  const auto given = boost::make_shared<driving_wait_t>(main, [&](int) { second_release.open(); });
  scheduler->cancel_and_wait("g", given);  // nothing to wait for: no callback at all
  scheduler->cancel_and_wait("");
  EXPECT_EQ(given->calls() + default_wait->calls(), 0);

  stubborn_tasks(2, "g", service_unit_name, second_release);
  ASSERT_TRUE(started.wait_for_at_least(4));
  scheduler->cancel_and_wait("g", given);
  EXPECT_GE(given->calls(), 1);
  EXPECT_EQ(default_wait->calls(), 0);

  const auto parked = stubborn_tasks(1, "g", service_unit_name, third_release, false);
  ASSERT_TRUE(started.wait_for_at_least(5));
  scheduler->cancel_and_wait("g");
  EXPECT_GE(default_wait->calls(), 1);
  EXPECT_EQ(status->completions_of(parked[0]), 1);
}

TEST_F(SchedulerCancelAndWait, InsideAStageOfAWaitedTaskItOnlyCancels) {
  assertion_recorder recorder;
  auto task = boost::make_shared<probe_task_t>();
  task->add(main_unit_name, "waits for itself",
            [&] { scheduler->cancel_and_wait("self", boost::make_shared<driving_wait_t>(main)); });
  task->add(service_unit_name, "skipped");
  task->add_final(main_unit_name, "final");
  ASSERT_EQ(scheduler->schedule(task, "self"), schedule_accepted);
  ASSERT_TRUE(finish(task));
  EXPECT_EQ(task->steps(), (strings{"waits for itself", "final"}));
  EXPECT_EQ(recorder.single().expression, "cancel_and_wait inside a stage of a task it waits for");
  EXPECT_EQ(scheduler->schedule(probe(), "self"), schedule_accepted);  // the group is open again
}

TEST(SchedulerLifetime, NeedsAStatusCallbackAndAbandonsItsTasksWhenDestroyed) {
  {
    assertion_recorder recorder;
    EXPECT_FALSE(create_default_scheduler(nullptr, nullptr, false));
    EXPECT_EQ(recorder.single().expression, "status_callback");
  }
  const auto status = boost::make_shared<recording_status_t>();
  auto scheduler = create_default_scheduler(status, nullptr, true);  // with a "main" queue of its own
  const auto main = boost::dynamic_pointer_cast<queue_unit_t>(scheduler->find_unit(main_unit_name));
  ASSERT_TRUE(main);
  auto sleeping = boost::make_shared<probe_task_t>(), queued = boost::make_shared<probe_task_t>();
  sleeping->add_wait(delay_tasks_unit_name, 600000);
  sleeping->add_final(service_unit_name, "final");
  queued->add(main_unit_name, "gui");
  ASSERT_EQ(scheduler->schedule(sleeping, "g"), schedule_accepted);
  ASSERT_EQ(scheduler->schedule(queued, "g"), schedule_accepted);
  const boost::weak_ptr<probe_task_t> sleeping_watch = sleeping, queued_watch = queued;
  sleeping.reset();
  queued.reset();
  scheduler.reset();
  EXPECT_TRUE(sleeping_watch.expired());
  EXPECT_FALSE(queued_watch.expired());  // its job still sits in the queue
  EXPECT_EQ(main->process_queue(10), 1u);
  EXPECT_TRUE(queued_watch.expired());
  EXPECT_EQ(status->completed(), 0u);
}

}  // namespace
}  // namespace talvar2_test
