#ifndef TALVAR2_THREADING_OPERATION_STATUS_H
#define TALVAR2_THREADING_OPERATION_STATUS_H
/// @file
/// The progress of a long scheduler operation (a cancel-and-wait): it is
/// finished when all the parts it waits for are done. Thread-safe; whoever
/// only watches it holds a boost::weak_ptr.

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>

#include "talvar2/export.h"

namespace talvar2 {
namespace threading {
/// The progress of a long scheduler operation (a cancel-and-wait).
class TALVAR2_API scheduler_operation_status_t {
 public:
  /// Waits for `pending` parts; with 0 it is finished from the start.
  explicit scheduler_operation_status_t(std::size_t pending = 0);
  scheduler_operation_status_t(const scheduler_operation_status_t&) = delete;
  scheduler_operation_status_t& operator=(const scheduler_operation_status_t&) = delete;

  bool is_finished() const;
  std::size_t pending() const;

  /// One part is done; the last one wakes every waiter. Counting below zero
  /// is a misuse: reported and ignored.
  void count_down();

  /// Blocks until finished.
  void wait() const;
  /// Blocks until finished or until `timeout` has passed; true when finished.
  bool wait_for(std::chrono::milliseconds timeout) const;

 private:
  mutable std::mutex m_mutex;
  mutable std::condition_variable m_finished;
  std::size_t m_pending;
};

}  // namespace threading
}  // namespace talvar2

#endif
