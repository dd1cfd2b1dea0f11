#ifndef TALVAR2_SRC_SCHEDULER_CORE_H
#define TALVAR2_SRC_SCHEDULER_CORE_H

// The state behind the default scheduler. Jobs refer to it weakly: only the
// scheduler handle owns it, so it never dies on one of its own worker
// threads (the handle joins them first).

#include <array>
#include <atomic>
#include <cstddef>
#include <new>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include <boost/enable_shared_from_this.hpp>
#include <boost/intrusive/unordered_set.hpp>
#include <boost/intrusive_ptr.hpp>
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
class run_pool_t;

// One scheduling of one task: its stages with their units as resolved when
// it was scheduled, where it stands, and how to cut its current wait short.
// Counted by hand (jobs and the core's run registry hold it) and recycled
// through the pool of the core that made it: a scheduling allocates nothing
// once the pool has warmed up.
//
// The units are not owned here: a pending job lives inside its unit, and
// owning the unit back would keep both alive for ever. The core keeps every
// unit it ever registered, and a run touches its units only while the core
// lives.
class task_run_t : public boost::intrusive::unordered_set_base_hook<
                       boost::intrusive::link_mode<boost::intrusive::normal_link>> {
 public:
  static constexpr std::size_t no_stage = static_cast<std::size_t>(-1);

  // A stage with the unit it was resolved to.
  struct stage_entry_t {
    stage_ptr_t stage;
    bool finalization;
    unit_t* unit;
  };
  using stage_entries_t = boost::container::small_vector<stage_entry_t, 4>;

  task_run_t() = default;
  task_run_t(const task_run_t&) = delete;
  task_run_t& operator=(const task_run_t&) = delete;

  // Set while the run is handed out, cleared when it goes back to the pool.
  task_ptr_t task;
  std::string group;
  stage_entries_t stages;
  boost::weak_ptr<scheduler_core_t> core;

  // The stage handed to its unit and not yet run, or no_stage.
  std::atomic<std::size_t> dispatched{no_stage};
  // A stage threw (or could not be handed over): ordinary stages are skipped.
  std::atomic<bool> failed{false};

  // Waits: see job_t::on_cancel.
  bool install_interrupt(std::size_t index, std::function<void()> interrupt);
  void clear_interrupt();
  // Marks the run canceled through the scheduler and cuts the current wait.
  void interrupt();

  // Memory for the operation that carries one of the run's jobs through a
  // worker pool: a run has one job out at a time, so one small block serves
  // all its stages. Larger or overlapping requests go to the heap. The block
  // holds a reference to the run until it is given back.
  void* allocate_operation(std::size_t size);
  void deallocate_operation(void* memory);

  void add_ref() { m_refs.fetch_add(1, std::memory_order_relaxed); }
  // The last reference gives the run back to its pool.
  void release();

 private:
  friend class run_pool_t;
  // Lets go of what the run holds before it waits in the pool.
  void clear();

  std::atomic<std::size_t> m_refs{0};
  std::mutex m_interrupt_mutex;
  std::function<void()> m_interrupt;
  bool m_interrupted = false;
  // Held while the run is out, so that the pool is there to take it back;
  // an idle run holds nothing (the pool frees it).
  boost::shared_ptr<run_pool_t> m_pool;
  task_run_t* m_next_free = nullptr;
  std::atomic<bool> m_operation_busy{false};
  alignas(std::max_align_t) unsigned char m_operation[96];
};

using task_run_ptr_t = boost::intrusive_ptr<task_run_t>;

// Finished runs wait here for the next scheduling. Any thread gives runs
// back (a lock-free push); only the core takes them, under its own lock, and
// it takes the whole given-back list at once, so a run never comes back
// while it is being taken. Outlives its core while runs are out, and frees
// them all when it goes.
class run_pool_t {
 public:
  run_pool_t() = default;
  run_pool_t(const run_pool_t&) = delete;
  run_pool_t& operator=(const run_pool_t&) = delete;

  // A cleared run with one reference, tied to `self` (this pool); core lock held.
  task_run_t* take(const boost::shared_ptr<run_pool_t>& self);
  void give_back(task_run_t* run);

 private:
  // Runs come in blocks, each as large as all before it up to this size: a
  // pool holds as many runs as were ever out at once.
  static constexpr std::size_t k_max_block = 256;
  void grow();  // core lock held

