#ifndef ORVIX1_TASKS_ITASK_H
#define ORVIX1_TASKS_ITASK_H
/// @file
/// The task model: a unit of work handed to the Scheduler. TaskStarted and
/// TaskFinished always run on the GUI thread; DoTask runs on the GUI thread
/// or on a worker, as the task asks through IsServiceThreadNeeded and
/// IsLongTask.
///
/// Progress: DoTask calls ReportProgress(done, total, text) on its worker;
/// the task's `progress` signal carries it to the GUI thread. Deliveries are
/// coalesced: at most one is pending per task and it carries the latest
/// report, so a fast loop may report every step without flooding the GUI.
/// Every delivery comes before TaskFinished (it goes through the same queue
/// of the GUI thread, queued earlier), and none after it: reports made once
/// TaskFinished has begun are dropped. Reports are dropped as well without a
/// Scheduler and while CancelAndWait waits for every group.

#include <cstdint>
#include <mutex>
#include <string>

#include <wx/thread.h>

#include "orvix1/export.h"
#include "talvar2/functor/signal.h"
#include "talvar2/pointers/intrusive_pointer.h"
#include "talvar2/pointers/smart_pointer.h"

namespace orvix1 {
namespace tasks {
namespace detail {
struct progress_access;
}  // namespace detail

/// Something that can be canceled and tells whether it was.
class ORVIX1_API ICancellable {
 public:
  virtual ~ICancellable() {}
  virtual void Cancel() = 0;
  virtual bool IsCanceled() = 0;
};

/// Tasks are always held by intrusive pointers (ITaskPtr).
class ORVIX1_API ITask : public ICancellable, public talvar2::intrusive_pointer_impl_t {
 public:
  ~ITask() override;
  void Cancel() override = 0;
  bool IsCanceled() override = 0;
  /// On the GUI thread, before the work.
  virtual void TaskStarted() = 0;
  /// On the unit chosen by IsServiceThreadNeeded and IsLongTask; skipped
  /// once the task is canceled.
  virtual void DoTask() = 0;
  /// On the GUI thread, always, canceled or not.
  virtual void TaskFinished() = 0;
  /// The two queries are asked once, when the task is scheduled.
  virtual bool IsLongTask() = 0;
  virtual bool IsServiceThreadNeeded() = 0;
  /// By default the run-time type name of the object.
  virtual std::string GetDisplayName();

  /// (done, total, text) of the latest ReportProgress, on the GUI thread.
  using progress_signal_t = talvar2::signal_t<std::uint64_t, std::uint64_t, const std::string&>;
  progress_signal_t progress;

  /// From DoTask, on any thread: see the file's notes on delivery.
  void ReportProgress(std::uint64_t done, std::uint64_t total, const std::string& text);

 private:
  friend struct detail::progress_access;

  // Written by the worker, read by the GUI thread's delivery.
  struct progress_state_t {
    std::mutex mutex;
    bool pending = false;  ///< a delivery is queued and has not read the value yet
    bool closed = false;   ///< TaskFinished has begun
    std::uint64_t done = 0, total = 0;
    std::string text;
  };
  progress_state_t m_progress;
};

using ITaskPtr = talvar2::intrusive_pointer_t<ITask>;

/// A task that works on the "service" unit and does nothing; derive and
/// override what is needed. The canceled flag is thread-safe.
class ORVIX1_API DefaultTaskImpl : public ITask {
 public:
  DefaultTaskImpl();
  ~DefaultTaskImpl() override;

  void Cancel() override;
  bool IsCanceled() override;
  void TaskStarted() override;
  void DoTask() override;
  void TaskFinished() override;
  bool IsLongTask() override;
  bool IsServiceThreadNeeded() override;

 private:
  wxMutex m_cancel_mutex;
  bool m_canceled;
};

/// A task that does its whole job on the GUI thread: DoGUITask runs in the
/// start stage, after which the task cancels itself so that the work stage
/// is skipped. TaskFinished still follows.
class ORVIX1_API GUITask : public DefaultTaskImpl {
 public:
  GUITask();
  ~GUITask() override;

  void TaskStarted() override;
  bool IsLongTask() override;
  bool IsServiceThreadNeeded() override;
  virtual void DoGUITask() = 0;
};

/// A task that works on the "long tasks" unit and that another worker
/// thread can wait for.
class ORVIX1_API WaitableTask : public DefaultTaskImpl {
 public:
  WaitableTask();
  ~WaitableTask() override;

  bool IsLongTask() override;
  bool IsServiceThreadNeeded() override;
  /// Marks the task finished and wakes every waiter. Overrides call it last.
  void TaskFinished() override;

  bool IsFinished();
  /// Blocks until the task has finished. Never on the GUI thread: there it
  /// asserts and returns at once (the GUI thread runs TaskFinished itself).
  void Wait();

 private:
  wxMutex m_condition_mutex;
  talvar2::smart_pointer_t<wxCondition> m_condition;
  wxMutex m_finished_mutex;
  bool m_finished;
};

}  // namespace tasks
}  // namespace orvix1

#endif
