#include "accessibility/accessible.h"

#include <functional>
#include <string>
#include <vector>

#include "orvix1/wxTabPane.h"
#include "support/atk_event_log.h"
#include "support/atk_probe.h"
#include "support/tab_fixture.h"

namespace {

using namespace orvix1_test;
using orvix1::wxTabButton;
using orvix1::wxTabPane;
using orvix1::wxTabPanel;
using orvix1::accessibility::accessible_of;

const char k_long_caption[] = "Quarterly report for the northern region.txt";

// Alpha, Beta, Gamma (with a close cross of its own) and a tab whose long
// caption is drawn cut, in a pane.
class TabAccessible : public tab_frame_test_t {
 protected:
  void SetUp() override {
    tab_frame_test_t::SetUp();
    m_pane = new wxTabPane(m_host, wxID_ANY, wxPoint(0, 0), wxSize(780, 40));
    m_strip = m_pane->AddPanel(wxTabPane::primary_panel);
    for (const char* caption : {"Alpha", "Beta", "Gamma", k_long_caption}) m_strip->AddButton(caption);
    m_strip->GetButton(2)->SetCrossed(true);
    m_strip->SetMaxButtonWidth(90);
    m_strip->SetCurrentSelection(0);
    m_strip->delete_requested().connect(&m_listener, &strip_listener_t::on_delete);
    m_strip->selection_changed().connect(&m_listener, &strip_listener_t::on_selection);
    pump_events();
  }
  AtkObject* tab(int index) const { return accessible_of(m_strip->GetButton(index)); }
  void watch_tabs() {
    for (int k = 0; k < m_strip->GetButtonsCount(); ++k)
      m_log.watch(tab(k), m_strip->GetButton(k)->GetLabel().utf8_string());
  }
  wxTabPane* m_pane = nullptr;
  wxTabPanel* m_strip = nullptr;
  strip_listener_t m_listener;
  atk_event_log_t m_log;
};

TEST_F(TabAccessible, TabsArePageTabsNamedByTheirWholeCaptionsInAPageTabList) {
  m_strip->SetDisabled(3);
  wxTabButton* cut = m_strip->GetButton(3);
  ASSERT_NE(cut->GetShownText(), cut->GetLabel());
  EXPECT_EQ(atk_object_get_role(accessible_of(m_strip)), ATK_ROLE_PAGE_TAB_LIST);
  EXPECT_EQ(find_by_role(accessible_of(m_strip), ATK_ROLE_PAGE_TAB).size(), 4u);
  // The cut caption is the tab's tooltip, which describes it too.
  EXPECT_EQ(description_of(tab(3)), cut->GetTooltipText());

  const struct {
    std::string name;
    bool selected, enabled;
    std::vector<std::string> actions;
  } rows[] = {
      {"Alpha", true, true, {"activate"}},
      {"Beta", false, true, {"activate"}},
      {"Gamma", false, true, {"activate", "close"}},
      {k_long_caption, false, false, {"activate"}},
  };
  for (int k = 0; k < 4; ++k) {
    SCOPED_TRACE(rows[k].name);
    EXPECT_EQ(atk_object_get_role(tab(k)), ATK_ROLE_PAGE_TAB);
    EXPECT_EQ(name_of(tab(k)), rows[k].name);
    EXPECT_TRUE(has_state(tab(k), ATK_STATE_SELECTABLE) && has_state(tab(k), ATK_STATE_FOCUSABLE));
    EXPECT_EQ(has_state(tab(k), ATK_STATE_SELECTED), rows[k].selected);
    EXPECT_EQ(has_state(tab(k), ATK_STATE_ENABLED), rows[k].enabled);
    EXPECT_EQ(has_state(tab(k), ATK_STATE_SENSITIVE), rows[k].enabled);
    EXPECT_EQ(actions_of(tab(k)), rows[k].actions);
  }

  watch_tabs();
  m_strip->GetButton(1)->SetLabel("Beta 2");
  m_strip->SetDisabled(3, false);
  EXPECT_EQ(m_log.take(), (std::vector<std::string>{"Beta name=Beta 2", std::string(k_long_caption) + " enabled=1",
                                                    std::string(k_long_caption) + " sensitive=1"}));
}

// Whatever moves the selection, the old tab and the new one say so.
TEST_F(TabAccessible, SelectionChangesAreAnnouncedOnTheOldAndTheNewTab) {
  const auto ctrl_tab = [this] {
    wxKeyEvent key(wxEVT_CHAR_HOOK);
    key.m_keyCode = WXK_TAB;
    key.SetControlDown(true);
    m_frame->GetEventHandler()->ProcessEvent(key);
  };
  const struct {
    const char* how;
    std::function<void()> move;
    const char* from;
    const char* to;
  } moves[] = {
      {"click", [this] { click(m_strip->GetButton(1), wxPoint(5, 5)); }, "Alpha", "Beta"},
      {"Ctrl+Tab", ctrl_tab, "Beta", "Gamma"},
      {"code", [this] { m_strip->SetCurrentSelection(0); }, "Gamma", "Alpha"},
      {"activate", [this] { run_action(tab(1), "activate"); pump_events(); }, "Alpha", "Beta"},
  };
  watch_tabs();
  for (const auto& move : moves) {
    move.move();
    EXPECT_EQ(m_log.take(), (std::vector<std::string>{std::string(move.from) + " selected=0",
                                                      std::string(move.to) + " selected=1"}))
        << move.how;
  }
}

TEST_F(TabAccessible, ActivateSelectsAsAClickAndCloseAsksTheVeto) {
  EXPECT_TRUE(run_action(tab(2), "activate"));
  EXPECT_EQ(m_strip->GetCurrentSelection(), 0);  // the action runs from the loop
  pump_events();
  EXPECT_EQ(m_strip->GetCurrentSelection(), 2);
  EXPECT_EQ(m_listener.selections, std::vector<int>{2});

  m_strip->SetDisabled(3);
  run_action(tab(3), "activate");
  pump_events();
  EXPECT_EQ(m_strip->GetCurrentSelection(), 2);

  EXPECT_FALSE(run_action(tab(1), "close"));  // no cross, no close
  m_listener.allow = false;
  run_action(tab(2), "close");
  pump_events();
  EXPECT_EQ(m_listener.close_requests, std::vector<int>{2});
  EXPECT_EQ(m_strip->GetButtonsCount(), 4);
  m_listener.allow = true;
  run_action(tab(2), "close");
  pump_events();
  EXPECT_EQ(m_strip->GetButtonsCount(), 3);
  EXPECT_EQ(m_strip->GetButton(2)->GetLabel(), k_long_caption);
}

// The overflow button names how many tabs its menu lists, across both
// strips; the menu's rows are the hidden tabs, and choosing one selects it.
TEST_F(TabAccessible, TheOverflowButtonCountsTheTabsItsMenuListsWhoseRowsPickThem) {
  wxTabPanel* secondary = m_pane->AddPanel(wxTabPane::secondary_panel);
  for (int k = 0; k < 6; ++k) secondary->AddButton(wxString::Format("Log %d", k));
  for (int k = 0; k < 10; ++k) m_strip->AddButton(wxString::Format("Document %d", k));
  m_pane->SetSize(420, 40);
  m_pane->OnChangeSizes();
  ASSERT_GT(m_strip->GetHiddenCount(), 0);
  ASSERT_GT(secondary->GetHiddenCount(), 0);
  AtkObject* more = accessible_of(m_pane->GetPopupButton());
  EXPECT_EQ(atk_object_get_role(more), ATK_ROLE_PUSH_BUTTON);
  const auto expected_name = [&] {
    return "More tabs (" + std::to_string(m_strip->GetHiddenCount() + secondary->GetHiddenCount()) + ")";
  };
  EXPECT_EQ(name_of(more), expected_name());

  m_log.watch(more, "more");
  m_strip->AddButton("Document 10");
  m_pane->OnChangeSizes();
  EXPECT_EQ(m_log.take(), std::vector<std::string>{"more name=" + expected_name()});

  run_action(more, "click");
  pump_events();
  orvix1::wxPopupMenu* menu = m_pane->GetMenu();
  ASSERT_TRUE(menu->IsPoppedUp());
  EXPECT_EQ(name_of(more), "More tabs (" + std::to_string(menu->GetRowCount()) + ")");
  AtkObject* menu_object = accessible_of(menu);
  EXPECT_EQ(atk_object_get_role(menu_object), ATK_ROLE_MENU);
  const std::vector<AtkObject*> rows = find_by_role(menu_object, ATK_ROLE_MENU_ITEM);
  ASSERT_EQ(static_cast<int>(rows.size()), menu->GetRowCount());
  const std::vector<std::pair<wxTabPanel*, wxTabButton*>>& entries = m_pane->GetMenuEntries();
  for (size_t row = 0; row < rows.size(); ++row)
    EXPECT_EQ(name_of(rows[row]), entries[row].second->GetLabel().utf8_string());

  const auto [strip, picked] = entries[1];
  run_action(rows[1], "click");
  pump_events();
  EXPECT_FALSE(menu->IsPoppedUp());
  EXPECT_TRUE(picked->IsShown() && picked->IsSelected() && has_state(accessible_of(picked), ATK_STATE_SELECTED));
  EXPECT_EQ(strip->GetCurrentSelection(), picked->GetId());
}

}  // namespace
