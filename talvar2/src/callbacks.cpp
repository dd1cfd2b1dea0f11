#include "talvar2/threading/callbacks.h"

namespace talvar2 {
namespace threading {

scheduler_status_callback_t::~scheduler_status_callback_t() = default;

scheduler_wait_callback_t::~scheduler_wait_callback_t() = default;

}  // namespace threading
}  // namespace talvar2
