#ifndef TALVAR2_FUNCTOR_SIGNAL_H
#define TALVAR2_FUNCTOR_SIGNAL_H
/// @file
/// Thread-safe multicast signals that call member functions of subscribers,
/// or any callable.
///
/// A callable is connected either for the life of a subscriber,
/// `signal.connect(subscriber, callable)`, or for the life of the returned
/// talvar2::scoped_connection_t, `signal.connect(callable)`. Such connections
/// follow the rules of member slots: they are called in connection order,
/// slots may connect, disconnect, emit and destroy the signal, and cutting a
/// connection from another thread waits for a running emission. A callable
/// is destroyed, under the signal's lock, when its last connection is gone;
/// one that ends its own connection finishes its call first. Each callable
/// connect makes a new connection: no duplicate check as for members.
///
/// A signal may be connected to, disconnected from, emitted and even destroyed
/// from inside one of its own slots, and subscribers may die while a signal
/// that points at them is emitting. An emission walks the live connection
/// array and never copies it: a slot's connect appends (and when the array
/// must grow, the walk follows it into the new one), cutting a connection
/// during an emission only empties its entry, and the outermost emission
/// removes empty entries when it ends. Emissions of one signal from several
/// threads take turns, and run with no atomic operation at all while only
/// one thread uses the signal (see signal_lock_t).

#include <cstddef>
#include <cstdint>
#include <atomic>
#include <cstring>
#include <functional>
#include <type_traits>
#include <utility>

#include "talvar2/export.h"
#include "talvar2/functor/scoped_connection.h"
#include "talvar2/functor/signal_lock.h"

namespace talvar2 {
namespace _internal {

/// Fills the argument positions a signal does not use.
struct dummy_t {};

class signal_base_t;

/// A member-function pointer with its type erased: two machine words.
struct typeless_connection_t {
  std::uintptr_t words[2] = {0, 0};

  bool operator==(const typeless_connection_t& other) const {
    return words[0] == other.words[0] && words[1] == other.words[1];
  }
};

/// Base of every object a signal can call. It remembers the signals that point
/// at it and cuts those connections when it dies.
class TALVAR2_API subscriber_base_t {
 public:
  subscriber_base_t() = default;
  /// A copy starts without connections: they belong to the original.
  subscriber_base_t(const subscriber_base_t&) {}
  subscriber_base_t& operator=(const subscriber_base_t&) { return *this; }
  virtual ~subscriber_base_t();

 private:
  friend class signal_base_t;
  struct connections_t;

  void add_signal(signal_base_t* signal);
  void remove_signal(signal_base_t* signal);

  /// Made on the first connection: most subscribers (every signal among them)
  /// are never connected to, and elements carry many of them, so an unused
  /// subscriber costs one pointer.
  connections_t& connections();

  std::atomic<connections_t*> m_connections{nullptr};
};

/// Generic function pointer type under which a connection keeps its invoker.
using caster_t = void (*)();

/// One connection. An emptied connection has all fields zero; emptiness is
/// tested on the subscriber.
struct connection_t {
  void* target = nullptr;
  subscriber_base_t* subscriber = nullptr;
  typeless_connection_t member;
  caster_t caster = nullptr;
  /// The callable of a callable connection (then also the target); null for members.
  slot_box_t* owned = nullptr;

  bool empty() const { return subscriber == nullptr; }
  /// Target and member identify a connection; subscriber and caster follow from them.
  bool operator==(const connection_t& other) const {
    return target == other.target && member == other.member;
  }
};

/// What an emission reads, inline in the emitting code. The rest of a
/// signal's bookkeeping (the array's capacity, an index by subscriber,
/// callables waiting to be let go) lives in signal_base.cpp.
struct emission_core_t {
  signal_lock_t lock;
  /// The connections in connection order, emptied ones included, followed
  /// by at least one empty entry that ends the walk. The array moves only
  /// when a connect makes it grow; during an emission the old one is then
  /// emptied and kept until the emission ends.
  connection_t* entries = nullptr;
  std::size_t stored = 0;
  /// Null while no emission runs; else the outermost emission's alive flag.
  bool* emission_state = nullptr;
  /// Set when a connection is cut or the array moves during an emission:
  /// the outermost one then tidies up as it ends.
  bool tidy_due = false;
};

/// The untyped part of every signal: connection array, emission state, locks.
class TALVAR2_API signal_base_t : public subscriber_base_t {
 public:
  struct core_t;

  /// The state of one emission, kept on the emitting thread's stack so that it
  /// survives the destruction of the signal by one of its slots.
  struct onstack_signal_state_t {
    explicit onstack_signal_state_t(emission_core_t* signal_core) : core(signal_core) {}
    emission_core_t* core;
    bool alive = true;
    bool nested = false;
    bool* alive_in_force = nullptr;  ///< the outermost emission's flag
  };

