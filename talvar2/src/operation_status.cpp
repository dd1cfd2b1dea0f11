#include "talvar2/threading/operation_status.h"

#include "talvar2/debug/assertion.h"

namespace talvar2 {
namespace threading {

scheduler_operation_status_t::scheduler_operation_status_t(std::size_t pending) : m_pending(pending) {}

bool scheduler_operation_status_t::is_finished() const {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_pending == 0;
}

std::size_t scheduler_operation_status_t::pending() const {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_pending;
}

void scheduler_operation_status_t::count_down() {
  std::lock_guard<std::mutex> lock(m_mutex);
  TALVAR2_ASSERT(m_pending > 0);
  if (m_pending == 0) return;
  if (--m_pending == 0) m_finished.notify_all();
}

void scheduler_operation_status_t::wait() const {
  std::unique_lock<std::mutex> lock(m_mutex);
  m_finished.wait(lock, [this] { return m_pending == 0; });
}

bool scheduler_operation_status_t::wait_for(std::chrono::milliseconds timeout) const {
  std::unique_lock<std::mutex> lock(m_mutex);
  return m_finished.wait_for(lock, timeout, [this] { return m_pending == 0; });
}

}  // namespace threading
}  // namespace talvar2
