#ifndef TALVAR2_POINTERS_INTRUSIVE_POINTER_H
#define TALVAR2_POINTERS_INTRUSIVE_POINTER_H
/// @file
/// Objects that carry their own locked reference count, and the pointer that
/// holds one reference to such an object.

#include <cstdint>
#include <functional>

#include "talvar2/debug/assertion.h"
#include "talvar2/export.h"
#include "talvar2/threading/mutex.h"

namespace talvar2 {
namespace _internal {
/// Locations reported by the debug assertions of this header.
constexpr const char* k_intrusive_pointer_header = "pointers/intrusive_pointer.h";
constexpr int k_null_dereference_line = 135;
constexpr int k_live_references_line = 175;
}  // namespace _internal

/// Base of every counted object. The object deletes itself through its
/// virtual destructor when the last reference is released.
class TALVAR2_API intrusive_pointer_impl_t {
 public:
  intrusive_pointer_impl_t() = default;
  /// A copy is a new object: it starts without references.
  intrusive_pointer_impl_t(const intrusive_pointer_impl_t&) {}
  intrusive_pointer_impl_t& operator=(const intrusive_pointer_impl_t&) { return *this; }

// GCC 12 at -O3 sees `delete this` inlined through a base that is not the
// first of its class and takes the adjusted pointer for one not from `new`;
// the deleting destructor always frees the whole object.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wfree-nonheap-object"
#endif
  virtual ~intrusive_pointer_impl_t() {
    TALVAR2_ASSERT_AT(m_ref_count == 0, "m_ref_count == 0", _internal::k_intrusive_pointer_header,
                      _internal::k_live_references_line);
  }
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif

  void add_ref() {
    threading::mutex_guard_t guard(m_ref_mutex);
    ++m_ref_count;
  }

  /// At 0 the mutex is let go before the object deletes itself; a release at
  /// count 0 does nothing.
  void release_ref() {
    m_ref_mutex.acquire();
    if (m_ref_count != 0 && --m_ref_count == 0) {
      m_ref_mutex.release();
      delete this;
      return;
    }
    m_ref_mutex.release();
  }

  std::uint64_t ref_count() const {
    threading::mutex_guard_t guard(m_ref_mutex);
    return m_ref_count;
  }

 private:
  std::uint64_t m_ref_count = 0;
  mutable threading::mutex_t m_ref_mutex;
};

/// Holds one reference to a counted object, or nothing.
template <class T>
class intrusive_pointer_t {
 public:
  intrusive_pointer_t() = default;
  intrusive_pointer_t(T* object) : m_ptr(object) { add(); }  // NOLINT: converts like a pointer
  intrusive_pointer_t(const intrusive_pointer_t& other) : m_ptr(other.m_ptr) { add(); }
  intrusive_pointer_t(intrusive_pointer_t&& other) noexcept : m_ptr(other.m_ptr) {
    other.m_ptr = nullptr;
  }
  template <class U>
  intrusive_pointer_t(const intrusive_pointer_t<U>& other) : m_ptr(other.get()) {  // NOLINT
    add();
  }
  ~intrusive_pointer_t() { drop(); }

  /// The old object is released before the new one is read: assigning a
  /// pointer to itself therefore leaves it empty. Callers rely on this order.
  intrusive_pointer_t& operator=(const intrusive_pointer_t& other) {
    drop();
    m_ptr = other.m_ptr;
    add();
    return *this;
  }

  /// From a raw pointer the new reference is taken first, so that assigning
  /// the object already held cannot delete it on the way.
  intrusive_pointer_t& operator=(T* object) {
    if (object != nullptr) object->add_ref();
    drop();
    m_ptr = object;
    return *this;
  }

  T* operator->() {
    TALVAR2_ASSERT_AT(m_ptr != 0, "m_ptr != 0", _internal::k_intrusive_pointer_header,
                      _internal::k_null_dereference_line);
    return m_ptr;
  }
  const T* operator->() const {
    TALVAR2_ASSERT_AT(m_ptr != 0, "m_ptr != 0", _internal::k_intrusive_pointer_header,
                      _internal::k_null_dereference_line);
    return m_ptr;
  }
  T& operator*() const { return *m_ptr; }
  T* get() const { return m_ptr; }
  explicit operator bool() const { return m_ptr != nullptr; }

  void reset() { drop(); }

 private:
  void add() {
    if (m_ptr != nullptr) m_ptr->add_ref();
  }
  void drop() {
    if (m_ptr != nullptr) {
      T* old = m_ptr;
      m_ptr = nullptr;
      old->release_ref();
    }
  }

  T* m_ptr = nullptr;
};

template <class T, class U>
bool operator==(const intrusive_pointer_t<T>& a, const intrusive_pointer_t<U>& b) {
  return a.get() == b.get();
}
template <class T, class U>
bool operator!=(const intrusive_pointer_t<T>& a, const intrusive_pointer_t<U>& b) {
  return a.get() != b.get();
}
template <class T, class U>
bool operator<(const intrusive_pointer_t<T>& a, const intrusive_pointer_t<U>& b) {
  return std::less<const void*>()(a.get(), b.get());
}
template <class T>
bool operator==(const intrusive_pointer_t<T>& a, const T* b) {
  return a.get() == b;
}
template <class T>
bool operator!=(const intrusive_pointer_t<T>& a, const T* b) {
  return a.get() != b;
}

}  // namespace talvar2

#endif
