// Tasks per second through the scheduler, next to the Boost.Asio primitives
// it is built on: a bare post to a thread pool, and a post to a pool whose
// handler hands a completion back to a thread that drains it (the shape of
// work that ends on a GUI thread).
//
// Each iteration runs a batch of tasks and waits for all of them.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <thread>
#include <vector>

#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/thread_pool.hpp>
#include <boost/make_shared.hpp>

#include "talvar2/functor/signal.h"
#include "talvar2/threading/default_task.h"
#include "talvar2/threading/queue_unit.h"
#include "talvar2/threading/scheduler.h"
#include "talvar2/threading/stage.h"

namespace {

using namespace talvar2::threading;

constexpr long k_batch = 1000;

// The worker count the default scheduler gives "service".
std::size_t service_threads() { return std::max(2u, std::thread::hardware_concurrency()); }

// Counts completions; the benchmark thread waits for a total.
class completion_counter_t : public scheduler_status_callback_t {
 public:
  void task_complete(const task_ptr_t&) override {
    std::lock_guard<std::mutex> lock(m_mutex);
    if (++m_completed >= m_target) m_reached.notify_all();
  }
  void task_exception(const task_ptr_t&, const std::string&) override {}
  void task_scheduling_error(const task_ptr_t&, const std::string&) override {}

  void wait_for(long target) {
    std::unique_lock<std::mutex> lock(m_mutex);
    m_target = target;
    m_reached.wait(lock, [&] { return m_completed >= m_target; });
  }
  long completed() {
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_completed;
  }

 private:
  std::mutex m_mutex;
  std::condition_variable m_reached;
  long m_completed = 0;
  long m_target = 0;
};

// A task that carries its own work, as an adapter around an application
// task does: it subscribes itself to the stages it builds.
class bench_task_t : public default_task_t, public talvar2::subscriber_base_t {
 public:
  explicit bench_task_t(bool finish_on_main) : default_task_t("bench") {
    stage_t::work_signal_t work;
    work.connect(this, &bench_task_t::on_work);
    push_stage(boost::make_shared<stage_t>(service_unit_name, work));
    if (finish_on_main) push_finalization_stage(boost::make_shared<stage_t>(main_unit_name, work));
  }

 private:
  void on_work(const task_ptr_t&) { benchmark::ClobberMemory(); }
};

enum class build_t { in_loop, beforehand };

void run_scheduler_batches(benchmark::State& state, bool finish_on_main, build_t build) {
  const auto status = boost::make_shared<completion_counter_t>();
  const auto scheduler = create_default_scheduler(status, nullptr, true);
  const auto main = boost::dynamic_pointer_cast<queue_unit_t>(scheduler->find_unit(main_unit_name));

  std::vector<task_ptr_t> batch;
  long total = 0;
  for (auto _ : state) {
    if (build == build_t::beforehand) {
      state.PauseTiming();
      batch.clear();
      for (long i = 0; i < k_batch; ++i) batch.push_back(boost::make_shared<bench_task_t>(finish_on_main));
      state.ResumeTiming();
      for (const task_ptr_t& task : batch) scheduler->schedule(task, "bench");
    } else {
      for (long i = 0; i < k_batch; ++i)
        scheduler->schedule(boost::make_shared<bench_task_t>(finish_on_main), "bench");
    }
    total += k_batch;
    if (finish_on_main) {
      // The benchmark thread plays the GUI thread that drains "main".
      while (status->completed() < total)
        if (main->process_queue(64) == 0) std::this_thread::yield();
    } else {
      status->wait_for(total);
    }
  }
  state.SetItemsProcessed(state.iterations() * k_batch);
}

// Build, schedule, run on "service", complete.
void scheduler_service_task(benchmark::State& state) {
  run_scheduler_batches(state, false, build_t::in_loop);
}
BENCHMARK(scheduler_service_task)->UseRealTime();

// The same without building the tasks: the scheduler's share alone.
void scheduler_service_task_prebuilt(benchmark::State& state) {
  run_scheduler_batches(state, false, build_t::beforehand);
}
BENCHMARK(scheduler_service_task_prebuilt)->UseRealTime();

// Work on "service", then a finalization drained from "main" by this thread.
void scheduler_service_task_finished_on_main(benchmark::State& state) {
  run_scheduler_batches(state, true, build_t::in_loop);
}
BENCHMARK(scheduler_service_task_finished_on_main)->UseRealTime();

// Tasks without stages complete inside schedule(): the bookkeeping of
// accepting and completing a task, on one thread, with no hand-over.
void scheduler_bookkeeping_only(benchmark::State& state) {
  const auto scheduler = create_default_scheduler(boost::make_shared<completion_counter_t>(), nullptr, false);
  const task_ptr_t task = boost::make_shared<default_task_t>("bench");
  for (auto _ : state) scheduler->schedule(task, "bench");
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(scheduler_bookkeeping_only);

void asio_post_to_pool(benchmark::State& state) {
  boost::asio::thread_pool pool(service_threads());
  std::mutex mutex;
  std::condition_variable reached;
  long done = 0;
  long total = 0;
  for (auto _ : state) {
    total += k_batch;
    for (long i = 0; i < k_batch; ++i)
      boost::asio::post(pool, [&] {
        std::lock_guard<std::mutex> lock(mutex);
        if (++done >= total) reached.notify_all();
      });
    std::unique_lock<std::mutex> lock(mutex);
    reached.wait(lock, [&] { return done >= total; });
  }
  state.SetItemsProcessed(state.iterations() * k_batch);
}
BENCHMARK(asio_post_to_pool)->UseRealTime();

void asio_post_to_pool_then_back(benchmark::State& state) {
  boost::asio::thread_pool pool(service_threads());
  boost::asio::io_context main;
  auto guard = boost::asio::make_work_guard(main);
  long done = 0;  // touched only by the draining thread
  long total = 0;
  for (auto _ : state) {
    total += k_batch;
    for (long i = 0; i < k_batch; ++i)
      boost::asio::post(pool, [&] { boost::asio::post(main, [&] { ++done; }); });
    while (done < total) main.run_one();
  }
  state.SetItemsProcessed(state.iterations() * k_batch);
}
BENCHMARK(asio_post_to_pool_then_back)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
