#include "talvar2/threading_support.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

#include "talvar2/threading/thread_pool_unit.h"

namespace talvar2_test {

std::string scheduler_test::here() const {
  for (const char* name : {service_unit_name, long_tasks_unit_name, delay_tasks_unit_name}) {
    const auto pool = boost::dynamic_pointer_cast<thread_pool_unit_t>(scheduler->find_unit(name));
    if (pool && pool->running_in_this_thread()) return name;
  }
  return std::this_thread::get_id() == test_thread ? "test thread" : "other";
}

stage_ptr_t probe_task_t::make_work_stage(const std::string& unit, const std::string& label,
                                          std::function<void()> body) {
  m_actions.push_back(std::make_unique<stage_action_t>([this, label, body] {
    if (m_in_flight.fetch_add(1) != 0) m_overlaps.fetch_add(1);
    {
      std::lock_guard<std::mutex> lock(m_mutex);
      m_steps.push_back(m_place ? label + "@" + place() : label);
    }
    struct leave_t {
      std::atomic<int>& in_flight;
      ~leave_t() { in_flight.fetch_sub(1); }
    } leave{m_in_flight};  // also when the body throws
    if (body) body();
  }));
  return m_actions.back()->make_stage(unit);
}

void probe_task_t::cancel() {
  {
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_cancel_place.empty()) m_cancel_place = place();
  }
  default_task_t::cancel();
}

void drive_once(queue_unit_t& queue) {
  if (queue.process_queue(64) == 0) std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

bool drive_until(queue_unit_t& queue, const std::function<bool()>& done) {
  const auto deadline = std::chrono::steady_clock::now() + k_timeout;
  while (!done()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    drive_once(queue);
  }
  return true;
}

void driving_wait_t::wait(boost::weak_ptr<scheduler_operation_status_t> status) {
  const int call = ++m_calls;
  if (m_on_call) m_on_call(call);
  const auto locked = status.lock();
  if (!locked) return;
  if (m_queue) m_queue->process_queue(64);
  locked->wait_for(std::chrono::milliseconds(2));
}

}  // namespace talvar2_test
