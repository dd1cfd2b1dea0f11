#include "orvix1/wxTabButton.h"

#include <memory>

#include "orvix1/text_utils.h"
#include "orvix1/wxCustomTooltip.h"
#include "support/dpi_scale.h"
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
  EXPECT_EQ(button->GetSize(), wxSize(8, text_height + 6));  // crossed: the scale table
  EXPECT_EQ(button->DoCalculateSize(wxBitmap(20, 30), "").y, 36);
}

TEST_F(TabButton, ReleasingOnTheCrossEdgeIsAPlainClickAndLeavingOrDisabledRaisesNothing) {
  wxTabButton* button = make("Document", true);
  middle_click(button, wxPoint(3, 3));  // anywhere on a closable tab
  EXPECT_EQ(m_deleted.values, std::vector<int>{7});
  const wxPoint inside = cross_inside(button);
  click(button, inside, wxPoint(button->CalculateCrossRect().x, inside.y));  // the release decides
  EXPECT_EQ(m_clicked.values, std::vector<int>{7});
  const wxRect rect(10, 20, 9, 10);  // strict on the far edges too
  EXPECT_FALSE(orvix1::PointInRect(19, 25, rect) || orvix1::PointInRect(15, 30, rect));

  // A release after leaving raises nothing, nor does anything on a disabled button.
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
  EXPECT_EQ(m_clicked.values.size(), 1u);
  EXPECT_EQ(m_deleted.values.size(), 1u);
}

TEST_F(TabButton, AHandlerMayDestroyTheButtonItClosesWith) {
  struct destroyer_t : talvar2::subscriber_base_t {
    wxTabButton* button = nullptr;
    void on_delete(int) {
      button->Destroy();
      button = nullptr;
    }
  } destroyer;
  destroyer.button = make("Document", true);
  destroyer.button->delete_requested().connect(&destroyer, &destroyer_t::on_delete);
  click(destroyer.button, cross_inside(destroyer.button));
  EXPECT_EQ(destroyer.button, nullptr);
  EXPECT_TRUE(m_host->GetChildren().empty());
}

TEST_F(TabButton, ColoursFollowTheStyleUnlessSetAndEachStatePaintsItsOwn) {
  wxTabButton* button = make("Document");
  button->SetColor(wxTabButton::bg_pressed, k_green);
  auto* style = new wxTabButton::default_style_t;
  style->lock_color("clBtnBgNormal", k_red);
  style->lock_color("clBtnBgPressed", k_blue);
  button->SetUiStyle(style);
  EXPECT_EQ(button->GetColor(wxTabButton::bg_pressed), k_green);
  const wxPoint inside(2, 2);  // inside the border
  // The pointer of the shared display may rest where the button appeared.
  send_mouse(button, wxEVT_LEAVE_WINDOW, wxPoint(-1, -1));
  EXPECT_EQ(painted(button).at(inside), k_red);
  send_mouse(button, wxEVT_ENTER_WINDOW, inside);
  // The hover colour, unset, lies between the normal and pressed ones.
  EXPECT_EQ(painted(button).at(inside), wxColour(127, 127, 0));
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
  EXPECT_EQ(button->GetSize().x, plain_width + 12);
  send_mouse(button->GetAnimationCtrl(), wxEVT_LEFT_DOWN, wxPoint(2, 2));
  EXPECT_TRUE(button->IsLeftPressed());
  send_mouse(button->GetAnimationCtrl(), wxEVT_LEFT_UP, wxPoint(2, 2));
  EXPECT_EQ(m_clicked.values, std::vector<int>{7});
}

