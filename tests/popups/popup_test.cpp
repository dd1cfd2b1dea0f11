#include "orvix1/wxPopupButton.h"
#include "orvix1/wxPopupMenu.h"

#include <string>
#include <vector>

#include "accessibility/accessible.h"
#include "orvix1/ui_settings.h"
#include "support/assert_texts.h"
#include "support/atk_event_log.h"
#include "support/atk_probe.h"
#include "support/dpi_scale.h"
#include "support/paint_canvas.h"
#include "support/tab_fixture.h"

namespace {

using namespace orvix1_test;
using orvix1::accessibility::accessible_of;

// The menu is filled on opening: `m_rows` closable rows, a separator, a
// disabled row and a plain one.
class Popup : public tab_frame_test_t, public talvar2::subscriber_base_t {
 protected:
  void SetUp() override {
    tab_frame_test_t::SetUp();
    m_button = new orvix1::wxPopupButton(m_host, wxID_ANY, wxPoint(300, 10));
    m_menu = new orvix1::wxPopupMenu(m_button);
    m_button->SetPopup(m_menu);
    m_menu->before_popup().connect(this, &Popup::fill);
    m_menu->chosen().connect(&m_chosen, &int_recorder_t::on);
    m_menu->delete_requested().connect(&m_deleted, &int_recorder_t::on);
    pump_events();
  }
  void TearDown() override {
    m_menu->ClosePopup();
    tab_frame_test_t::TearDown();
  }
  void fill(orvix1::IPopup*) {
    ++m_fills;
    m_menu->Clear();
    if (m_rows == 0) return;
    for (int k = 0; k < m_rows; ++k)
      m_menu->Append(wxString::Format("Row %d", k), wxNullBitmap, true);
    m_menu->AppendSeparator();
    m_menu->Append("Locked", wxNullBitmap, false, true);
    m_menu->Append("Plain");
  }
  std::vector<AtkObject*> rows() const { return children_of(accessible_of(m_menu)); }
  orvix1::wxPopupButton* m_button = nullptr;
  orvix1::wxPopupMenu* m_menu = nullptr;
  int m_rows = 2, m_fills = 0;
  int_recorder_t m_chosen, m_deleted;
  atk_event_log_t m_log;
};

// The button opens the filled menu below itself; rows are chosen or closed
// by mouse; an empty menu stays shut.
TEST_F(Popup, TheButtonOpensTheMenuWhoseRowsAreChosenOrClosedByMouse) {
  send_mouse(m_button, wxEVT_LEFT_DOWN, wxPoint(3, 3));
  EXPECT_EQ(m_fills, 1);
  ASSERT_TRUE(m_menu->IsPoppedUp());
  EXPECT_EQ(m_menu->GetRowCount(), 4);  // the separator is no row
  EXPECT_EQ(m_menu->GetRowText(3), "Plain");
  EXPECT_GE(m_menu->GetScreenPosition().y, m_button->GetScreenRect().GetBottom());
  const wxRect cross = m_menu->GetCrossRect(1);
  bool on_cross = false;
  EXPECT_EQ(m_menu->HitTest(wxPoint(cross.x + 4, cross.y + 4), &on_cross), 1);
  EXPECT_TRUE(on_cross);
  send_mouse(m_menu, wxEVT_LEFT_UP, wxPoint(cross.x + 4, cross.y + 4));
  EXPECT_EQ(m_deleted.values, std::vector<int>{1});
  EXPECT_TRUE(m_menu->IsPoppedUp());  // closing a row keeps the menu
  EXPECT_TRUE(m_menu->GetCrossRect(2).IsEmpty());
  const wxRect second = m_menu->GetRowRect(1);
  send_mouse(m_menu, wxEVT_LEFT_UP, wxPoint(second.x + 2, second.y + 2));
  EXPECT_EQ(m_chosen.values, std::vector<int>{1});
  EXPECT_FALSE(m_menu->IsPoppedUp());
  m_rows = 0;
  m_button->OpenPopup();
  EXPECT_EQ(m_fills, 2);
  EXPECT_FALSE(m_menu->IsPoppedUp());
}

// Hiding the open menu the plain wx way closes it as ClosePopup() does: it
// opens again without wx complaining about handlers still pushed.
TEST_F(Popup, HidingTheOpenMenuTheWxWayLetsItOpenAgain) {
  take_asserts();
  void (*const hides[])(orvix1::wxPopupMenu*) = {
      [](orvix1::wxPopupMenu* menu) { menu->Hide(); },
      [](orvix1::wxPopupMenu* menu) { menu->Show(false); },
  };
  for (const auto hide : hides) {
    m_button->OpenPopup();
    ASSERT_TRUE(m_menu->IsPoppedUp());
    hide(m_menu);
    pump_events();
    EXPECT_FALSE(m_menu->IsPoppedUp());
    m_button->OpenPopup();
    pump_events();
    EXPECT_TRUE(m_menu->IsPoppedUp());
    EXPECT_EQ(taken_conditions(), texts_t{});
    m_menu->ClosePopup();
  }
  EXPECT_EQ(m_fills, 4);
  EXPECT_EQ(taken_conditions(), texts_t{});
}

// The button's arrow column and paddings, the menu's frame, paddings,
// separators, cross and the slack around it grow with the scale.
TEST_F(Popup, ArrowPaddingsAndCrossGrowWithTheScale) {
  // At 96 dpi: arrow 16, padding 3, frame 2, padding_x 8, separator 7, slack 3, cross 9x10.
  const scoped_DPI_scale_t scale(1.5);
  m_button->InvalidateBestSize();
  EXPECT_EQ(m_button->GetBestSize().x, 24 + 2 * 4);
  fill(m_menu);
  m_menu->SetSize(m_menu->GetBestSize());
  const wxRect row = m_menu->GetRowRect(0);
  EXPECT_EQ(row.GetTopLeft(), wxPoint(3, 3));
  EXPECT_EQ(m_menu->GetRowRect(2).y, m_menu->GetRowRect(1).GetBottom() + 1 + 10);
  const wxRect cross = m_menu->GetCrossRect(0);
  EXPECT_EQ(cross, wxRect(row.GetRight() - 12 - 13, row.y + (row.height - 15) / 2, 13, 15));
  bool on_cross = false;
  m_menu->HitTest(wxPoint(cross.x - 4, cross.y), &on_cross);
  EXPECT_TRUE(on_cross);
  m_menu->HitTest(wxPoint(cross.x - 5, cross.y), &on_cross);
  EXPECT_FALSE(on_cross);
}

TEST_F(Popup, TheButtonIsANamedPushButtonWhoseClickOpensAMenuOfItems) {
  m_button->SetAccessibleName("Open files");
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
      {"Row 0", true, {"click", "close"}},
      {"Row 1", true, {"click", "close"}},
      {"Locked", false, {"click"}},
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
TEST_F(Popup, TheHighlightedRowIsSelectedAndFocused) {
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
TEST_F(Popup, RowActionsChooseOrCloseAndARefillReplacesTheItems) {
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

namespace {

// Under either shipped theme the button and the menu paint from the palette:
// the count and the rows read on their backgrounds.
TEST_F(Popup, ButtonAndMenuFollowTheThemeAndTheirTextReads) {
  talvar2::intrusive_pointer_t<orvix1::ui_settings_configure_t> palette(new orvix1::ui_settings_configure_t);
  for (const char* theme : {"dark", "light"}) {
    SCOPED_TRACE(theme);
    ASSERT_TRUE(palette->apply_theme(std::string(ORVIX1_THEMES_DIR "/") + theme + ".xml"));
    auto* button = new orvix1::wxPopupButton(m_host, wxID_ANY);
    button->SetActive(true, 25);
    button->SetSize(button->GetBestSize());
    const wxSize size = button->GetSize();
    orvix1_test::paint_canvas_t button_canvas(size.x, size.y);
    button_canvas.paint([&](wxDC& dc) { button->DrawButton(dc); });
    const wxColour active = palette->get_color(orvix1::color_selection_bg);
    EXPECT_EQ(button_canvas.at(1, 1), active);
    EXPECT_GT(button_canvas.standing_out(wxRect(size), active, 0.33), 10);

    auto* menu = new orvix1::wxPopupMenu(button);
    menu->Append("Readable row");
    menu->SetSize(menu->GetBestSize());
    const wxSize menu_size = menu->GetSize();
    orvix1_test::paint_canvas_t menu_canvas(menu_size.x, menu_size.y);
    menu_canvas.paint([&](wxDC& dc) { menu->DrawRows(dc); });
    const wxColour background = palette->get_color(orvix1::color_window_bg);
    EXPECT_EQ(menu_canvas.at(1, 1), background);
    EXPECT_GT(menu_canvas.standing_out(wxRect(menu_size), background, 0.33), 20);
    button->Destroy();
  }
}

}  // namespace
