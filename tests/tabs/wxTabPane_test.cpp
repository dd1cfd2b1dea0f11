#include "orvix1/wxTabPane.h"

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include <wx/settings.h>
#include <wx/uiaction.h>

#include "accessibility/accessible.h"
#include "orvix1/ui_settings.h"
#include "orvix1/ui_update_helpers.h"
#include "orvix1/wxCustomTooltip.h"
#include "orvix1/wxQuadSplitter.h"
#include "support/atk_event_log.h"
#include "support/atk_probe.h"
#include "support/log_capture.h"
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

// The tab pane with pages: a workspace driven by mouse and key events.

// Records what the pane reports, and whether a closed page was still whole.
struct pane_listener_t : talvar2::subscriber_base_t {
  std::vector<std::pair<int, int>> moves;
  std::vector<wxString> closed;  // captions of closed tabs
  bool pages_whole = true;
  void on_moved(int from, int to) { moves.emplace_back(from, to); }
  void on_closed(wxTabPane* pane, wxWindow* page, wxTabButton* button) {
    closed.push_back(button->GetLabel());
    if (page != nullptr) pages_whole = pages_whole && !page->IsBeingDeleted() && pane->FindPage(page) >= 0;
  }
};

class TabWorkspace : public tab_frame_test_t {
 protected:
  void SetUp() override {
    tab_frame_test_t::SetUp();
    m_pane = make_pane(m_host);
  }
  // Pages A, B, C, D in the primary strip and Log, Find in the secondary,
  // each keyed by its caption.
  wxTabPane* make_pane(wxWindow* parent) {
    auto* pane = new wxTabPane(parent, wxID_ANY, wxPoint(0, 0), wxSize(780, 300));
    for (const char* caption : {"A", "B", "C", "D"}) add(pane, 1, caption);
    for (const char* caption : {"Log", "Find"}) add(pane, 2, caption);
    pane->tab_moved().connect(&m_listener, &pane_listener_t::on_moved);
    pane->tab_closed().connect(&m_listener, &pane_listener_t::on_closed);
    pump_events();
    return pane;
  }
  static wxWindow* add(wxTabPane* pane, int strip, const wxString& caption) {
    auto* page = new wxWindow(pane->GetPageArea(), wxID_ANY);
    pane->AddPage(strip, page, caption, true);
    pane->SetPageKey(page, caption.utf8_string());
    return page;
  }
  // "A B | C": the captions of the primary strip, then the secondary's.
  std::string captions() const {
    std::string text;
    for (int index : {1, 2}) {
      if (index == 2) text += " |";
      for (int k = 0; k < strip(index)->GetButtonsCount(); ++k)
        text += (text.empty() ? "" : " ") + strip(index)->GetButton(k)->GetLabel().utf8_string();
    }
    return text;
  }
  wxTabPanel* strip(int index) const { return m_pane->GetPanel(index); }
  // Presses on tab `from`, moves past the drag threshold, then over `over`
  // at `across` of its width, as the pointer would; returns where the
  // pointer is in the pane, which has the mouse by then.
  wxPoint drag(int from, wxWindow* over, double across = 0.5) {
    wxTabButton* tab = m_pane->GetTab(from);
    const int beyond = std::max(wxSystemSettings::GetMetric(wxSYS_DRAG_X, tab), 4) + 1;
    send_mouse(tab, wxEVT_LEFT_DOWN, wxPoint(3, 5));
    send_mouse(tab, wxEVT_MOTION, wxPoint(4, 6), true);  // within the threshold
    EXPECT_FALSE(m_pane->IsDragging());
    send_mouse(tab, wxEVT_MOTION, wxPoint(3 + beyond, 5), true);
    EXPECT_TRUE(m_pane->IsDragging());
    EXPECT_EQ(wxWindow::GetCapture(), m_pane);
    const wxPoint at(static_cast<int>(over->GetSize().x * across), over->GetSize().y / 2);
    const wxPoint in_pane = m_pane->ScreenToClient(over->ClientToScreen(at));
    send_mouse(m_pane, wxEVT_MOTION, in_pane, true);
    return in_pane;
  }
  void key(int code, bool shift) {
    wxKeyEvent event(wxEVT_CHAR_HOOK);
    event.m_keyCode = code;
    event.SetControlDown(code != WXK_ESCAPE);
    event.SetShiftDown(shift);
    m_frame->GetEventHandler()->ProcessEvent(event);
  }
  wxTabPane* m_pane = nullptr;
  pane_listener_t m_listener;
};

