#include "orvix1/wxPopupButton.h"
#include "orvix1/wxPopupMenu.h"

#include "support/tab_fixture.h"

namespace {

using orvix1::IPopup;
using orvix1::wxPopupButton;
using orvix1::wxPopupMenu;
using orvix1_test::int_recorder_t;
using orvix1_test::pump_events;
using orvix1_test::send_mouse;

// Fills the menu when it is about to open, as an owner does.
struct filler_t : talvar2::_internal::subscriber_base_t {
  wxPopupMenu* menu = nullptr;
  int rows = 2;
  int calls = 0;
  void on_before(IPopup*) {
    ++calls;
    menu->Clear();
    for (int k = 0; k < rows; ++k) menu->Append(wxString::Format("Row %d", k), wxNullBitmap, true);
    if (rows > 0) menu->AppendSeparator();
    if (rows > 0) menu->Append("Plain");
  }
};

class Popup : public orvix1_test::tab_frame_test_t {
 protected:
  void SetUp() override {
    tab_frame_test_t::SetUp();
    m_button = new wxPopupButton(m_host, wxID_ANY, wxPoint(300, 10));
    m_menu = new wxPopupMenu(m_button);
    m_button->SetPopup(m_menu);
    m_filler.menu = m_menu;
    m_menu->before_popup().connect(&m_filler, &filler_t::on_before);
    m_menu->chosen().connect(&m_chosen, &int_recorder_t::on);
    m_menu->delete_requested().connect(&m_deleted, &int_recorder_t::on);
    pump_events();
  }
  void TearDown() override {
    m_menu->ClosePopup();
    tab_frame_test_t::TearDown();
  }
  wxPopupButton* m_button = nullptr;
  wxPopupMenu* m_menu = nullptr;
  filler_t m_filler;
  int_recorder_t m_chosen;
  int_recorder_t m_deleted;
};

TEST_F(Popup, TheButtonOpensTheFilledMenuBelowItself) {
  send_mouse(m_button, wxEVT_LEFT_DOWN, wxPoint(3, 3));
  EXPECT_EQ(m_filler.calls, 1);
  ASSERT_TRUE(m_menu->IsPoppedUp());
  EXPECT_EQ(m_menu->GetRowCount(), 3);  // the separator is no row
  EXPECT_EQ(m_menu->GetRowText(2), "Plain");
  EXPECT_GE(m_menu->GetScreenPosition().y, m_button->GetScreenRect().GetBottom());
  EXPECT_EQ(m_menu->GetSize(), m_menu->GetBestSize());
}

TEST_F(Popup, AnEmptyMenuDoesNotOpen) {
  m_filler.rows = 0;
  m_button->OpenPopup();
  EXPECT_EQ(m_filler.calls, 1);
  EXPECT_FALSE(m_menu->IsPoppedUp());
}

TEST_F(Popup, RowsAreChosenOrClosedByMouseAndKeys) {
  m_button->OpenPopup();
  const wxRect second = m_menu->GetRowRect(1);
  const wxRect cross = m_menu->GetCrossRect(1);
  bool on_cross = false;
  EXPECT_EQ(m_menu->HitTest(wxPoint(cross.x + 4, cross.y + 4), &on_cross), 1);
  EXPECT_TRUE(on_cross);
  send_mouse(m_menu, wxEVT_LEFT_UP, wxPoint(cross.x + 4, cross.y + 4));
  EXPECT_EQ(m_deleted.values, std::vector<int>{1});
  EXPECT_TRUE(m_menu->IsPoppedUp());  // closing a row keeps the menu
  EXPECT_TRUE(m_menu->GetCrossRect(2).IsEmpty());

  wxKeyEvent down(wxEVT_KEY_DOWN);
  down.m_keyCode = WXK_DOWN;
  m_menu->GetEventHandler()->ProcessEvent(down);
  m_menu->GetEventHandler()->ProcessEvent(down);
  EXPECT_EQ(m_menu->GetHotRow(), 1);
  send_mouse(m_menu, wxEVT_LEFT_UP, wxPoint(second.x + 2, second.y + 2));
  EXPECT_EQ(m_chosen.values, std::vector<int>{1});
  EXPECT_FALSE(m_menu->IsPoppedUp());
}

TEST_F(Popup, TheActiveButtonShowsItsCountAndGrows) {
  const wxSize plain = m_button->GetBestSize();
  m_button->SetActive(true, 12);
  EXPECT_TRUE(m_button->IsActive());
  EXPECT_GT(m_button->GetBestSize().x, plain.x);
  m_button->SetActive(false);
  EXPECT_EQ(m_button->GetBestSize(), plain);
}

}  // namespace
