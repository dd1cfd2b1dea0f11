#ifndef TALVAR2_THREADING_MUTEX_H
#define TALVAR2_THREADING_MUTEX_H

#include <mutex>

#include "talvar2/export.h"

namespace talvar2 {
namespace threading {

/// A re-entrant mutex: the thread that holds it may acquire it again, and
/// must release it as often as it acquired it.
class TALVAR2_API mutex_t {
 public:
  mutex_t() = default;
  mutex_t(const mutex_t&) = delete;
  mutex_t& operator=(const mutex_t&) = delete;

  void acquire() { m_mutex.lock(); }
  bool try_acquire() { return m_mutex.try_lock(); }
  void release() { m_mutex.unlock(); }

 private:
  std::recursive_mutex m_mutex;
};

/// Holds a mutex_t for the lifetime of a scope.
class mutex_guard_t {
 public:
  explicit mutex_guard_t(mutex_t& mutex) : m_mutex(mutex) { m_mutex.acquire(); }
  ~mutex_guard_t() { m_mutex.release(); }
  mutex_guard_t(const mutex_guard_t&) = delete;
  mutex_guard_t& operator=(const mutex_guard_t&) = delete;

 private:
  mutex_t& m_mutex;
};

}  // namespace threading
}  // namespace talvar2

#endif
