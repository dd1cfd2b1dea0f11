#include "talvar2/threading/queue_unit.h"

#include <optional>
#include <utility>

namespace talvar2 {
namespace threading {

queue_unit_t::~queue_unit_t() = default;

void queue_unit_t::post(const job_t& job) {
  {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_jobs.push_back(job);
  }
  job_queued(job);
}

void queue_unit_t::job_queued(const job_t& job) {
  // A signal no one ever connected to answers this without a lock.
  if (!new_job.empty()) new_job(job.task(), job.stage());
}

std::size_t queue_unit_t::process_queue(std::size_t max_jobs) {
  std::size_t ran = 0;
  while (ran < max_jobs) {
    std::optional<job_t> job;
    {
      std::lock_guard<std::mutex> lock(m_mutex);
      if (m_jobs.empty()) break;
      job.emplace(std::move(m_jobs.front()));
      m_jobs.pop_front();
    }
    // Unlocked: the job may queue further jobs or drain the queue itself.
    job->run();
    ++ran;
  }
  return ran;
}

std::size_t queue_unit_t::queued_jobs() const {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_jobs.size();
}

}  // namespace threading
}  // namespace talvar2
