// Thousands of random tasks scheduled from two threads while the test thread
// drains "main" and cancels groups, tasks and batches at random (fixed seeds).

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <stdexcept>

#include "talvar2/threading/batch_cancel.h"
#include "talvar2/threading_support.h"

namespace talvar2_test {
namespace {

constexpr int k_tasks = 4000;
constexpr int k_groups = 8;
constexpr unsigned k_plan_seed = 20240611;
constexpr unsigned k_cancel_seed = 7;

std::string group_name(int index) { return "group " + std::to_string(index); }

struct planned_task_t {
  boost::shared_ptr<probe_task_t> task;
  std::string group;
  int finals = 0;
};

// Builds a task of 1 to 4 ordinary stages (work on each unit, short waits,
// now and then a throw) and 1 or 2 finalization stages.
planned_task_t plan_task(std::mt19937& random, std::atomic<long>& throws) {
  planned_task_t planned{boost::make_shared<probe_task_t>(),
                         group_name(std::uniform_int_distribution<int>(0, k_groups - 1)(random))};
  const char* const work_units[] = {service_unit_name, long_tasks_unit_name, main_unit_name};
  std::uniform_int_distribution<int> pick_unit(0, 2);
  const int ordinary = std::uniform_int_distribution<int>(1, 4)(random);
  for (int i = 0; i < ordinary; ++i) {
    const int kind = std::uniform_int_distribution<int>(0, 39)(random);
    if (kind < 6) {
      planned.task->add_wait(delay_tasks_unit_name, kind % 3);
    } else if (kind == 6) {
      planned.task->add(service_unit_name, "throws", [&throws] {
        throws.fetch_add(1);
        throw std::runtime_error("planned failure");
      });
    } else {
      planned.task->add(work_units[pick_unit(random)], "work");
    }
  }
  planned.finals = std::uniform_int_distribution<int>(1, 2)(random);
  for (int i = 0; i < planned.finals; ++i) planned.task->add_final(work_units[pick_unit(random)], "final");
  return planned;
}

TEST(SchedulerStress, EveryTaskFinishesExactlyOnceAndNothingIsLeft) {
  const auto status = boost::make_shared<recording_status_t>();
  const auto scheduler = create_default_scheduler(status, nullptr, false);
  const auto main = boost::make_shared<queue_unit_t>();
  scheduler->register_unit(main_unit_name, main);

  std::atomic<long> throws{0};
  std::mt19937 plan_random(k_plan_seed);
  std::vector<planned_task_t> plan;
  for (int i = 0; i < k_tasks; ++i) plan.push_back(plan_task(plan_random, throws));

  std::atomic<int> schedulers_done{0};
  auto schedule_half = [&](int first) {
    for (int i = first; i < k_tasks; i += 2)
      EXPECT_EQ(scheduler->schedule(plan[i].task, plan[i].group), schedule_accepted) << "task " << i;
    ++schedulers_done;
  };
  std::thread even(schedule_half, 0), odd(schedule_half, 1);

  std::mt19937 cancel_random(k_cancel_seed);
  std::uniform_int_distribution<int> percent(0, 99), any_task(0, k_tasks - 1), any_group(0, k_groups - 1);
  int batches = 0;
  const auto deadline = std::chrono::steady_clock::now() + k_timeout;
  while (schedulers_done.load() < 2 || status->completed() < static_cast<std::size_t>(k_tasks / 2)) {
    ASSERT_LT(std::chrono::steady_clock::now(), deadline);
    drive_once(*main);
    const int roll = percent(cancel_random);
    if (roll < 5) {
      scheduler->cancel(group_name(any_group(cancel_random)));
    } else if (roll < 15) {
      scheduler->cancel_task(plan[any_task(cancel_random)].task);
    } else if (roll < 17) {
      const auto batch = batch_cancel_t::create();
      for (int i = 0; i < 3; ++i) batch->add_task(plan[any_task(cancel_random)].task);
      batch->add_group(group_name(any_group(cancel_random)));
      ASSERT_EQ(batch->execute(scheduler, roll == 15 ? main_unit_name : service_unit_name),
                schedule_accepted);
      ++batches;
    }
  }
  even.join();
  odd.join();
  scheduler->cancel_and_wait("", boost::make_shared<driving_wait_t>(main));

  EXPECT_EQ(scheduler->task_count(""), 0u);
  EXPECT_EQ(main->queued_jobs(), 0u);
  EXPECT_EQ(status->completed(), static_cast<std::size_t>(k_tasks + batches));
  EXPECT_EQ(status->exceptions().size(), static_cast<std::size_t>(throws.load()));
  EXPECT_TRUE(status->scheduling_errors().empty());
  int canceled = 0;
  for (int i = 0; i < k_tasks; ++i) {
    const planned_task_t& planned = plan[i];
    ASSERT_EQ(status->completions_of(planned.task), 1) << "task " << i;
    const auto steps = planned.task->steps();
    ASSERT_EQ(std::count(steps.begin(), steps.end(), "final"), planned.finals) << "task " << i;
    ASSERT_EQ(planned.task->overlaps(), 0) << "task " << i;
    if (planned.task->is_canceled()) ++canceled;
  }
  // The random cancels did reach tasks, and not all of them.
  EXPECT_GT(canceled, 0);
  EXPECT_LT(canceled, k_tasks);
}

}  // namespace
}  // namespace talvar2_test
