#include "orvix1/tasks/Scheduler.h"

#include <chrono>
#include <mutex>
#include <thread>
#include <typeinfo>

#include <boost/make_shared.hpp>

#include "core/log.h"
#include "orvix1/tasks/WaitCallback.h"
#include "talvar2/threading/batch_cancel.h"
#include "talvar2/threading/default_task.h"
#include "talvar2/threading/stage.h"
#include "tasks/progress_access.h"
#include "tasks/usage_statistics.h"
#include "core/contract_sites.h"

namespace orvix1 {
namespace tasks {

using talvar2::threading::long_tasks_unit_name;
using talvar2::threading::main_unit_name;
using talvar2::threading::scheduler_t;
using talvar2::threading::service_unit_name;
using talvar2::threading::stage_ptr_t;
using talvar2::threading::stage_t;
using talvar2::threading::task_ptr_t;

namespace {

// The scheduler's documented messages name their source in the text itself,
// as hosts have always read them.
const char k_at_file[] = ", at file: src/tasks/Scheduler";

log4cplus::Logger scheduler_logger() { return log::get_logger("orvix.scheduler"); }

// One ITask as a staged task: [wait on "delay tasks"], TaskStarted on
// "main", DoTask where the task asks, TaskFinished on "main" (also when
// canceled). Canceling and the display name belong to the ITask.
//
// The stages hold no state: each calls the ITask of the adapter it runs for.
// Every adapter shares the same few stage objects, and its stage list is
// fixed when it is made, so a task costs no stage allocations, connections
// or locks of its own.
class TaskAdapter final : public talvar2::threading::task_t {
 public:
  static constexpr int no_delay = -1;

  TaskAdapter(const ITaskPtr& task, int delay_ms) : m_task(task), m_work(&WorkStage()) {
    if (delay_ms != no_delay)
      m_delay = boost::make_shared<stage_t>(talvar2::threading::delay_tasks_unit_name, delay_ms);
  }

  const ITaskPtr& GetTask() const { return m_task; }

  void cancel() override { m_task.get()->Cancel(); }
  bool is_canceled() const override { return m_task.get()->IsCanceled(); }
  std::string display_name() const override { return m_task.get()->GetDisplayName(); }
  talvar2::threading::stage_list_t stages() const override {
    talvar2::threading::stage_list_t stages;
    if (m_delay) stages.push_back({m_delay, false});
    stages.push_back({SharedStage<&ITask::TaskStarted, main_unit_name>(), false});
    stages.push_back({*m_work, false});
    stages.push_back({FinishStage(), true});
    return stages;
  }

 private:
  using callback_t = void (ITask::*)();

  // The stage calling `callback` on `unit`, one for the whole process. The
  // scheduler runs a stage only for the task that holds it, and only
  // adapters hold these.
  template <callback_t callback, const char* unit>
  static const stage_ptr_t& SharedStage() {
    static const stage_ptr_t stage = boost::make_shared<stage_t>(unit, &Call<callback>);
    return stage;
  }

  template <callback_t callback>
  static void Call(const task_ptr_t& adapter) {
    (static_cast<TaskAdapter&>(*adapter).m_task.get()->*callback)();
  }

  // Progress ends where TaskFinished begins.
  static const stage_ptr_t& FinishStage() {
    static const stage_ptr_t stage = boost::make_shared<stage_t>(main_unit_name, &Finish);
    return stage;
  }
  static void Finish(const task_ptr_t& adapter) {
    ITask& task = *static_cast<TaskAdapter&>(*adapter).m_task.get();
    detail::progress_access::close(task);
    task.TaskFinished();
  }

  // The two queries are asked once, when the adapter is built.
  const stage_ptr_t& WorkStage() {
    if (!m_task->IsServiceThreadNeeded()) return SharedStage<&ITask::DoTask, main_unit_name>();
    if (!m_task->IsLongTask()) return SharedStage<&ITask::DoTask, service_unit_name>();
    return SharedStage<&ITask::DoTask, long_tasks_unit_name>();
  }

  ITaskPtr m_task;
  const stage_ptr_t* m_work;  // one of the shared stages
  stage_ptr_t m_delay;
};

// Carries a task's latest progress to the GUI thread: one stage on "main",
// a finalization stage so that a cancel cannot leave the task's delivery
// pending for ever. It never enters the Scheduler's maps.
class ProgressDelivery final : public talvar2::threading::default_task_t {
 public:
  explicit ProgressDelivery(const ITaskPtr& task) : m_task(task) { push_finalization_stage(Stage()); }

