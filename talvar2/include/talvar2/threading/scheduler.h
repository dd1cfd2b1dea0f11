#ifndef TALVAR2_THREADING_SCHEDULER_H
#define TALVAR2_THREADING_SCHEDULER_H
/// @file
/// The scheduler runs tasks through named units and keeps them in groups
/// that can be canceled together.
///
/// The default scheduler creates three units of its own:
///   "service"      a worker pool (as many threads as the machine has cores,
///                  at least 2) for ordinary background work;
///   "long tasks"   a separate worker pool (at least 4 threads) for work that
///                  may block for long: it can never starve "service";
///   "delay tasks"  one thread whose steady timers run the waits of delayed
///                  tasks (any wait stage may also name a worker pool).
/// Other units, such as a queue drained by a GUI thread, are registered by
/// name.
///
/// Groups are names; a task belongs to the group it was scheduled in. In
/// cancel, cancel_and_wait, tasks and task_count the empty name means every
/// group; a task scheduled in the empty group is reached only that way.
///
/// Everything may be called from any thread. The scheduler never holds its
/// own lock while it calls into a task, a unit or a callback.
///
/// Destroying the scheduler (releasing the last reference) stops its worker
/// pools after the stages that run at that moment, and abandons the tasks it
/// still holds: their remaining stages, finalization included, never run and
/// their completion is never reported; jobs left in registered queue units
/// do nothing when processed. An orderly end calls cancel_and_wait("")
/// first.

#include <cstddef>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "talvar2/export.h"
#include "talvar2/threading/callbacks.h"
#include "talvar2/threading/task.h"
#include "talvar2/threading/unit.h"

namespace talvar2 {
namespace threading {

/// Names of the units the default scheduler creates, and of the unit a GUI
/// registers for its own thread.
constexpr char main_unit_name[] = "main";
constexpr char service_unit_name[] = "service";
constexpr char long_tasks_unit_name[] = "long tasks";
constexpr char delay_tasks_unit_name[] = "delay tasks";

/// Results of scheduler_t::schedule.
enum schedule_status_t : int {
  schedule_accepted = 0,
  /// Null task, a null stage, or a task that is in the scheduler already.
  schedule_invalid_task = 1,
  /// A stage names a unit that is not registered, or a wait stage names one
  /// that cannot wait.
  schedule_unknown_unit = 2,
  /// The task's group (or every group) is in a cancel-and-wait.
  schedule_group_canceling = 3,
};
/// Runs tasks through named units and keeps them in groups that can be canceled together.
class TALVAR2_API scheduler_t {
 public:
  scheduler_t() = default;
  scheduler_t(const scheduler_t&) = delete;
  scheduler_t& operator=(const scheduler_t&) = delete;
  virtual ~scheduler_t();

  /// Accepts the task into `group` and hands its first stage to its unit;
  /// returns a schedule_status_t. A task's units are looked up here, once.
  /// A task without stages to run completes inside this call.
  virtual int schedule(const task_ptr_t& task, const std::string& group) = 0;

  /// Registers `unit` under `name`, replacing an earlier unit of that name
  /// for tasks scheduled from now on. A null unit is a misuse: reported and
  /// ignored.
  virtual void register_unit(const std::string& name, const boost::shared_ptr<unit_t>& unit) = 0;
  virtual boost::shared_ptr<unit_t> find_unit(const std::string& name) const = 0;

  /// Cancels every task of `group` (every task for the empty name): calls its
  /// cancel() and cuts short a wait in progress. Does not wait. A task
  /// canceled by a direct call of its cancel() skips its later ordinary
  /// stages as well, but a wait in progress runs to its end.
  virtual void cancel(const std::string& group) = 0;
  /// The same for one task; false when the task is not in the scheduler.
  virtual bool cancel_task(const task_ptr_t& task) = 0;

  /// Cancels `group` (every group for the empty name) like cancel() and
  /// returns only when every task that was in it has left the scheduler,
  /// completion reported. Meanwhile scheduling into the group (into any group
  /// for the empty name) is refused with schedule_group_canceling.
  ///
  /// While it waits it calls `wait_callback` (or else the default wait
  /// callback given at creation) again and again until the operation has
  /// finished; with neither it blocks and processes nothing. So a thread
  /// that drains a queue unit needed by the group's tasks must pass a
  /// callback that drains it: without one it would wait forever. Called
  /// inside a stage of a task it would wait for, it cannot return: that is
  /// reported as a debug assertion and it only cancels.
  virtual void cancel_and_wait(const std::string& group,
                               const boost::shared_ptr<scheduler_wait_callback_t>& wait_callback) = 0;
  void cancel_and_wait(const std::string& group) { cancel_and_wait(group, nullptr); }

  /// The tasks of `group` (of every group for the empty name) now in the
  /// scheduler, and their number.
  virtual std::vector<task_ptr_t> tasks(const std::string& group) const = 0;
  virtual std::size_t task_count(const std::string& group) const = 0;
  /// Writes the group of `task` into `group`; false when the task is not in
  /// the scheduler.
  virtual bool task_group(const task_ptr_t& task, std::string& group) const = 0;
};

/// Threads of the default scheduler's worker pools; 0 picks the default
/// given in the file's notes.
struct worker_counts_t {
  std::size_t service = 0;
  std::size_t long_tasks = 0;
};

/// Creates a scheduler with the "service", "long tasks" and "delay tasks"
/// units. `status_callback` receives its reports and is required: without
/// one the misuse is reported and the result is empty. `wait_callback` (may
/// be empty) is the default of cancel_and_wait. With `create_main_queue` the
/// scheduler also registers a queue_unit_t as "main", for hosts without a
/// GUI thread of their own; a GUI registers its own "main" and passes false.
TALVAR2_API boost::shared_ptr<scheduler_t> create_default_scheduler(
    const boost::shared_ptr<scheduler_status_callback_t>& status_callback,
    const boost::shared_ptr<scheduler_wait_callback_t>& wait_callback, bool create_main_queue);
/// The same with the given worker counts.
TALVAR2_API boost::shared_ptr<scheduler_t> create_default_scheduler(
    const boost::shared_ptr<scheduler_status_callback_t>& status_callback,
    const boost::shared_ptr<scheduler_wait_callback_t>& wait_callback, bool create_main_queue,
    const worker_counts_t& workers);

/// The process-wide scheduler: installed with set_scheduler (an empty
/// pointer uninstalls it), read with get_scheduler. Thread-safe.
TALVAR2_API void set_scheduler(const boost::shared_ptr<scheduler_t>& scheduler);
TALVAR2_API boost::shared_ptr<scheduler_t> get_scheduler();

}  // namespace threading
}  // namespace talvar2

#endif