TEST_F(TabWorkspace, PagesRunOverBothStripsAndTheSelectedOneFillsTheAreaUnderThem) {
  EXPECT_EQ(m_pane->GetPageCount(), 6);
  EXPECT_EQ(captions(), "A B C D | Log Find");
  wxWindow* a = m_pane->GetPage(0);
  EXPECT_EQ(m_pane->GetSelectedPage(), a);  // the first page added
  EXPECT_EQ(a->GetRect(), wxRect(m_pane->GetPageArea()->GetClientSize()));
  EXPECT_EQ(m_pane->GetPageArea()->GetPosition().y, strip(1)->GetSize().y);
  click(m_pane->GetTab(5), wxPoint(5, 5));
  EXPECT_EQ(m_pane->GetSelection(), 5);
  EXPECT_TRUE(m_pane->GetPage(5)->IsShown() && !a->IsShown());
  auto* inserted = new wxWindow(m_frame, wxID_ANY);  // moves into the page area
  m_pane->InsertPage(5, inserted, "New");
  EXPECT_EQ(captions(), "A B C D | Log New Find");
  EXPECT_EQ(inserted->GetParent(), m_pane->GetPageArea());
  EXPECT_EQ(m_pane->SetSelection(m_pane->FindPage(inserted)), 6);
  EXPECT_EQ(m_pane->GetSelectedPage(), inserted);
  // Typed data: what was put in, of its own type only.
  EXPECT_TRUE(m_pane->SetPageData(a, std::string("alpha")));
  ASSERT_NE(m_pane->GetPageData<std::string>(a), nullptr);
  EXPECT_EQ(*m_pane->GetPageData<std::string>(a), "alpha");
  EXPECT_EQ(m_pane->GetPageData<int>(a), nullptr);
  EXPECT_EQ(m_pane->GetPageData<std::string>(m_frame), nullptr);
  const log_capture_t log("orvix");
  EXPECT_EQ(m_pane->AddPage(nullptr, "none"), nullptr);
  EXPECT_EQ(m_pane->AddPage(a, "again"), nullptr);
  EXPECT_EQ(log.warnings(), 2u);
}

// Removing keeps the page, deleting destroys it, a page the host destroys
// takes its tab along; none of these asks the veto, all tell tab_closed.
TEST_F(TabWorkspace, RemovedPagesStayDeletedOnesGoAndNoneAsksTheVeto) {
  strip_listener_t veto;
  veto.allow = false;
  strip(1)->delete_requested().connect(&veto, &strip_listener_t::on_delete);
  wxWindow* b = m_pane->GetPage(1);
  wxWindow* c = m_pane->GetPage(2);
  bool c_destroyed = false;
  c->Bind(wxEVT_DESTROY, [&c_destroyed](wxWindowDestroyEvent&) { c_destroyed = true; });
  EXPECT_TRUE(m_pane->RemovePage(1));
  EXPECT_EQ(b->GetParent(), m_pane->GetPageArea());
  EXPECT_FALSE(b->IsShown());
  EXPECT_TRUE(m_pane->DeletePage(m_pane->FindPage(c)));
  EXPECT_TRUE(c_destroyed);
  m_pane->GetPage(0)->Destroy();
  EXPECT_EQ(captions(), "D | Log Find");
  EXPECT_TRUE(veto.close_requests.empty());
  EXPECT_EQ(m_listener.closed, (std::vector<wxString>{"B", "C", "A"}));
  EXPECT_FALSE(m_pane->RemovePage(6));
  b->Destroy();  // no longer a page: nothing happens to the tabs
  EXPECT_EQ(m_pane->GetPageCount(), 3);
}

