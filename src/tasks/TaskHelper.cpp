#include "orvix1/tasks/TaskHelper.h"

namespace orvix1 {
namespace tasks {

TaskHelper::TaskHelper() : m_long(false) {}

TaskHelper::TaskHelper(bool long_task) : m_long(long_task) {}

TaskHelper::~TaskHelper() = default;

void TaskHelper::Cancel() {
  {
    wxMutexLocker lock(m_mutex);
    m_canceled = true;
  }
  canceled();
}

bool TaskHelper::IsCanceled() {
  wxMutexLocker lock(m_mutex);
  return m_canceled;
}

void TaskHelper::TaskStarted() { started(); }

void TaskHelper::DoTask() { work(); }

void TaskHelper::TaskFinished() { finished(); }

bool TaskHelper::IsLongTask() { return m_long; }

bool TaskHelper::IsServiceThreadNeeded() { return true; }

}  // namespace tasks
}  // namespace orvix1
