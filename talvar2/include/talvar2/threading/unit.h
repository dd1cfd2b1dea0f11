#ifndef TALVAR2_THREADING_UNIT_H
#define TALVAR2_THREADING_UNIT_H
/// @file
/// Units are the places where stages run. The scheduler hands a unit one job
/// per stage; the unit runs it later on a thread of its own choosing by
/// calling job_t::run(), which also passes the task on to its next stage.

#include <chrono>
#include <cstddef>
#include <functional>

#include <boost/intrusive_ptr.hpp>
#include <boost/shared_ptr.hpp>

#include "talvar2/export.h"
#include "talvar2/threading/stage.h"
#include "talvar2/threading/task.h"

namespace talvar2 {
namespace threading {

class thread_pool_unit_t;

namespace _internal {
class scheduler_core_t;
class task_run_t;
TALVAR2_API void intrusive_ptr_add_ref(task_run_t* run);
TALVAR2_API void intrusive_ptr_release(task_run_t* run);
}  // namespace _internal

/// One stage of one scheduled task, on its way through a unit. Copies refer
/// to the same job.
class TALVAR2_API job_t {
 public:
  const task_ptr_t& task() const;
  const stage_ptr_t& stage() const;

  /// Runs the stage on the calling thread, unless it has become pointless
  /// meanwhile (an ordinary stage of a task that was canceled or whose
  /// earlier stage threw), then hands the task to the unit of its next stage
  /// or reports it complete. Exceptions of the stage are reported through the
  /// scheduler's status callback; run() itself does not throw. Only the first
  /// call of a job does anything; so does nothing a job whose scheduler is gone.
  void run() const;

  /// For units that wait: installs what cuts this wait short when the
  /// scheduler cancels the task (it is called under a lock: keep it short and
  /// never call back into the scheduler). Returns false, installing nothing,
  /// when the task has been canceled through the scheduler already: the unit
  /// then ends the wait at once itself.
  bool on_cancel(std::function<void()> interrupt) const;

 private:
  friend class _internal::scheduler_core_t;
  friend class thread_pool_unit_t;  // keeps its operations in the run
  job_t(const boost::intrusive_ptr<_internal::task_run_t>& run, std::size_t index);

  boost::intrusive_ptr<_internal::task_run_t> m_run;  ///< holds the task and its stages
  std::size_t m_index;
};

/// A place where work stages run.
class TALVAR2_API unit_t {
 public:
  unit_t() = default;
  unit_t(const unit_t&) = delete;
  unit_t& operator=(const unit_t&) = delete;
  virtual ~unit_t();

  /// Takes the job of a work stage and runs it later (never inside this call)
  /// with job.run(). Called from any thread.
  virtual void post(const job_t& job) = 0;
};

/// A unit that can also run wait stages.
class TALVAR2_API timed_unit_t : public unit_t {
 public:
  /// Takes the job of a wait stage and calls job.run() once `delay` has
  /// passed, or sooner when the scheduler cancels the task (see
  /// job_t::on_cancel). Never inside this call. Called from any thread.
  virtual void post_after(const job_t& job, std::chrono::milliseconds delay) = 0;
};

}  // namespace threading
}  // namespace talvar2

#endif
