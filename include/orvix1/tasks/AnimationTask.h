#ifndef ORVIX1_TASKS_ANIMATIONTASK_H
#define ORVIX1_TASKS_ANIMATIONTASK_H
/// @file
/// Drives an integer from one value to another over a fixed time: a worker
/// computes about ten steps and each one reaches the GUI thread through
/// PostSignal. The receivers always end on the final value, unless the task
/// is canceled, after which nothing more is posted. Durations under 50 ms are
/// too short to step.

#include "orvix1/export.h"
#include "orvix1/tasks/ITask.h"
#include "talvar2/functor/signal.h"

namespace orvix1 {
/// Drives an integer from one value to another over a fixed time, on the GUI thread.
class ORVIX1_API AnimationTask : public tasks::DefaultTaskImpl {
 public:
  using step_signal_t = talvar2::signal_t<int>;

  AnimationTask(int duration_ms, int from, int to);
  ~AnimationTask() override;

  /// On the worker.
  void DoTask() override;
  /// On the GUI thread: disconnects every receiver.
  void TaskFinished() override;

  /// Receives every value, on the GUI thread. Connect before adding the task.
  step_signal_t step;

 private:
  void Post(int value);

  int m_duration;
  int m_from;
  int m_to;
};

}  // namespace orvix1

#endif