TEST_F(TabButton, ADisabledImageIsDrawnGreyTheClassIsMadeByNameAndCarriesATooltip) {
  wxImage red(12, 12);
  red.SetRGB(wxRect(0, 0, 12, 12), 255, 0, 0);
  auto* button = new wxTabButton(m_host, 1, wxBitmap(red), "", wxPoint(0, 0));
  const wxPoint pixel(4 + 6, button->GetSize().y / 2);
  EXPECT_EQ(painted(button).at(pixel), k_red);
  button->SetDisabled(true);
  const wxColour grey = painted(button).at(pixel);
  EXPECT_TRUE(grey.Red() == grey.Green() && grey.Green() == grey.Blue()) << grey.GetAsString();
  std::unique_ptr<wxObject> made(wxCreateDynamicObject("wxTabButton"));
  EXPECT_TRUE(made && made->IsKindOf(wxCLASSINFO(wxTabButton)));
  button->SetTooltipText("Red");
  EXPECT_EQ(orvix1::wxCustomTooltip::GetAssociatedTooltip(button), button->GetCustomTooltip());
}

}  // namespace

namespace {

// The resting cross stands out on light and dark tabs alike.
TEST_F(TabButton, TheCrossReadsOnLightAndDarkTabs) {
  wxTabButton* button = make("Report", true);
  for (const wxColour& background : {wxColour(250, 250, 250), wxColour(30, 31, 34)}) {
    button->SetColor(wxTabButton::bg_normal, background);
    const paint_canvas_t canvas = painted(button);
    EXPECT_GE(canvas.standing_out(button->CalculateCrossRect(), background, 0.4), 12)
        << background.GetAsString();
  }
}

// Paddings, gaps, the cross and its hit area grow with the scale, and so
// does the check box; a picture counts with its logical size (a sharp one
// for GDK_SCALE=2 has twice the pixels and scale factor 2).
TEST_F(TabButton, PaddingsCrossAndCheckBoxGrowWithTheScale) {
  const wxSize native = orvix1::GetNativeCheckBoxSize(m_host);
  wxImage blue(32, 32);
  blue.SetRGB(wxRect(0, 0, 32, 32), 0, 0, 255);
  const wxBitmap sharp(blue, wxBITMAP_SCREEN_DEPTH, 2.0);
  const struct {
    double scale;
    int padding_x, padding_y, gap;
    wxSize cross, checkbox;
  } cases[] = {{1.0, 4, 3, 4, {9, 10}, native},
               {1.5, 6, 4, 6, {13, 15}, native * 3 / 2},
               {2.0, 8, 6, 8, {18, 20}, native * 2}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.scale);
    const scoped_DPI_scale_t scale(c.scale);
    wxTabButton* button = make("", true);
    const int text_height = orvix1::GetTextSize(button, "", button->GetFont()).y;
    EXPECT_EQ(button->GetSize(),
              wxSize(2 * c.padding_x + c.cross.x + c.gap, text_height + 2 * c.padding_y));
    EXPECT_EQ(button->DoCalculateSize(sharp, "").x, 2 * c.padding_x + 16 + c.cross.x + c.gap);

    button->SetSize(wxSize(100, 40));
    const wxRect cross = button->CalculateCrossRect();
    EXPECT_EQ(cross,
              wxRect(100 - c.padding_x - c.cross.x, (40 - c.cross.y) / 2, c.cross.x, c.cross.y));
    click(button, cross.GetBottomRight());  // inside only when the hit area grew with the cross
    click(button, wxPoint(cross.x, cross.y + cross.height / 2));  // the edge: a plain click
    EXPECT_EQ(m_deleted.values.size(), 1u);
    EXPECT_EQ(m_clicked.values.size(), 1u);

    button->SetBitmap(sharp);
    const int middle = button->GetSize().y / 2;
    const paint_canvas_t with_picture = painted(button);
    EXPECT_EQ(with_picture.at(c.padding_x, middle), k_blue);
    EXPECT_EQ(with_picture.at(c.padding_x + 15, middle), k_blue);
    EXPECT_NE(with_picture.at(c.padding_x + 16, middle), k_blue);
    button->SetCheckboxStyle(true);
    EXPECT_EQ(button->GetCheckboxSize(), c.checkbox);
    button->Destroy();
    m_deleted.values.clear();
    m_clicked.values.clear();
  }
}

}  // namespace
