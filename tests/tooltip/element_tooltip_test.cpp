// Element tooltips end to end, through a real holder and adapter.

#include "orvix1/wxCustomTooltip.h"
#include "accessibility/accessible.h"
#include "elements/adapter_fixture.h"
#include "support/atk_probe.h"

namespace {

using orvix1::wxCustomTooltip;
using namespace orvix1_test;

class ElementTooltip : public adapter_fixture_t {
 protected:
  void SetUp() override {
    adapter_fixture_t::SetUp();
    left = add(root, wxSize(60, 100), "left");
    right = add(root, wxSize(60, 100), "right");
    paint();
  }
  recording_ptr_t left;
  recording_ptr_t right;
};

TEST_F(ElementTooltip, ShownOnTheHolderWhileThePointerIsOverItsElementAndForgottenWhenDestroyed) {
  wxCustomTooltip* tooltip = left->GetTooltip();
  ASSERT_NE(tooltip, nullptr);
  tooltip->SetText("left element");

  send_mouse(wxEVT_MOTION, 10, 10);
  EXPECT_EQ(wxCustomTooltip::GetAssociatedTooltip(holder), tooltip);
  EXPECT_TRUE(tooltip->IsShown());
  // The text describes the element, not the holder of every element.
  EXPECT_EQ(description_of(orvix1::accessibility::accessible_of(holder)), "");

  send_mouse(wxEVT_MOTION, 70, 10);  // onto the sibling, which has none
  EXPECT_FALSE(tooltip->IsShown());
  EXPECT_EQ(wxCustomTooltip::GetAssociatedTooltip(holder), nullptr);

  wxCustomTooltip* other = right->GetTooltip();
  other->SetText("right element");
  send_mouse(wxEVT_MOTION, 10, 10);
  send_mouse(wxEVT_MOTION, 70, 10);  // from one tooltip straight to another
  EXPECT_FALSE(tooltip->IsShown());
  EXPECT_TRUE(other->IsShown());
  EXPECT_EQ(wxCustomTooltip::GetAssociatedTooltip(holder), other);

  other->Destroy();  // a destroyed tooltip is forgotten
  pump_events();
  EXPECT_EQ(right->GetExistingTooltip(), nullptr);
  EXPECT_EQ(wxCustomTooltip::GetAssociatedTooltip(holder), nullptr);
  send_mouse(wxEVT_MOTION, 10, 10);  // leaving asks for nothing that is gone
  left->Destroy();  // an element that goes takes its tooltip along
  EXPECT_EQ(left->GetExistingTooltip(), nullptr);
}

}  // namespace
