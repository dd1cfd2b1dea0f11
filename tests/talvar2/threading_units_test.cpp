#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <stdexcept>

#include "talvar2/assertion_recorder.h"
#include "talvar2/threading/batch_cancel.h"
#include "talvar2/threading/operation_status.h"
#include "talvar2/threading_support.h"

namespace talvar2_test {
namespace {

// Records every new-job signal as "unit@emitting place", or throws once told to.
class job_listener_t : public talvar2::subscriber_base_t {
 public:
  job_listener_t(boost::shared_ptr<queue_unit_t> queue, std::function<std::string()> place)
      : m_queue(std::move(queue)), m_place(std::move(place)) {
    m_queue->new_job.connect(this, &job_listener_t::on_new_job);
  }
  ~job_listener_t() override { m_queue->new_job.disconnect(this, &job_listener_t::on_new_job); }
  strings heard() const { return locked(m_mutex, m_heard); }
  bool fail = false;

 private:
  void on_new_job(const task_ptr_t&, const stage_ptr_t& stage) {
    if (fail) throw std::runtime_error("slot failed");
    std::lock_guard<std::mutex> lock(m_mutex);
    m_heard.push_back(stage->unit_name() + "@" + m_place());
  }

  boost::shared_ptr<queue_unit_t> m_queue;
  std::function<std::string()> m_place;
  mutable std::mutex m_mutex;
  strings m_heard;
};

using QueueUnit = scheduler_test;

TEST_F(QueueUnit, RunsAtMostTheGivenNumberOfJobsPerCall) {
  std::vector<boost::shared_ptr<probe_task_t>> tasks;
  for (int i = 0; i < 5; ++i) tasks.push_back(scheduled("g", main_unit_name, "job " + std::to_string(i)));
  EXPECT_EQ(main->process_queue(0), 0u);
  EXPECT_EQ(main->process_queue(2), 2u);
  EXPECT_TRUE(tasks[2]->steps().empty());
  EXPECT_EQ(main->process_queue(10), 3u);
  EXPECT_EQ(tasks[4]->steps(), strings{"job 4@test thread"});

  boost::shared_ptr<probe_task_t> inner;
  scheduled("g", main_unit_name, "outer", [&] {
    inner = scheduled("g", main_unit_name, "inner");
    EXPECT_EQ(main->process_queue(10), 1u);  // a job may drain the queue, as a modal loop would
  });
  EXPECT_EQ(main->process_queue(1), 1u);
  EXPECT_EQ(inner->steps(), strings{"inner@test thread"});
  EXPECT_EQ(status->completed(), 7u);
}

// A throwing new-job slot is reported, and its job is void.
TEST_F(QueueUnit, SignalsEveryNewJobOnTheThreadThatQueuedItAndReportsAThrowingSlot) {
  job_listener_t listener(main, [this] { return here(); });
  scheduled("g", main_unit_name, "gui");
  auto from_worker = probe();
  from_worker->add(service_unit_name, "work");
  from_worker->add(main_unit_name, "gui");
  ASSERT_EQ(scheduler->schedule(from_worker, "g"), schedule_accepted);
  ASSERT_TRUE(drive_until(*main, [&] { return status->completed() == 2; }));
  EXPECT_EQ(listener.heard(), (strings{"main@test thread", "main@service"}));

  listener.fail = true;
  auto task = boost::make_shared<probe_task_t>();
  task->add(main_unit_name, "gui");
  task->add_final(service_unit_name, "final");
  ASSERT_EQ(scheduler->schedule(task, "g"), schedule_accepted);
  const auto errors = status->scheduling_errors();
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_EQ(errors[0].what, "unit \"main\" threw: slot failed");
  ASSERT_TRUE(status->wait_completed(3));
  EXPECT_EQ(main->process_queue(5), 1u);  // the job was queued all the same, but is void
  EXPECT_EQ(task->steps(), strings{"final"});
}

using BatchCancel = QueueUnit;

// The batch also holds a task that is gone at once: it is skipped.
TEST_F(BatchCancel, CancelsItsTasksAndGroupsWhenItRunsOnItsUnit) {
  std::vector<boost::shared_ptr<probe_task_t>> tasks;
  for (const char* group : {"g1", "g1", "g2", "g2", "g3"}) {
    auto task = probe();
    task->add_wait(delay_tasks_unit_name, 600000);
    task->add(service_unit_name, "work");
    task->add_final(main_unit_name, "final");
    EXPECT_EQ(scheduler->schedule(task, group), schedule_accepted);
    tasks.push_back(task);
  }
  const auto batch = batch_cancel_t::create();
  batch->add_group("g1");
  batch->add_task(tasks[2]);
  batch->add_task(boost::make_shared<probe_task_t>());
  EXPECT_EQ(batch->execute(scheduler, "nowhere"), schedule_unknown_unit);
  ASSERT_EQ(batch->execute(scheduler, main_unit_name), schedule_accepted);
  EXPECT_FALSE(tasks[0]->is_canceled());  // not before "main" runs it

  ASSERT_TRUE(drive_until(*main, [&] { return status->completed() == 4; }));  // the batch and 3 tasks
  for (int i : {0, 1, 2}) {
    EXPECT_EQ(tasks[i]->steps(), strings{"final@test thread"});
    EXPECT_EQ(tasks[i]->cancel_place(), "test thread");
  }
  EXPECT_FALSE(tasks[3]->is_canceled() || tasks[4]->is_canceled());
  EXPECT_TRUE(status->exceptions().empty());

  assertion_recorder recorder;
  EXPECT_EQ(batch->execute(nullptr, service_unit_name), schedule_invalid_task);
  EXPECT_EQ(recorder.single().expression, "scheduler");
}

// Names the group of every completion; the plain report must not be used.
class group_status_t : public scheduler_status_callback_t {
 public:
  void task_complete(const task_ptr_t&) override { ADD_FAILURE() << "a completion without its group"; }
  void task_complete_in(const task_ptr_t&, const std::string& group) override {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_groups.push_back(group);
  }
  void task_exception(const task_ptr_t&, const std::string&) override {}
  void task_scheduling_error(const task_ptr_t&, const std::string&) override {}
  std::multiset<std::string> groups() const {
    std::lock_guard<std::mutex> lock(m_mutex);
    return {m_groups.begin(), m_groups.end()};
  }