  signal_base_t() = default;
  /// The copy starts empty and takes the source's connections in order.
  signal_base_t(const signal_base_t& other);
  signal_base_t& operator=(const signal_base_t&) = delete;
  ~signal_base_t() override;

  void _insert(const connection_t& connection);
  void _erase(const connection_t& connection);
  /// Cuts every connection.
  void _erase_all();
  /// Cuts every connection whose subscriber is `subscriber`.
  void on_subscriber_destroy(subscriber_base_t* subscriber);
  /// The signal's lock, taken only if it is free (or held by this thread);
  /// see ~subscriber_base_t. A signal never connected to has no lock and
  /// nothing to cut: true without locking.
  bool try_lock_for_subscriber();
  void unlock_for_subscriber();

  /// Number of live connections, read under the signal's lock.
  std::size_t connection_count() const;
  bool has_connections() const { return connection_count() != 0; }
  bool empty() const { return !has_connections(); }

 protected:
  /// Takes the lock and registers the emission. False when there is nothing
  /// to call: the signal was never connected to, or it is already dead (the
  /// lock is then released).
  static bool begin_emission(onstack_signal_state_t& state) {
    emission_core_t* core = state.core;
    if (core == nullptr) return false;  // never connected to: no one to call
    core->lock.acquire();
    if (core->emission_state == nullptr) {
      core->emission_state = &state.alive;
      state.alive_in_force = &state.alive;
      return true;
    }
    state.nested = true;
    state.alive_in_force = core->emission_state;
    if (*state.alive_in_force) return true;
    core->lock.release();
    return false;
  }
  /// After a slot has thrown: true when the signal is still alive and
  /// post_call must follow; false when it died and the lock has been let go.
  /// Touches only `state`: the slot may have destroyed the signal.
  static bool check_valid_state_after_call(onstack_signal_state_t& state);
  /// Ends an emission: the outermost one removes emptied connections.
  static void post_call(onstack_signal_state_t& state) {
    emission_core_t* core = state.core;
    if (!state.nested) {
      core->emission_state = nullptr;
      if (core->tidy_due) tidy_after_emission(core);
    }
    core->lock.release();
  }
  /// Ends an emission whose signal was destroyed by a slot. Touches only `state`.
  static void end_after_destruction(onstack_signal_state_t& state);

  emission_core_t* current_core() const { return m_core.load(std::memory_order_acquire); }

 private:
  /// Removes the entries emptied during the emission that just ended and
  /// lets go of the callables cut meanwhile.
  static void tidy_after_emission(emission_core_t* core);

  /// The array, its lock and the emission state, made on the first
  /// connection: a signal no one connects to costs two pointers. The core may
  /// outlive the signal when a slot destroys it during an emission.
  core_t& core();
  core_t* full_core() const;

  std::atomic<emission_core_t*> m_core{nullptr};
};

/// The typed part: connect, disconnect and emit for one argument list.
template <class... A>
class signal_templ : public signal_base_t {
 private:
  /// A callable the emission can call with lvalues of the arguments;
  /// member-function pointers go to the member overloads.
  template <class F>
  struct is_slot
      : std::integral_constant<bool, !std::is_member_function_pointer<std::decay_t<F>>::value &&
                                         std::is_invocable<std::decay_t<F>&, A&...>::value> {};

  template <class F>
  class callable_box_t final : public slot_box_t {
   public:
    template <class G>
    explicit callable_box_t(G&& callable) : m_callable(std::forward<G>(callable)) {}
    static void call(void* target, typeless_connection_t, A... args) {
      std::invoke(static_cast<callable_box_t*>(target)->m_callable, args...);
    }

   private:
    F m_callable;
  };

  template <class F>
  static connection_t make_callable_connection(callable_box_t<F>* box, subscriber_base_t* subscriber) {
    connection_t connection;
    connection.target = static_cast<void*>(box);
    connection.subscriber = subscriber;
    connection.caster = reinterpret_cast<caster_t>(&callable_box_t<F>::call);
    connection.owned = box;
    return connection;
  }

 public:
  signal_templ() = default;
  signal_templ(const signal_templ&) = default;

  template <class Class>
  void connect(Class* target, void (Class::*member)(A...)) {
    if (target != nullptr) _insert(make_connection(target, member));
  }
  template <class Class>
  void connect(Class* target, void (Class::*member)(A...) const) {
    if (target != nullptr) _insert(make_connection(target, member));
  }
  template <class Class>
  void disconnect(Class* target, void (Class::*member)(A...)) {
    _erase(make_connection(target, member));
  }
  template <class Class>
  void disconnect(Class* target, void (Class::*member)(A...) const) {
    _erase(make_connection(target, member));
  }

