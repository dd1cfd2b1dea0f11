// Costs of the notification and ownership primitives on the hot paths:
// emitting to a few slots, wiring a slot up and down, copying a counted pointer.

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

#include "talvar2/functor/signal.h"
#include "talvar2/pointers/intrusive_pointer.h"

namespace {

class sink_t : public talvar2::_internal::subscriber_base_t {
 public:
  void on_value(int value) { m_total += value; }
  long total() const { return m_total; }

 private:
  long m_total = 0;
};

void signal_emit(benchmark::State& state) {
  const auto slot_count = static_cast<std::size_t>(state.range(0));
  std::vector<std::unique_ptr<sink_t>> sinks;
  talvar2::signal_t<int> signal;
  for (std::size_t i = 0; i < slot_count; ++i) {
    sinks.push_back(std::make_unique<sink_t>());
    signal.connect(sinks.back().get(), &sink_t::on_value);
  }
  for (auto _ : state) signal(1);
  benchmark::DoNotOptimize(sinks.front()->total());
  state.SetItemsProcessed(state.iterations() * static_cast<long>(slot_count));
}
BENCHMARK(signal_emit)->Arg(1)->Arg(8);

void signal_connect_disconnect(benchmark::State& state) {
  sink_t sink;
  talvar2::signal_t<int> signal;
  for (auto _ : state) {
    signal.connect(&sink, &sink_t::on_value);
    signal.disconnect(&sink, &sink_t::on_value);
  }
  benchmark::DoNotOptimize(signal.connection_count());
}
BENCHMARK(signal_connect_disconnect);

class counted_t : public talvar2::intrusive_pointer_impl_t {};

void intrusive_pointer_copy(benchmark::State& state) {
  const talvar2::intrusive_pointer_t<counted_t> original(new counted_t);
  for (auto _ : state) {
    talvar2::intrusive_pointer_t<counted_t> copy(original);
    benchmark::DoNotOptimize(copy.get());
  }
}
BENCHMARK(intrusive_pointer_copy);

}  // namespace

BENCHMARK_MAIN();