// The close cross, a middle click and RequestClose ask the same veto; the
// page is still whole when tab_closed tells of it.
TEST_F(TabWorkspace, ClosingFromCodeAsksTheVetoTheCrossAsks) {
  const std::function<void(wxTabButton*)> ways[] = {
      [](wxTabButton* tab) { click(tab, cross_inside(tab)); },
      [](wxTabButton* tab) { middle_click(tab, wxPoint(5, 5)); },
      [this](wxTabButton* tab) { EXPECT_EQ(m_pane->RequestClose(m_pane->FindTab(tab)), false); },
  };
  strip_listener_t veto;
  strip(2)->delete_requested().connect(&veto, &strip_listener_t::on_delete);
  for (const auto& close : ways) {
    veto.allow = false;
    close(m_pane->GetTab(4));
  }
  EXPECT_EQ(veto.close_requests, (std::vector<int>{0, 0, 0}));
  EXPECT_EQ(captions(), "A B C D | Log Find");
  EXPECT_TRUE(m_listener.closed.empty());
  veto.allow = true;
  wxWindow* log_page = m_pane->GetPage(4);
  bool destroyed = false;
  log_page->Bind(wxEVT_DESTROY, [&destroyed](wxWindowDestroyEvent&) { destroyed = true; });
  EXPECT_TRUE(m_pane->RequestClose(4));
  EXPECT_TRUE(destroyed && m_listener.pages_whole);
  EXPECT_EQ(m_listener.closed, std::vector<wxString>{"Log"});
  EXPECT_FALSE(m_pane->RequestClose(9));
}

// A drag past the threshold moves the tab along its strip or to the other
// one; Esc and a lost capture put the order back. The selection follows.
TEST_F(TabWorkspace, DraggingMovesTabsAndEscOrALostCaptureCancels) {
  enum end_t { drop, escape, capture_lost };
  struct row_t {
    const char* what;
    int from;
    int over;  // the tab under the pointer at the end, -1: the secondary strip
    double across;
    end_t end;
    const char* order;
    std::vector<std::pair<int, int>> moves;
  };
  const row_t rows[] = {
      {"rightwards in the strip", 0, 2, 0.75, drop, "B C A D | Log Find", {{0, 2}}},
      {"leftwards in the strip", 3, 1, 0.25, drop, "A D B C | Log Find", {{3, 1}}},
      {"to the other strip", 1, 5, 0.25, drop, "A C D | Log B Find", {{1, 4}}},
      {"behind the other strip's tabs", 0, -1, 0.95, drop, "B C D | Log Find A", {{0, 5}}},
      {"cancelled by Esc", 1, 3, 0.75, escape, "A B C D | Log Find", {}},
      {"cancelled by a lost capture", 3, 0, 0.25, capture_lost, "A B C D | Log Find", {}},
  };
  for (const row_t& row : rows) {
    SCOPED_TRACE(row.what);
    m_pane->Destroy();
    m_listener.moves.clear();
    m_pane = make_pane(m_host);
    wxTabButton* dragged = m_pane->GetTab(row.from);
    wxWindow* over = row.over >= 0 ? static_cast<wxWindow*>(m_pane->GetTab(row.over)) : strip(2);
    const wxPoint at = drag(row.from, over, row.across);
    auto* marker = wxWindow::FindWindowByName("dropMarker", m_pane);
    EXPECT_TRUE(marker != nullptr && marker->IsShown());
    if (row.end == drop) send_mouse(m_pane, wxEVT_LEFT_UP, at);
    if (row.end == escape) key(WXK_ESCAPE, false);
    if (row.end == capture_lost) {
      m_pane->ReleaseMouse();  // as when the toolkit takes it
      wxMouseCaptureLostEvent lost(m_pane->GetId());
      m_pane->GetEventHandler()->ProcessEvent(lost);
    }
    EXPECT_FALSE(m_pane->IsDragging() || m_pane->HasCapture());
    EXPECT_EQ(wxWindow::FindWindowByName("dropMarker", m_pane), nullptr);
    EXPECT_EQ(captions(), row.order);
    EXPECT_EQ(m_listener.moves, row.moves);
    EXPECT_EQ(m_pane->GetSelection() == m_pane->FindTab(dragged), row.end == drop);
    EXPECT_TRUE(m_pane->GetSelectedPage()->IsShown());
  }
}

