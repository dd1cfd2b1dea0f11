#include "orvix1/wxTabPane.h"

#include <wx/uiaction.h>

#include <string>

#include "orvix1/ui_settings.h"
#include "orvix1/ui_update_helpers.h"
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

}  // namespace
