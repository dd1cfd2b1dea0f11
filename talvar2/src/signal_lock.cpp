#include "talvar2/functor/signal_lock.h"

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>

namespace talvar2 {
namespace _internal {
namespace {

// Short waits (a connect, an emission with a few quick slots) end while
// spinning; the sleep costs a system call on both sides.
constexpr int k_spins_before_sleeping = 100;

// Sleepers wait in a few shared places picked by the lock's address, so that
// a lock stays two words: contention is rare, and every sleeper of a place
// is woken and looks whether its own lock is free.
struct sleeping_place_t {
  std::mutex mutex;
  std::condition_variable wake;
};

constexpr std::size_t k_sleeping_places = 16;

sleeping_place_t& sleeping_place_for(const void* lock) {
  static sleeping_place_t places[k_sleeping_places];
  return places[std::hash<const void*>()(lock) / alignof(std::max_align_t) % k_sleeping_places];
}

inline void cpu_relax() {
#if defined(__x86_64__) || defined(__i386__)
  __builtin_ia32_pause();
#endif
}

}  // namespace

void signal_lock_t::acquire_contended(std::uintptr_t self) {
  for (int spin = 0; spin < k_spins_before_sleeping; ++spin) {
    cpu_relax();
    std::uintptr_t holder = 0;
    if (m_holder.load(std::memory_order_relaxed) == 0 &&
        m_holder.compare_exchange_strong(holder, self, std::memory_order_acquire,
                                         std::memory_order_relaxed)) {
      m_depth = 1;
      return;
    }
  }
  sleeping_place_t& place = sleeping_place_for(this);
  m_sleepers.fetch_add(1, std::memory_order_seq_cst);
  {
    std::unique_lock<std::mutex> guard(place.mutex);
    for (;;) {
      std::uintptr_t holder = 0;
      if (m_holder.compare_exchange_strong(holder, self, std::memory_order_seq_cst)) break;
      place.wake.wait(guard);
    }
  }
  m_sleepers.fetch_sub(1, std::memory_order_relaxed);
  m_depth = 1;
}

void signal_lock_t::wake_sleepers() {
  sleeping_place_t& place = sleeping_place_for(this);
  // Taking the place's mutex makes sure a sleeper that saw the lock held is
  // already waiting, so this wake-up is not lost.
  { std::lock_guard<std::mutex> guard(place.mutex); }
  place.wake.notify_all();
}

}  // namespace _internal
}  // namespace talvar2
