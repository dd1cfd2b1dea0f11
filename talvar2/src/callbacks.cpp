#include "talvar2/threading/callbacks.h"

namespace talvar2 {
namespace threading {

scheduler_status_callback_t::~scheduler_status_callback_t() = default;

void scheduler_status_callback_t::task_complete_in(const task_ptr_t& task, const std::string&) {
  task_complete(task);
}

scheduler_wait_callback_t::~scheduler_wait_callback_t() = default;

}  // namespace threading
}  // namespace talvar2
