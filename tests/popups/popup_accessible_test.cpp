#include "accessibility/accessible.h"

#include <string>
#include <vector>

#include "orvix1/wxPopupButton.h"
#include "orvix1/wxPopupMenu.h"
#include "support/atk_event_log.h"
#include "support/atk_probe.h"
#include "support/tab_fixture.h"

namespace {

using namespace orvix1_test;
using orvix1::accessibility::accessible_of;

// Opened through its button, the menu holds two closable rows, a
// separator, a disabled row and a plain one.
class PopupAccessible : public tab_frame_test_t, public talvar2::subscriber_base_t {
 protected:
  void SetUp() override {
    tab_frame_test_t::SetUp();
    m_button = new orvix1::wxPopupButton(m_host, wxID_ANY, wxPoint(300, 10));
    m_menu = new orvix1::wxPopupMenu(m_button);
    m_button->SetPopup(m_menu);
    m_menu->before_popup().connect(this, &PopupAccessible::fill);
    m_menu->chosen().connect(&m_chosen, &int_recorder_t::on);
    m_menu->delete_requested().connect(&m_deleted, &int_recorder_t::on);
    m_button->SetAccessibleName("Open files");
    pump_events();
  }
  void TearDown() override {
    m_menu->ClosePopup();
    tab_frame_test_t::TearDown();
  }
  void fill(orvix1::IPopup*) {
    m_menu->Clear();
    m_menu->Append("Report.txt", wxNullBitmap, true);
    m_menu->Append("Notes.txt", wxNullBitmap, true);
    m_menu->AppendSeparator();
    m_menu->Append("Locked.txt", wxNullBitmap, false, true);
    m_menu->Append("Plain");
  }
  std::vector<AtkObject*> rows() const { return children_of(accessible_of(m_menu)); }
  orvix1::wxPopupButton* m_button = nullptr;
  orvix1::wxPopupMenu* m_menu = nullptr;
  int_recorder_t m_chosen, m_deleted;
  atk_event_log_t m_log;
};

TEST_F(PopupAccessible, TheButtonIsANamedPushButtonWhoseClickOpensAMenuOfItems) {
  AtkObject* button = accessible_of(m_button);
  EXPECT_EQ(atk_object_get_role(button), ATK_ROLE_PUSH_BUTTON);
  EXPECT_EQ(name_of(button), "Open files");
  EXPECT_TRUE(has_state(button, ATK_STATE_HAS_POPUP));
  m_log.watch(button, "button");
  m_button->SetAccessibleName("Open files");
  m_button->SetAccessibleName("Recent files");
  EXPECT_EQ(m_log.take(), std::vector<std::string>{"button name=Recent files"});

  EXPECT_TRUE(run_action(button, "click"));
  pump_events();
  ASSERT_TRUE(m_menu->IsPoppedUp());
  EXPECT_EQ(atk_object_get_role(accessible_of(m_menu)), ATK_ROLE_MENU);
  const struct {
    std::string name;
    bool enabled;
    std::vector<std::string> actions;
  } expected[] = {
      {"Report.txt", true, {"click", "close"}},
      {"Notes.txt", true, {"click", "close"}},
      {"Locked.txt", false, {"click"}},
      {"Plain", true, {"click"}},
  };
  const std::vector<AtkObject*> items = rows();
  ASSERT_EQ(items.size(), 4u);  // the separator is no item
  for (size_t row = 0; row < items.size(); ++row) {
    SCOPED_TRACE(expected[row].name);
    EXPECT_EQ(atk_object_get_role(items[row]), ATK_ROLE_MENU_ITEM);
    EXPECT_EQ(name_of(items[row]), expected[row].name);
    EXPECT_EQ(has_state(items[row], ATK_STATE_ENABLED), expected[row].enabled);
    EXPECT_TRUE(has_state(items[row], ATK_STATE_SHOWING));
    EXPECT_EQ(actions_of(items[row]), expected[row].actions);
    gint x, y, width, height;
    atk_component_get_extents(ATK_COMPONENT(items[row]), &x, &y, &width, &height, ATK_XY_SCREEN);
    const wxRect rect = m_menu->GetRowRect(static_cast<int>(row));
    EXPECT_EQ(wxRect(x, y, width, height), wxRect(m_menu->ClientToScreen(rect.GetPosition()), rect.GetSize()));
  }
}

// The highlighted row is selected and focused; a disabled row never is.
TEST_F(PopupAccessible, TheHighlightedRowIsSelectedAndFocused) {
  m_button->OpenPopup();
  const std::vector<AtkObject*> items = rows();
  for (size_t row = 0; row < items.size(); ++row) m_log.watch(items[row], std::to_string(row));
  m_menu->SetHotRow(1);
  send_mouse(m_menu, wxEVT_MOTION, m_menu->GetRowRect(3).GetPosition() + wxPoint(4, 4));
  m_menu->SetHotRow(2);
  EXPECT_EQ(m_log.take(), (std::vector<std::string>{"1 selected=1", "1 focused=1", "1 selected=0", "1 focused=0",
                                                    "3 selected=1", "3 focused=1", "3 selected=0", "3 focused=0"}));
  EXPECT_FALSE(has_state(items[2], ATK_STATE_SELECTED));
  m_menu->SetHotRow(3);
  EXPECT_TRUE(has_state(items[3], ATK_STATE_SELECTED) && has_state(items[3], ATK_STATE_FOCUSED));
  EXPECT_FALSE(has_state(items[1], ATK_STATE_SELECTED) || has_state(items[1], ATK_STATE_FOCUSED));
}

// Actions do what a click does; refilling replaces the items, and the old
// ones go defunct.
TEST_F(PopupAccessible, RowActionsChooseOrCloseAndARefillReplacesTheItems) {
  m_button->OpenPopup();
  std::vector<AtkObject*> items = rows();
  for (AtkObject* item : items) g_object_ref(item);
  m_log.watch(accessible_of(m_menu), "menu");
  EXPECT_TRUE(run_action(items[0], "close"));
  EXPECT_FALSE(run_action(items[3], "close"));
  pump_events();
  EXPECT_EQ(m_deleted.values, std::vector<int>{0});
  EXPECT_TRUE(m_menu->IsPoppedUp());
  run_action(items[3], "click");
  pump_events();
  EXPECT_EQ(m_chosen.values, std::vector<int>{3});
  EXPECT_FALSE(m_menu->IsPoppedUp());

  m_button->OpenPopup();
  EXPECT_EQ(m_log.take(), (std::vector<std::string>{"menu child- 3", "menu child- 2", "menu child- 1", "menu child- 0",
                                                    "menu child+ 0", "menu child+ 1", "menu child+ 2", "menu child+ 3"}));
  for (AtkObject* item : items) {
    EXPECT_TRUE(has_state(item, ATK_STATE_DEFUNCT));
    g_object_unref(item);
  }
  EXPECT_EQ(rows().size(), 4u);
}

}  // namespace
