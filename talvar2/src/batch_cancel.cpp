#include "talvar2/threading/batch_cancel.h"

#include <utility>

#include <boost/make_shared.hpp>

#include "talvar2/debug/assertion.h"
#include "talvar2/functor/signal.h"
#include "talvar2/threading/default_task.h"
#include "talvar2/threading/scheduler.h"

namespace talvar2 {
namespace threading {
namespace {

// The one-stage task that carries a batch to the unit it runs on.
class batch_cancel_task_t : public default_task_t, public subscriber_base_t {
 public:
  batch_cancel_task_t(boost::shared_ptr<const batch_cancel_t> batch,
                      boost::weak_ptr<scheduler_t> scheduler, const std::string& unit_name)
      : default_task_t("batch cancel"), m_batch(std::move(batch)), m_scheduler(std::move(scheduler)) {
    stage_t::work_signal_t work;
    work.connect(this, &batch_cancel_task_t::on_run);
    push_stage(boost::make_shared<stage_t>(unit_name, work));
  }

 private:
  void on_run(const task_ptr_t&) {
    if (const auto scheduler = m_scheduler.lock()) m_batch->cancel_now(*scheduler);
  }

  const boost::shared_ptr<const batch_cancel_t> m_batch;
  const boost::weak_ptr<scheduler_t> m_scheduler;
};

}  // namespace

boost::shared_ptr<batch_cancel_t> batch_cancel_t::create() {
  // The constructor is private: make_shared cannot reach it.
  return boost::shared_ptr<batch_cancel_t>(new batch_cancel_t);
}

void batch_cancel_t::add_task(const task_ptr_t& task) {
  TALVAR2_ASSERT(task);
  if (!task) return;
  std::lock_guard<std::mutex> lock(m_mutex);
  m_tasks.push_back(task);
}

void batch_cancel_t::add_group(const std::string& group) {
  std::lock_guard<std::mutex> lock(m_mutex);
  m_groups.push_back(group);
}

int batch_cancel_t::execute(const boost::shared_ptr<scheduler_t>& scheduler,
                            const std::string& unit_name) {
  TALVAR2_ASSERT(scheduler);
  if (!scheduler) return schedule_invalid_task;
  const auto task = boost::make_shared<batch_cancel_task_t>(shared_from_this(), scheduler, unit_name);
  return scheduler->schedule(task, std::string());
}

void batch_cancel_t::cancel_now(scheduler_t& scheduler) const {
  std::vector<boost::weak_ptr<task_t>> tasks;
  std::vector<std::string> groups;
  {
    std::lock_guard<std::mutex> lock(m_mutex);
    tasks = m_tasks;
    groups = m_groups;
  }
  for (const auto& weak_task : tasks)
    if (const task_ptr_t task = weak_task.lock()) scheduler.cancel_task(task);
  for (const std::string& group : groups) scheduler.cancel(group);
}

}  // namespace threading
}  // namespace talvar2
