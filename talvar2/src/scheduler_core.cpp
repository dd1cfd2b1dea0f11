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
// Initial-exec: the library is linked by its users, not opened later, and
// every stage reads this.
thread_local const running_stage_t* t_running_stages __attribute__((tls_model("initial-exec"))) = nullptr;

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

void task_run_t::release() {
  if (m_refs.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
  const boost::shared_ptr<run_pool_t> pool = std::move(m_pool);
  clear();
  pool->give_back(this);
}

void* task_run_t::allocate_operation(std::size_t size) {
  if (size > sizeof(m_operation) || m_operation_busy.exchange(true, std::memory_order_acquire))
    return ::operator new(size);
  add_ref();
  return m_operation;
}

void task_run_t::deallocate_operation(void* memory) {
  if (memory != m_operation) {
    ::operator delete(memory);
    return;
  }
  m_operation_busy.store(false, std::memory_order_release);
  release();
}

void task_run_t::clear() {
  task.reset();
  group.clear();
  stages.clear();
  core.reset();
  dispatched.store(no_stage, std::memory_order_relaxed);
  failed.store(false, std::memory_order_relaxed);
  m_interrupt = nullptr;
  m_interrupted = false;
}

task_run_t* run_pool_t::take(const boost::shared_ptr<run_pool_t>& self) {
  if (m_taken_list == nullptr) m_taken_list = m_given_back.exchange(nullptr, std::memory_order_acquire);
  if (m_taken_list == nullptr) grow();
  task_run_t* const run = m_taken_list;
  m_taken_list = run->m_next_free;
  run->m_pool = self;
  run->m_refs.store(1, std::memory_order_relaxed);
  return run;
}

void run_pool_t::grow() {
  const std::size_t count = std::min<std::size_t>(std::max<std::size_t>(m_capacity, 8), k_max_block);
  m_blocks.emplace_back(new task_run_t[count]);
  m_capacity += count;
  task_run_t* const block = m_blocks.back().get();
  for (std::size_t i = 0; i < count; ++i) block[i].m_next_free = i + 1 < count ? &block[i + 1] : nullptr;
  m_taken_list = block;
}

void run_pool_t::give_back(task_run_t* run) {
  run->m_next_free = m_given_back.load(std::memory_order_relaxed);
  while (!m_given_back.compare_exchange_weak(run->m_next_free, run, std::memory_order_release,
                                             std::memory_order_relaxed)) {
  }
}

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
      m_default_wait_callback(std::move(wait_callback)),
      m_pool(boost::make_shared<run_pool_t>()),
      m_buckets(64),
      m_runs(run_set_t::bucket_traits(m_buckets.data(), m_buckets.size())) {}

scheduler_core_t::~scheduler_core_t() {
  m_runs.clear_and_dispose([](task_run_t* run) { run->release(); });
}

void scheduler_core_t::create_own_units(const worker_counts_t& workers) {
  m_self = weak_from_this();
  const std::size_t cores = hardware_threads();
  const std::size_t service_threads =
      workers.service != 0 ? workers.service : std::max<std::size_t>(2, cores);
  const std::size_t long_threads =
      workers.long_tasks != 0 ? workers.long_tasks : std::max<std::size_t>(4, cores);
  const auto service = boost::make_shared<thread_pool_unit_t>(service_threads);
  const auto long_tasks = boost::make_shared<thread_pool_unit_t>(long_threads);
  const auto delay_tasks = boost::make_shared<thread_pool_unit_t>(1);
  std::lock_guard<std::mutex> lock(m_mutex);
  m_units = {{service_unit_name, service}, {long_tasks_unit_name, long_tasks},
             {delay_tasks_unit_name, delay_tasks}};
  m_own_pools = {service, long_tasks, delay_tasks};
  m_registered_units.assign(m_own_pools.begin(), m_own_pools.end());
}

unit_t* scheduler_core_t::unit_named(const std::string& name) const {
  for (const named_unit_t& unit : m_units)
    if (unit.first == name) return unit.second.get();
  return nullptr;
}

unit_t* scheduler_core_t::unit_of(const stage_ptr_t& stage) {
  for (const resolved_stage_t& resolved : m_resolved)
    if (resolved.stage == stage) return resolved.unit;
  unit_t* const unit = unit_named(stage->unit_name());
  if (unit == nullptr) return nullptr;
  if (stage->is_wait() && dynamic_cast<timed_unit_t*>(unit) == nullptr) return nullptr;
  // Only stages that hold nothing else are kept: a signal's connections
  // might hold objects that would then outlive their task.
  if (stage->has_work_function()) m_resolved[m_next_resolved++ % k_resolved] = {stage, unit};
  return unit;
}

int scheduler_core_t::resolve_units(stage_list_t& stages, task_run_t::stage_entries_t& entries) {
  for (task_stage_t& entry : stages) {
    if (!entry.stage) return schedule_invalid_task;
    unit_t* const unit = unit_of(entry.stage);
    if (unit == nullptr) return schedule_unknown_unit;
    entries.push_back({std::move(entry.stage), entry.finalization, unit});
  }
  return schedule_accepted;
}

void scheduler_core_t::make_room_for_one_more() {
  if (m_runs.size() < m_buckets.size()) return;
  std::vector<run_set_t::bucket_type> buckets(m_buckets.size() * 2);
  m_runs.rehash(run_set_t::bucket_traits(buckets.data(), buckets.size()));
  m_buckets.swap(buckets);
}

int scheduler_core_t::enter(const task_ptr_t& task, const std::string& group, stage_list_t& stages,
                            task_run_ptr_t& entered) {
  task_run_t* const run = m_pool->take(m_pool);  // the registry's reference
  const int status = resolve_units(stages, run->stages);
  if (status != schedule_accepted) {
    run->release();
    return status;
  }
  run->task = task;
  run->group = group;
  run->core = m_self;
  make_room_for_one_more();
  m_runs.insert(*run);
  entered.reset(run);
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
    if (m_runs.find(task.get()) != m_runs.end()) return schedule_invalid_task;
    const int status = enter(task, group, stages, run);
    if (status != schedule_accepted) return status;
  }
  advance(run, 0, nullptr, false);
  return schedule_accepted;
}

