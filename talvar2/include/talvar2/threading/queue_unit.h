#ifndef TALVAR2_THREADING_QUEUE_UNIT_H
#define TALVAR2_THREADING_QUEUE_UNIT_H
/// @file
/// A unit whose jobs wait in a queue until some thread calls process_queue:
/// the way to run stages on a thread that has its own event loop (a GUI
/// thread drains it one job per posted event). It cannot wait: wait stages
/// never name it.

#include <cstddef>
#include <deque>
#include <mutex>

#include "talvar2/export.h"
#include "talvar2/functor/signal.h"
#include "talvar2/threading/unit.h"

namespace talvar2 {
namespace threading {
/// A unit whose jobs wait in a queue until some thread calls process_queue.
class TALVAR2_API queue_unit_t : public unit_t {
 public:
  using new_job_signal_t = talvar2::signal_t<const task_ptr_t&, const stage_ptr_t&>;

  /// Emitted once per queued job, on the thread that queued it, after the job
  /// is in the queue (so a slot may already find it processed). Slots must
  /// not throw: the scheduler reports a throwing unit as a scheduling error.
  new_job_signal_t new_job;

  queue_unit_t() = default;
  /// Jobs still queued are dropped: their tasks never finish.
  ~queue_unit_t() override;

  void post(const job_t& job) override;

  /// Runs queued jobs on the calling thread, oldest first, one at a time, at
  /// most `max_jobs` of them (jobs queued meanwhile count too); returns how
  /// many ran. Re-entrant: a job may call it again. 0 runs nothing.
  std::size_t process_queue(std::size_t max_jobs);

  std::size_t queued_jobs() const;

 protected:
  /// Tells whoever drains the queue that `job` is in it: called by post on
  /// the queueing thread, after the job is queued, without the queue's lock.
  /// Emits new_job. A subclass that wakes its drainer more directly still
  /// calls this one for the signal's other listeners.
  virtual void job_queued(const job_t& job);

 private:
  mutable std::mutex m_mutex;
  std::deque<job_t> m_jobs;
};

}  // namespace threading
}  // namespace talvar2

#endif