TEST_F(TabWorkspace, StripsOrPanesThatKeepTheirOrderOrRefuseDropsAreLeftAlone) {
  strip(2)->EnableTabDrop(false);
  drag(0, strip(2));
  send_mouse(m_pane, wxEVT_LEFT_UP, wxPoint(0, 0));
  EXPECT_EQ(captions(), "A B C D | Log Find");
  strip(1)->EnableTabMove(false);
  wxTabButton* tab = m_pane->GetTab(1);
  send_mouse(tab, wxEVT_LEFT_DOWN, wxPoint(3, 5));
  send_mouse(tab, wxEVT_MOTION, wxPoint(40, 5), true);
  EXPECT_FALSE(m_pane->IsDragging());
  m_pane->SetSelection(1);
  key(WXK_PAGEDOWN, true);
  EXPECT_EQ(captions(), "A B C D | Log Find");
  EXPECT_TRUE(m_listener.moves.empty());
  // With moves off for the whole pane, Shift changes nothing of the keys.
  strip(1)->EnableTabMove(true);
  m_pane->EnableTabMoves(false);
  send_mouse(tab, wxEVT_LEFT_DOWN, wxPoint(3, 5));
  send_mouse(tab, wxEVT_MOTION, wxPoint(40, 5), true);
  EXPECT_FALSE(m_pane->IsDragging());
  key(WXK_PAGEDOWN, true);
  EXPECT_EQ(m_pane->GetSelection(), 2);
}

// Ctrl+Shift+PgDn / PgUp move the selected tab within its strip, the
// selection with it; without Shift the keys still select.
TEST_F(TabWorkspace, CtrlShiftPageKeysMoveTheSelectedTab) {
  m_pane->SetSelection(2);
  key(WXK_PAGEDOWN, true);
  key(WXK_PAGEDOWN, true);  // already last: nothing
  EXPECT_EQ(captions(), "A B D C | Log Find");
  key(WXK_PAGEUP, true);
  key(WXK_PAGEUP, true);
  EXPECT_EQ(captions(), "A C B D | Log Find");
  EXPECT_EQ(m_listener.moves, (std::vector<std::pair<int, int>>{{2, 3}, {3, 2}, {2, 1}}));
  EXPECT_EQ(m_pane->GetTab(m_pane->GetSelection())->GetLabel(), "C");
  key(WXK_PAGEDOWN, false);
  EXPECT_EQ(m_pane->GetTab(m_pane->GetSelection())->GetLabel(), "B");
}

// A capped tab shortens its caption between characters and shows the whole
// of it in its tooltip, before the host's own text.
TEST_F(TabWorkspace, LongCaptionsAreCutBetweenCharactersAndShownWholeInTheTooltip) {
  const wxString caption = wxString::FromUTF8("Überlänge – Журнал 日本語 😀 report.log");
  wxTabButton* tab = m_pane->AddPage(new wxWindow(m_pane->GetPageArea(), wxID_ANY), caption);
  tab->SetTooltipText("the host's text");
  m_pane->SetSelection(m_pane->FindTab(tab));
  const int natural = tab->GetSize().x;
  for (int width : {150, 90, 60}) {
    m_pane->SetMaxTabWidth(width);
    pump_events();
    SCOPED_TRACE(width);
    EXPECT_EQ(tab->GetSize().x, width);
    const wxString shown = tab->GetShownText();
    ASSERT_TRUE(shown.EndsWith("...")) << shown;
    EXPECT_TRUE(caption.StartsWith(shown.Left(shown.length() - 3)));
    EXPECT_EQ(wxString::FromUTF8(shown.utf8_string()), shown);
    EXPECT_EQ(tab->GetTooltipText().find(caption.utf8_string()), 0u);
    EXPECT_NE(tab->GetTooltipText().find("the host's text"), std::string::npos);
    EXPECT_EQ(m_pane->GetTab(0)->GetTooltipText(), "");  // "A" is not cut
  }
  m_pane->SetMaxTabWidth(0);
  pump_events();
  EXPECT_EQ(tab->GetSize().x, natural);
  EXPECT_EQ(tab->GetShownText(), caption);
  EXPECT_EQ(tab->GetTooltipText(), "the host's text");
}

