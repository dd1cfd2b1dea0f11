#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "talvar2/assertion_recorder.h"
#include "talvar2/pointers/intrusive_pointer.h"
#include "talvar2/pointers/smart_pointer.h"

namespace talvar2_test {

// Outside the unnamed namespace: assertion texts name it.
class pointer_test_object_t : public talvar2::intrusive_pointer_impl_t {
 public:
  explicit pointer_test_object_t(std::atomic<int>* deletions = nullptr) : m_deletions(deletions) {}
  ~pointer_test_object_t() override {
    if (m_deletions != nullptr) m_deletions->fetch_add(1);
  }
  int value = 42;

 private:
  std::atomic<int>* m_deletions;
};

namespace {

using talvar2::intrusive_pointer_t;
using talvar2::smart_pointer_t;
using object_ptr = intrusive_pointer_t<pointer_test_object_t>;

// Assigning a counted pointer to itself leaves it null and drops its
// reference; assigning it its own raw pointer keeps it.
TEST(IntrusivePointer, CountsHoldersAndSelfAssignmentLeavesItNull) {
  std::atomic<int> deletions{0};
  auto* object = new pointer_test_object_t(&deletions);
  object_ptr first(object), second(first), third;
  third = second;
  object_ptr moved(std::move(second));
  EXPECT_EQ(second.get(), nullptr);
  EXPECT_EQ(object->ref_count(), 3u);
  EXPECT_TRUE(first == moved && first == object && !(first != third));
  first = static_cast<object_ptr&>(first);
  EXPECT_EQ(first.get(), nullptr);
  third = object_ptr();
  moved = moved.get();
  ASSERT_EQ(moved.get(), object);
  EXPECT_EQ(object->ref_count(), 1u);
  EXPECT_EQ(deletions.load(), 0);
  moved = static_cast<object_ptr&>(moved);  // the only holder: the object dies, nothing dangles
  EXPECT_EQ(moved.get(), nullptr);
  EXPECT_EQ(deletions.load(), 1);
}

TEST(IntrusivePointer, ArrowOnNullAssertsAndYieldsNull) {
  assertion_recorder recorder;
  object_ptr pointer;
  EXPECT_EQ(pointer.operator->(), nullptr);
  EXPECT_EQ(static_cast<const object_ptr&>(pointer).operator->(), nullptr);
  const std::vector<recorded_assertion> raised = recorder.records();
  ASSERT_EQ(raised.size(), 2u);
  for (const recorded_assertion& assertion : raised) {
    EXPECT_EQ(assertion.expression, "m_ptr != 0");
    EXPECT_EQ(assertion.file, "pointers/intrusive_pointer.h");
    EXPECT_EQ(assertion.line, 135);
  }
  const std::string with = " [with T = talvar2_test::pointer_test_object_t]";
  EXPECT_EQ(raised[0].function, "T* talvar2::intrusive_pointer_t<T>::operator->()" + with);
  EXPECT_EQ(raised[1].function, "const T* talvar2::intrusive_pointer_t<T>::operator->() const" + with);
}

TEST(IntrusivePointer, ReleaseAtZeroDoesNothingAndDestroyingAReferencedObjectAsserts) {
  std::atomic<int> idle_deletions{0};
  auto* idle = new pointer_test_object_t(&idle_deletions);
  idle->release_ref();
  idle->release_ref();
  EXPECT_EQ(idle->ref_count(), 0u);
  EXPECT_EQ(idle_deletions.load(), 0);
  delete idle;

  assertion_recorder recorder;
  {
    pointer_test_object_t object;  // on the stack: its end of scope is the direct destruction
    object.add_ref();
  }
  const recorded_assertion raised = recorder.single();
  EXPECT_EQ(raised.expression, "m_ref_count == 0");
  EXPECT_EQ(raised.file, "pointers/intrusive_pointer.h");
  EXPECT_EQ(raised.line, 175);
}

TEST(IntrusivePointer, ManyThreadsCopyAndDropOneObject) {
  std::atomic<int> deletions{0};
  object_ptr shared(new pointer_test_object_t(&deletions));
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([own = shared]() mutable {
      std::vector<object_ptr> held;
      for (int n = 0; n < 5000; ++n) {
        held.push_back(own);
        if (held.size() == 8) {
          own = held.back();
          held.clear();
        }
      }
    });
  }
  shared.reset();  // the threads hold every reference: one of them deletes
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(deletions.load(), 1);
}

// Unlike the counted pointer, a smart pointer assigned to itself keeps its
// object. release_ref gives back this holder's share once and keeps the pointer.
TEST(SmartPointer, SharesOneCountAndReleaseRefDropsThisHoldersShareOnce) {
  std::atomic<int> deletions{0};
  auto* object = new pointer_test_object_t(&deletions);
  smart_pointer_t<pointer_test_object_t> first(object);
  {
    smart_pointer_t<pointer_test_object_t> second(first), third;
    third = second;
    third = static_cast<smart_pointer_t<pointer_test_object_t>&>(third);
    EXPECT_EQ(first.use_count(), 3u);
    EXPECT_EQ(third->value, 42);
    third = smart_pointer_t<pointer_test_object_t>();
    second.release_ref();
    second.release_ref();
    EXPECT_FALSE(second);
    EXPECT_EQ(second.get(), object);
    EXPECT_EQ(first.use_count(), 1u);
  }
  EXPECT_EQ(first.use_count(), 1u);  // second's death gave back nothing more
  first.release_ref();
  EXPECT_EQ(deletions.load(), 1);

  assertion_recorder recorder;
  smart_pointer_t<pointer_test_object_t> empty;
  empty.release_ref();
  EXPECT_EQ(empty.operator->(), nullptr);
  const recorded_assertion raised = recorder.single();
  EXPECT_EQ(raised.expression, "m_ptr != 0");
  EXPECT_EQ(raised.file, "pointers/smart_pointer.h");
}

}  // namespace
}  // namespace talvar2_test
