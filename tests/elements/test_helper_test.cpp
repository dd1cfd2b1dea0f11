#include "orvix1/elements/TestHelper.h"

#include <gtest/gtest.h>

#include "elements/adapter_fixture.h"

namespace {

using namespace orvix1::elements;
using namespace orvix1_test;

// root > { panel (120 wide) > { ok (40 wide), dup (40 wide) }, dup (50 wide) }, all as
// high as the holder (100)
class TestHelperOnATree : public adapter_fixture_t {
 protected:
  void SetUp() override {
    adapter_fixture_t::SetUp();
    group = add(root, wxSize(120, 60), "panel");
    ok = add(group, wxSize(40, 30), "ok");
    inner_dup = add(group, wxSize(40, 30), "dup");
    outer_dup = add(root, wxSize(50, 50), "dup");
    ok->SetAcceptFocus(true);
    helper = new TestHelper(adapter.get());
    take_log();
  }
  TestHelper::pointer_t helper;
  recording_ptr_t group, ok, inner_dup, outer_dup;
};

TEST_F(TestHelperOnATree, FindsDepthFirstAndListsEveryMatchInThatOrder) {
  EXPECT_EQ(helper->Find("ok"), ok);
  EXPECT_EQ(helper->Find("dup"), inner_dup);  // inside the first child before its sibling
  EXPECT_EQ(helper->FindAll("dup"), (std::vector<element_ptr_t>{inner_dup, outer_dup}));
  EXPECT_FALSE(helper->Find("missing"));
  EXPECT_EQ(TestHelper::FindIn(group, "dup"), inner_dup);
}

TEST_F(TestHelperOnATree, GivesRectanglesInClientAndScreenCoordinates) {
  // Nothing has been painted: the helper lays the tree out itself.
  ASSERT_TRUE(root->IsLayoutDirty());
  EXPECT_EQ(helper->GetRect("ok"), wxRect(0, 0, 40, 100));
  EXPECT_EQ(helper->GetRect("dup"), wxRect(40, 0, 40, 100));
  EXPECT_EQ(helper->GetScreenRect("dup"), wxRect(holder->ClientToScreen(wxPoint(40, 0)), wxSize(40, 100)));
}

TEST_F(TestHelperOnATree, ClickingByNameTakesTheWholeRouteOfARealClick) {
  ASSERT_TRUE(helper->Click("ok"));
  EXPECT_EQ(take_log(), (log_t{"ok enter", "panel enter", "root enter",  // the pointer arrives
                               "root move", "panel move", "ok move",       //
                               "root down", "panel down", "ok down",       //
                               "root up", "root click", "panel up", "panel click", "ok up",
                               "ok click"}));
  EXPECT_EQ(adapter->GetFocusedElement(), ok);  // clicking focuses what accepts it

  ASSERT_TRUE(helper->MoveTo("dup"));
  EXPECT_EQ(take_log(), (log_t{"ok leave", "dup enter", "root move", "panel move", "dup move"}));
}

TEST_F(TestHelperOnATree, KeysGoWhereTheHolderWouldSendThemAndWhatCannotBeClickedIsRefused) {
  EXPECT_TRUE(helper->SendKey(WXK_TAB));
  EXPECT_TRUE(ok->IsFocused());
  EXPECT_TRUE(helper->SendKey('q', wxMOD_SHIFT));
  EXPECT_EQ(take_log(), (log_t{"ok key 113"}));

  EXPECT_FALSE(helper->Click("missing"));
  group->SetVisible(false);
  take_log();
  EXPECT_FALSE(helper->Click("ok"));  // hidden with its parent
  EXPECT_TRUE(take_log().empty());

  holder->Destroy();
  holder = nullptr;
  EXPECT_FALSE(helper->Click("root"));
  EXPECT_FALSE(helper->SendKey(WXK_TAB));
}

}  // namespace