 private:
  mutable std::mutex m_mutex;
  strings m_groups;
};

void do_nothing(const task_ptr_t&) {}

// Runs are recycled round after round: a finished task is let go, and so is
// a signal stage (the scheduler may keep function stages, which hold nothing).
TEST(SchedulerRuns, LetGoOfTheirTaskWhenRecycledAndReportTheGroup) {
  const auto status = boost::make_shared<group_status_t>();
  const auto scheduler = create_default_scheduler(status, nullptr, true);
  const auto main = boost::dynamic_pointer_cast<queue_unit_t>(scheduler->find_unit(main_unit_name));
  const auto function_stage = boost::make_shared<stage_t>(main_unit_name, &do_nothing);
  std::vector<boost::weak_ptr<void>> gone;
  for (int round = 1; round <= 3; ++round) {
    for (const char* group : {"a", "b"}) {
      auto task = boost::make_shared<default_task_t>();
      auto signal_stage = boost::make_shared<stage_t>(service_unit_name, stage_t::work_signal_t());
      task->push_stage(function_stage);
      task->push_finalization_stage(signal_stage);
      ASSERT_EQ(scheduler->schedule(task, group), schedule_accepted);
      gone.insert(gone.end(), {task, signal_stage});
    }
    const std::size_t expected = 2u * static_cast<std::size_t>(round);
    ASSERT_TRUE(drive_until(*main, [&] { return status->groups().size() == expected; }));
  }
  EXPECT_EQ(status->groups(), (std::multiset<std::string>{"a", "a", "a", "b", "b", "b"}));
  // A worker lets go of its job just after the completion is reported.
  EXPECT_TRUE(drive_until(*main, [&] {
    return std::all_of(gone.begin(), gone.end(), [](const boost::weak_ptr<void>& w) { return w.expired(); });
  }));
}

TEST(OperationStatus, FinishesWhenEveryPartIsDoneAndAssertsOnAnExtraCountDown) {
  scheduler_operation_status_t status(1);
  EXPECT_FALSE(status.wait_for(std::chrono::milliseconds(1)));
  status.count_down();
  EXPECT_TRUE(status.is_finished());
  assertion_recorder recorder;
  status.count_down();
  EXPECT_EQ(recorder.single().expression, "m_pending > 0");
  EXPECT_EQ(status.pending(), 0u);
  EXPECT_TRUE(scheduler_operation_status_t().is_finished());
}

class named_task_t : public default_task_t {};

TEST(DefaultTask, IsNamedByItsTypeAndRefusesBadStages) {
  named_task_t task;
  EXPECT_EQ(task.display_name(), "talvar2_test::(anonymous namespace)::named_task_t");
  EXPECT_EQ(default_task_t("loader").display_name(), "loader");
  assertion_recorder recorder;
  task.push_stage(nullptr);
  EXPECT_EQ(recorder.single().expression, "stage");
  EXPECT_TRUE(task.stages().empty());
  recorder.clear();
  const stage_t negative(delay_tasks_unit_name, -3);
  EXPECT_EQ(recorder.single().expression, "delay_ms >= 0");
  EXPECT_EQ(negative.delay().count(), 0);
}

}  // namespace
}  // namespace talvar2_test
