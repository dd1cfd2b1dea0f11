#ifndef TALVAR2_VALUE_LOCKER_H
#define TALVAR2_VALUE_LOCKER_H

namespace talvar2 {

/// A value with a "locked" flag. A locked value was set explicitly, and the
/// automatic refreshes of its owner leave it alone.
template <class T>
struct value_locker_t {
  bool locked = false;
  T value{};

  value_locker_t() = default;
  explicit value_locker_t(const T& initial) : value(initial) {}

  /// Sets the value explicitly and locks it.
  void lock(const T& new_value) {
    value = new_value;
    locked = true;
  }
  /// An automatic refresh: only an unlocked value takes it. True when taken.
  bool refresh(const T& new_value) {
    if (locked) return false;
    value = new_value;
    return true;
  }
  void unlock() { locked = false; }
};

}  // namespace talvar2

#endif
