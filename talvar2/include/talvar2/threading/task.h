#ifndef TALVAR2_THREADING_TASK_H
#define TALVAR2_THREADING_TASK_H
/// @file
/// A task is an ordered list of stages; each stage names the unit (a worker
/// pool, the timer, a queue that some thread drains) on which it runs. The
/// scheduler runs a task's stages one at a time, in order, each one handed to
/// its unit only after the previous one has finished.
///
/// Ownership: everything the threading layer shares between threads (tasks,
/// stages, units, schedulers, operation statuses, callbacks) is held by
/// boost::shared_ptr; whoever only observes gets a boost::weak_ptr.

#include <string>

#include <boost/container/small_vector.hpp>
#include <boost/shared_ptr.hpp>

#include "talvar2/export.h"

namespace talvar2 {
namespace threading {

class stage_t;
class task_t;

using task_ptr_t = boost::shared_ptr<task_t>;
using stage_ptr_t = boost::shared_ptr<stage_t>;

/// One entry of a task's stage list.
struct task_stage_t {
  stage_ptr_t stage;
  /// A finalization stage runs even when the task was canceled or an earlier
  /// stage threw; an ordinary stage is skipped then.
  bool finalization = false;
};

/// A task's stages in running order. Most tasks have at most four, which
/// live inside the list itself: scheduling a task allocates nothing for them.
using stage_list_t = boost::container::small_vector<task_stage_t, 4>;

/// What the scheduler runs. Implementations decide what canceling means for
/// them; the scheduler only asks is_canceled() before each ordinary stage.
class TALVAR2_API task_t {
 public:
  task_t() = default;
  task_t(const task_t&) = delete;
  task_t& operator=(const task_t&) = delete;
  virtual ~task_t();

  /// Asks the task to stop. May be called from any thread, more than once.
  virtual void cancel() = 0;
  virtual bool is_canceled() const = 0;
  /// How the task appears in reports.
  virtual std::string display_name() const = 0;
  /// The stages in running order. The scheduler reads them once, when the
  /// task is scheduled: stages added later belong to a later scheduling.
  virtual stage_list_t stages() const = 0;
};

}  // namespace threading
}  // namespace talvar2

#endif
