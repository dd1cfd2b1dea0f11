#include "orvix1/elements/bindings.h"

#include <memory>

#include <gtest/gtest.h>

#include "support/assert_texts.h"
#include "support/fake_element_host.h"
#include "support/wx_test_environment.h"

namespace {

using namespace orvix1::elements;
using orvix1_test::take_asserts;

class Bindings : public ::testing::Test {
 protected:
  void SetUp() override { take_asserts(); }
  void enter(const element_ptr_t& e) { e.get()->OnMouseEnter(wxMouseEvent(wxEVT_ENTER_WINDOW)); }

  element_ptr_t element{new UIElement()};
};

TEST_F(Bindings, NamedSignalsReachTheLambdaUntilTheBindingIsCut) {
  std::vector<UIElement*> entered;
  const unsigned long slot =
      bindings::on_mouse_entered(element, [&](element_ptr_t e) { entered.push_back(e.get()); });
  enter(element);
  EXPECT_EQ(entered, (std::vector<UIElement*>{element.get()}));
  bindings::unbind(element, slot);
  EXPECT_FALSE(element->MouseEntered.has_connections());
  enter(element);
  EXPECT_EQ(entered.size(), 1u);
}

TEST_F(Bindings, ABindingLivesExactlyAsLongAsItsElement) {
  talvar2::signal_t<int> outside;  // a signal of some other object
  auto witness = std::make_shared<int>(0);
  int sum = 0;
  bindings::bind_signal(element, outside, [&sum, witness](int value) { sum += value; });
  EXPECT_EQ(witness.use_count(), 2);  // the binding holds the lambda
  outside(5);
  EXPECT_EQ(sum, 5);

  element.reset();
  EXPECT_EQ(witness.use_count(), 1);  // gone with the element
  EXPECT_FALSE(outside.has_connections());
  outside(7);
  EXPECT_EQ(sum, 5);
}

TEST_F(Bindings, CallablesMayIgnoreTheArguments) {
  orvix1_test::fake_element_host_t host(element);  // children ask for repaints
  int added = 0;
  int removed = 0;
  bindings::bind_signal(element, element->ChildAdded, [&] { ++added; });
  bindings::on_child_removed(element, [&](element_ptr_t parent, element_ptr_t child) {
    EXPECT_EQ(parent, element);
    EXPECT_NE(child, element);
    ++removed;
  });
  element_ptr_t child = new UIElement(element);
  element->RemoveChild(child);
  EXPECT_EQ(added, 1);
  EXPECT_EQ(removed, 1);
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

TEST_F(Bindings, NoElementNoBinding) {
  talvar2::signal_t<int> outside;
  auto witness = std::make_shared<int>(0);
  EXPECT_EQ(bindings::bind_signal(element_ptr_t(), outside, [witness](int) {}), bindings::no_binding);
  EXPECT_EQ(bindings::on_mouse_entered(element_ptr_t(), [](element_ptr_t) {}), bindings::no_binding);
  EXPECT_EQ(orvix1_test::taken_conditions(), (orvix1_test::texts_t{"element != __null", "element != __null"}));
  EXPECT_FALSE(outside.has_connections());
  EXPECT_EQ(witness.use_count(), 1);
}

}  // namespace