 private:
  static const stage_ptr_t& Stage() {
    static const stage_ptr_t stage = boost::make_shared<stage_t>(main_unit_name, &Deliver);
    return stage;
  }
  static void Deliver(const task_ptr_t& delivery) {
    detail::progress_access::deliver(*static_cast<ProgressDelivery&>(*delivery).m_task.get());
  }

  ITaskPtr m_task;
};

// Threads of the worker units for schedulers made from now on.
talvar2::threading::worker_counts_t g_worker_counts;

// The ITask of a companion built by AddTask, or null. It lives as long as
// the companion does, so callers borrow it without taking a reference.
const ITaskPtr* task_of_adapter(const task_ptr_t& companion) {
  // The adapter is final: comparing types is all a dynamic_cast would do, cheaper.
  if (!companion) return nullptr;
  const talvar2::threading::task_t& task = *companion;
  if (typeid(task) != typeid(TaskAdapter)) return nullptr;
  return &static_cast<const TaskAdapter&>(task).GetTask();
}

// Turns the threading layer's reports into the Scheduler's bookkeeping and
// the application's ISchedulerStatusCallback. Runs on any thread. The
// Scheduler is called directly, under a lock that its destructor takes to
// detach it: a worker may be reporting right then, and the threading layer
// may outlive the Scheduler (a batch cancel holds it). Re-entrant, as a
// report may end in the Scheduler's own destruction.
class SchedulerStatusCallbackAdapter : public talvar2::threading::scheduler_status_callback_t {
 public:
  using complete_t = void (Scheduler::*)(const task_ptr_t&, const std::string&);
  using failed_t = void (Scheduler::*)(const task_ptr_t&, const std::string&);

  explicit SchedulerStatusCallbackAdapter(const ISchedulerStatusCallbackPtr& callback)
      : m_callback(callback) {}

  void Attach(Scheduler* scheduler, complete_t complete, failed_t failed) {
    std::lock_guard<std::recursive_mutex> lock(m_scheduler_mutex);
    m_scheduler = scheduler;
    m_complete = complete;
    m_failed = failed;
  }
  void Detach() { Attach(nullptr, nullptr, nullptr); }

  // The threading layer reports through task_complete_in; a direct call
  // gets the group looked up.
  void task_complete(const task_ptr_t& task) override {
    std::string group;
    if (const auto scheduler = talvar2::threading::get_scheduler()) scheduler->task_group(task, group);
    task_complete_in(task, group);
  }

  void task_complete_in(const task_ptr_t& task, const std::string& group) override {
    {
      std::lock_guard<std::recursive_mutex> lock(m_scheduler_mutex);
      if (m_scheduler != nullptr) (m_scheduler->*m_complete)(task, group);
    }
    if (!m_callback) return;
    if (const ITaskPtr* itask = task_of_adapter(task)) m_callback.get()->OnTaskComplete(*itask);
  }

  void task_exception(const task_ptr_t& task, const std::string& what) override {
    {
      std::lock_guard<std::recursive_mutex> lock(m_scheduler_mutex);
      if (m_scheduler != nullptr) (m_scheduler->*m_failed)(task, what);
    }
    const ITaskPtr* itask = task_of_adapter(task);
    if (m_callback && itask != nullptr) m_callback.get()->OnTaskException(*itask, what);
  }

  void task_scheduling_error(const task_ptr_t&, const std::string&) override {
    contract_fails(contract::site_t::scheduling_error);
  }

 private:
  ISchedulerStatusCallbackPtr m_callback;
  std::recursive_mutex m_scheduler_mutex;
  Scheduler* m_scheduler = nullptr;
  complete_t m_complete = nullptr;
  failed_t m_failed = nullptr;
};

class BatchCancelImpl : public IBatchCancel {
 public:
  BatchCancelImpl(const boost::shared_ptr<talvar2::threading::batch_cancel_t>& batch,
                  const boost::shared_ptr<scheduler_t>& scheduler, signal_context_t context)
      : m_batch(batch), m_scheduler(scheduler), m_context(context) {}

