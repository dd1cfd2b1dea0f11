#ifndef ORVIX1_TASKS_TASKHELPER_H
#define ORVIX1_TASKS_TASKHELPER_H
/// @file
/// A task whose callbacks are signals: connect to them before the task is
/// added to the scheduler. `started` and `finished` fire on the GUI thread,
/// `work` on the "service" unit (on "long tasks" for a long helper), and
/// `canceled` on the thread that cancels.

#include <wx/thread.h>

#include "orvix1/export.h"
#include "orvix1/tasks/ITask.h"
#include "talvar2/functor/signal.h"

namespace orvix1 {
namespace tasks {
/// A task whose callbacks are signals.
class ORVIX1_API TaskHelper : public ITask {
 public:
  using signal_t = talvar2::signal_t<>;

  TaskHelper();
  explicit TaskHelper(bool long_task);
  ~TaskHelper() override;

  void Cancel() override;
  bool IsCanceled() override;
  void TaskStarted() override;
  void DoTask() override;
  void TaskFinished() override;
  bool IsLongTask() override;
  bool IsServiceThreadNeeded() override;

  signal_t started;
  signal_t work;
  signal_t finished;
  signal_t canceled;

 private:
  wxMutex m_mutex;
  bool m_canceled = false;
  bool m_long;
};

}  // namespace tasks
}  // namespace orvix1

#endif
