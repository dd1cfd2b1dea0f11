#ifndef TALVAR2_THREADING_BATCH_CANCEL_H
#define TALVAR2_THREADING_BATCH_CANCEL_H
/// @file
/// A list of tasks and groups to cancel together, later, on a chosen unit:
/// executed on the GUI's "main" unit, for instance, the cancellation takes
/// its turn among the GUI's own jobs.

#include <mutex>
#include <string>
#include <vector>

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include "talvar2/export.h"
#include "talvar2/threading/task.h"

namespace talvar2 {
namespace threading {

class scheduler_t;
/// A list of tasks and groups to cancel together, later, on a chosen unit.
class TALVAR2_API batch_cancel_t : public boost::enable_shared_from_this<batch_cancel_t> {
 public:
  static boost::shared_ptr<batch_cancel_t> create();

  batch_cancel_t(const batch_cancel_t&) = delete;
  batch_cancel_t& operator=(const batch_cancel_t&) = delete;

  /// Tasks are held weakly: a task that has gone meanwhile is skipped.
  void add_task(const task_ptr_t& task);
  /// The empty name means every group.
  void add_group(const std::string& group);

  /// Schedules the cancellation as a one-stage task on `unit_name`, in the
  /// empty group; returns the schedule status (a null scheduler is a misuse:
  /// reported, schedule_invalid_task). May be executed more than once. The
  /// scheduler is held weakly until then.
  int execute(const boost::shared_ptr<scheduler_t>& scheduler, const std::string& unit_name);

  /// Cancels the listed tasks, then the listed groups, at once on the
  /// calling thread.
  void cancel_now(scheduler_t& scheduler) const;

 private:
  batch_cancel_t() = default;

  mutable std::mutex m_mutex;
  std::vector<boost::weak_ptr<task_t>> m_tasks;
  std::vector<std::string> m_groups;
};

}  // namespace threading
}  // namespace talvar2

#endif
