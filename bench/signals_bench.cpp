// Signals against Boost.Signals2 (thread-safe, like ours) and libsigc++ 3
// (single-threaded, takes no lock). Every implementation calls the same
// member function of the same kind of subscriber; the emit_lambda families
// call it through a lambda slot instead.

#include <benchmark/benchmark.h>

#include <array>
#include <atomic>
#include <memory>
#include <vector>

#include <boost/signals2/signal.hpp>

#include "talvar2/functor/signal.h"

#ifdef ORVIX_BENCH_HAVE_SIGC
#include <sigc++/sigc++.h>
#endif

namespace orvix1_bench {
namespace {

constexpr int k_subscriber_signals = 8;

// The subscriber of every implementation, on that implementation's base,
// doing the same work in its slot. Atomic because two threads emit at once
// in the contended family.
template <class Base>
struct sink_t : Base {
  void on_value(int value) { total.fetch_add(value, std::memory_order_relaxed); }
  std::atomic<long> total{0};
};

struct no_base_t {};
using orvix_sink_t = sink_t<talvar2::subscriber_base_t>;
using accumulator_t = sink_t<no_base_t>;
#ifdef ORVIX_BENCH_HAVE_SIGC
using sigc_sink_t = sink_t<sigc::trackable>;
#endif

// --- orvix ------------------------------------------------------------------

struct orvix_fixture_t {
  explicit orvix_fixture_t(long slots) : sinks(static_cast<std::size_t>(slots)) {
    for (orvix_sink_t& sink : sinks) signal.connect(&sink, &orvix_sink_t::on_value);
  }
  std::vector<orvix_sink_t> sinks;
  talvar2::signal_t<int> signal;
};

void emit_orvix(benchmark::State& state) {
  orvix_fixture_t fixture(state.range(0));
  for (auto _ : state) fixture.signal(1);
  benchmark::DoNotOptimize(fixture.sinks.front().total.load());
}
BENCHMARK(emit_orvix)->Name("emit/orvix")->Arg(1)->Arg(8)->Arg(64);

struct orvix_lambda_fixture_t {
  explicit orvix_lambda_fixture_t(long slots) : sinks(static_cast<std::size_t>(slots)) {
    for (accumulator_t& sink : sinks)
      connections.push_back(signal.connect([&sink](int value) { sink.on_value(value); }));
  }
  std::vector<accumulator_t> sinks;
  talvar2::signal_t<int> signal;
  std::vector<talvar2::scoped_connection_t> connections;
};

void emit_lambda_orvix(benchmark::State& state) {
  orvix_lambda_fixture_t fixture(state.range(0));
  for (auto _ : state) fixture.signal(1);
  benchmark::DoNotOptimize(fixture.sinks.front().total.load());
}
BENCHMARK(emit_lambda_orvix)->Name("emit_lambda/orvix")->Arg(1)->Arg(8)->Arg(64);

void connect_disconnect_orvix(benchmark::State& state) {
  orvix_sink_t sink;
  talvar2::signal_t<int> signal;
  for (auto _ : state) {
    signal.connect(&sink, &orvix_sink_t::on_value);
    signal.disconnect(&sink, &orvix_sink_t::on_value);
  }
}
BENCHMARK(connect_disconnect_orvix)->Name("connect_disconnect/orvix")->Arg(1);

void emit_contended_orvix(benchmark::State& state) {
  static std::unique_ptr<orvix_fixture_t> shared;
  if (state.thread_index() == 0) shared = std::make_unique<orvix_fixture_t>(state.range(0));
  for (auto _ : state) (*shared).signal(1);
  if (state.thread_index() == 0) shared.reset();
}
BENCHMARK(emit_contended_orvix)->Name("emit_contended/orvix")->Arg(8)->Threads(2)->UseRealTime();

void destroy_subscriber_orvix(benchmark::State& state) {
  std::array<talvar2::signal_t<int>, k_subscriber_signals> signals;
  for (auto _ : state) {
    orvix_sink_t sink;
    for (auto& signal : signals) signal.connect(&sink, &orvix_sink_t::on_value);
  }  // the sink's destructor cuts all eight connections
}
BENCHMARK(destroy_subscriber_orvix)->Name("destroy_subscriber/orvix")->Arg(k_subscriber_signals);

// --- Boost.Signals2 ---------------------------------------------------------

struct signals2_fixture_t {
  explicit signals2_fixture_t(long slots) : sinks(static_cast<std::size_t>(slots)) {
    for (accumulator_t& sink : sinks) signal.connect([&sink](int value) { sink.on_value(value); });
  }
  std::vector<accumulator_t> sinks;
  boost::signals2::signal<void(int)> signal;
};

void emit_signals2(benchmark::State& state) {
  signals2_fixture_t fixture(state.range(0));
  for (auto _ : state) fixture.signal(1);
  benchmark::DoNotOptimize(fixture.sinks.front().total.load());
}
BENCHMARK(emit_signals2)->Name("emit/signals2")->Arg(1)->Arg(8)->Arg(64);
// Its slots are lambdas already: the same run, next to the other lambda families.
BENCHMARK(emit_signals2)->Name("emit_lambda/signals2")->Arg(1)->Arg(8)->Arg(64);

void connect_disconnect_signals2(benchmark::State& state) {
  accumulator_t sink;
  boost::signals2::signal<void(int)> signal;
  for (auto _ : state) {
    boost::signals2::connection connection =
        signal.connect([&sink](int value) { sink.on_value(value); });
    connection.disconnect();
  }
}
BENCHMARK(connect_disconnect_signals2)->Name("connect_disconnect/signals2")->Arg(1);

void emit_contended_signals2(benchmark::State& state) {
  static std::unique_ptr<signals2_fixture_t> shared;
  if (state.thread_index() == 0) shared = std::make_unique<signals2_fixture_t>(state.range(0));
  for (auto _ : state) (*shared).signal(1);
  if (state.thread_index() == 0) shared.reset();
}
BENCHMARK(emit_contended_signals2)->Name("emit_contended/signals2")->Arg(8)->Threads(2)->UseRealTime();

// A subscriber that disconnects itself when it dies, the Signals2 way.
struct signals2_subscriber_t : accumulator_t {
  std::array<boost::signals2::scoped_connection, k_subscriber_signals> connections;
};

void destroy_subscriber_signals2(benchmark::State& state) {
  std::array<boost::signals2::signal<void(int)>, k_subscriber_signals> signals;
  for (auto _ : state) {
    signals2_subscriber_t sink;
    for (int i = 0; i < k_subscriber_signals; ++i)
      sink.connections[i] = signals[i].connect([&sink](int value) { sink.on_value(value); });
  }
}
BENCHMARK(destroy_subscriber_signals2)->Name("destroy_subscriber/signals2")->Arg(k_subscriber_signals);

// --- libsigc++ --------------------------------------------------------------
#ifdef ORVIX_BENCH_HAVE_SIGC

struct sigc_fixture_t {
  explicit sigc_fixture_t(long slots) : sinks(static_cast<std::size_t>(slots)) {
    for (sigc_sink_t& sink : sinks) signal.connect(sigc::mem_fun(sink, &sigc_sink_t::on_value));
  }
  std::vector<sigc_sink_t> sinks;
  sigc::signal<void(int)> signal;
};

void emit_sigc(benchmark::State& state) {
  sigc_fixture_t fixture(state.range(0));
  for (auto _ : state) fixture.signal.emit(1);
  benchmark::DoNotOptimize(fixture.sinks.front().total.load());
}
BENCHMARK(emit_sigc)->Name("emit/sigc")->Arg(1)->Arg(8)->Arg(64);

struct sigc_lambda_fixture_t {
  explicit sigc_lambda_fixture_t(long slots) : sinks(static_cast<std::size_t>(slots)) {
    for (accumulator_t& sink : sinks) signal.connect([&sink](int value) { sink.on_value(value); });
  }
  std::vector<accumulator_t> sinks;
  sigc::signal<void(int)> signal;
};

void emit_lambda_sigc(benchmark::State& state) {
  sigc_lambda_fixture_t fixture(state.range(0));
  for (auto _ : state) fixture.signal.emit(1);
  benchmark::DoNotOptimize(fixture.sinks.front().total.load());
}
BENCHMARK(emit_lambda_sigc)->Name("emit_lambda/sigc")->Arg(1)->Arg(8)->Arg(64);

void connect_disconnect_sigc(benchmark::State& state) {
  sigc_sink_t sink;
  sigc::signal<void(int)> signal;
  for (auto _ : state) {
    sigc::connection connection = signal.connect(sigc::mem_fun(sink, &sigc_sink_t::on_value));
    connection.disconnect();
  }
}
BENCHMARK(connect_disconnect_sigc)->Name("connect_disconnect/sigc")->Arg(1);

void destroy_subscriber_sigc(benchmark::State& state) {
  std::array<sigc::signal<void(int)>, k_subscriber_signals> signals;
  for (auto _ : state) {
    sigc_sink_t sink;
    for (auto& signal : signals) signal.connect(sigc::mem_fun(sink, &sigc_sink_t::on_value));
  }  // trackable: the sink's destructor disconnects
}
BENCHMARK(destroy_subscriber_sigc)->Name("destroy_subscriber/sigc")->Arg(k_subscriber_signals);

#endif

}  // namespace
}  // namespace orvix1_bench
