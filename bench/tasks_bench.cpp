// The cost of getting work back to the GUI thread, each next to the bare
// primitives underneath it:
// - throughput of empty service tasks whose TaskFinished runs on the GUI
//   thread, against a post to an asio thread pool whose handler calls
//   wxApp::CallAfter back to the GUI thread;
// - latency of PostSignal from one worker thread to the slot on the GUI
//   thread, against CallAfter from the same worker thread.
// The bench thread is the GUI thread; it pumps the loop until all arrived.
//
// Run under a display (scripts/xvfb-run-here build/bench/orvix1_bench).

#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include <boost/asio/post.hpp>
#include <boost/asio/thread_pool.hpp>
#include <wx/app.h>

#include "orvix1/tasks/ITask.h"
#include "orvix1/tasks/Scheduler.h"
#include "orvix1/wx_dll_application.h"
#include "talvar2/functor/signal.h"

namespace {

using orvix1::tasks::Scheduler;
using orvix1::tasks::SchedulerPtr;
using clock_type = std::chrono::steady_clock;

// A fresh process-wide scheduler for one benchmark run, ended in order.
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

// Pumps the GUI loop until `done` holds; false after ten seconds.
bool pump_until(const std::function<bool()>& done) {
  const auto deadline = clock_type::now() + std::chrono::seconds(10);
  while (!done()) {
    if (clock_type::now() > deadline) return false;
    orvix1::process_message_loop();
  }
  return true;
}

// The same thread count as the scheduler's "service" unit.
std::size_t service_threads() {
  return std::max<std::size_t>(2, std::thread::hardware_concurrency());
}

// An empty service task that counts its TaskFinished, wrong thread or not.
class counted_task_t : public orvix1::tasks::DefaultTaskImpl {
 public:
  counted_task_t(std::atomic<int>& finished, std::atomic<int>& off_gui)
      : m_finished(finished), m_off_gui(off_gui) {}
  void TaskFinished() override {
    if (!wxThread::IsMain()) ++m_off_gui;
    ++m_finished;
  }

 private:
  std::atomic<int>& m_finished;
  std::atomic<int>& m_off_gui;
};

void scheduler_service_round_trip(benchmark::State& state) {
  const int tasks = static_cast<int>(state.range(0));
  scheduler_session_t session;
  if (!session.get()) {
    state.SkipWithError("the scheduler did not start");
    return;
  }
  std::atomic<int> finished{0};
  std::atomic<int> off_gui{0};
  for (auto _ : state) {
    finished = 0;
    for (int i = 0; i < tasks; ++i)
      if (session.get()->AddTask(new counted_task_t(finished, off_gui), "bench") != 0) {
        state.SkipWithError("a task was refused");
        return;
      }
    if (!pump_until([&] { return finished == tasks; })) {
      state.SkipWithError("the tasks did not finish in time");
      return;
    }
  }
  if (off_gui != 0) state.SkipWithError("TaskFinished ran off the GUI thread");
  state.SetItemsProcessed(state.iterations() * tasks);
}
BENCHMARK(scheduler_service_round_trip)->Arg(1000)->Unit(benchmark::kMillisecond);

void raw_pool_call_after_round_trip(benchmark::State& state) {
  const int tasks = static_cast<int>(state.range(0));
  boost::asio::thread_pool pool(service_threads());
  std::atomic<int> finished{0};
  std::atomic<int> off_gui{0};
  for (auto _ : state) {
    finished = 0;
    for (int i = 0; i < tasks; ++i)
      boost::asio::post(pool, [&] {
        wxTheApp->CallAfter([&] {
          if (!wxThread::IsMain()) ++off_gui;
          ++finished;
        });
      });
    if (!pump_until([&] { return finished == tasks; })) {
      state.SkipWithError("the handlers did not come back in time");
      break;
    }
  }
  pool.join();
  if (off_gui != 0) state.SkipWithError("the handler ran off the GUI thread");
  state.SetItemsProcessed(state.iterations() * tasks);
}
BENCHMARK(raw_pool_call_after_round_trip)->Arg(1000)->Unit(benchmark::kMillisecond);

// One worker thread that runs `send` each time the GUI thread asks for it.
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
  return std::chrono::duration_cast<std::chrono::nanoseconds>(clock_type::now().time_since_epoch()).count();
}

// Where a message from the worker arrives on the GUI thread: the time it
// took from the worker's send to here.
struct arrival_t {
  std::atomic<bool> arrived{false};
  std::atomic<bool> off_gui{false};
  std::int64_t latency_ns = 0;

  void record(std::int64_t sent_ns) {
    latency_ns = now_ns() - sent_ns;
    if (!wxThread::IsMain()) off_gui = true;
    arrived = true;
  }
};

class slot_t : public talvar2::subscriber_base_t {
 public:
  explicit slot_t(arrival_t& arrival) : m_arrival(arrival) {}
  void on_sent(std::int64_t sent_ns) { m_arrival.record(sent_ns); }

 private:
  arrival_t& m_arrival;
};

// Each iteration: one message from the worker, timed from its send to its
// slot. Reports the median and the 99th percentile as counters.
void measure_latency(benchmark::State& state, arrival_t& arrival, worker_t& worker) {
  std::vector<double> samples_us;
  samples_us.reserve(static_cast<std::size_t>(state.max_iterations));
  for (auto _ : state) {
    arrival.arrived = false;
    worker.request();
    if (!pump_until([&] { return arrival.arrived.load(); })) {
      state.SkipWithError("the message did not arrive in time");
      return;
    }
    const double seconds = static_cast<double>(arrival.latency_ns) * 1e-9;
    state.SetIterationTime(seconds);
    samples_us.push_back(seconds * 1e6);
  }
  if (arrival.off_gui) state.SkipWithError("the message arrived off the GUI thread");
  if (samples_us.empty()) return;
  std::sort(samples_us.begin(), samples_us.end());
  const auto at = [&](double fraction) {
    return samples_us[static_cast<std::size_t>(fraction * static_cast<double>(samples_us.size() - 1))];
  };
  state.counters["p50_us"] = at(0.50);
  state.counters["p99_us"] = at(0.99);
}

void post_signal_latency(benchmark::State& state) {
  scheduler_session_t session;
  if (!session.get()) {
    state.SkipWithError("the scheduler did not start");
    return;
  }
  arrival_t arrival;
  slot_t slot(arrival);
  talvar2::signal_t<std::int64_t> sent;
  sent.connect(&slot, &slot_t::on_sent);
  worker_t worker([&] { orvix1::tasks::PostSignal(sent, now_ns()); });
  measure_latency(state, arrival, worker);
}
BENCHMARK(post_signal_latency)->UseManualTime()->Iterations(20000)->Unit(benchmark::kMicrosecond);

void call_after_latency(benchmark::State& state) {
  arrival_t arrival;
  worker_t worker([&] {
    const std::int64_t sent_ns = now_ns();
    wxTheApp->CallAfter([&arrival, sent_ns] { arrival.record(sent_ns); });
  });
  measure_latency(state, arrival, worker);
}
BENCHMARK(call_after_latency)->UseManualTime()->Iterations(20000)->Unit(benchmark::kMicrosecond);

}  // namespace
