#include "talvar2/threading/stage.h"

#include <algorithm>
#include <utility>

#include "talvar2/debug/assertion.h"

namespace talvar2 {
namespace threading {

stage_t::stage_t(std::string unit_name, const work_signal_t& work)
    : m_unit_name(std::move(unit_name)), m_work(work), m_is_wait(false), m_delay(0) {}

stage_t::stage_t(std::string unit_name, work_function_t work)
    : m_unit_name(std::move(unit_name)), m_function(work), m_is_wait(false), m_delay(0) {
  TALVAR2_ASSERT(work != nullptr);
}

stage_t::stage_t(std::string unit_name, int delay_ms)
    : m_unit_name(std::move(unit_name)), m_is_wait(true), m_delay(std::max(delay_ms, 0)) {
  TALVAR2_ASSERT(delay_ms >= 0);
}

void stage_t::run(const task_ptr_t& task) const {
  if (m_is_wait) return;
  if (m_function != nullptr)
    m_function(task);
  else
    m_work(task);
}

}  // namespace threading
}  // namespace talvar2
