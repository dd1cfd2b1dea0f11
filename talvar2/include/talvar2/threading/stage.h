#ifndef TALVAR2_THREADING_STAGE_H
#define TALVAR2_THREADING_STAGE_H
/// @file
/// One step of a task: either work (emitting a signal with the task, on the
/// threads of the stage's unit) or a wait of a number of milliseconds on a
/// unit that keeps time. A wait occupies no thread.

#include <chrono>
#include <string>

#include "talvar2/export.h"
#include "talvar2/functor/signal.h"
#include "talvar2/threading/task.h"

namespace talvar2 {
namespace threading {
/// One step of a task: work on a unit's threads, or a wait on a unit that keeps time.
class TALVAR2_API stage_t {
 public:
  /// The work of a stage: its slots receive the task the stage belongs to.
  using work_signal_t = talvar2::signal_t<const task_ptr_t&>;

  /// A work stage on `unit_name`. The stage takes a copy of the connections
  /// of `work` as they are now; a subscriber that dies is cut from the copy
  /// as from the original. An emission holds the copy's lock while the slots
  /// run, so one stage object shared by several tasks runs for one at a time.
  stage_t(std::string unit_name, const work_signal_t& work);
  /// The work of a stage as a plain function of the task it runs for.
  using work_function_t = void (*)(const task_ptr_t& task);
  /// A work stage on `unit_name` whose work is `work(task)`. It holds no
  /// state and takes no lock, so one such stage can serve any number of
  /// tasks at once: the way to give every task of a kind the same stages
  /// without building them per task.
  stage_t(std::string unit_name, work_function_t work);
  /// A stage that only waits `delay_ms` milliseconds on `unit_name`. A
  /// negative delay is a misuse: it is reported and waits 0 ms.
  stage_t(std::string unit_name, int delay_ms);

  stage_t(const stage_t&) = delete;
  stage_t& operator=(const stage_t&) = delete;

  const std::string& unit_name() const { return m_unit_name; }
  bool is_wait() const { return m_is_wait; }
  /// Whether the work is a plain function: the stage then holds nothing
  /// that could keep other objects alive.
  bool has_work_function() const { return m_function != nullptr; }
  /// The length of a wait; zero for a work stage.
  std::chrono::milliseconds delay() const { return m_delay; }

  /// Does the work for `task` on the calling thread (calls the work function
  /// or emits the work signal); a wait stage does nothing here (its unit does
  /// the waiting). Exceptions of the work propagate to the caller.
  void run(const task_ptr_t& task) const;

 private:
  std::string m_unit_name;
  work_signal_t m_work;
  work_function_t m_function = nullptr;
  bool m_is_wait;
  std::chrono::milliseconds m_delay;
};

}  // namespace threading
}  // namespace talvar2

#endif
