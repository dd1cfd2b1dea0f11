#ifndef TALVAR2_FUNCTOR_SIGNAL_LOCK_H
#define TALVAR2_FUNCTOR_SIGNAL_LOCK_H
/// @file
/// The re-entrant lock every signal takes for connecting, cutting and emitting.

#include <atomic>
#include <cstdint>

#if !(defined(__GNUC__) && !defined(__clang__))
#include <pthread.h>
#endif

#include "talvar2/export.h"

namespace talvar2 {
namespace _internal {

/// A re-entrant lock held by a signal's emission while its slots run.
///
/// Every emission takes it, so the free case is a single compare-exchange
/// inline in the caller and a release is one exchange, where a library
/// recursive mutex costs two calls and about seventy instructions. A thread
/// that finds it held spins a little, then sleeps until the holder lets go:
/// slots may run long, and connects and dying subscribers on other threads
/// must wait for them.
class TALVAR2_API signal_lock_t {
 public:
  signal_lock_t() = default;
  signal_lock_t(const signal_lock_t&) = delete;
  signal_lock_t& operator=(const signal_lock_t&) = delete;

  void acquire() {
    const std::uintptr_t self = current_thread();
    std::uintptr_t holder = 0;
    if (m_holder.compare_exchange_strong(holder, self, std::memory_order_acquire,
                                         std::memory_order_relaxed)) {
      m_depth = 1;
    } else if (holder == self) {
      ++m_depth;
    } else {
      acquire_contended(self);
    }
  }

  /// Takes the lock only if it is free or already this thread's.
  bool try_acquire() {
    const std::uintptr_t self = current_thread();
    std::uintptr_t holder = 0;
    if (m_holder.compare_exchange_strong(holder, self, std::memory_order_acquire,
                                         std::memory_order_relaxed)) {
      m_depth = 1;
      return true;
    }
    if (holder != self) return false;
    ++m_depth;
    return true;
  }

  void release() {
    if (--m_depth != 0) return;
    // Sequentially consistent with the sleepers' count, so that either this
    // thread sees a sleeper or the sleeper sees the lock free.
    m_holder.store(0, std::memory_order_seq_cst);
    if (m_sleepers.load(std::memory_order_seq_cst) != 0) wake_sleepers();
  }

 private:
  /// Any value that differs between threads alive at the same time and is
  /// never 0: the thread's control block, one instruction to read with GCC.
  static std::uintptr_t current_thread() {
#if defined(__GNUC__) && !defined(__clang__)
    return reinterpret_cast<std::uintptr_t>(__builtin_thread_pointer());
#else
    return reinterpret_cast<std::uintptr_t>(pthread_self());
#endif
  }

  void acquire_contended(std::uintptr_t self);
  void wake_sleepers();

  std::atomic<std::uintptr_t> m_holder{0};
  /// Written only by the holder.
  unsigned m_depth = 0;
  std::atomic<unsigned> m_sleepers{0};
};

}  // namespace _internal
}  // namespace talvar2

#endif
