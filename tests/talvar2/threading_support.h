#ifndef TALVAR2_TESTS_THREADING_SUPPORT_H
#define TALVAR2_TESTS_THREADING_SUPPORT_H

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "talvar2/functor/signal.h"
#include "talvar2/threading/callbacks.h"
#include "talvar2/threading/default_task.h"
#include "talvar2/threading/queue_unit.h"
#include "talvar2/threading/scheduler.h"
#include "talvar2/threading/stage.h"

namespace talvar2_test {

using namespace talvar2::threading;
using strings = std::vector<std::string>;

template <class T>
T locked(std::mutex& mutex, const T& value) {
  std::lock_guard<std::mutex> lock(mutex);
  return value;
}

// Bound of every wait in these tests: far beyond what a correct run needs.
constexpr std::chrono::milliseconds k_timeout{10000};

class counter_t {
 public:
  void add() {
    std::lock_guard<std::mutex> lock(m_mutex);
    ++m_value;
    m_changed.notify_all();
  }
  long value() const { return locked(m_mutex, m_value); }
  bool wait_for_at_least(long target, std::chrono::milliseconds timeout = k_timeout) const {
    std::unique_lock<std::mutex> lock(m_mutex);
    return m_changed.wait_for(lock, timeout, [&] { return m_value >= target; });
  }

 private:
  mutable std::mutex m_mutex;
  mutable std::condition_variable m_changed;
  long m_value = 0;
};

// Closed until opened; threads wait on it with a bound.
struct gate_t : private counter_t {
  void open() { add(); }
  bool wait_open(std::chrono::milliseconds timeout = k_timeout) const { return wait_for_at_least(1, timeout); }
};

class recording_status_t : public scheduler_status_callback_t {
 public:
  struct report_t {
    task_ptr_t task;
    std::string what;
  };

  void task_complete(const task_ptr_t& task) override {
    {
      std::lock_guard<std::mutex> lock(m_mutex);
      ++m_completions[task];
    }
    m_completed.add();
  }
  void task_exception(const task_ptr_t& task, const std::string& what) override { report(m_exceptions, task, what); }
  void task_scheduling_error(const task_ptr_t& task, const std::string& what) override {
    report(m_scheduling_errors, task, what);
  }

  int completions_of(const task_ptr_t& task) const {
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_completions.count(task) != 0 ? m_completions.at(task) : 0;
  }
  std::size_t completed() const { return static_cast<std::size_t>(m_completed.value()); }
  bool wait_completed(std::size_t total) const { return m_completed.wait_for_at_least(static_cast<long>(total)); }
  std::vector<report_t> exceptions() const { return locked(m_mutex, m_exceptions); }
  std::vector<report_t> scheduling_errors() const { return locked(m_mutex, m_scheduling_errors); }

 private:
  void report(std::vector<report_t>& list, const task_ptr_t& task, const std::string& what) {
    std::lock_guard<std::mutex> lock(m_mutex);
    list.push_back({task, what});
  }

  mutable std::mutex m_mutex;
  std::map<task_ptr_t, int> m_completions;  // holds the tasks: no address is reused
  counter_t m_completed;
  std::vector<report_t> m_exceptions;
  std::vector<report_t> m_scheduling_errors;
};

class stage_action_t : public talvar2::subscriber_base_t {
 public:
  explicit stage_action_t(std::function<void()> body) : m_body(std::move(body)) {}
  stage_ptr_t make_stage(const std::string& unit_name) {
    stage_t::work_signal_t work;
    work.connect(this, &stage_action_t::on_work);
    return boost::make_shared<stage_t>(unit_name, work);
  }

 private:
  void on_work(const task_ptr_t&) { m_body(); }
  std::function<void()> m_body;
};

// A task whose stages are functions. It records every stage that runs, in
// running order, as "label@place" (only "label" without a place function),
// counts stages that overlap, and remembers the place of its first cancel().
class probe_task_t : public default_task_t {
 public:
  explicit probe_task_t(std::function<std::string()> place = {}) : m_place(std::move(place)) {}

