// Getting work back to the GUI thread, next to the primitives underneath:
// - scheduler_throughput: empty service tasks whose TaskFinished runs on the
//   GUI thread, against a Boost.Asio pool post whose handler calls
//   wxApp::CallAfter (one worker hop and one GUI delivery), and against the
//   three hops a task makes (start delivered, work posted, finish delivered)
//   done with the same primitives;
// - gui_latency: PostSignal from a worker to its slot on the GUI thread,
//   against CallAfter from the same worker and a bare Boost.Asio post to an
//   idle thread.
// The bench thread is the GUI thread and waits idle in wx's event loop.
// Throughput is taken at two batch sizes: a short burst, where waking the
// idle threads weighs most, and a long one, where the peers' tiny per-hop
// work pipelines best.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/thread_pool.hpp>
#include <wx/app.h>
#include <wx/thread.h>

#include "gui_loop.h"
#include "scheduler_bench.h"
#include "orvix1/tasks/ITask.h"
#include "orvix1/tasks/Scheduler.h"
#include "talvar2/functor/signal.h"

namespace orvix1_bench {
namespace {

using orvix1::tasks::Scheduler;
using orvix1::tasks::SchedulerPtr;
using clock_type = std::chrono::steady_clock;

// A fresh process-wide scheduler for one benchmark, ended in order.
class scheduler_session_t {
 public:
  scheduler_session_t()
      : m_scheduler(Scheduler::Get(new orvix1::tasks::ISchedulerStatusCallback)) {}
  ~scheduler_session_t() {
    if (m_scheduler) m_scheduler->CancelAndWait(orvix1::tasks::dialog_info_t(), false);
    m_scheduler.reset();
    Scheduler::Release();
  }
  scheduler_session_t(const scheduler_session_t&) = delete;
  scheduler_session_t& operator=(const scheduler_session_t&) = delete;

  SchedulerPtr& get() { return m_scheduler; }

 private:
  SchedulerPtr m_scheduler;
};

// Counts arrivals on the GUI thread and ends the loop at the last one.
struct arrivals_t {
  int expected = 0;
  int arrived = 0;
  bool off_gui = false;

  void arrive() {
    if (!wxThread::IsMain()) off_gui = true;
    if (++arrived == expected) exit_gui_loop();
  }
};

class counted_task_t : public orvix1::tasks::DefaultTaskImpl {
 public:
  explicit counted_task_t(arrivals_t& arrivals) : m_arrivals(arrivals) {}
  void TaskFinished() override { m_arrivals.arrive(); }

 private:
  arrivals_t& m_arrivals;
};

// The same thread count as the scheduler's "service" unit.
std::size_t service_threads() {
  return std::max<std::size_t>(2, std::thread::hardware_concurrency());
}

// Each iteration sends a batch through `send` and waits idle for all of it.
void run_batches(benchmark::State& state, const std::function<bool(arrivals_t&)>& send) {
  arrivals_t arrivals;
  arrivals.expected = static_cast<int>(state.range(0));
  for (auto _ : state) {
    arrivals.arrived = 0;
    for (int i = 0; i < arrivals.expected; ++i)
      if (!send(arrivals)) return state.SkipWithError("a task was refused");
    if (!run_gui_loop()) return state.SkipWithError("the batch did not come back in time");
  }
  if (arrivals.off_gui) state.SkipWithError("a completion ran off the GUI thread");
  state.SetItemsProcessed(state.iterations() * arrivals.expected);
}

void scheduler_throughput_orvix(benchmark::State& state) {
  scheduler_session_t session;
  if (!session.get()) return state.SkipWithError("the scheduler did not start");
  run_batches(state, [&](arrivals_t& arrivals) {
    return session.get()->AddTask(new counted_task_t(arrivals), "bench") == 0;
  });
}

void scheduler_throughput_asio_callafter(benchmark::State& state) {
  boost::asio::thread_pool pool(service_threads());
  run_batches(state, [&](arrivals_t& arrivals) {
    boost::asio::post(pool, [&] { wxTheApp->CallAfter([&] { arrivals.arrive(); }); });
    return true;
  });
  pool.join();
}

// The same three hops as a scheduled service task, made of the raw
// primitives: the start delivered on the GUI thread, the work posted to the
// pool from there, the finish delivered back. The floor for any scheduler
// whose tasks start and finish on the GUI thread.
void scheduler_throughput_asio_callafter_staged(benchmark::State& state) {
  boost::asio::thread_pool pool(service_threads());
  run_batches(state, [&](arrivals_t& arrivals) {
    wxTheApp->CallAfter([&] {
      boost::asio::post(pool, [&] { wxTheApp->CallAfter([&] { arrivals.arrive(); }); });
    });
    return true;
  });
  pool.join();
}

// One worker thread that runs `send` each time the bench thread asks.
class worker_t {
 public:
  explicit worker_t(std::function<void()> send) : m_send(std::move(send)), m_thread([this] { run(); }) {}
  ~worker_t() {
    {
      std::lock_guard<std::mutex> lock(m_mutex);
      m_stop = true;
    }
    m_wake.notify_one();
    m_thread.join();
  }
  worker_t(const worker_t&) = delete;
  worker_t& operator=(const worker_t&) = delete;

  void request() {
    {
      std::lock_guard<std::mutex> lock(m_mutex);
      ++m_requests;
    }
    m_wake.notify_one();
  }

