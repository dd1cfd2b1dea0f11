#include "talvar2/threading/thread_pool_unit.h"

#include <cstddef>

#include <algorithm>

#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/thread_pool.hpp>
#include <boost/make_shared.hpp>

#include "scheduler_core.h"

namespace talvar2 {
namespace threading {
namespace {

// Allocates a job's pool operation inside the job's run (see
// task_run_t::allocate_operation): posting a stage allocates nothing.
template <class T>
struct run_allocator_t {
  using value_type = T;

  explicit run_allocator_t(_internal::task_run_t* run_) noexcept : run(run_) {}
  template <class U>
  run_allocator_t(const run_allocator_t<U>& other) noexcept : run(other.run) {}

  T* allocate(std::size_t count) { return static_cast<T*>(run->allocate_operation(sizeof(T) * count)); }
  void deallocate(T* memory, std::size_t) noexcept { run->deallocate_operation(memory); }

  template <class U>
  bool operator==(const run_allocator_t<U>& other) const noexcept { return run == other.run; }
  template <class U>
  bool operator!=(const run_allocator_t<U>& other) const noexcept { return run != other.run; }

  _internal::task_run_t* run;
};

}  // namespace

// Runs one job on a pool thread; Boost.Asio finds its allocator here.
struct thread_pool_unit_t::job_handler_t {
  using allocator_type = run_allocator_t<void>;
  allocator_type get_allocator() const noexcept { return allocator_type(job.m_run.get()); }
  void operator()() const { job.run(); }

  job_t job;
};

struct thread_pool_unit_t::pool_t {
  explicit pool_t(std::size_t threads) : pool(threads) {}
  boost::asio::thread_pool pool;
};

thread_pool_unit_t::thread_pool_unit_t(std::size_t threads)
    : m_thread_count(std::max<std::size_t>(threads, 1)), m_pool(new pool_t(m_thread_count)) {}

thread_pool_unit_t::~thread_pool_unit_t() {
  m_pool->pool.stop();
  // Destroying the pool joins its threads, which the calling thread cannot
  // do to itself: the stopped pool is left to wind down instead.
  if (running_in_this_thread()) {
    (void)m_pool.release();
  }
}

void thread_pool_unit_t::post(const job_t& job) {
  boost::asio::post(m_pool->pool, job_handler_t{job});
}

void thread_pool_unit_t::post_after(const job_t& job, std::chrono::milliseconds delay) {
  const auto timer = boost::make_shared<boost::asio::steady_timer>(m_pool->pool.get_executor(), delay);
  // Ended or cut short, the wait is over: run() moves the task on, and a
  // canceled task skips what it should.
  timer->async_wait([job, timer](const boost::system::error_code&) { job.run(); });
  // The timer is armed before it is published to the canceling side, and
  // that side cancels it under the job's lock, so the two never overlap.
  if (!job.on_cancel([timer] { timer->cancel(); })) timer->cancel();
}

bool thread_pool_unit_t::running_in_this_thread() const {
  return m_pool->pool.get_executor().running_in_this_thread();
}

void thread_pool_unit_t::stop() {
  m_pool->pool.stop();
  if (!running_in_this_thread()) m_pool->pool.join();
}

}  // namespace threading
}  // namespace talvar2
