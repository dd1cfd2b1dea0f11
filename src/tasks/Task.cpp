#include "orvix1/tasks/ITask.h"

#include <typeinfo>

#include "core/contract_sites.h"
#include "orvix1/tasks/Scheduler.h"
#include "tasks/progress_access.h"

namespace orvix1 {
namespace tasks {

ITask::~ITask() {}

std::string ITask::GetDisplayName() {
  const char* name = typeid(*this).name();
  if (*name == '*') ++name;  // some ABIs mark local types with a leading '*'
  return name;
}

// Only the report that finds no delivery pending queues one; the others
// overwrite the value that delivery will read.
void ITask::ReportProgress(std::uint64_t done, std::uint64_t total, const std::string& text) {
  {
    std::lock_guard<std::mutex> lock(m_progress.mutex);
    if (m_progress.closed) return;
    m_progress.done = done;
    m_progress.total = total;
    m_progress.text = text;
    if (m_progress.pending) return;
    m_progress.pending = true;
  }
  if (Scheduler::PostProgress(ITaskPtr(this))) return;
  std::lock_guard<std::mutex> lock(m_progress.mutex);
  m_progress.pending = false;
}

namespace detail {

void progress_access::close(ITask& task) {
  std::lock_guard<std::mutex> lock(task.m_progress.mutex);
  task.m_progress.closed = true;
}

void progress_access::deliver(ITask& task) {
  std::uint64_t done = 0, total = 0;
  std::string text;
  {
    std::lock_guard<std::mutex> lock(task.m_progress.mutex);
    task.m_progress.pending = false;
    if (task.m_progress.closed) return;
    done = task.m_progress.done;
    total = task.m_progress.total;
    text = task.m_progress.text;
  }
  task.progress(done, total, text);  // unlocked: a slot may report again
}

}  // namespace detail

DefaultTaskImpl::DefaultTaskImpl() : m_canceled(false) {}

DefaultTaskImpl::~DefaultTaskImpl() {}

void DefaultTaskImpl::Cancel() {
  wxMutexLocker lock(m_cancel_mutex);
  m_canceled = true;
}

bool DefaultTaskImpl::IsCanceled() {
  wxMutexLocker lock(m_cancel_mutex);
  return m_canceled;
}

void DefaultTaskImpl::TaskStarted() {}

void DefaultTaskImpl::DoTask() {}

void DefaultTaskImpl::TaskFinished() {}

bool DefaultTaskImpl::IsLongTask() { return false; }

bool DefaultTaskImpl::IsServiceThreadNeeded() { return true; }

GUITask::GUITask() {}

GUITask::~GUITask() {}

// The whole job happens in the start stage; canceling afterwards makes the
// scheduler skip the work stage while the finishing stage still runs.
void GUITask::TaskStarted() {
  DoGUITask();
  Cancel();
}

bool GUITask::IsLongTask() { return false; }

bool GUITask::IsServiceThreadNeeded() { return false; }

WaitableTask::WaitableTask() : m_condition(new wxCondition(m_condition_mutex)), m_finished(false) {}

WaitableTask::~WaitableTask() {}

bool WaitableTask::IsLongTask() { return true; }

bool WaitableTask::IsServiceThreadNeeded() { return true; }

void WaitableTask::TaskFinished() {
  {
    wxMutexLocker lock(m_finished_mutex);
    m_finished = true;
  }
  wxMutexLocker lock(m_condition_mutex);
  m_condition->Broadcast();
}

bool WaitableTask::IsFinished() {
  wxMutexLocker lock(m_finished_mutex);
  return m_finished;
}

void WaitableTask::Wait() {
  if (!contract_holds(!wxThread::IsMain(), contract::site_t::wait_on_gui_thread)) return;
  // The flag is read under the condition's mutex too, so a broadcast between
  // the check and the wait cannot be missed.
  wxMutexLocker lock(m_condition_mutex);
  while (!IsFinished()) m_condition->Wait();
}

}  // namespace tasks
}  // namespace orvix1
