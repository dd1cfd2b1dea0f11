#include "orvix1/wxTabPane.h"

#include <functional>
#include <string>
#include <vector>

#include <wx/uiaction.h>

#include "accessibility/accessible.h"
#include "orvix1/ui_settings.h"
#include "orvix1/ui_update_helpers.h"
#include "support/atk_event_log.h"
#include "support/atk_probe.h"
#include "support/tab_fixture.h"

namespace {

using namespace orvix1_test;
using orvix1::wxTabButton;
using orvix1::wxTabPane;
using orvix1::wxTabPanel;

class TabPane : public tab_frame_test_t {
 protected:
  void SetUp() override {
    tab_frame_test_t::SetUp();
    m_pane = new wxTabPane(m_host, wxID_ANY, wxPoint(0, 0), wxSize(780, 40));
    m_primary = m_pane->AddPanel(wxTabPane::primary_panel);
    for (const char* caption : {"Alpha", "Beta", "Gamma"}) m_primary->AddButton(caption);
  }
  wxTabPanel* add_secondary() {
    wxTabPanel* secondary = m_pane->AddPanel(wxTabPane::secondary_panel);
    for (const char* caption : {"Log", "Output"}) secondary->AddButton(caption);
    return secondary;
  }
  wxTabPane* m_pane = nullptr;
  wxTabPanel* m_primary = nullptr;
};

TEST_F(TabPane, SelectNextCrossesIntoTheSecondaryOrWrapsWithoutOne) {
  EXPECT_FALSE(m_pane->SelectNext());  // nothing pressed yet
  m_primary->SetCurrentSelection(2);
  EXPECT_TRUE(m_pane->SelectNext());
  EXPECT_EQ(m_primary->GetCurrentSelection(), 0);

  wxTabPanel* secondary = add_secondary();
  EXPECT_TRUE(secondary->GetCrossed() && secondary->GetEqualWidth());
  m_primary->SetCurrentSelection(2);
  EXPECT_TRUE(m_pane->SelectNext());
  EXPECT_EQ(secondary->GetCurrentSelection(), 0);
  EXPECT_EQ(m_primary->GetCurrentSelection(), -1);
  EXPECT_TRUE(m_pane->SelectPrev());
  EXPECT_EQ(m_primary->GetCurrentSelection(), 2);
}

TEST_F(TabPane, PressingInOneStripClearsTheOther) {
  wxTabPanel* secondary = add_secondary();
  click(m_primary->GetButton(1), wxPoint(5, 5));
  click(secondary->GetButton(0), wxPoint(5, 5));
  EXPECT_EQ(m_primary->GetCurrentSelection(), -1);
  EXPECT_FALSE(m_primary->GetButton(1)->IsSelected());
  EXPECT_EQ(m_pane->GetLastPressedButton(), secondary->GetButton(0));
}

TEST_F(TabPane, CtrlTabAndCtrlPageKeysMoveTheSelection) {
  m_primary->SetCurrentSelection(0);
  const auto press = [&](int key_code, bool shift, int expected) {
    wxKeyEvent key(wxEVT_CHAR_HOOK);
    key.m_keyCode = key_code;
    key.SetControlDown(true);
    key.SetShiftDown(shift);
    m_frame->GetEventHandler()->ProcessEvent(key);
    EXPECT_EQ(m_primary->GetCurrentSelection(), expected) << key_code << " shift " << shift;
  };
  press(WXK_TAB, false, 1);
  press(WXK_TAB, true, 0);
  press(WXK_PAGEUP, false, 2);
  press(WXK_PAGEDOWN, false, 0);
  press(WXK_PAGEDOWN, true, 1);  // a bare header bar moves no tabs
}

TEST_F(TabPane, TheOverflowMenuListsHiddenTabsAndDeletesThroughTheVeto) {
  wxTabPanel* secondary = add_secondary();
  for (int k = 0; k < 12; ++k) m_primary->AddButton(wxString::Format("Document %d", k));
  m_primary->SetCrossed(true);
  m_pane->SetSize(360, 40);
  m_pane->OnChangeSizes();
  ASSERT_GT(m_primary->GetHiddenCount(), 0);
  EXPECT_TRUE(m_pane->GetPopupButton()->IsShown() && m_pane->GetPopupButton()->IsActive());
  orvix1::wxPopupMenu* menu = m_pane->GetMenu();
  m_pane->OnBeforePopup(menu);
  EXPECT_EQ(menu->GetRowCount(), m_primary->GetHiddenCount() + secondary->GetHiddenCount());
  EXPECT_EQ(menu->GetRowText(0), m_primary->GetHiddenButtons()[0]->GetLabel());

  strip_listener_t veto;
  m_primary->delete_requested().connect(&veto, &strip_listener_t::on_delete);
  const int count = m_primary->GetButtonsCount();
  veto.allow = false;
  m_pane->OnDeleteButton(0);
  EXPECT_EQ(veto.close_requests, std::vector<int>{m_primary->GetHiddenButtons()[0]->GetId()});
  EXPECT_EQ(m_primary->GetButtonsCount(), count);
  veto.allow = true;
  m_pane->GetPopupButton()->OpenPopup();
  const int rows = menu->GetRowCount();
  m_pane->OnDeleteButton(0);
  EXPECT_EQ(m_primary->GetButtonsCount(), count - 1);
  EXPECT_TRUE(menu->IsPoppedUp());  // open again on what is left
  EXPECT_EQ(menu->GetRowCount(), rows - 1);
  menu->ClosePopup();  // choosing a row: TabAccessible's overflow test
}

TEST_F(TabPane, BothStripsShareTheButtonHeightAndOnlyOwnPanelsCanBeRemoved) {
  wxTabPanel* secondary = add_secondary();
  m_primary->GetButton(0)->SetBitmap(wxBitmap(16, 28));
  m_pane->OnChangeSizes();
  const int height = m_primary->GetButton(0)->GetSize().y;
  EXPECT_EQ(m_primary->GetButton(1)->GetSize().y, height);
  EXPECT_EQ(secondary->GetButton(0)->GetSize().y, height);
  EXPECT_EQ(m_pane->GetMinSize().y, height + m_primary->GetMargin());
  // Only its own panels can be removed.
  auto* other = new wxTabPane(m_host, wxID_ANY);
  wxTabPanel* foreign = other->AddPanel(wxTabPane::primary_panel);
  EXPECT_FALSE(m_pane->RemovePanel(foreign));
  EXPECT_EQ(other->GetPanel(wxTabPane::primary_panel), foreign);
  m_primary->SetCurrentSelection(0);
  EXPECT_TRUE(m_pane->RemovePanel(m_primary));
  EXPECT_EQ(m_pane->GetLastPressedButton(), nullptr);
}

// A real X click; other tests' windows may cover this one for a moment, so
// it is retried with the frame raised, a bounded number of times.
TEST_F(TabPane, AClickSelectsTheTabOnTheScreen) {
  pump_events();
  wxTabButton* beta = m_primary->GetButton(1);
  wxUIActionSimulator simulator;
  for (int attempt = 0; attempt < 5 && m_primary->GetCurrentSelection() != 1; ++attempt) {
    m_frame->Raise();
    pump_events();
    simulator.MouseMove(beta->ClientToScreen(wxPoint(6, beta->GetSize().y / 2)));
    simulator.MouseClick();
    for (int round = 0; round < 100 && m_primary->GetCurrentSelection() != 1; ++round) {
      pump_events();
      wxMilliSleep(5);
    }
  }
  EXPECT_EQ(m_primary->GetCurrentSelection(), 1);
}

}  // namespace

