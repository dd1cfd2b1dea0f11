#include "talvar2/threading/default_task.h"

#include <typeinfo>
#include <utility>

#include <boost/core/demangle.hpp>

#include "talvar2/debug/assertion.h"

namespace talvar2 {
namespace threading {

task_t::~task_t() = default;

default_task_t::default_task_t(std::string display_name) : m_display_name(std::move(display_name)) {}

default_task_t::~default_task_t() = default;

void default_task_t::push_stage(const stage_ptr_t& stage) { push(stage, false); }

void default_task_t::push_finalization_stage(const stage_ptr_t& stage) { push(stage, true); }

void default_task_t::push(const stage_ptr_t& stage, bool finalization) {
  TALVAR2_ASSERT(stage);
  if (!stage) return;
  std::lock_guard<std::mutex> lock(m_stages_mutex);
  m_stages.push_back({stage, finalization});
}

void default_task_t::cancel() { m_canceled.store(true); }

bool default_task_t::is_canceled() const { return m_canceled.load(); }

std::string default_task_t::display_name() const {
  if (!m_display_name.empty()) return m_display_name;
  return boost::core::demangle(typeid(*this).name());
}

stage_list_t default_task_t::stages() const {
  std::lock_guard<std::mutex> lock(m_stages_mutex);
  return m_stages;
}

}  // namespace threading
}  // namespace talvar2