  /// Calls `callable` with the arguments until `subscriber` dies. A null
  /// subscriber connects nothing, as a null member target does.
  template <class F, class = std::enable_if_t<is_slot<F>::value>>
  void connect(subscriber_base_t* subscriber, F&& callable) {
    if (subscriber == nullptr) return;
    auto* box = new callable_box_t<std::decay_t<F>>(std::forward<F>(callable));
    _insert(make_callable_connection(box, subscriber));
    box->release();
  }
  /// Calls `callable` with the arguments until the returned handle ends the
  /// connection; keep it, or release() it to connect for the signal's life.
  template <class F, class = std::enable_if_t<is_slot<F>::value>>
  [[nodiscard]] scoped_connection_t connect(F&& callable) {
    auto* box = new callable_box_t<std::decay_t<F>>(std::forward<F>(callable));
    auto* token = new subscriber_base_t;
    _insert(make_callable_connection(box, token));
    return scoped_connection_t(box, token);
  }

  void operator()(A... args) const;

  /// Restores the types of a connection and calls the member on the target.
  template <class Class, class Member>
  static void caster(void* target, typeless_connection_t member, A... args) {
    Member typed;
    std::memcpy(static_cast<void*>(&typed), member.words, sizeof typed);
    (static_cast<Class*>(target)->*typed)(args...);
  }

 private:
  using invoker_t = void (*)(void*, typeless_connection_t, A...);

  template <class Class, class Member>
  static connection_t make_connection(Class* target, Member member) {
    static_assert(std::is_base_of<subscriber_base_t, Class>::value,
                  "signal targets derive from talvar2::subscriber_base_t");
    static_assert(sizeof(Member) == sizeof(typeless_connection_t),
                  "a member-function pointer is two machine words");
    connection_t connection;
    connection.target = static_cast<void*>(target);
    connection.subscriber = static_cast<subscriber_base_t*>(target);
    std::memcpy(connection.member.words, static_cast<const void*>(&member), sizeof member);
    connection.caster = reinterpret_cast<caster_t>(&signal_templ::caster<Class, Member>);
    return connection;
  }
};

template <class... A>
void signal_templ<A...>::operator()(A... args) const {
  onstack_signal_state_t state(current_core());
  if (!begin_emission(state)) return;
  emission_core_t* const core = state.core;
  try {
    // The walk stops at an entry without caster and looks at the core only
    // there: such an entry is emptied, or ends the array, or belongs to an
    // array that a slot's connect replaced (then the walk goes on in the new
    // one), or the signal was destroyed and its array emptied (the core
    // outlives it). Connections appended by a slot are called in this emission.
    const connection_t* walked = core->entries;
    const connection_t* entry = walked;
    for (;;) {
      if (__builtin_expect(entry->caster != nullptr, 1)) {
        reinterpret_cast<invoker_t>(entry->caster)(entry->target, entry->member, args...);
        ++entry;
        continue;
      }
      const std::size_t position = static_cast<std::size_t>(entry - walked);
      if (core->entries != walked) {
        walked = core->entries;
        entry = walked + position;
      } else if (position < core->stored) {
        ++entry;
      } else {
        break;
      }
    }
  } catch (...) {
    if (check_valid_state_after_call(state)) post_call(state);
    throw;
  }
  if (!*state.alive_in_force) {  // a slot destroyed the signal: touch nothing of it
    end_after_destruction(state);
    return;
  }
  post_call(state);
}

template <class... T>
struct type_list {};

/// Builds signal_templ<A...> from the leading arguments before the first dummy_t.
template <class Done, class... Rest>
struct signal_from_arguments;
template <class... Done>
struct signal_from_arguments<type_list<Done...>> {
  using type = signal_templ<Done...>;
};
template <class... Done, class... Rest>
struct signal_from_arguments<type_list<Done...>, dummy_t, Rest...> {
  using type = signal_templ<Done...>;
};
template <class... Done, class Next, class... Rest>
struct signal_from_arguments<type_list<Done...>, Next, Rest...> {
  using type = typename signal_from_arguments<type_list<Done..., Next>, Rest...>::type;
};

/// The signal type of the library: zero to six arguments.
template <class A1 = dummy_t, class A2 = dummy_t, class A3 = dummy_t, class A4 = dummy_t,
          class A5 = dummy_t, class A6 = dummy_t>
class signal_t : public signal_from_arguments<type_list<>, A1, A2, A3, A4, A5, A6>::type {
 public:
  signal_t() = default;
  signal_t(const signal_t&) = default;
  signal_t& operator=(const signal_t&) = delete;
};

}  // namespace _internal

using _internal::signal_t;
/// The signal class behind signal_t, by its argument list: what templates
/// that take any signal deduce.
template <class... A>
using basic_signal_t = _internal::signal_templ<A...>;
/// What a class derives from to receive signals.
using _internal::subscriber_base_t;

}  // namespace talvar2

#endif
