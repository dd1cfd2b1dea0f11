#include "talvar2/threading/unit.h"

#include <utility>

#include "scheduler_core.h"

namespace talvar2 {
namespace threading {

namespace _internal {
void intrusive_ptr_add_ref(task_run_t* run) { run->add_ref(); }
void intrusive_ptr_release(task_run_t* run) { run->release(); }
}  // namespace _internal

job_t::job_t(const boost::intrusive_ptr<_internal::task_run_t>& run, std::size_t index)
    : m_run(run), m_index(index) {}

const task_ptr_t& job_t::task() const { return m_run->task; }

const stage_ptr_t& job_t::stage() const { return m_run->stages[m_index].stage; }

void job_t::run() const {
  // A job that outlives its scheduler has nowhere to go.
  if (const auto core = m_run->core.lock()) core->run_job(m_run, m_index);
}

bool job_t::on_cancel(std::function<void()> interrupt) const {
  return m_run->install_interrupt(m_index, std::move(interrupt));
}

unit_t::~unit_t() = default;

}  // namespace threading
}  // namespace talvar2
