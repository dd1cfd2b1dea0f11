#ifndef TALVAR2_SRC_SCHEDULER_CORE_H
#define TALVAR2_SRC_SCHEDULER_CORE_H

// The state behind the default scheduler. Jobs refer to it weakly: only the
// scheduler handle owns it, so it never dies on one of its own worker
// threads (the handle joins them first).

#include <atomic>
#include <cstddef>
#include <functional>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include "talvar2/threading/callbacks.h"
#include "talvar2/threading/operation_status.h"
#include "talvar2/threading/scheduler.h"
#include "talvar2/threading/task.h"
#include "talvar2/threading/thread_pool_unit.h"
#include "talvar2/threading/unit.h"

namespace talvar2 {
namespace threading {
namespace _internal {

class scheduler_core_t;

// One scheduling of one task: its stages with their units as resolved when
// it was scheduled, where it stands, and how to cut its current wait short.
// The units are not owned here: a pending job lives inside its unit, and
// owning the unit back would keep both alive for ever. The core keeps every
// unit it ever registered, and a run touches its units only while the core
// lives.
class task_run_t {
 public:
  static constexpr std::size_t no_stage = static_cast<std::size_t>(-1);

  // A stage with the unit it was resolved to.
  struct stage_entry_t {
    stage_ptr_t stage;
    bool finalization;
    unit_t* unit;
  };
  using stage_entries_t = boost::container::small_vector<stage_entry_t, 4>;

  task_run_t(task_ptr_t task, std::string group, stage_entries_t stages,
             boost::weak_ptr<scheduler_core_t> core);

  const task_ptr_t task;
  const std::string group;
  const stage_entries_t stages;
  const boost::weak_ptr<scheduler_core_t> core;

  // The stage handed to its unit and not yet run, or no_stage.
  std::atomic<std::size_t> dispatched{no_stage};
  // A stage threw (or could not be handed over): ordinary stages are skipped.
  std::atomic<bool> failed{false};

  // Waits: see job_t::on_cancel.
  bool install_interrupt(std::size_t index, std::function<void()> interrupt);
  void clear_interrupt();
  // Marks the run canceled through the scheduler and cuts the current wait.
  void interrupt();

 private:
  std::mutex m_interrupt_mutex;
  std::function<void()> m_interrupt;
  bool m_interrupted = false;
};

using task_run_ptr_t = boost::shared_ptr<task_run_t>;

class scheduler_core_t : public boost::enable_shared_from_this<scheduler_core_t> {
 public:
  scheduler_core_t(boost::shared_ptr<scheduler_status_callback_t> status_callback,
                   boost::shared_ptr<scheduler_wait_callback_t> wait_callback);

  // Creates and registers the worker and timer units.
  void create_own_units(const worker_counts_t& workers);

  int schedule(const task_ptr_t& task, const std::string& group);
  void register_unit(const std::string& name, const boost::shared_ptr<unit_t>& unit);
  boost::shared_ptr<unit_t> find_unit(const std::string& name) const;
  void cancel(const std::string& group);
  bool cancel_task(const task_ptr_t& task);
  void cancel_and_wait(const std::string& group,
                       const boost::shared_ptr<scheduler_wait_callback_t>& wait_callback);
  std::vector<task_ptr_t> tasks(const std::string& group) const;
  std::size_t task_count(const std::string& group) const;
  bool task_group(const task_ptr_t& task, std::string& group) const;

  // Stops the own worker units and turns every later job into a no-op.
  void shut_down();

  // The body of job_t::run.
  void run_job(const task_run_ptr_t& run, std::size_t index);

 private:
  // A cancel-and-wait in progress: counted down as the tasks in its scope leave.
  struct watch_t {
    std::string group;
    boost::shared_ptr<scheduler_operation_status_t> status;
  };

  static bool in_scope(const std::string& scope, const std::string& group) {
    return scope.empty() || scope == group;
  }

  // Moves each of `stages` into `entries` with its unit; a schedule_status_t.
  int resolve_units(stage_list_t& stages, task_run_t::stage_entries_t& entries) const;
  // Hands the first stage from `from` on that still has to run to its unit,
  // or completes the task when none is left.
  void advance(const task_run_ptr_t& run, std::size_t from);
  bool should_skip(const task_run_ptr_t& run, std::size_t index);
  void run_stage(const task_run_ptr_t& run, const stage_t& stage);
  void complete(const task_run_ptr_t& run);
  void cancel_runs(const std::vector<task_run_ptr_t>& runs);
  // Scans every run: canceling is rare, scheduling must stay cheap.
  std::vector<task_run_ptr_t> runs_in_scope(const std::string& group) const;  // lock held
  void leave_canceling(const std::string& group);

  void report_exception(const task_run_ptr_t& run, const std::string& what);
  void report_scheduling_error(const task_run_ptr_t& run, const std::string& what);

  const boost::shared_ptr<scheduler_status_callback_t> m_status_callback;
  const boost::shared_ptr<scheduler_wait_callback_t> m_default_wait_callback;
  std::atomic<bool> m_stopped{false};

  mutable std::mutex m_mutex;  // guards everything below
  std::unordered_map<std::string, boost::shared_ptr<unit_t>> m_units;
  // Every unit ever registered, replaced ones too: runs refer to them.
  std::vector<boost::shared_ptr<unit_t>> m_registered_units;
  std::vector<boost::shared_ptr<thread_pool_unit_t>> m_own_pools;
  std::unordered_map<const task_t*, task_run_ptr_t> m_runs;
  // Cancel-and-waits in progress, per group and on every group.
  std::unordered_map<std::string, std::size_t> m_canceling_groups;
  std::size_t m_canceling_all = 0;
  std::vector<watch_t> m_watches;
};

}  // namespace _internal
}  // namespace threading
}  // namespace talvar2

#endif