  std::atomic<task_run_t*> m_given_back{nullptr};
  task_run_t* m_taken_list = nullptr;  // core lock
  std::vector<std::unique_ptr<task_run_t[]>> m_blocks;  // core lock
  std::size_t m_capacity = 0;
};

// The runs in the scheduler, found by their task.
struct run_task_key_t {
  using type = const task_t*;
  const task_t* operator()(const task_run_t& run) const { return run.task.get(); }
};
struct task_pointer_hash_t {
  std::size_t operator()(const task_t* task) const {
    const auto bits = reinterpret_cast<std::uintptr_t>(task) >> 4;  // heap objects are aligned
    return static_cast<std::size_t>(bits ^ (bits >> 11));
  }
};
using run_set_t =
    boost::intrusive::unordered_set<task_run_t, boost::intrusive::key_of_value<run_task_key_t>,
                                    boost::intrusive::hash<task_pointer_hash_t>,
                                    boost::intrusive::power_2_buckets<true>,
                                    boost::intrusive::constant_time_size<true>>;

class scheduler_core_t : public boost::enable_shared_from_this<scheduler_core_t> {
 public:
  scheduler_core_t(boost::shared_ptr<scheduler_status_callback_t> status_callback,
                   boost::shared_ptr<scheduler_wait_callback_t> wait_callback);
  ~scheduler_core_t();

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
  using named_unit_t = std::pair<std::string, boost::shared_ptr<unit_t>>;
  // A function stage whose unit was looked up; holding the stage keeps its
  // address from meaning another stage.
  struct resolved_stage_t {
    stage_ptr_t stage;
    unit_t* unit = nullptr;
  };
  // Tasks of a kind share their stage objects: a few remembered lookups
  // serve most schedulings.
  static constexpr std::size_t k_resolved = 8;

  static bool in_scope(const std::string& scope, const std::string& group) {
    return scope.empty() || scope == group;
  }

  // A few units at most: a scan is cheaper than hashing the name. Lock held.
  unit_t* unit_named(const std::string& name) const;
  // The unit a stage runs on, or null when there is none fit for it. Lock held.
  unit_t* unit_of(const stage_ptr_t& stage);
  // Moves each of `stages` into `entries` with its unit; a schedule_status_t.
  int resolve_units(stage_list_t& stages, task_run_t::stage_entries_t& entries);
  // Registers a run for `task` into `entered`, its stages resolved from
  // `stages`; a schedule_status_t. Lock held, the task not in yet.
  int enter(const task_ptr_t& task, const std::string& group, stage_list_t& stages,
            task_run_ptr_t& entered);
  // Grows the registry's buckets with it, so that lookups stay short.
  void make_room_for_one_more();
  // Hands the first stage from `from` on that still has to run to its unit,
  // or completes the task when none is left. `here` is the unit of the
  // stage that has just run (null when none has); which stages are asked
  // about canceling before they are handed over: see the definition.
  void advance(const task_run_ptr_t& run, std::size_t from, const unit_t* here,
               bool ask_every_stage);
  // Whether the stage is skipped: a finalization never; an ordinary one
  // after a failure, or when `ask_task` and the task says it is canceled.
  bool should_skip(const task_run_ptr_t& run, std::size_t index, bool ask_task) {
    if (run->stages[index].finalization) return false;
    if (run->failed.load()) return true;
    return ask_task && is_canceled(run);
  }
  // Asks the task; a throw counts as a failed stage.
  bool is_canceled(const task_run_ptr_t& run);
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
  const boost::shared_ptr<run_pool_t> m_pool;
  boost::weak_ptr<scheduler_core_t> m_self;  // what runs refer to
  std::atomic<bool> m_stopped{false};

  mutable std::mutex m_mutex;  // guards everything below
  std::vector<named_unit_t> m_units;
  std::array<resolved_stage_t, k_resolved> m_resolved;
  std::size_t m_next_resolved = 0;  // the entry to replace next
  // Every unit ever registered, replaced ones too: runs refer to them.
  std::vector<boost::shared_ptr<unit_t>> m_registered_units;
  std::vector<boost::shared_ptr<thread_pool_unit_t>> m_own_pools;
  // Each run in it holds a reference of the registry's own.
  std::vector<run_set_t::bucket_type> m_buckets;
  run_set_t m_runs;
  // Cancel-and-waits in progress, per group and on every group.
  std::unordered_map<std::string, std::size_t> m_canceling_groups;
  std::size_t m_canceling_all = 0;
  std::vector<watch_t> m_watches;
};

}  // namespace _internal
}  // namespace threading
}  // namespace talvar2

#endif
