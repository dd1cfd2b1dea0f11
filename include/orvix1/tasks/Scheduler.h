#ifndef ORVIX1_TASKS_SCHEDULER_H
#define ORVIX1_TASKS_SCHEDULER_H
/// @file
/// The process-wide task scheduler of the GUI. Tasks (ITask) are wrapped into
/// staged tasks of the talvar2 threading layer: [wait on "delay tasks"] ->
/// TaskStarted on "main" -> DoTask on "main", "service" or "long tasks" ->
/// TaskFinished on "main" (also for canceled tasks). "main" is the GUI thread,
/// fed through GUIUnit.
///
/// Workers: "service" has as many threads as the machine has cores, at least
/// 2; "long tasks" as many as it has cores, at least 4, so that long work
/// never starves ordinary work. Scheduler::set_worker_counts changes them
/// before the first task.
///
/// Order on the GUI thread: "main" is one queue, run in the order its jobs
/// were queued. A PostSignal or ReportProgress made in DoTask queues its
/// delivery before DoTask returns, so the signal is emitted before the task's
/// TaskFinished runs, unless it was dropped: a posted signal is refused while
/// CancelAndWait waits for every group, and one not yet delivered is dropped
/// when every group ("") is canceled.

#include <atomic>
#include <list>
#include <map>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>
#include <wx/thread.h>
#include <wx/window.h>

#include "orvix1/export.h"
#include "orvix1/tasks/GUIUnit.h"
#include "orvix1/tasks/dialog_info.h"
#include "orvix1/tasks/ITask.h"
#include "talvar2/functor/signal.h"
#include "talvar2/pointers/intrusive_pointer.h"
#include "talvar2/threading/callbacks.h"
#include "talvar2/threading/scheduler.h"
#include "talvar2/threading/task.h"

namespace orvix1 {
namespace tasks {

class Scheduler;
using SchedulerPtr = talvar2::intrusive_pointer_t<Scheduler>;

/// Observer of the scheduler, given to the first Scheduler::Get. Called on
/// whatever thread the event happened: implementations lock for themselves
/// and must not throw.
class ORVIX1_API ISchedulerStatusCallback : public talvar2::intrusive_pointer_impl_t {
 public:
  ~ISchedulerStatusCallback() override;
  /// The task has left the scheduler (after its TaskFinished, if it started).
  virtual void OnTaskComplete(const ITaskPtr& task);
  /// A callback of the task threw; `what` is the exception's text.
  virtual void OnTaskException(const ITaskPtr& task, const std::string& what);
};
using ISchedulerStatusCallbackPtr = talvar2::intrusive_pointer_t<ISchedulerStatusCallback>;

/// A prepared cancellation of tasks and groups, run later on a chosen unit.
class ORVIX1_API IBatchCancel : public talvar2::intrusive_pointer_impl_t {
 public:
  /// The unit that executes the cancellation.
  /// A fixed underlying type: a caller may pass any int, and an unknown one
  /// is reported rather than undefined.
  enum signal_context_t : int { main_context = 0, service_context = 1, long_tasks_context = 2 };

