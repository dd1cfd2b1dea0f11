#include "orvix1/wxTabButton.h"

#include <memory>

#include "orvix1/text_utils.h"
#include "orvix1/wxCustomTooltip.h"
#include "support/paint_canvas.h"
#include "support/resource_archive.h"
#include "support/tab_fixture.h"

namespace {

using namespace orvix1_test;
using orvix1::wxTabButton;

const wxColour k_red(255, 0, 0), k_green(0, 255, 0), k_blue(0, 0, 255);

// The button painted as the window paints it.
paint_canvas_t painted(wxTabButton* button) {
  paint_canvas_t canvas(button->GetClientSize().x, button->GetClientSize().y);
  canvas.paint([&](wxDC& dc) { button->DrawButton(dc); });
  return canvas;
}

class TabButton : public tab_frame_test_t {
 protected:
  wxTabButton* make(const wxString& label, bool crossed = false) {
    auto* button = new wxTabButton(m_host, 7, label, wxPoint(10, 10));
    button->SetCrossed(crossed);
    button->clicked().connect(&m_clicked, &int_recorder_t::on);
    button->delete_requested().connect(&m_deleted, &int_recorder_t::on);
    pump_events();
    return button;
  }
  int_recorder_t m_clicked, m_deleted;
};

TEST_F(TabButton, AnEmptyButtonIsEightWideAndSixTallerThanEmptyText) {
  wxTabButton* button = make("");
  const int text_height = orvix1::GetTextSize(button, "", button->GetFont()).y;
  EXPECT_EQ(button->GetSize(), wxSize(8, text_height + 6));
  button->SetCrossed(true);
  EXPECT_EQ(button->GetSize(), wxSize(8 + 9 + 4, text_height + 6));
  const wxSize text = orvix1::GetTextSize(button, "Tab", button->GetFont());
  button->SetCrossed(false);
  button->SetLabel("Tab");
  EXPECT_EQ(button->GetSize(), wxSize(text.x + 8 + 4, text.y + 6));
  EXPECT_EQ(button->DoCalculateSize(wxBitmap(20, 30), "").y, 36);
}

TEST_F(TabButton, AReleaseOnTheCrossClosesOnItsEdgeItIsAPlainClick) {
  wxTabButton* button = make("Document", true);
  const wxPoint inside = cross_inside(button);
  click(button, inside);
  EXPECT_EQ(m_deleted.values, std::vector<int>{7});
  EXPECT_TRUE(m_clicked.values.empty());
  click(button, inside, wxPoint(button->CalculateCrossRect().x, inside.y));
  EXPECT_EQ(m_clicked.values, std::vector<int>{7});
  EXPECT_EQ(m_deleted.values.size(), 1u);
  middle_click(button, wxPoint(3, 3));  // anywhere on a closable tab
  EXPECT_EQ(m_deleted.values.size(), 2u);

  const wxRect rect(10, 20, 9, 10);  // the hit test is strict on every edge
  EXPECT_TRUE(orvix1::PointInRect(11, 21, rect) && orvix1::PointInRect(18, 29, rect));
  for (const wxPoint& edge : {wxPoint(10, 25), wxPoint(19, 25), wxPoint(15, 20), wxPoint(15, 30)})
    EXPECT_FALSE(orvix1::PointInRect(edge.x, edge.y, rect)) << edge.x << "," << edge.y;
}

TEST_F(TabButton, LeavingOrBeingDisabledRaisesNothing) {
  wxTabButton* button = make("Document", true);
  send_mouse(button, wxEVT_ENTER_WINDOW, wxPoint(5, 5));
  send_mouse(button, wxEVT_LEFT_DOWN, wxPoint(5, 5));
  EXPECT_TRUE(button->IsLeftPressed());
  send_mouse(button, wxEVT_LEAVE_WINDOW, wxPoint(-1, 5));
  EXPECT_FALSE(button->IsLeftPressed());
  send_mouse(button, wxEVT_LEFT_UP, wxPoint(5, 5));

  button->SetDisabled(true);
  click(button, wxPoint(5, 5));
  click(button, cross_inside(button));
  middle_click(button, wxPoint(3, 3));
  EXPECT_TRUE(m_clicked.values.empty());
  EXPECT_TRUE(m_deleted.values.empty());
}

TEST_F(TabButton, AHandlerMayDestroyTheButtonItClosesWith) {
  struct destroyer_t : talvar2::_internal::subscriber_base_t {
    wxTabButton* button = nullptr;
    void on_delete(int) {
      button->Destroy();
      button = nullptr;
    }
  } destroyer;
  wxTabButton* button = make("Document", true);
  destroyer.button = button;
  button->delete_requested().connect(&destroyer, &destroyer_t::on_delete);
  wxMouseEvent up(wxEVT_LEFT_UP);
  up.SetPosition(cross_inside(button));
  send_mouse(button, wxEVT_LEFT_DOWN, up.GetPosition());
  button->GetEventHandler()->ProcessEvent(up);
  EXPECT_EQ(destroyer.button, nullptr);
  // A destroyed button does not hand the event on: nothing may touch it.
  EXPECT_FALSE(up.GetSkipped());
  EXPECT_TRUE(m_host->GetChildren().empty());
}

TEST_F(TabButton, TheCaptionIsShortenedToItsWidthAndRestoredAsItGrows) {
  wxTabButton* button = make("A rather long caption for one tab");
  const wxSize natural = button->GetSize();
  button->SetSize(wxSize(natural.x / 2, natural.y));
  painted(button);
  EXPECT_TRUE(button->GetShownText().EndsWith("...")) << button->GetShownText();
  button->SetSize(natural);
  painted(button);
  EXPECT_EQ(button->GetShownText(), button->GetLabel());
}

TEST_F(TabButton, ColoursFollowTheStyleUnlessSetAndEachStatePaintsItsOwn) {
  wxTabButton* button = make("Document");
  button->SetColor(wxTabButton::text_normal, k_red);
  auto* style = new wxTabButton::default_style_t;
  style->lock_color("clBtnBgNormal", k_blue);
  style->lock_color("clTextNormal", k_green);
  button->SetUiStyle(style);
  EXPECT_EQ(button->GetColor(wxTabButton::text_normal), k_red);
  EXPECT_EQ(button->GetColor(wxTabButton::bg_normal), k_blue);
  style->lock_color("clBtnBgNormal", k_green);
  style->on_ui_settings_updated();
  EXPECT_EQ(button->GetColor(wxTabButton::bg_normal), k_green);

  // Each state paints its own background.
  button->SetColor(wxTabButton::bg_normal, k_red);
  button->SetColor(wxTabButton::bg_pressed, k_green);
  button->SetColor(wxTabButton::bg_disabled, k_blue);
  const wxPoint inside(2, 2);  // inside the border
  // The pointer of the shared display may rest where the button appeared.
  send_mouse(button, wxEVT_LEAVE_WINDOW, wxPoint(-1, -1));
  EXPECT_EQ(painted(button).at(inside), k_red);
  send_mouse(button, wxEVT_ENTER_WINDOW, inside);
  // The hover colour, unset, lies between the normal and pressed ones.
  EXPECT_EQ(painted(button).at(inside), wxColour(127, 127, 0));
  button->Press();
  EXPECT_EQ(painted(button).at(inside), k_green);
  button->SetDisabled(true);
  EXPECT_EQ(painted(button).at(inside), k_blue);
}

TEST_F(TabButton, TheAnimationTakesTheImagePlaceAndPassesTheMouseOn) {
  wxTabButton* button = make("Busy");
  const int plain_width = button->GetSize().x;
  const std::string gif = gif_bytes(12, 12);
  wxMemoryInputStream gif_stream(gif.data(), gif.size());
  wxAnimation animation;
  ASSERT_TRUE(animation.Load(gif_stream));
  button->SetAnimation(animation);
  button->Play();
  EXPECT_TRUE(button->IsPlaying());
  EXPECT_EQ(button->GetSize().x, plain_width + 12);
  send_mouse(button->GetAnimationCtrl(), wxEVT_LEFT_DOWN, wxPoint(2, 2));
  EXPECT_TRUE(button->IsLeftPressed());
  send_mouse(button->GetAnimationCtrl(), wxEVT_LEFT_UP, wxPoint(2, 2));
  EXPECT_EQ(m_clicked.values, std::vector<int>{7});
  button->SetBitmap(wxBitmap(16, 16));  // an image stops the animation
  EXPECT_FALSE(button->IsPlaying());
}

TEST_F(TabButton, ADisabledImageIsDrawnGreyACheckboxKeepsItsWidth) {
  wxImage red(12, 12);
  red.SetRGB(wxRect(0, 0, 12, 12), 255, 0, 0);
  auto* button = new wxTabButton(m_host, 1, wxBitmap(red), "", wxPoint(0, 0));
  const wxPoint pixel(4 + 6, button->GetSize().y / 2);
  EXPECT_EQ(painted(button).at(pixel), k_red);
  button->SetDisabled(true);
  const wxColour grey = painted(button).at(pixel);
  EXPECT_TRUE(grey.Red() == grey.Green() && grey.Green() == grey.Blue()) << grey.GetAsString();

  auto* check = new wxTabButton(m_host, 1, "Option", wxPoint(0, 40), wxSize(150, 24));
  check->SetCheckboxStyle(true);
  check->SetLabel("A much longer option text than before");
  EXPECT_EQ(check->GetSize().x, 150);
  const paint_canvas_t before = painted(check);
  check->Toggle();
  EXPECT_TRUE(check->IsSelected());
  EXPECT_FALSE(painted(check).same_as(before));
}

TEST_F(TabButton, IsMadeByNameAndCarriesATooltip) {
  std::unique_ptr<wxObject> made(wxCreateDynamicObject("wxTabButton"));
  EXPECT_TRUE(made && made->IsKindOf(wxCLASSINFO(wxTabButton)));
  wxTabButton* button = make("Document");
  button->SetTooltipText("The document you are editing");
  ASSERT_NE(button->GetCustomTooltip(), nullptr);
  EXPECT_EQ(orvix1::wxCustomTooltip::GetAssociatedTooltip(button), button->GetCustomTooltip());
  button->SetTooltipText("");
  EXPECT_EQ(orvix1::wxCustomTooltip::GetAssociatedTooltip(button), nullptr);
}

}  // namespace