bool scheduler_core_t::is_canceled(const task_run_ptr_t& run) {
  bool canceled = false;
  std::string what;
  if (!call_guarded([&] { canceled = run->task->is_canceled(); }, what)) {
    run->failed.store(true);
    report_exception(run, what);
    return true;
  }
  return canceled;
}

// A work stage is asked about again where it runs: handed unasked to
// another unit, it costs this thread nothing, and a canceled task's stage
// then only passes through that unit. A wait is asked here (it would
// otherwise wait its full length), and so is a stage on the unit that has
// just run one, which would turn its own queue for nothing.
void scheduler_core_t::advance(const task_run_ptr_t& run, std::size_t from, const unit_t* here,
                               bool ask_every_stage) {
  for (std::size_t index = from; index < run->stages.size(); ++index) {
    const task_run_t::stage_entry_t& entry = run->stages[index];
    const bool ask = ask_every_stage || entry.unit == here || entry.stage->is_wait();
    if (should_skip(run, index, ask)) continue;
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
  const task_run_t::stage_entry_t& entry = run->stages[index];
  if (entry.stage->is_wait()) {
    run->clear_interrupt();  // only waits install one
  } else if (should_skip(run, index, true)) {
    advance(run, index + 1, entry.unit, true);  // the rest would be skipped as well
    return;
  } else {
    run_stage(run, *entry.stage);
  }
  advance(run, index + 1, entry.unit, false);
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
  notify_guarded([&] { m_status_callback->task_complete_in(run->task, run->group); });

  std::lock_guard<std::mutex> lock(m_mutex);
  const auto found = m_runs.find(run->task.get());
  if (found != m_runs.end() && &*found == run.get()) {
    m_runs.erase(found);
    run->release();  // the registry's reference: the caller still holds one
  }
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
  // Counting references does not change what the registry holds.
  for (const task_run_t& run : m_runs)
    if (in_scope(group, run.group)) runs.push_back(task_run_ptr_t(const_cast<task_run_t*>(&run)));
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
    run = task_run_ptr_t(&*found);
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
  m_resolved.fill(resolved_stage_t());  // the name may now mean another unit
  m_next_resolved = 0;
  const auto named = std::find_if(m_units.begin(), m_units.end(),
                                  [&](const named_unit_t& entry) { return entry.first == name; });
  if (named != m_units.end())
    named->second = unit;
  else
    m_units.emplace_back(name, unit);
  if (std::find(m_registered_units.begin(), m_registered_units.end(), unit) == m_registered_units.end())
    m_registered_units.push_back(unit);
}

boost::shared_ptr<unit_t> scheduler_core_t::find_unit(const std::string& name) const {
  std::lock_guard<std::mutex> lock(m_mutex);
  for (const named_unit_t& unit : m_units)
    if (unit.first == name) return unit.second;
  return nullptr;
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
  return static_cast<std::size_t>(std::count_if(
      m_runs.begin(), m_runs.end(), [&](const task_run_t& run) { return run.group == group; }));
}

bool scheduler_core_t::task_group(const task_ptr_t& task, std::string& group) const {
  std::lock_guard<std::mutex> lock(m_mutex);
  const auto found = m_runs.find(task.get());
  if (found == m_runs.end()) return false;
  group = found->group;
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
  // Nothing runs any more: let the abandoned tasks go now, unlocked (a
  // task's destructor may call back in).
  std::vector<task_run_ptr_t> abandoned;
  std::vector<watch_t> watches;
  {
    std::lock_guard<std::mutex> lock(m_mutex);
    abandoned.reserve(m_runs.size());
    m_runs.clear_and_dispose([&](task_run_t* run) { abandoned.push_back(task_run_ptr_t(run, false)); });
    watches.swap(m_watches);
    m_resolved.fill(resolved_stage_t());
  }
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
