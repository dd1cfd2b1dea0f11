#ifndef TALVAR2_FUNCTOR_SCOPED_CONNECTION_H
#define TALVAR2_FUNCTOR_SCOPED_CONNECTION_H
/// @file
/// The handle `signal.connect(callable)` returns.

#include <atomic>

#include "talvar2/export.h"

namespace talvar2 {
namespace _internal {

class subscriber_base_t;

/// Owns a callable connected to a signal. Every node that calls it (copies
/// of a signal share it) and the handle that made it hold one reference;
/// nodes cut during an emission keep theirs until the outermost emission
/// ends, so a callable that ends its own connection is not destroyed while
/// it runs.
class TALVAR2_API slot_box_t {
 public:
  slot_box_t(const slot_box_t&) = delete;
  slot_box_t& operator=(const slot_box_t&) = delete;

  void add_ref() { m_references.fetch_add(1, std::memory_order_relaxed); }
  /// Frees the box, its callable and an adopted token with the last reference.
  void release();
  /// Takes over the token that ties the connection: it now lives as long as
  /// the connection, which then ends only with its signal.
  void adopt(subscriber_base_t* token) { m_adopted = token; }

 protected:
  slot_box_t() = default;
  virtual ~slot_box_t();

 private:
  std::atomic<long> m_references{1};
  subscriber_base_t* m_adopted = nullptr;
};

}  // namespace _internal

/// Ends the connection of a callable when it is destroyed, like a member
/// slot whose subscriber dies; `release()` leaves the connection to live as
/// long as its signal. Movable, not copyable; the handle itself belongs to
/// one thread at a time, the connection it ends to any.
class TALVAR2_API scoped_connection_t {
 public:
  scoped_connection_t() = default;
  /// Made by signal_t::connect(callable), which passes its references on.
  scoped_connection_t(_internal::slot_box_t* box, _internal::subscriber_base_t* token)
      : m_box(box), m_token(token) {}
  scoped_connection_t(scoped_connection_t&& other) noexcept;
  /// Ends the connection held so far, then takes `other`'s.
  scoped_connection_t& operator=(scoped_connection_t&& other) noexcept;
  scoped_connection_t(const scoped_connection_t&) = delete;
  scoped_connection_t& operator=(const scoped_connection_t&) = delete;
  ~scoped_connection_t() { disconnect(); }

  /// Ends the connection now. As with a dying subscriber, this waits while
  /// another thread is emitting the signal, so on return the callable is not
  /// running elsewhere; called from inside the callable's own emission, the
  /// current call finishes and no later one comes.
  void disconnect();
  /// Lets the connection live as long as its signal; the handle is empty.
  void release();
  /// True until disconnect() or release(); the signal may be gone already.
  bool holds_connection() const { return m_token != nullptr; }

 private:
  void drop_box();

  _internal::slot_box_t* m_box = nullptr;
  _internal::subscriber_base_t* m_token = nullptr;
};

}  // namespace talvar2

#endif
