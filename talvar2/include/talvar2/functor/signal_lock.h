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
/// Every emission takes it, and nearly every signal that is used often is
/// only ever used by one thread. So a lock that one thread has taken many
/// times in a row comes to belong to that thread (it is biased): the owner
/// then takes and lets go with plain loads and stores, no atomic
/// read-modify-write and no fence. The first time another thread wants it,
/// that thread revokes the bias: it raises a flag, makes every thread of the
/// process pass a memory barrier (the one system call that does so,
/// membarrier), and waits until the owner is outside; from then on the lock
/// stays an ordinary one. An ordinary lock costs a compare-exchange to take
/// and a sequentially consistent store to let go, and a thread that finds it
/// held sleeps until the holder lets go, since slots may run long. Signals
/// that live briefly or change threads (a task's work, handed from thread to
/// thread) are never biased and never pay for a revocation. Where
/// membarrier is missing, locks are never biased.
class TALVAR2_API signal_lock_t {
 public:
  signal_lock_t() = default;
  signal_lock_t(const signal_lock_t&) = delete;
  signal_lock_t& operator=(const signal_lock_t&) = delete;

  void acquire() {
    const std::uintptr_t self = current_thread();
    if (m_bias.load(std::memory_order_relaxed) == self && acquire_biased()) return;
    if (!acquire_plain(self)) acquire_contended(self);
  }

  /// Takes the lock only if it is free or already this thread's.
  bool try_acquire() {
    const std::uintptr_t self = current_thread();
    if (m_bias.load(std::memory_order_relaxed) == self && acquire_biased()) return true;
    return try_acquire_plain(self);
  }

  void release() {
    const std::uintptr_t self = current_thread();
    if (m_bias.load(std::memory_order_relaxed) == self) {
      // Seen by a revoking thread that waits for the owner to be outside.
      m_biased_depth.store(m_biased_depth.load(std::memory_order_relaxed) - 1,
                           std::memory_order_release);
      return;
    }
    if (--m_depth != 0) return;
    if (m_streak >= k_streak_to_own && m_bias.load(std::memory_order_relaxed) == k_unbiased)
      take_ownership(self);
    // Sequentially consistent with the sleepers' count, so that either this
    // thread sees a sleeper or the sleeper sees the lock free.
    m_holder.store(0, std::memory_order_seq_cst);
    if (m_sleepers.load(std::memory_order_seq_cst) != 0) wake_sleepers();
  }

 private:
  /// m_bias while the lock may still come to belong to a thread, and after
  /// a revocation (for good).
  static constexpr std::uintptr_t k_unbiased = 0;
  static constexpr std::uintptr_t k_revoked = 1;
  /// Ordinary takings in a row by one thread that make the lock its own.
  static constexpr unsigned k_streak_to_own = 64;

  /// Any value that differs between threads alive at the same time and is
  /// neither 0 nor 1: the thread's control block, one instruction to read
  /// with GCC.
  static std::uintptr_t current_thread() {
#if defined(__GNUC__) && !defined(__clang__)
    return reinterpret_cast<std::uintptr_t>(__builtin_thread_pointer());
#else
    return reinterpret_cast<std::uintptr_t>(pthread_self());
#endif
  }

  /// The owner's way in; false when a revocation is under way (the owner
  /// then finishes it and takes the lock the ordinary way).
  bool acquire_biased() {
    // Acquire: a thread that ended may have owned the lock before this one
    // (thread control blocks are reused).
    const unsigned depth = m_biased_depth.load(std::memory_order_acquire);
    m_biased_depth.store(depth + 1, std::memory_order_relaxed);
    if (depth != 0) return true;  // held already: no one else can be inside
    // Only the compiler must keep the store before the load; the processor
    // is made to by the revoking thread's membarrier.
    std::atomic_signal_fence(std::memory_order_seq_cst);
    if (!m_revoking.load(std::memory_order_acquire)) return true;
    m_biased_depth.store(0, std::memory_order_release);
    m_bias.store(k_revoked, std::memory_order_release);
    return false;
  }

  /// The ordinary way in, without waiting; false when another thread holds
  /// it. The lock may have come to belong to another thread since this one
  /// looked: that is revoked first.
  bool acquire_plain(std::uintptr_t self) {
    std::uintptr_t holder = 0;
    if (m_holder.compare_exchange_strong(holder, self, std::memory_order_acquire,
                                         std::memory_order_relaxed)) {
      m_depth = 1;
      if (m_bias.load(std::memory_order_acquire) > k_revoked) revoke_bias(true);
      count_streak(self);
      return true;
    }
    if (holder != self) return false;
    ++m_depth;
    return true;
  }

  void count_streak(std::uintptr_t self) {
    if (m_streak_holder == self) {
      ++m_streak;
    } else {
      m_streak_holder = self;
      m_streak = 1;
    }
  }

  bool try_acquire_plain(std::uintptr_t self);
  void acquire_contended(std::uintptr_t self);
  /// Makes the lock this thread's, if membarrier is there to revoke that.
  void take_ownership(std::uintptr_t self);
  /// Makes the lock an ordinary one for good: false if `wait` is false and
  /// the owner is inside.
  bool revoke_bias(bool wait);
  void wake_sleepers();

  std::atomic<std::uintptr_t> m_bias{k_unbiased};
  /// Written only by the owner of the bias.
  std::atomic<unsigned> m_biased_depth{0};
  std::atomic<bool> m_revoking{false};
  std::atomic<std::uintptr_t> m_holder{0};
  /// Written only by the holder.
  unsigned m_depth = 0;
  std::atomic<unsigned> m_sleepers{0};
  /// The thread that took it the ordinary way last, and how often in a row;
  /// written only by the holder.
  std::uintptr_t m_streak_holder = 0;
  unsigned m_streak = 0;
};

}  // namespace _internal
}  // namespace talvar2

#endif
