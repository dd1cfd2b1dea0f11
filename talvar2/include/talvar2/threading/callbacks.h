#ifndef TALVAR2_THREADING_CALLBACKS_H
#define TALVAR2_THREADING_CALLBACKS_H
/// @file
/// What a scheduler tells its owner, and how its owner waits.

#include <string>

#include <boost/weak_ptr.hpp>

#include "talvar2/export.h"
#include "talvar2/threading/operation_status.h"
#include "talvar2/threading/task.h"

namespace talvar2 {
namespace threading {

/// Receives the reports of a scheduler, on whatever thread the event happened
/// (a worker, the thread that drains a queue unit, a scheduling thread); the
/// implementation does its own locking. Its callbacks must not throw: an
/// exception escaping one is swallowed and raised as a debug assertion.
class TALVAR2_API scheduler_status_callback_t {
 public:
  virtual ~scheduler_status_callback_t();

  /// The task has run its last stage (or had none left to run). Exactly once
  /// per scheduling, before the task leaves the scheduler: when a
  /// cancel-and-wait returns, the completions of the tasks it waited for
  /// have all been reported.
  virtual void task_complete(const task_ptr_t& task) = 0;
  /// How the scheduler reports a completion: with the group the task was
  /// scheduled in, which the task still has at that moment. Calls
  /// task_complete(task); a callback that files its tasks by group overrides
  /// this one and needs no lookup of the group.
  virtual void task_complete_in(const task_ptr_t& task, const std::string& group);
  /// A stage of the task threw; `what` is the exception's text, or
  /// "unknown exception". The task's remaining ordinary stages are skipped,
  /// its finalization stages still run, and it completes as usual.
  virtual void task_exception(const task_ptr_t& task, const std::string& what) = 0;
  /// A unit threw while taking a stage of an accepted task. Unless the unit
  /// kept the job and has run it already, the task goes on as if that stage
  /// had thrown.
  virtual void task_scheduling_error(const task_ptr_t& task, const std::string& what) = 0;
};

/// How a thread waits in a cancel-and-wait. The scheduler calls wait() on the
/// waiting thread, again and again until the operation has finished: an
/// implementation may block until then, or do a bounded share of work (pump
/// an event loop, drain a queue unit) and return.
class TALVAR2_API scheduler_wait_callback_t {
 public:
  virtual ~scheduler_wait_callback_t();

  virtual void wait(boost::weak_ptr<scheduler_operation_status_t> status) = 0;
};

}  // namespace threading
}  // namespace talvar2

#endif