 private:
  void run() {
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
      m_wake.wait(lock, [this] { return m_stop || m_requests > 0; });
      if (m_stop) return;
      --m_requests;
      lock.unlock();
      m_send();
      lock.lock();
    }
  }

  std::function<void()> m_send;
  std::mutex m_mutex;
  std::condition_variable m_wake;
  int m_requests = 0;
  bool m_stop = false;
  std::thread m_thread;  // last: starts once the rest is ready
};

std::int64_t now_ns() {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(clock_type::now().time_since_epoch())
      .count();
}

// Where a message from the worker arrives: how long it took since its send.
struct arrival_t {
  bool arrived = false;
  std::int64_t latency_ns = 0;

  void record(std::int64_t sent_ns) {
    latency_ns = now_ns() - sent_ns;
    arrived = true;
  }
};

// Each iteration: one message from the worker, timed from its send to its
// handler; `wait` blocks until it arrived. Median and 99th percentile go
// out as counters.
void measure_latency(benchmark::State& state, arrival_t& arrival, worker_t& worker,
                     const std::function<bool()>& wait) {
  std::vector<double> samples_us;
  samples_us.reserve(static_cast<std::size_t>(state.max_iterations));
  for (auto _ : state) {
    arrival.arrived = false;
    worker.request();
    if (!wait() || !arrival.arrived) return state.SkipWithError("the message did not arrive in time");
    const double seconds = static_cast<double>(arrival.latency_ns) * 1e-9;
    state.SetIterationTime(seconds);
    samples_us.push_back(seconds * 1e6);
  }
  std::sort(samples_us.begin(), samples_us.end());
  const auto at = [&](double fraction) {
    return samples_us[static_cast<std::size_t>(fraction * static_cast<double>(samples_us.size() - 1))];
  };
  state.counters["p50_us"] = at(0.50);
  state.counters["p99_us"] = at(0.99);
}

class slot_t : public talvar2::subscriber_base_t {
 public:
  explicit slot_t(arrival_t& arrival) : m_arrival(arrival) {}
  void on_sent(std::int64_t sent_ns) {
    m_arrival.record(sent_ns);
    exit_gui_loop();
  }

 private:
  arrival_t& m_arrival;
};

constexpr int k_messages = 5000;

void gui_latency_orvix(benchmark::State& state) {
  scheduler_session_t session;
  if (!session.get()) return state.SkipWithError("the scheduler did not start");
  arrival_t arrival;
  slot_t slot(arrival);
  talvar2::signal_t<std::int64_t> sent;
  sent.connect(&slot, &slot_t::on_sent);
  worker_t worker([&] { orvix1::tasks::PostSignal(sent, now_ns()); });
  measure_latency(state, arrival, worker, [] { return run_gui_loop(); });
}
BENCHMARK(gui_latency_orvix)->Name("gui_latency/orvix_postsignal")->Arg(1)->UseManualTime()
    ->Iterations(k_messages)->Unit(benchmark::kMicrosecond);

void gui_latency_call_after(benchmark::State& state) {
  arrival_t arrival;
  worker_t worker([&] {
    const std::int64_t sent_ns = now_ns();
    wxTheApp->CallAfter([&arrival, sent_ns] {
      arrival.record(sent_ns);
      exit_gui_loop();
    });
  });
  measure_latency(state, arrival, worker, [] { return run_gui_loop(); });
}
BENCHMARK(gui_latency_call_after)->Name("gui_latency/wx_callafter")->Arg(1)->UseManualTime()
    ->Iterations(k_messages)->Unit(benchmark::kMicrosecond);

// The floor: a post to an io_context that the bench thread runs, idle until
// the handler arrives. No GUI toolkit in between.
void gui_latency_asio_post(benchmark::State& state) {
  boost::asio::io_context receiver;
  auto keep_running = boost::asio::make_work_guard(receiver);
  arrival_t arrival;
  worker_t worker([&] {
    const std::int64_t sent_ns = now_ns();
    boost::asio::post(receiver, [&arrival, sent_ns] { arrival.record(sent_ns); });
  });
  measure_latency(state, arrival, worker, [&] { return receiver.run_one() == 1; });
}
BENCHMARK(gui_latency_asio_post)->Name("gui_latency/asio_post")->Arg(1)->UseManualTime()
    ->Iterations(k_messages)->Unit(benchmark::kMicrosecond);

}  // namespace

// A burst takes a few milliseconds and moves by a quarter from run to run
// on a loaded machine: by default each row is the median of repetitions
// interleaved at random with the other rows' (bench_main turns the
// interleaving on). Repetitions or a minimum time given on the command line
// rule instead, as for one counted batch under callgrind.
void register_scheduler_throughput(bool command_line_rules) {
  const std::pair<const char*, void (*)(benchmark::State&)> rows[] = {
      {"scheduler_throughput/orvix", &scheduler_throughput_orvix},
      {"scheduler_throughput/asio_callafter", &scheduler_throughput_asio_callafter},
      {"scheduler_throughput/asio_callafter_staged", &scheduler_throughput_asio_callafter_staged},
  };
  for (const auto& row : rows) {
    benchmark::internal::Benchmark* registered = benchmark::RegisterBenchmark(row.first, row.second);
    registered->Arg(50)->Arg(1000)->UseRealTime()->Unit(benchmark::kMillisecond);
    if (!command_line_rules) registered->Repetitions(k_scheduler_repetitions)->MinTime(0.2);
  }
}

}  // namespace orvix1_bench
