#include "scheduler_core.h"

#include <algorithm>
#include <exception>
#include <thread>
#include <utility>

#include <boost/make_shared.hpp>

#include "talvar2/debug/assertion.h"
#include "talvar2/threading/scheduler.h"

namespace talvar2 {
namespace threading {
namespace _internal {
namespace {

// The stages running on this thread, innermost first: a stage may pump an
// event loop that runs further stages. cancel_and_wait looks here to refuse
// waiting for a task whose stage it is part of.
struct running_stage_t {
  const task_run_t* run;
  const running_stage_t* outer;
};
thread_local const running_stage_t* t_running_stages = nullptr;

class running_stage_scope_t {
 public:
  explicit running_stage_scope_t(const task_run_t* run) : m_entry{run, t_running_stages} {
    t_running_stages = &m_entry;
  }
  ~running_stage_scope_t() { t_running_stages = m_entry.outer; }
  running_stage_scope_t(const running_stage_scope_t&) = delete;
  running_stage_scope_t& operator=(const running_stage_scope_t&) = delete;

 private:
  running_stage_t m_entry;
};

bool runs_on_this_thread(const task_run_t* run) {
  for (const running_stage_t* stage = t_running_stages; stage != nullptr; stage = stage->outer)
    if (stage->run == run) return true;
  return false;
}

// Calls `body`; on an exception writes its text into `what` and returns false.
template <class Body>
bool call_guarded(Body&& body, std::string& what) {
  try {
    body();
    return true;
  } catch (const std::exception& error) {
    what = error.what();
  } catch (...) {
    what = "unknown exception";
  }
  return false;
}

// Calls a status callback: it has nobody to report its own exceptions to.
template <class Body>
void notify_guarded(Body&& body) {
  std::string what;
  if (!call_guarded(body, what))
    debug::assertion_failed("scheduler status callback threw", __FILE__, __LINE__,
                            __PRETTY_FUNCTION__);
}

std::size_t hardware_threads() {
  const unsigned cores = std::thread::hardware_concurrency();
  return cores == 0 ? 2 : cores;
}

}  // namespace

task_run_t::task_run_t(task_ptr_t task_, std::string group_, stage_entries_t stages_,
                       boost::weak_ptr<scheduler_core_t> core_)
    : task(std::move(task_)),
      group(std::move(group_)),
      stages(std::move(stages_)),
      core(std::move(core_)) {}

bool task_run_t::install_interrupt(std::size_t index, std::function<void()> interrupt) {
  std::lock_guard<std::mutex> lock(m_interrupt_mutex);
  if (m_interrupted) return false;
  // A wait that has ended already (its job ran) needs no interrupt.
  if (dispatched.load() == index) m_interrupt = std::move(interrupt);
  return true;
}

void task_run_t::clear_interrupt() {
  std::lock_guard<std::mutex> lock(m_interrupt_mutex);
  m_interrupt = nullptr;
}

void task_run_t::interrupt() {
  std::lock_guard<std::mutex> lock(m_interrupt_mutex);
  m_interrupted = true;
  if (m_interrupt) {
    std::function<void()> interrupt = std::move(m_interrupt);
    m_interrupt = nullptr;
    interrupt();
  }
}

scheduler_core_t::scheduler_core_t(boost::shared_ptr<scheduler_status_callback_t> status_callback,
                                   boost::shared_ptr<scheduler_wait_callback_t> wait_callback)
    : m_status_callback(std::move(status_callback)),
      m_default_wait_callback(std::move(wait_callback)) {}

void scheduler_core_t::create_own_units(const worker_counts_t& workers) {
  const std::size_t cores = hardware_threads();
  const std::size_t service_threads =
      workers.service != 0 ? workers.service : std::max<std::size_t>(2, cores);
  const std::size_t long_threads =
      workers.long_tasks != 0 ? workers.long_tasks : std::max<std::size_t>(4, cores);
  const auto service = boost::make_shared<thread_pool_unit_t>(service_threads);
  const auto long_tasks = boost::make_shared<thread_pool_unit_t>(long_threads);
  const auto delay_tasks = boost::make_shared<thread_pool_unit_t>(1);
  std::lock_guard<std::mutex> lock(m_mutex);
  m_units[service_unit_name] = service;
  m_units[long_tasks_unit_name] = long_tasks;
  m_units[delay_tasks_unit_name] = delay_tasks;
  m_own_pools = {service, long_tasks, delay_tasks};
  m_registered_units.assign(m_own_pools.begin(), m_own_pools.end());
}

int scheduler_core_t::resolve_units(stage_list_t& stages,
                                    task_run_t::stage_entries_t& entries) const {
  entries.reserve(stages.size());
  for (task_stage_t& entry : stages) {
    if (!entry.stage) return schedule_invalid_task;
    const auto found = m_units.find(entry.stage->unit_name());
    if (found == m_units.end()) return schedule_unknown_unit;
    if (entry.stage->is_wait() && dynamic_cast<timed_unit_t*>(found->second.get()) == nullptr)
      return schedule_unknown_unit;
    entries.push_back({std::move(entry.stage), entry.finalization, found->second.get()});
  }
  return schedule_accepted;
}

int scheduler_core_t::schedule(const task_ptr_t& task, const std::string& group) {
  if (!task) return schedule_invalid_task;
  stage_list_t stages;
  std::string what;
  if (!call_guarded([&] { stages = task->stages(); }, what)) return schedule_invalid_task;

  task_run_ptr_t run;
  {
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_canceling_all > 0) return schedule_group_canceling;
    if (!m_canceling_groups.empty() && m_canceling_groups.count(group) != 0)
      return schedule_group_canceling;
    if (m_runs.count(task.get()) != 0) return schedule_invalid_task;
    task_run_t::stage_entries_t entries;
    const int status = resolve_units(stages, entries);
    if (status != schedule_accepted) return status;

    run = boost::make_shared<task_run_t>(task, group, std::move(entries), weak_from_this());
    m_runs.emplace(task.get(), run);
  }
  advance(run, 0);
  return schedule_accepted;
}

bool scheduler_core_t::should_skip(const task_run_ptr_t& run, std::size_t index) {
  if (run->stages[index].finalization) return false;
  if (run->failed.load()) return true;
  bool canceled = false;
  std::string what;
  if (!call_guarded([&] { canceled = run->task->is_canceled(); }, what)) {
    run->failed.store(true);
    report_exception(run, what);
    return true;
  }
  return canceled;
}

void scheduler_core_t::advance(const task_run_ptr_t& run, std::size_t from) {
  for (std::size_t index = from; index < run->stages.size(); ++index) {
    if (should_skip(run, index)) continue;
    run->dispatched.store(index);
    const job_t job(run, index);
    const stage_t& stage = *run->stages[index].stage;
    unit_t& unit = *run->stages[index].unit;
    std::string what;
    const bool handed_over = call_guarded(
        [&] {
          if (stage.is_wait())
            static_cast<timed_unit_t&>(unit).post_after(job, stage.delay());
          else
            unit.post(job);
        },
        what);
    if (handed_over) return;
    report_scheduling_error(run, "unit \"" + stage.unit_name() + "\" threw: " + what);
    // If the unit kept the job and it has run meanwhile, that run moved the
    // task on; otherwise the job is void from here on and the task goes on
    // as if the stage had thrown.
    std::size_t expected = index;
    if (!run->dispatched.compare_exchange_strong(expected, task_run_t::no_stage)) return;
    run->failed.store(true);
  }
  complete(run);
}

void scheduler_core_t::run_job(const task_run_ptr_t& run, std::size_t index) {
  if (m_stopped.load()) return;
  std::size_t expected = index;
  if (!run->dispatched.compare_exchange_strong(expected, task_run_t::no_stage)) return;
  const stage_t& stage = *run->stages[index].stage;
  if (stage.is_wait())
    run->clear_interrupt();  // only waits install one
  else if (!should_skip(run, index))
    run_stage(run, stage);
  advance(run, index + 1);
}

void scheduler_core_t::run_stage(const task_run_ptr_t& run, const stage_t& stage) {
  running_stage_scope_t running(run.get());
  std::string what;
  if (!call_guarded([&] { stage.run(run->task); }, what)) {
    run->failed.store(true);
    report_exception(run, what);
  }
}

void scheduler_core_t::complete(const task_run_ptr_t& run) {
  // Reported before the task leaves: a cancel-and-wait that returns has
  // seen every completion it waited for.
  notify_guarded([&] { m_status_callback->task_complete(run->task); });

  std::lock_guard<std::mutex> lock(m_mutex);
  m_runs.erase(run->task.get());
  for (auto watch = m_watches.begin(); watch != m_watches.end();) {
    if (in_scope(watch->group, run->group)) watch->status->count_down();
    if (watch->status->is_finished())
      watch = m_watches.erase(watch);
    else
      ++watch;
  }
}

std::vector<task_run_ptr_t> scheduler_core_t::runs_in_scope(const std::string& group) const {
  std::vector<task_run_ptr_t> runs;
  for (const auto& entry : m_runs)
    if (in_scope(group, entry.second->group)) runs.push_back(entry.second);
  return runs;
}

void scheduler_core_t::cancel_runs(const std::vector<task_run_ptr_t>& runs) {
  for (const task_run_ptr_t& run : runs) {
    std::string what;
    if (!call_guarded([&] { run->task->cancel(); }, what)) report_exception(run, what);
    run->interrupt();
  }
}

void scheduler_core_t::cancel(const std::string& group) {
  std::vector<task_run_ptr_t> runs;
  {
    std::lock_guard<std::mutex> lock(m_mutex);
    runs = runs_in_scope(group);
  }
  cancel_runs(runs);
}

bool scheduler_core_t::cancel_task(const task_ptr_t& task) {
  task_run_ptr_t run;
  {
    std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_runs.find(task.get());
    if (found == m_runs.end()) return false;
    run = found->second;
  }
  cancel_runs({run});
  return true;
}

void scheduler_core_t::leave_canceling(const std::string& group) {
  std::lock_guard<std::mutex> lock(m_mutex);
  if (group.empty()) {
    --m_canceling_all;
    return;
  }
  const auto found = m_canceling_groups.find(group);
  if (found != m_canceling_groups.end() && --found->second == 0) m_canceling_groups.erase(found);
}

void scheduler_core_t::cancel_and_wait(
    const std::string& group, const boost::shared_ptr<scheduler_wait_callback_t>& wait_callback) {
  boost::shared_ptr<scheduler_operation_status_t> status;
  std::vector<task_run_ptr_t> runs;
  {
    std::lock_guard<std::mutex> lock(m_mutex);
    if (group.empty())
      ++m_canceling_all;
    else
      ++m_canceling_groups[group];
    runs = runs_in_scope(group);
    status = boost::make_shared<scheduler_operation_status_t>(runs.size());
    if (!runs.empty()) m_watches.push_back({group, status});
  }
  // The group accepts tasks again however the wait ends (a wait callback may throw).
  struct canceling_scope_t {
    scheduler_core_t& core;
    const std::string& group;
    ~canceling_scope_t() { core.leave_canceling(group); }
  } canceling_scope{*this, group};

  const bool waits_for_itself = std::any_of(
      runs.begin(), runs.end(), [](const task_run_ptr_t& run) { return runs_on_this_thread(run.get()); });
  cancel_runs(runs);
  if (waits_for_itself) {
    debug::assertion_failed("cancel_and_wait inside a stage of a task it waits for", __FILE__,
                            __LINE__, __PRETTY_FUNCTION__);
    return;
  }

  const boost::shared_ptr<scheduler_wait_callback_t> callback =
      wait_callback ? wait_callback : m_default_wait_callback;
  if (!callback) {
    status->wait();
    return;
  }
  while (!status->is_finished()) callback->wait(status);
}

void scheduler_core_t::register_unit(const std::string& name, const boost::shared_ptr<unit_t>& unit) {
  TALVAR2_ASSERT(unit);
  if (!unit) return;
  std::lock_guard<std::mutex> lock(m_mutex);
  m_units[name] = unit;
  if (std::find(m_registered_units.begin(), m_registered_units.end(), unit) == m_registered_units.end())
    m_registered_units.push_back(unit);
}

boost::shared_ptr<unit_t> scheduler_core_t::find_unit(const std::string& name) const {
  std::lock_guard<std::mutex> lock(m_mutex);
  const auto found = m_units.find(name);
  return found == m_units.end() ? nullptr : found->second;
}

std::vector<task_ptr_t> scheduler_core_t::tasks(const std::string& group) const {
  std::vector<task_ptr_t> result;
  std::lock_guard<std::mutex> lock(m_mutex);
  for (const task_run_ptr_t& run : runs_in_scope(group)) result.push_back(run->task);
  return result;
}

std::size_t scheduler_core_t::task_count(const std::string& group) const {
  std::lock_guard<std::mutex> lock(m_mutex);
  if (group.empty()) return m_runs.size();
  return static_cast<std::size_t>(std::count_if(m_runs.begin(), m_runs.end(), [&](const auto& entry) {
    return entry.second->group == group;
  }));
}

bool scheduler_core_t::task_group(const task_ptr_t& task, std::string& group) const {
  std::lock_guard<std::mutex> lock(m_mutex);
  const auto found = m_runs.find(task.get());
  if (found == m_runs.end()) return false;
  group = found->second->group;
  return true;
}

void scheduler_core_t::shut_down() {
  m_stopped.store(true);
  std::vector<boost::shared_ptr<thread_pool_unit_t>> pools;
  {
    std::lock_guard<std::mutex> lock(m_mutex);
    pools = m_own_pools;
  }
  for (const auto& pool : pools) pool->stop();
  // Nothing runs any more: let the abandoned tasks go now.
  std::lock_guard<std::mutex> lock(m_mutex);
  m_runs.clear();
  m_watches.clear();
}

void scheduler_core_t::report_exception(const task_run_ptr_t& run, const std::string& what) {
  notify_guarded([&] { m_status_callback->task_exception(run->task, what); });
}

void scheduler_core_t::report_scheduling_error(const task_run_ptr_t& run, const std::string& what) {
  notify_guarded([&] { m_status_callback->task_scheduling_error(run->task, what); });
}

}  // namespace _internal
}  // namespace threading
}  // namespace talvar2
