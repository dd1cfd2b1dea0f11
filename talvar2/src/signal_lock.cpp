#include "talvar2/functor/signal_lock.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <thread>

#if defined(__linux__)
#include <linux/membarrier.h>
#include <sys/syscall.h>
#include <unistd.h>
#endif

namespace talvar2 {
namespace _internal {
namespace {

// A revoking thread waits for an owner that wakes no one: it looks again,
// first at once, then after giving up its turn, then after naps.
constexpr int k_spins_before_yielding = 100;
constexpr int k_yields_before_napping = 64;
constexpr auto k_revocation_nap = std::chrono::microseconds(50);

inline void cpu_relax() {
#if defined(__x86_64__) || defined(__i386__)
  __builtin_ia32_pause();
#endif
}

// Sleepers wait in a few shared places picked by the lock's address, so that
// a lock stays small: contention is rare, and every sleeper of a place is
// woken and looks whether its own lock is free.
struct sleeping_place_t {
  std::mutex mutex;
  std::condition_variable wake;
};

constexpr std::size_t k_sleeping_places = 16;

sleeping_place_t& sleeping_place_for(const void* lock) {
  static sleeping_place_t places[k_sleeping_places];
  return places[std::hash<const void*>()(lock) / alignof(std::max_align_t) % k_sleeping_places];
}

#if defined(__linux__) && defined(__NR_membarrier)
bool biasing_available() {
  static const bool registered =
      syscall(__NR_membarrier, MEMBARRIER_CMD_REGISTER_PRIVATE_EXPEDITED, 0, 0) == 0;
  return registered;
}

// Every other running thread of the process executes a full memory barrier
// before this returns.
void barrier_on_every_thread() { syscall(__NR_membarrier, MEMBARRIER_CMD_PRIVATE_EXPEDITED, 0, 0); }
#else
bool biasing_available() { return false; }
void barrier_on_every_thread() {}
#endif

}  // namespace

bool signal_lock_t::try_acquire_plain(std::uintptr_t self) {
  std::uintptr_t holder = 0;
  if (m_holder.compare_exchange_strong(holder, self, std::memory_order_acquire,
                                       std::memory_order_relaxed)) {
    m_depth = 1;
    if (m_bias.load(std::memory_order_acquire) > k_revoked && !revoke_bias(false)) {
      release();  // the owner is inside
      return false;
    }
    count_streak(self);
    return true;
  }
  if (holder != self) return false;
  ++m_depth;
  return true;
}

void signal_lock_t::take_ownership(std::uintptr_t self) {
  if (biasing_available()) m_bias.store(self, std::memory_order_release);
}

bool signal_lock_t::revoke_bias(bool wait) {
  const std::uintptr_t owner = m_bias.load(std::memory_order_acquire);
  if (owner == k_unbiased || owner == k_revoked) return true;
  m_revoking.store(true, std::memory_order_seq_cst);
  // Now either the owner's next way in sees the flag, or its store of the
  // depth that says it is inside is seen here.
  barrier_on_every_thread();
  for (int attempt = 0; m_biased_depth.load(std::memory_order_acquire) != 0; ++attempt) {
    if (!wait) return false;
    // The owner lets go with a plain store and wakes no one: look again.
    if (attempt < k_spins_before_yielding)
      cpu_relax();
    else if (attempt < k_spins_before_yielding + k_yields_before_napping)
      std::this_thread::yield();
    else
      std::this_thread::sleep_for(k_revocation_nap);
  }
  std::uintptr_t expected = owner;
  m_bias.compare_exchange_strong(expected, k_revoked, std::memory_order_acq_rel);
  return true;
}

// No spinning first: two threads emitting one signal in turn got through
// more emissions when the waiting one went to sleep at once (measured), as
// a library mutex does.
void signal_lock_t::acquire_contended(std::uintptr_t self) {
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
  if (m_bias.load(std::memory_order_acquire) > k_revoked) revoke_bias(true);
  count_streak(self);
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
