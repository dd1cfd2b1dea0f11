#ifndef ORVIX1_SRC_TASKS_PROGRESS_ACCESS_H
#define ORVIX1_SRC_TASKS_PROGRESS_ACCESS_H

#include "orvix1/tasks/ITask.h"

namespace orvix1 {
namespace tasks {
namespace detail {

// The scheduler's side of a task's progress, on the GUI thread.
struct progress_access {
  // Before TaskFinished: later reports and deliveries are dropped.
  static void close(ITask& task);
  // Emits the latest report, unless the task has finished meanwhile.
  static void deliver(ITask& task);
};

}  // namespace detail
}  // namespace tasks
}  // namespace orvix1

#endif