  int Execute() override { return m_batch->execute(m_scheduler, UnitName()); }

 private:
  const char* UnitName() const {
    switch (m_context) {
      case main_context:
        return talvar2::threading::main_unit_name;
      case service_context:
        return talvar2::threading::service_unit_name;
      case long_tasks_context:
        return talvar2::threading::long_tasks_unit_name;
    }
    contract_fails(contract::site_t::batch_cancel_context_unknown);
    return talvar2::threading::service_unit_name;
  }

  boost::shared_ptr<talvar2::threading::batch_cancel_t> m_batch;
  boost::shared_ptr<scheduler_t> m_scheduler;
  signal_context_t m_context;
};

}  // namespace

// The one-byte spin lock of the task maps. It is held only for map updates
// and the group hooks, never across calls into tasks or the threading layer.
class Scheduler::MapsLock {
 public:
  explicit MapsLock(Scheduler& scheduler) : m_flag(scheduler.m_maps_flag) {
    while (m_flag.test_and_set(std::memory_order_acquire))
      std::this_thread::sleep_for(std::chrono::nanoseconds(1000));
  }
  ~MapsLock() { m_flag.clear(std::memory_order_release); }
  MapsLock(const MapsLock&) = delete;
  MapsLock& operator=(const MapsLock&) = delete;

