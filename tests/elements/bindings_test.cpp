#include "orvix1/elements/bindings.h"

#include <memory>

#include <gtest/gtest.h>

#include "support/assert_texts.h"
#include "support/wx_test_environment.h"

namespace {

using namespace orvix1::elements;
using namespace orvix1_test;

class Bindings : public ::testing::Test {
 protected:
  void SetUp() override { take_asserts(); }

  element_ptr_t element{new UIElement()};
};

TEST_F(Bindings, ABindingLivesExactlyAsLongAsItsElementAndNeedsOne) {
  talvar2::signal_t<int> outside;  // a signal of some other object
  auto witness = std::make_shared<int>(0);
  int sum = 0;
  bindings::bind_signal(element, outside, [&sum, witness](int value) { sum += value; });
  EXPECT_EQ(witness.use_count(), 2);  // the binding holds the lambda
  bindings::bind_signal(element, outside, [&sum] { sum += 100; });  // callables may ignore the arguments
  outside(5);
  EXPECT_EQ(sum, 105);

  element.reset();
  EXPECT_EQ(witness.use_count(), 1);  // gone with the element
  EXPECT_FALSE(outside.has_connections());

  // No element, no binding.
  EXPECT_EQ(bindings::bind_signal(element, outside, [witness](int) {}), bindings::no_binding);
  EXPECT_EQ(bindings::on_mouse_entered(element, [](element_ptr_t) {}), bindings::no_binding);
  EXPECT_EQ(taken_conditions(), (texts_t{"element != __null", "element != __null"}));
  EXPECT_FALSE(outside.has_connections());
  EXPECT_EQ(witness.use_count(), 1);
}

TEST_F(Bindings, ABindingMayCutItselfWhileItRuns) {
  int calls = 0;
  unsigned long slot = bindings::no_binding;
  auto witness = std::make_shared<int>(0);
  slot = bindings::on_mouse_left(element, [&, witness](element_ptr_t e) {
    ++calls;
    bindings::unbind(e, slot);
    EXPECT_EQ(*witness, 0);  // the lambda's state is still there
  });
  element->OnMouseLeave(wxMouseEvent(wxEVT_LEAVE_WINDOW));
  element->OnMouseLeave(wxMouseEvent(wxEVT_LEAVE_WINDOW));
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(witness.use_count(), 1);
  EXPECT_EQ(element->GetBindingsCount(), 0u);
}


}  // namespace