  ~IBatchCancel() override;
  /// Schedules the cancellation; returns the schedule status (0 = accepted).
  virtual int Execute() = 0;
};
using IBatchCancelPtr = talvar2::intrusive_pointer_t<IBatchCancel>;
/// The process-wide task scheduler of the GUI (see ITask for the stages).
class ORVIX1_API Scheduler : public talvar2::intrusive_pointer_impl_t,
                             public talvar2::subscriber_base_t {
 public:
  /// The one instance, created and initialized by the first call (the
  /// callback of later calls is ignored); empty when initialization failed.
  static SchedulerPtr Get(const ISchedulerStatusCallbackPtr& callback);
  static bool IsInitialized();
  /// Lets go of the process-wide instance; it is destroyed with its last
  /// reference, abandoning tasks still scheduled. An orderly end calls
  /// CancelAndWait first. The next Get creates a new instance.
  static void Release();
  /// Threads of the "service" and "long tasks" units (0: the default of that
  /// unit, see the file's notes), for the scheduler of the process. Call it
  /// on the thread that creates the scheduler before any thread adds a task;
  /// it holds for schedulers created later too. Once the scheduler has taken
  /// a task it changes nothing, logs a warning and returns false.
  static bool set_worker_counts(std::size_t service, std::size_t long_tasks);

  ~Scheduler() override;

  /// Both return 0 when the task was accepted, 3 when its group is being
  /// canceled, another value on failure; a refused task gets no callbacks.
  /// Any thread.
  int AddTask(const ITaskPtr& task, const std::string& group);
  int AddDelayedTask(const ITaskPtr& task, int delay_ms, const std::string& group);
  /// Accepted and ignored: all tasks of a unit have the same priority.
  void IncreasePriority(const std::string& group);

  /// Cancels the group (all tasks for the empty name) without waiting. Any thread.
  void Cancel(const std::string& group);
  /// GUI thread only: cancels all tasks (or the group) and returns when they
  /// have left the scheduler, keeping the GUI responsive meanwhile (with a
  /// wait dialog when `info` is not empty). With `shut_down` later additions
  /// are logged as errors.
  void CancelAndWait(const dialog_info_t& info, bool shut_down);
  void CancelAndWait(const std::string& group, const dialog_info_t& info, bool shut_down);
  /// The same with the wait dialog over `parent` (null: the main window).
  void CancelAndWait(const dialog_info_t& info, bool shut_down, wxWindow* parent);
  void CancelAndWait(const std::string& group, const dialog_info_t& info, bool shut_down,
                     wxWindow* parent);

  /// Empty when both lists are empty. Unregistered tasks are skipped.
  IBatchCancelPtr BatchCancel(const std::list<ITaskPtr>& tasks, const std::list<std::string>& groups,
                              IBatchCancel::signal_context_t context);

  /// The registered tasks of the group (of every group for the empty name).
  std::vector<ITaskPtr> GetTasks(const std::string& group);
  /// False, leaving `group` alone, when the task is not registered.
  bool GetTaskGroup(const ITaskPtr& task, std::string& group);

  const dialog_info_t& GetDefaultDialogInfo() const;
  void SetDefaultDialogInfo(const dialog_info_t& info);

  GUIUnit& GetGUIUnit() { return m_gui_unit; }

 protected:
  explicit Scheduler(const ISchedulerStatusCallbackPtr& callback);

  /// Extension points for group bookkeeping, empty here. All but
  /// getTaskGroup are called with the task maps locked. getTaskGroup asks the
  /// threading layer; a finished task's group comes with its completion
  /// report instead, so completing a task does not ask it.
  virtual void addToGroup(const ITaskPtr& task, const std::string& group);
  virtual void removeFromGroup(const ITaskPtr& task, const std::string& group);
  virtual void notifyGroupStart(const std::string& group);
  virtual void notifyGroupEnd(const std::string& group);
  virtual bool isGroupEmpty(const std::string& group);
  virtual std::string getTaskGroup(const talvar2::threading::task_ptr_t& task);

 private:
  class MapsLock;
  using task_to_companion_t = std::map<ITaskPtr, talvar2::threading::task_ptr_t>;
  using companion_to_task_t = std::map<talvar2::threading::task_ptr_t, ITaskPtr>;

  friend class ITask;

  bool Initialize();
  /// Makes the threading layer's scheduler with the current worker counts.
  bool CreateCompanion();
  /// Queues the delivery of `task`'s latest progress on "main"; false when refused.
  static bool PostProgress(const ITaskPtr& task);
  int HandleNewTask(const talvar2::threading::task_ptr_t& companion, const ITaskPtr& task,
                    const std::string& group);
  void HandleTaskComplete(const talvar2::threading::task_ptr_t& companion, const std::string& group);
  void HandleTaskException(const talvar2::threading::task_ptr_t& companion, const std::string& what);
  ITaskPtr FindTask(const talvar2::threading::task_ptr_t& companion);

  GUIUnit m_gui_unit;
  boost::shared_ptr<talvar2::threading::scheduler_wait_callback_t> m_wait_callback;
  boost::shared_ptr<talvar2::threading::scheduler_t> m_scheduler;
  ISchedulerStatusCallbackPtr m_status_callback;
  boost::shared_ptr<talvar2::threading::scheduler_status_callback_t> m_status_adapter;
  std::atomic_flag m_maps_flag = ATOMIC_FLAG_INIT;
  task_to_companion_t m_companion_of;
  companion_to_task_t m_task_of;
  dialog_info_t m_default_dialog_info;
  std::atomic<bool> m_shut_down;
  std::atomic<bool> m_took_task{false};

  static SchedulerPtr m_self;
  static wxMutex m_self_mutex;
};

namespace detail {

/// Reports a PostSignal without a scheduler; false then.
ORVIX1_API bool check_post_signal_scheduler();

/// Emits a copy of a signal's connections with one value on the GUI thread.
template <class Signal, class Argument>
class PostSignalTask : public GUITask {
 public:
  PostSignalTask(const Signal& signal, const Argument& value) : m_signal(signal), m_value(value) {}
  void DoGUITask() override { m_signal(m_value); }

 private:
  Signal m_signal;
  Argument m_value;
};

}  // namespace detail

/// Makes `signal` fire with `value` on the GUI thread; callable from any
/// thread once the scheduler exists.
template <class Signal, class Argument>
void PostSignal(Signal signal, Argument value) {
  if (!detail::check_post_signal_scheduler()) return;
  SchedulerPtr scheduler = Scheduler::Get(ISchedulerStatusCallbackPtr());
  if (scheduler)
    scheduler->AddTask(new detail::PostSignalTask<Signal, Argument>(signal, value), std::string());
}

}  // namespace tasks
}  // namespace orvix1

#endif
