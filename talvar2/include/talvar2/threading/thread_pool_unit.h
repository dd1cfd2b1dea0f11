#ifndef TALVAR2_THREADING_THREAD_POOL_UNIT_H
#define TALVAR2_THREADING_THREAD_POOL_UNIT_H
/// @file
/// A unit with threads of its own: a Boost.Asio thread pool runs its work
/// stages, and its wait stages are steady timers on the same pool, so a wait
/// holds no thread and ends early when the task is canceled.

#include <chrono>
#include <cstddef>
#include <memory>

#include "talvar2/export.h"
#include "talvar2/threading/unit.h"

namespace talvar2 {
namespace threading {
/// A unit with threads of its own (a Boost.Asio thread pool).
class TALVAR2_API thread_pool_unit_t : public timed_unit_t {
 public:
  /// `threads` is at least 1.
  explicit thread_pool_unit_t(std::size_t threads);
  /// Stops (see stop()).
  ~thread_pool_unit_t() override;

  void post(const job_t& job) override;
  void post_after(const job_t& job, std::chrono::milliseconds delay) override;

  std::size_t thread_count() const { return m_thread_count; }
  /// Whether the calling thread is one of this unit's threads.
  bool running_in_this_thread() const;

  /// Lets the stages that run now finish, drops the jobs and waits still
  /// queued, and joins the threads; later jobs are dropped. Called on one of
  /// the unit's own threads it cannot join that thread: the pool is then left
  /// to wind down by itself and its memory is not reclaimed.
  void stop();

 private:
  struct pool_t;
  struct job_handler_t;
  std::size_t m_thread_count;
  std::unique_ptr<pool_t> m_pool;
};

}  // namespace threading
}  // namespace talvar2

#endif