namespace {

// An updater over the host styles the plain windows and leaves the tab
// widgets to their named style, through theme switches too.
TEST_F(TabPane, UnderAStyleUpdaterCaptionsKeepTheirStyleFontThroughThemeSwitches) {
  talvar2::intrusive_pointer_t<orvix1::ui_settings_configure_t> palette(new orvix1::ui_settings_configure_t);
  palette->set_font(orvix1::font_small, wxFont(wxFontInfo(7).Italic()));
  auto* plain = new wxWindow(m_host, wxID_ANY);
  m_pane->SetUiStyle(new wxTabPanel::default_style_t);
  m_primary->SetUiStyle(new wxTabPanel::default_style_t);
  orvix1::style_updater_t updater(m_host, orvix1::style_t(orvix1::font_small, orvix1::color_window_bg, -1), -1);
  for (const char* theme : {"dark", "light"}) {
    ASSERT_TRUE(palette->apply_theme(std::string(ORVIX1_THEMES_DIR "/") + theme + ".xml"));
    const wxFont bold = m_primary->GetUiStyle()->get_font("fnNormalBold");
    EXPECT_EQ(plain->GetFont(), palette->get_font(orvix1::font_small)) << theme;
    for (int k = 0; k < m_primary->GetButtonsCount(); ++k)
      EXPECT_EQ(m_primary->GetButton(k)->GetFont(), bold) << theme << " " << k;
  }
}

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