  void add(const std::string& unit, const std::string& label, std::function<void()> body = {}) {
    push_stage(make_work_stage(unit, label, std::move(body)));
  }
  void add_final(const std::string& unit, const std::string& label, std::function<void()> body = {}) {
    push_finalization_stage(make_work_stage(unit, label, std::move(body)));
  }
  void add_wait(const std::string& unit, int delay_ms) { push_stage(boost::make_shared<stage_t>(unit, delay_ms)); }
  void cancel() override;

  strings steps() const { return locked(m_mutex, m_steps); }
  int overlaps() const { return m_overlaps.load(); }
  std::string cancel_place() const { return locked(m_mutex, m_cancel_place); }

 private:
  stage_ptr_t make_work_stage(const std::string& unit, const std::string& label, std::function<void()> body);
  std::string place() const { return m_place ? m_place() : std::string(); }

  std::function<std::string()> m_place;
  std::vector<std::unique_ptr<stage_action_t>> m_actions;
  mutable std::mutex m_mutex;
  strings m_steps;
  std::string m_cancel_place;
  std::atomic<int> m_in_flight{0};
  std::atomic<int> m_overlaps{0};
};

// Drain a queue on the calling thread as a GUI's event loop would, waiting a
// millisecond whenever it is empty; drive_until is false after `k_timeout`.
void drive_once(queue_unit_t& queue);
bool drive_until(queue_unit_t& queue, const std::function<bool()>& done);

// A wait callback that drains a queue on the waiting thread, as a GUI's
// event pump does, and counts its calls. `on_call(n)` runs at call n (from 1).
class driving_wait_t : public scheduler_wait_callback_t {
 public:
  explicit driving_wait_t(boost::shared_ptr<queue_unit_t> queue, std::function<void(int)> on_call = {})
      : m_queue(std::move(queue)), m_on_call(std::move(on_call)) {}

  void wait(boost::weak_ptr<scheduler_operation_status_t> status) override;
  int calls() const { return m_calls.load(); }

 private:
  boost::shared_ptr<queue_unit_t> m_queue;  // may be empty: then it only waits
  std::function<void(int)> m_on_call;
  std::atomic<int> m_calls{0};
};

// A default scheduler with a "main" queue drained by the test thread.
class scheduler_test : public ::testing::Test {
 protected:
  void SetUp() override { create(nullptr); }

  void TearDown() override {
    scheduler->cancel_and_wait("", boost::make_shared<driving_wait_t>(main));
    EXPECT_EQ(scheduler->task_count(""), 0u);
  }

  void create(const boost::shared_ptr<scheduler_wait_callback_t>& default_wait) {
    status = boost::make_shared<recording_status_t>();
    scheduler = create_default_scheduler(status, default_wait, false);
    main = boost::make_shared<queue_unit_t>();
    scheduler->register_unit(main_unit_name, main);
  }

  // Where the caller runs: a pool unit's name, "test thread", or "other".
  std::string here() const;
  boost::shared_ptr<probe_task_t> probe() {
    return boost::make_shared<probe_task_t>([this] { return here(); });
  }

  boost::shared_ptr<probe_task_t> scheduled(const std::string& group, const std::string& unit,
                                            const std::string& label, std::function<void()> body = {}) {
    auto task = probe();
    task->add(unit, label, std::move(body));
    EXPECT_EQ(scheduler->schedule(task, group), schedule_accepted);
    return task;
  }

  bool finish(const task_ptr_t& task) {
    return drive_until(*main, [&] { return status->completions_of(task) > 0; });
  }

  boost::shared_ptr<recording_status_t> status;
  boost::shared_ptr<scheduler_t> scheduler;
  boost::shared_ptr<queue_unit_t> main;
  const std::thread::id test_thread = std::this_thread::get_id();
};

}  // namespace talvar2_test

#endif