// The layout goes to a string and comes back into the same pane or a
// rebuilt one, splitters and selection with it.
TEST_F(TabWorkspace, ALayoutComesBackIntoThePaneAndIntoARebuiltOne) {
  auto* quad = new orvix1::wxQuadSplitter(m_host, wxID_ANY, wxPoint(0, 310), wxSize(400, 180));
  quad->SplitVertically(new wxWindow(quad, wxID_ANY), new wxWindow(quad, wxID_ANY),
                        new wxWindow(quad, wxID_ANY), new wxWindow(quad, wxID_ANY));
  quad->GetMajorSplitter()->EnableAnimation(false);
  const std::string first = m_pane->SaveLayout();
  m_pane->MoveTab(0, 2, 1);
  m_pane->MoveTab(2, 1, 0);
  m_pane->SetSelection(4);
  quad->GetMajorSplitter()->SetRelativeSashPosition(0.25f);
  quad->GetMajorSplitter()->ChangePaneState(false);
  const std::string second = m_pane->SaveLayout();
  EXPECT_NE(second.find("panel/quadSplitter/major_splitter position=0.2500;closed=1"), std::string::npos)
      << second;
  EXPECT_TRUE(m_pane->RestoreLayout(first));
  EXPECT_EQ(captions(), "A B C D | Log Find");
  EXPECT_EQ(m_pane->SaveLayout(), first);
  EXPECT_FALSE(quad->GetMajorSplitter()->IsSecondPaneClosed());
  EXPECT_TRUE(m_pane->RestoreLayout(second));
  EXPECT_EQ(m_pane->SaveLayout(), second);
  m_pane->Destroy();
  m_pane = make_pane(m_host);
  EXPECT_TRUE(m_pane->RestoreLayout(second));
  EXPECT_EQ(m_pane->SaveLayout(), second);
  EXPECT_EQ(captions(), "D B C | Log A Find");
  EXPECT_EQ(m_pane->GetSelectedPage(), m_pane->GetPage(4));
  EXPECT_TRUE(m_pane->GetSelectedPage()->IsShown());
}

// What a layout names that the pane lacks, and keyed pages it does not
// name, cost one warning; nothing is lost, unnamed pages keep their places.
TEST_F(TabWorkspace, UnknownMissingAndGarbledPartsArePassedOverWithOneWarning) {
  wxWindow* extra = add(m_pane, 1, "Extra");  // keyed, in no layout below
  auto* plain = new wxWindow(m_pane->GetPageArea(), wxID_ANY);
  m_pane->AddPage(plain, "Plain");  // no key: never named
  const std::string header = "orvix1-tab-layout 1\n";
  const std::pair<std::string, const char*> rows[] = {
      {header + "tab 1 Find\ntab 1 Gone\ntab 2 A\ntab 1 B\ntab 1 C\ntab 1 D\ntab 2 Log\nselected Gone\n",
       "Find B C D Extra Plain | A Log"},
      {header + "tab 2 D\ntab 9 A\nsplitter nowhere position=0.5;closed=0\nnonsense\n",
       "A B C Extra Plain | Log Find D"},
      {"\x01\x02 not a layout\ntab 1 D", "A B C D Extra Plain | Log Find"},
      {header + "tab 2 D%zz\ntab 2 D%\ntab 2 D D\ntab 2 D\ntab 1 D\nselected\n",
       "A B C Extra Plain | Log Find D"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.first);
    m_pane->RestoreLayout(header + "tab 1 A\ntab 1 B\ntab 1 C\ntab 1 D\ntab 1 Extra\ntab 2 Log\ntab 2 Find\n");
    m_pane->MoveTab(m_pane->FindPage(plain), 1, 5);  // "Plain" after "Extra"
    const log_capture_t log("orvix");
    EXPECT_FALSE(m_pane->RestoreLayout(row.first));
    EXPECT_EQ(log.warnings(), 1u);
    EXPECT_EQ(log.entries().size(), 1u);
    EXPECT_EQ(captions(), row.second);
    EXPECT_EQ(m_pane->GetPageCount(), 8);
    EXPECT_GE(m_pane->FindPage(extra), 0);
  }
}

}  // namespace
