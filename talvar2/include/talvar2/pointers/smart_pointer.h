#ifndef TALVAR2_POINTERS_SMART_POINTER_H
#define TALVAR2_POINTERS_SMART_POINTER_H
/// @file
/// A counted pointer for objects that carry no count of their own (windows,
/// timers, conditions). The count lives in a separate allocation shared by
/// the copies; it is not locked: such objects belong to one thread.

#include <cstdint>

#include "talvar2/debug/assertion.h"

namespace talvar2 {
/// A counted pointer for objects that carry no count of their own.
template <class T>
class smart_pointer_t {
 public:
  smart_pointer_t() = default;
  explicit smart_pointer_t(T* object)
      : m_ptr(object), m_count(object != nullptr ? new std::uint64_t(1) : nullptr) {}
  smart_pointer_t(const smart_pointer_t& other) : m_ptr(other.m_ptr), m_count(other.m_count) {
    if (m_count != nullptr) ++*m_count;
  }
  smart_pointer_t& operator=(const smart_pointer_t& other) {
    if (this == &other) return *this;
    release_ref();
    m_ptr = other.m_ptr;
    m_count = other.m_count;
    if (m_count != nullptr) ++*m_count;
    return *this;
  }
  ~smart_pointer_t() { release_ref(); }

  /// Drops this holder's share. At 0 the count is freed and the object deleted
  /// through its virtual destructor; the object pointer itself is left as it was.
  void release_ref() {
    if (m_ptr == nullptr || m_count == nullptr || *m_count == 0) return;
    if (--*m_count == 0) {
      delete m_count;
      m_count = nullptr;
      delete m_ptr;
    }
    m_count = nullptr;
  }

  T* operator->() const {
    TALVAR2_ASSERT_AT(m_ptr != 0, "m_ptr != 0", "pointers/smart_pointer.h", 60);
    return m_ptr;
  }
  T& operator*() const { return *m_ptr; }
  T* get() const { return m_ptr; }
  explicit operator bool() const { return m_ptr != nullptr && m_count != nullptr; }
  std::uint64_t use_count() const { return m_count != nullptr ? *m_count : 0; }

 private:
  T* m_ptr = nullptr;
  std::uint64_t* m_count = nullptr;
};

}  // namespace talvar2

#endif
