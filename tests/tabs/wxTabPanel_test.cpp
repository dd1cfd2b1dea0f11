#include "orvix1/wxTabPanel.h"

#include <tuple>

#include "orvix1/text_utils.h"
#include "support/dpi_scale.h"
#include "support/tab_fixture.h"

namespace {

using namespace orvix1_test;
using orvix1::wxTabButton;
using orvix1::wxTabPanel;

class TabPanel : public tab_frame_test_t {
 protected:
  void make(int buttons, int width, bool equal_width = false) {
    m_panel = new wxTabPanel(m_host, wxID_ANY, wxPoint(0, 0), wxSize(width, 30));
    m_panel->SetEqualWidth(equal_width);
    for (int k = 0; k < buttons; ++k) m_panel->AddButton(wxString::Format("Tab %d", k));
    m_panel->delete_requested().connect(&m_listener, &strip_listener_t::on_delete);
    m_panel->selection_changed().connect(&m_listener, &strip_listener_t::on_selection);
  }
  std::vector<int> shown_ids() const {
    std::vector<int> ids;
    for (wxTabButton* button : m_panel->GetShownButtons()) ids.push_back(button->GetId());
    return ids;
  }
  wxTabPanel* m_panel = nullptr;
  strip_listener_t m_listener;
};

TEST_F(TabPanel, WithRoomForAllNoEqualWidthButtonIsWiderThanTheCap) {
  make(3, 3000, true);
  ASSERT_EQ(m_panel->GetShownCount(), 3);
  for (wxTabButton* button : m_panel->GetShownButtons())
    EXPECT_EQ(button->GetSize().x, m_panel->GetEqualWidthCap());
}

// The room beside the shortest caption and the default margin grow with the
// scale (the caption's letters grow with the font).
TEST_F(TabPanel, TheButtonRoomAndTheDefaultMarginGrowWithTheScale) {
  const scoped_DPI_scale_t scale(1.5);  // 30 of room and a margin of 2 at 96 dpi
  make(0, 300);
  const int n = orvix1::GetTextSize(m_panel, "n", m_panel->GetFont()).x;
  const int dot = orvix1::GetTextSize(m_panel, ".", m_panel->GetFont()).x;
  EXPECT_EQ(m_panel->GetMinButtonWidth(), 8 * n + 3 * dot + 45);
  EXPECT_EQ(m_panel->GetEqualWidthCap(), n + 3 * dot + 45);
  EXPECT_EQ(m_panel->GetMargin(), 3);
}

TEST_F(TabPanel, VariableWidthsShowWhatFitsFromTheSelection) {
  make(6, 2000);
  const int button = m_panel->GetButton(0)->GetSize().x + m_panel->GetMargin();
  m_panel->SetSize(3 * button + m_panel->GetMargin(), 30);
  EXPECT_EQ(shown_ids(), (std::vector<int>{3, 4, 5}));  // no selection: the last ones
  m_panel->SetCurrentSelection(1);
  EXPECT_EQ(shown_ids(), (std::vector<int>{1, 2, 3}));
  m_panel->SetCurrentSelection(5);  // a hidden selection comes into view
  EXPECT_EQ(shown_ids(), (std::vector<int>{3, 4, 5}));
}

TEST_F(TabPanel, MarginsStayInZeroToAHundredAndTheFrontOneIsPaidOnlyByAPlacedSlot) {
  make(2, 600);
  m_panel->SetMargin(7);
  for (int outside : {101, -1}) m_panel->SetMargin(outside);
  EXPECT_EQ(m_panel->GetMargin(), 7);
  m_panel->SetMargin(100);
  EXPECT_EQ(m_panel->GetButton(0)->GetPosition().x, 100);

  m_panel->SetMargin(4);
  m_panel->EnableFrontMargin(false);
  EXPECT_EQ(m_panel->GetButton(0)->GetPosition().x, 0);

  m_panel->SetSplittersCount(3);
  m_panel->AddSplitter(wxImage(5, 8), 0);
  m_panel->AddSplitter(wxImage(3, 6), 1);
  EXPECT_EQ(m_panel->GetSplittersSize(), wxSize(5 + 0 + 3 + 4, 8));
  m_panel->CalculatePositions(true);
  EXPECT_EQ(wxPoint(m_panel->GetSplitter(0)->x, m_panel->GetSplitter(0)->y), wxPoint(0, 11));
  EXPECT_EQ(m_panel->GetButton(0)->GetPosition().x, 5 + 4);
  for (int outside : {3, -2}) EXPECT_FALSE(m_panel->AddSplitter(wxImage(2, 2), outside));
  EXPECT_TRUE(m_panel->AddSplitter(wxImage(2, 2), -1));
}

TEST_F(TabPanel, MeasuringASizeLeavesTheStripAsItIsApplyingItLaysItOut) {
  make(6, 2000);
  m_panel->SetSplittersCount(1);
  m_panel->AddSplitter(wxImage(5, 8), 0);
  const auto snapshot = [this] {
    std::vector<wxRect> places;
    for (wxTabButton* button : m_panel->GetShownButtons()) places.push_back(button->GetRect());
    return std::make_tuple(shown_ids(), places, m_panel->GetSplitter(0)->x);
  };
  const auto before = snapshot();
  const wxSize narrow(m_panel->GetButton(0)->GetSize().x * 2, 30);
  const wxSize measured = m_panel->CalculatePositions(narrow, false);
  EXPECT_LT(measured.x, m_panel->GetBestSize().x);
  EXPECT_EQ(snapshot(), before);
  EXPECT_EQ(m_panel->CalculatePositions(narrow, true), measured);
  EXPECT_LT(m_panel->GetShownCount(), 6);
}

// The strip measures its buttons on one DC of its own: each in its own font,
// as each would measure itself.
TEST_F(TabPanel, TheStripMeasuresEachButtonAsTheButtonDoes) {
  make(3, 2000);
  m_panel->SetCrossed(true);
  m_panel->GetButton(1)->SetBitmap(wxBitmap(16, 16));
  wxFont font = m_panel->GetFont();
  m_panel->ChangeFont(font.Scaled(1.5f));
  m_panel->GetButton(1)->ChangeFont(font);
  m_panel->CalculatePositions(true);
  for (int k = 0; k < 3; ++k) {
    wxTabButton* button = m_panel->GetButton(k);
    const wxSize own = button->DoCalculateSize(button->GetBitmap(), button->GetLabel());
    EXPECT_EQ(button->GetSize(), own) << k;
  }
  EXPECT_GT(m_panel->GetButton(0)->GetSize().x, m_panel->GetButton(1)->GetSize().x);
}

// Adding and removing also tell the owner.
TEST_F(TabPanel, AVetoedCloseKeepsEveryButtonAnAllowedOneRenumbers) {
  make(3, 800);
  int_recorder_t added, removed;
  m_panel->button_added().connect(&added, &int_recorder_t::on);
  m_panel->button_removed().connect(&removed, &int_recorder_t::on);
  m_panel->SetCrossed(true);
  m_panel->SetCurrentSelection(2);
  m_listener.allow = false;
  click(m_panel->GetButton(1), cross_inside(m_panel->GetButton(1)));
  EXPECT_EQ(m_listener.close_requests, std::vector<int>{1});
  EXPECT_EQ(m_panel->GetButtonsCount(), 3);

  m_listener.allow = true;
  wxTabButton* last = m_panel->GetButton(2);
  click(m_panel->GetButton(1), cross_inside(m_panel->GetButton(1)));
  ASSERT_EQ(m_panel->GetButtonsCount(), 2);
  EXPECT_EQ(m_panel->GetButton(1), last);
  EXPECT_EQ(last->GetId(), 1);
  EXPECT_EQ(m_panel->GetCurrentSelection(), 1);  // the same tab stays selected
  EXPECT_EQ(removed.values, std::vector<int>{1});
  for (int outside : {2, -1}) EXPECT_FALSE(m_panel->RemoveButton(outside));
  m_panel->InsertButton(0, "Zero");
  EXPECT_EQ(added.values, std::vector<int>{0});
  EXPECT_EQ(last->GetId(), 2);
}

TEST_F(TabPanel, ClickingADisabledButtonSelectsNothingToggleModeTogglesEachAlone) {
  make(3, 800);
  m_panel->SetDisabled(1);
  click(m_panel->GetButton(1), wxPoint(5, 5));
  EXPECT_EQ(m_panel->GetCurrentSelection(), -1);
  click(m_panel->GetButton(2), wxPoint(5, 5));
  EXPECT_TRUE(m_panel->GetButton(2)->IsSelected());
  click(m_panel->GetButton(0), wxPoint(5, 5));
  EXPECT_FALSE(m_panel->GetButton(2)->IsSelected());
  EXPECT_EQ(m_listener.selections, (std::vector<int>{2, 0}));

  m_panel->SetToggleMode(true);
  m_panel->SetCurrentSelection(2);
  EXPECT_TRUE(m_panel->GetButton(0)->IsSelected() && m_panel->GetButton(2)->IsSelected());
  m_panel->SetCurrentSelection(0);
  EXPECT_FALSE(m_panel->GetButton(0)->IsSelected());
}

}  // namespace
