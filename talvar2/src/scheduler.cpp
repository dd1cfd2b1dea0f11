#include "talvar2/threading/scheduler.h"

#include <mutex>
#include <utility>

#include <boost/make_shared.hpp>

#include "scheduler_core.h"
#include "talvar2/debug/assertion.h"
#include "talvar2/threading/queue_unit.h"

namespace talvar2 {
namespace threading {
namespace {

// What users hold. Jobs refer to the core only weakly, so the last
// reference to this handle is the one that shuts the worker pools down.
class default_scheduler_t final : public scheduler_t {
 public:
  explicit default_scheduler_t(boost::shared_ptr<_internal::scheduler_core_t> core)
      : m_core(std::move(core)) {}
  ~default_scheduler_t() override { m_core->shut_down(); }

  using scheduler_t::cancel_and_wait;

  int schedule(const task_ptr_t& task, const std::string& group) override {
    return m_core->schedule(task, group);
  }
  void register_unit(const std::string& name, const boost::shared_ptr<unit_t>& unit) override {
    m_core->register_unit(name, unit);
  }
  boost::shared_ptr<unit_t> find_unit(const std::string& name) const override {
    return m_core->find_unit(name);
  }
  void cancel(const std::string& group) override { m_core->cancel(group); }
  bool cancel_task(const task_ptr_t& task) override { return m_core->cancel_task(task); }
  void cancel_and_wait(const std::string& group,
                       const boost::shared_ptr<scheduler_wait_callback_t>& wait_callback) override {
    m_core->cancel_and_wait(group, wait_callback);
  }
  std::vector<task_ptr_t> tasks(const std::string& group) const override {
    return m_core->tasks(group);
  }
  std::size_t task_count(const std::string& group) const override {
    return m_core->task_count(group);
  }
  bool task_group(const task_ptr_t& task, std::string& group) const override {
    return m_core->task_group(task, group);
  }

 private:
  const boost::shared_ptr<_internal::scheduler_core_t> m_core;
};

std::mutex& installed_mutex() {
  static std::mutex mutex;
  return mutex;
}

boost::shared_ptr<scheduler_t>& installed_scheduler() {
  static boost::shared_ptr<scheduler_t> scheduler;
  return scheduler;
}

}  // namespace

scheduler_t::~scheduler_t() = default;

boost::shared_ptr<scheduler_t> create_default_scheduler(
    const boost::shared_ptr<scheduler_status_callback_t>& status_callback,
    const boost::shared_ptr<scheduler_wait_callback_t>& wait_callback, bool create_main_queue) {
  return create_default_scheduler(status_callback, wait_callback, create_main_queue, worker_counts_t());
}

boost::shared_ptr<scheduler_t> create_default_scheduler(
    const boost::shared_ptr<scheduler_status_callback_t>& status_callback,
    const boost::shared_ptr<scheduler_wait_callback_t>& wait_callback, bool create_main_queue,
    const worker_counts_t& workers) {
  TALVAR2_ASSERT(status_callback);
  if (!status_callback) return nullptr;
  const auto core = boost::make_shared<_internal::scheduler_core_t>(status_callback, wait_callback);
  core->create_own_units(workers);
  if (create_main_queue) core->register_unit(main_unit_name, boost::make_shared<queue_unit_t>());
  return boost::make_shared<default_scheduler_t>(core);
}

void set_scheduler(const boost::shared_ptr<scheduler_t>& scheduler) {
  boost::shared_ptr<scheduler_t> previous;
  {
    std::lock_guard<std::mutex> lock(installed_mutex());
    previous = std::exchange(installed_scheduler(), scheduler);
  }
  // A scheduler released here shuts down outside the lock.
}

boost::shared_ptr<scheduler_t> get_scheduler() {
  std::lock_guard<std::mutex> lock(installed_mutex());
  return installed_scheduler();
}

}  // namespace threading
}  // namespace talvar2
