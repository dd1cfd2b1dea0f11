#include "orvix1/wxPopupButton.h"
#include "orvix1/wxPopupMenu.h"

#include "support/tab_fixture.h"

namespace {

using namespace orvix1_test;

// The menu is filled on opening: `m_rows` closable rows, a separator, a plain row.
class Popup : public tab_frame_test_t, public talvar2::_internal::subscriber_base_t {
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
    m_menu->Append("Plain");
  }
  orvix1::wxPopupButton* m_button = nullptr;
  orvix1::wxPopupMenu* m_menu = nullptr;
  int m_rows = 2, m_fills = 0;
  int_recorder_t m_chosen, m_deleted;
};

// The button opens the filled menu below itself; rows are chosen or closed
// by mouse; an empty menu stays shut.
TEST_F(Popup, TheButtonOpensTheMenuWhoseRowsAreChosenOrClosedByMouse) {
  send_mouse(m_button, wxEVT_LEFT_DOWN, wxPoint(3, 3));
  EXPECT_EQ(m_fills, 1);
  ASSERT_TRUE(m_menu->IsPoppedUp());
  EXPECT_EQ(m_menu->GetRowCount(), 3);  // the separator is no row
  EXPECT_EQ(m_menu->GetRowText(2), "Plain");
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

}  // namespace
