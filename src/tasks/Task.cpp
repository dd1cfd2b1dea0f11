#include "orvix1/tasks/ITask.h"

#include <typeinfo>

#include "core/contract_sites.h"

namespace orvix1 {
namespace tasks {

ITask::~ITask() {}

std::string ITask::GetDisplayName() {
  const char* name = typeid(*this).name();
  if (*name == '*') ++name;  // some ABIs mark local types with a leading '*'
  return name;
}

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
