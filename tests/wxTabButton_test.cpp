#include "orvix1/wxTabButton.h"

#include <wx/filename.h>
#include <wx/anidecod.h>
#include <wx/imaggif.h>
#include <wx/quantize.h>
#include <wx/wfstream.h>

#include "orvix1/text_utils.h"
#include "orvix1/wxCustomTooltip.h"
#include "support/paint_canvas.h"
#include "support/tab_fixture.h"

namespace {

using orvix1::PointInRect;
using orvix1::wxTabButton;
using orvix1_test::click;
using orvix1_test::int_recorder_t;
using orvix1_test::pump_events;
using orvix1_test::send_mouse;

const wxColour k_red(255, 0, 0);
const wxColour k_green(0, 255, 0);
const wxColour k_blue(0, 0, 255);

// A two-frame 12x12 animated GIF.
wxAnimation two_frame_animation() {
  wxImageArray frames;
  for (const wxColour& colour : {k_red, k_blue}) {
    wxImage frame(12, 12);
    frame.SetRGB(wxRect(0, 0, 12, 12), colour.Red(), colour.Green(), colour.Blue());
    wxImage quantized;
    wxQuantize::Quantize(frame, quantized, 16);
    quantized.SetOption(wxIMAGE_OPTION_GIF_TRANSPARENCY, wxIMAGE_OPTION_GIF_TRANSPARENCY_UNCHANGED);
    frames.Add(quantized);
  }
  const wxString path = wxFileName::CreateTempFileName("orvix1-tab") + ".gif";
  {
    wxFileOutputStream out(path);
    wxGIFHandler().SaveAnimation(frames, &out, false, 50);
  }
  wxAnimation animation;
  animation.LoadFile(path);
  wxRemoveFile(path);
  return animation;
}

// The button painted as the window paints it.
orvix1_test::paint_canvas_t painted(wxTabButton* button) {
  orvix1_test::paint_canvas_t canvas(button->GetClientSize().x, button->GetClientSize().y);
  canvas.paint([&](wxDC& dc) { button->DrawButton(dc); });
  return canvas;
}

wxColour painted_at(wxTabButton* button, const wxPoint& at) { return painted(button).at(at); }

class TabButton : public orvix1_test::tab_frame_test_t {
 protected:
  wxTabButton* make(const wxString& label, bool crossed = false) {
    auto* button = new wxTabButton(m_host, 7, label, wxPoint(10, 10));
    button->SetCrossed(crossed);
    button->clicked().connect(&m_clicked, &int_recorder_t::on);
    button->delete_requested().connect(&m_deleted, &int_recorder_t::on);
    pump_events();
    return button;
  }
  int_recorder_t m_clicked;
  int_recorder_t m_deleted;
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

TEST(PointInRectTest, EveryEdgeIsOutside) {
  const wxRect rect(10, 20, 9, 10);
  EXPECT_TRUE(PointInRect(11, 21, rect));
  EXPECT_TRUE(PointInRect(18, 29, rect));
  EXPECT_FALSE(PointInRect(10, 25, rect));
  EXPECT_FALSE(PointInRect(19, 25, rect));
  EXPECT_FALSE(PointInRect(15, 20, rect));
  EXPECT_FALSE(PointInRect(15, 30, rect));
}

TEST_F(TabButton, AReleaseOnTheCrossClosesOnItsEdgeItIsAPlainClick) {
  wxTabButton* button = make("Document", true);
  const wxRect cross = button->CalculateCrossRect();
  const wxPoint inside(cross.x + 4, cross.y + 4);
  click(button, inside);
  EXPECT_EQ(m_deleted.values, std::vector<int>{7});
  EXPECT_TRUE(m_clicked.values.empty());

  click(button, inside, wxPoint(cross.x, cross.y + 4));
  EXPECT_EQ(m_clicked.values, std::vector<int>{7});
  EXPECT_EQ(m_deleted.values.size(), 1u);

  // A middle click anywhere closes a closable tab.
  send_mouse(button, wxEVT_MIDDLE_DOWN, wxPoint(3, 3));
  send_mouse(button, wxEVT_MIDDLE_UP, wxPoint(3, 3));
  EXPECT_EQ(m_deleted.values.size(), 2u);
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
  const wxRect cross = button->CalculateCrossRect();
  click(button, wxPoint(cross.x + 4, cross.y + 4));
  send_mouse(button, wxEVT_MIDDLE_DOWN, wxPoint(3, 3));
  send_mouse(button, wxEVT_MIDDLE_UP, wxPoint(3, 3));
  EXPECT_TRUE(m_clicked.values.empty());
  EXPECT_TRUE(m_deleted.values.empty());
}

// Destroys the button from its own close request.
struct destroyer_t : talvar2::_internal::subscriber_base_t {
  wxTabButton* button = nullptr;
  bool destroyed = false;
  void on_delete(int) {
    button->Destroy();
    destroyed = true;
  }
};

TEST_F(TabButton, AHandlerMayDestroyTheButtonItClosesWith) {
  wxTabButton* button = make("Document", true);
  destroyer_t destroyer;
  destroyer.button = button;
  button->delete_requested().connect(&destroyer, &destroyer_t::on_delete);
  const wxRect cross = button->CalculateCrossRect();
  wxMouseEvent up(wxEVT_LEFT_UP);
  up.SetPosition(wxPoint(cross.x + 4, cross.y + 4));
  send_mouse(button, wxEVT_LEFT_DOWN, up.GetPosition());
  button->GetEventHandler()->ProcessEvent(up);
  EXPECT_TRUE(destroyer.destroyed);
  // A destroyed button does not hand the event on: nothing may touch it.
  EXPECT_FALSE(up.GetSkipped());
  EXPECT_TRUE(m_host->GetChildren().empty());
}

TEST_F(TabButton, TheCaptionIsShortenedToItsWidthAndRestoredAsItGrows) {
  wxTabButton* button = make("A rather long caption for one tab");
  const wxSize natural = button->GetSize();
  button->SetSize(wxSize(natural.x / 2, natural.y));
  painted_at(button, wxPoint(1, 1));
  EXPECT_TRUE(button->GetShownText().EndsWith("..."));
  EXPECT_LT(button->GetShownText().length(), button->GetLabel().length());
  button->SetSize(natural);
  painted_at(button, wxPoint(1, 1));
  EXPECT_EQ(button->GetShownText(), button->GetLabel());
}

TEST_F(TabButton, EachStatePaintsItsOwnBackground) {
  wxTabButton* button = make("Document");
  button->SetColor(wxTabButton::bg_normal, k_red);
  button->SetColor(wxTabButton::bg_pressed, k_green);
  button->SetColor(wxTabButton::bg_disabled, k_blue);
  const wxPoint inside(2, 2);  // inside the border
  // The pointer of the shared display may rest where the button appeared.
  send_mouse(button, wxEVT_LEAVE_WINDOW, wxPoint(-1, -1));
  EXPECT_EQ(painted_at(button, inside), k_red);
  send_mouse(button, wxEVT_ENTER_WINDOW, inside);
  EXPECT_EQ(painted_at(button, inside), button->GetHighlightColor());
  button->Press();
  EXPECT_EQ(painted_at(button, inside), k_green);
  button->SetDisabled(true);
  EXPECT_EQ(painted_at(button, inside), k_blue);
  // The hover colour, unset, lies between the normal and pressed ones.
  EXPECT_EQ(button->GetHighlightColor(), wxColour(127, 127, 0));
}

TEST_F(TabButton, ExplicitColoursSurviveAStyleChange) {
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
}

TEST_F(TabButton, TheAnimationTakesTheImagePlaceAndPassesTheMouseOn) {
  wxTabButton* button = make("Busy");
  const int plain_width = button->GetSize().x;
  const wxAnimation animation = two_frame_animation();
  ASSERT_TRUE(animation.IsOk());
  button->SetAnimation(animation);
  button->Play();
  EXPECT_TRUE(button->IsPlaying());
  EXPECT_EQ(button->GetSize().x, plain_width + 12);
  wxAnimationCtrl* control = button->GetAnimationCtrl();
  send_mouse(control, wxEVT_LEFT_DOWN, wxPoint(2, 2));
  EXPECT_TRUE(button->IsLeftPressed());
  send_mouse(control, wxEVT_LEFT_UP, wxPoint(2, 2));
  EXPECT_EQ(m_clicked.values, std::vector<int>{7});
  // An image stops and replaces the animation's place.
  button->SetBitmap(wxBitmap(16, 16));
  EXPECT_FALSE(button->IsPlaying());
}

TEST_F(TabButton, ADisabledImageIsDrawnGrey) {
  wxImage red(12, 12);
  red.SetRGB(wxRect(0, 0, 12, 12), 255, 0, 0);
  auto* button = new wxTabButton(m_host, 1, wxBitmap(red), "", wxPoint(0, 0));
  pump_events();
  const wxPoint pixel(4 + 6, button->GetSize().y / 2);
  EXPECT_EQ(painted_at(button, pixel), k_red);
  button->SetDisabled(true);
  const wxColour grey = painted_at(button, pixel);
  EXPECT_EQ(grey.Red(), grey.Green());
  EXPECT_EQ(grey.Green(), grey.Blue());
}

TEST_F(TabButton, ACheckboxButtonKeepsItsWidthAndTogglesItsCheck) {
  auto* button = new wxTabButton(m_host, 1, "Option", wxPoint(0, 0), wxSize(150, 24));
  button->SetCheckboxStyle(true);
  EXPECT_EQ(button->CalculateSize().x, 150);
  button->SetLabel("A much longer option text than before");
  EXPECT_EQ(button->GetSize().x, 150);
  const orvix1_test::paint_canvas_t before = painted(button);
  button->Toggle();
  EXPECT_TRUE(button->IsSelected());
  EXPECT_FALSE(painted(button).same_as(before));
}

TEST_F(TabButton, IsMadeByNameAndCarriesATooltip) {
  wxObject* made = wxCreateDynamicObject("wxTabButton");
  ASSERT_NE(made, nullptr);
  EXPECT_TRUE(made->IsKindOf(wxCLASSINFO(wxTabButton)));
  delete made;

  wxTabButton* button = make("Document");
  button->SetTooltipText("The document you are editing");
  ASSERT_NE(button->GetCustomTooltip(), nullptr);
  EXPECT_EQ(orvix1::wxCustomTooltip::GetAssociatedTooltip(button), button->GetCustomTooltip());
  EXPECT_EQ(button->GetTooltipText(), "The document you are editing");
  button->SetTooltipText("");
  EXPECT_EQ(orvix1::wxCustomTooltip::GetAssociatedTooltip(button), nullptr);
}

}  // namespace