 private:
  std::atomic_flag& m_flag;
};

ISchedulerStatusCallback::~ISchedulerStatusCallback() {}
void ISchedulerStatusCallback::OnTaskComplete(const ITaskPtr&) {}
void ISchedulerStatusCallback::OnTaskException(const ITaskPtr&, const std::string&) {}

IBatchCancel::~IBatchCancel() {}

SchedulerPtr Scheduler::m_self;
wxMutex Scheduler::m_self_mutex;

bool Scheduler::set_worker_counts(std::size_t service, std::size_t long_tasks) {
  wxMutexLocker lock(m_self_mutex);
  if (m_self && m_self->m_took_task) {
    ORVIX_LOG_WARNING(scheduler_logger(),
                      "Worker counts can only be set before the first task: the scheduler keeps its workers");
    return false;
  }
  g_worker_counts.service = service;
  g_worker_counts.long_tasks = long_tasks;
  // Before its first task the scheduler holds nothing: its threading layer
  // is made again, and the idle pools of the old one end with it.
  if (m_self) m_self->CreateCompanion();
  return true;
}

bool Scheduler::PostProgress(const ITaskPtr& task) {
  SchedulerPtr scheduler;  // never made here: without one the report is dropped
  {
    wxMutexLocker lock(m_self_mutex);
    scheduler = m_self;
  }
  if (!scheduler) return false;
  return scheduler->m_scheduler->schedule(boost::make_shared<ProgressDelivery>(task), std::string()) ==
         talvar2::threading::schedule_accepted;
}

SchedulerPtr Scheduler::Get(const ISchedulerStatusCallbackPtr& callback) {
  SchedulerPtr created;  // a failed instance dies after the mutex is let go
  wxMutexLocker lock(m_self_mutex);
  if (m_self) return m_self;
  created = new Scheduler(callback);
  if (!created->Initialize()) return SchedulerPtr();
  m_self = created;
  return m_self;
}

bool Scheduler::IsInitialized() {
  wxMutexLocker lock(m_self_mutex);
  return static_cast<bool>(m_self);
}

void Scheduler::Release() {
  SchedulerPtr released;
  wxMutexLocker lock(m_self_mutex);
  released = m_self;
  m_self.reset();
}

Scheduler::Scheduler(const ISchedulerStatusCallbackPtr& callback)
    : m_status_callback(callback), m_shut_down(false) {}

Scheduler::~Scheduler() {
  // Workers may still report tasks of a threading layer that outlives us
  // (a batch cancel holds it): cut their way in first.
  if (m_status_adapter) static_cast<SchedulerStatusCallbackAdapter&>(*m_status_adapter).Detach();
  if (m_scheduler && talvar2::threading::get_scheduler() == m_scheduler)
    talvar2::threading::set_scheduler(boost::shared_ptr<scheduler_t>());
  m_scheduler.reset();
  m_wait_callback.reset();
  m_companion_of.clear();
  m_task_of.clear();
  m_status_callback.reset();
}

bool Scheduler::Initialize() {
  auto adapter = boost::make_shared<SchedulerStatusCallbackAdapter>(m_status_callback);
  adapter->Attach(this, &Scheduler::HandleTaskComplete, &Scheduler::HandleTaskException);
  m_status_adapter = adapter;
  m_wait_callback = boost::make_shared<WaitCallback>();
  return CreateCompanion();
}

bool Scheduler::CreateCompanion() {
  auto made = talvar2::threading::create_default_scheduler(m_status_adapter, m_wait_callback, false,
                                                           g_worker_counts);
  if (!made) return false;
  made->register_unit(talvar2::threading::main_unit_name, m_gui_unit.GetQueuePtr());
  talvar2::threading::set_scheduler(made);
  m_scheduler = made;
  return true;
}

int Scheduler::AddTask(const ITaskPtr& task, const std::string& group) {
  return HandleNewTask(boost::make_shared<TaskAdapter>(task, TaskAdapter::no_delay), task, group);
}

int Scheduler::AddDelayedTask(const ITaskPtr& task, int delay_ms, const std::string& group) {
  if (delay_ms < 0) delay_ms = 0;  // keeps the wait stage; a negative delay means none to wait
  return HandleNewTask(boost::make_shared<TaskAdapter>(task, delay_ms), task, group);
}

void Scheduler::IncreasePriority(const std::string&) {}

void Scheduler::Cancel(const std::string& group) { m_scheduler->cancel(group); }

void Scheduler::CancelAndWait(const dialog_info_t& info, bool shut_down) {
  CancelAndWait(std::string(), info, shut_down, nullptr);
}

void Scheduler::CancelAndWait(const std::string& group, const dialog_info_t& info, bool shut_down) {
  CancelAndWait(group, info, shut_down, nullptr);
}

void Scheduler::CancelAndWait(const dialog_info_t& info, bool shut_down, wxWindow* parent) {
  CancelAndWait(std::string(), info, shut_down, parent);
}

void Scheduler::CancelAndWait(const std::string& group, const dialog_info_t& info, bool shut_down,
                              wxWindow* parent) {
  const usage_statistics_scope_t usage("scheduler.cancel_and_wait", ".start", ".finish");
  if (!contract_holds(wxThread::IsMain(), contract::site_t::cancel_and_wait_off_gui_thread)) {
    Cancel(group);
  } else if (info.empty()) {
    m_scheduler->cancel_and_wait(group);  // the default wait callback keeps the loop turning
  } else {
    auto callback = boost::make_shared<WaitCallback>();
    callback->SetDialogInfo(info);
    callback->SetDialogParent(parent);
    m_scheduler->cancel_and_wait(group, callback);
  }
  if (shut_down) m_shut_down = true;
}

IBatchCancelPtr Scheduler::BatchCancel(const std::list<ITaskPtr>& tasks,
                                       const std::list<std::string>& groups,
                                       IBatchCancel::signal_context_t context) {
  if (tasks.empty() && groups.empty()) return IBatchCancelPtr();
  auto batch = talvar2::threading::batch_cancel_t::create();
  {
    MapsLock lock(*this);
    for (const ITaskPtr& task : tasks) {
      auto found = m_companion_of.find(task);
      if (found != m_companion_of.end()) batch->add_task(found->second);
    }
  }
  for (const std::string& group : groups) batch->add_group(group);
  return IBatchCancelPtr(new BatchCancelImpl(batch, m_scheduler, context));
}

std::vector<ITaskPtr> Scheduler::GetTasks(const std::string& group) {
  const std::vector<task_ptr_t> companions = m_scheduler->tasks(group);
  std::vector<ITaskPtr> result;
  MapsLock lock(*this);
  for (const task_ptr_t& companion : companions) {
    auto found = m_task_of.find(companion);
    if (found != m_task_of.end()) result.push_back(found->second);
  }
  return result;
}

bool Scheduler::GetTaskGroup(const ITaskPtr& task, std::string& group) {
  task_ptr_t companion;
  {
    MapsLock lock(*this);
    auto found = m_companion_of.find(task);
    if (found == m_companion_of.end()) return false;
    companion = found->second;
  }
  return m_scheduler->task_group(companion, group);
}

const dialog_info_t& Scheduler::GetDefaultDialogInfo() const { return m_default_dialog_info; }

void Scheduler::SetDefaultDialogInfo(const dialog_info_t& info) { m_default_dialog_info = info; }

void Scheduler::addToGroup(const ITaskPtr&, const std::string&) {}
void Scheduler::removeFromGroup(const ITaskPtr&, const std::string&) {}
void Scheduler::notifyGroupStart(const std::string&) {}
void Scheduler::notifyGroupEnd(const std::string&) {}
bool Scheduler::isGroupEmpty(const std::string&) { return false; }

std::string Scheduler::getTaskGroup(const task_ptr_t& task) {
  std::string group;
  m_scheduler->task_group(task, group);
  return group;
}

// The task is registered before it is scheduled: a task added from a worker
// may run to completion before schedule() even returns, and its completion
// must find it in the maps, or they would keep a finished task for ever. A
// refused task is taken out again.
int Scheduler::HandleNewTask(const task_ptr_t& companion, const ITaskPtr& task,
                             const std::string& group) {
  // The logger is looked up only when there is something to say: the
  // lookup takes the logging library's global lock, on every task.
  if (m_shut_down) {
    const log4cplus::Logger logger = scheduler_logger();
    // An error by documentation, though the task is still handed on.
    if (logger.isEnabledFor(log4cplus::ERROR_LOG_LEVEL))
      ORVIX_LOG_ERROR(logger, "Adding task after scheduler deitiliazed. Task name is: "
                                  << task.get()->GetDisplayName());
  }
  m_took_task = true;
  {
    MapsLock lock(*this);
    if (isGroupEmpty(group)) notifyGroupStart(group);
    addToGroup(task, group);
    // Tasks and their companions mostly come in the order they were made,
    // that is at the end of both maps: the hint spares the search then.
    m_companion_of.insert_or_assign(m_companion_of.end(), task, companion);
    m_task_of.insert_or_assign(m_task_of.end(), companion, task);
  }
  const int status = m_scheduler->schedule(companion, group);
  if (status == talvar2::threading::schedule_accepted) return status;

  {
    MapsLock lock(*this);
    m_task_of.erase(companion);
    auto found = m_companion_of.find(task);
    if (found != m_companion_of.end() && found->second == companion) m_companion_of.erase(found);
    removeFromGroup(task, group);
    if (isGroupEmpty(group)) notifyGroupEnd(group);
  }
  const log4cplus::Logger logger = scheduler_logger();
  // A warning by documentation, though the task is refused. The missing space
  // before "is being canceled" is the documented text: hosts match it as is.
  if (status == talvar2::threading::schedule_group_canceling)
    ORVIX_LOG_WARNING(logger, "Failed to schedule task " << task.get()->GetDisplayName()
                                                         << ", it's group " << group
                                                         << "is being canceled" << k_at_file);
  else
    contract_fails(contract::site_t::schedule_failed);
  return status;
}

// The threading layer reports the task's group with its completion.
void Scheduler::HandleTaskComplete(const task_ptr_t& companion, const std::string& group) {
  ITaskPtr task;  // let go after the lock: it may be the last reference
  MapsLock lock(*this);
  auto found = m_task_of.find(companion);
  if (found == m_task_of.end()) return;
  task = std::move(found->second);
  m_task_of.erase(found);
  // The same ITask may have been scheduled again meanwhile: keep the newer entry.
  auto entry = m_companion_of.find(task);
  if (entry != m_companion_of.end() && entry->second == companion) m_companion_of.erase(entry);
  removeFromGroup(task, group);
  if (isGroupEmpty(group)) notifyGroupEnd(group);
}

void Scheduler::HandleTaskException(const task_ptr_t& companion, const std::string&) {
  const ITaskPtr task = FindTask(companion);
  const std::string name = task ? task.get()->GetDisplayName() : std::string("UNKNOWN_TASK");
  // No space after the name: the documented text, which hosts match as is.
  ORVIX_LOG_ERROR(scheduler_logger(),
                  "Task: " << name << "has generated exception which wasn't appropriately handled."
                           << k_at_file);
}

ITaskPtr Scheduler::FindTask(const task_ptr_t& companion) {
  MapsLock lock(*this);
  auto found = m_task_of.find(companion);
  return found != m_task_of.end() ? found->second : ITaskPtr();
}

}  // namespace tasks
}  // namespace orvix1
