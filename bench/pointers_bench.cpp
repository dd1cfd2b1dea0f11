// Copying and releasing a counted pointer, against boost::intrusive_ptr with
// an atomic count and std::shared_ptr.

#include <benchmark/benchmark.h>

#include <atomic>
#include <memory>

#include <boost/intrusive_ptr.hpp>

#include "talvar2/pointers/intrusive_pointer.h"

namespace orvix1_bench {
namespace {

struct orvix_counted_t : talvar2::intrusive_pointer_impl_t {};

struct boost_counted_t {
  std::atomic<long> count{0};
};
void intrusive_ptr_add_ref(boost_counted_t* object) {
  object->count.fetch_add(1, std::memory_order_relaxed);
}
void intrusive_ptr_release(boost_counted_t* object) {
  if (object->count.fetch_sub(1, std::memory_order_acq_rel) == 1) delete object;
}

template <class Pointer>
void copy_and_release(benchmark::State& state, const Pointer& original) {
  for (auto _ : state) {
    Pointer copy(original);
    benchmark::DoNotOptimize(copy.get());
  }
}

void pointer_copy_orvix(benchmark::State& state) {
  copy_and_release(state, talvar2::intrusive_pointer_t<orvix_counted_t>(new orvix_counted_t));
}
BENCHMARK(pointer_copy_orvix)->Name("pointer_copy/orvix")->Arg(1);

void pointer_copy_boost(benchmark::State& state) {
  copy_and_release(state, boost::intrusive_ptr<boost_counted_t>(new boost_counted_t));
}
BENCHMARK(pointer_copy_boost)->Name("pointer_copy/boost_intrusive")->Arg(1);

void pointer_copy_std(benchmark::State& state) {
  copy_and_release(state, std::make_shared<int>(0));
}
BENCHMARK(pointer_copy_std)->Name("pointer_copy/std_shared")->Arg(1);

}  // namespace
}  // namespace orvix1_bench
