#include "orvix1/wxCustomTooltip.h"

#include <gtest/gtest.h>
#include <wx/display.h>
#include <wx/frame.h>
#include <wx/panel.h>

#include "orvix1/ui_settings.h"
#include "support/wx_test_environment.h"

namespace {

using orvix1::wxCustomTooltip;
using orvix1_test::pump_events;
using orvix1_test::take_asserts;

// A tooltip whose idea of the pointer a test sets.
class tooltip_probe_t : public wxCustomTooltip {
 public:
  wxPoint mouse{100, 100};
  wxRect work_area;  // empty: the real one

 protected:
  wxPoint GetMouseScreenPosition() const override { return mouse; }
  wxRect GetWorkArea(const wxPoint& pointer) const override {
    return work_area.IsEmpty() ? wxCustomTooltip::GetWorkArea(pointer) : work_area;
  }
};

class CustomTooltip : public ::testing::Test {
 protected:
  void SetUp() override {
    take_asserts();
    m_frame = new wxFrame(nullptr, wxID_ANY, "target", wxPoint(50, 50), wxSize(300, 200));
    auto* panel = new wxPanel(m_frame);
    m_target = new wxWindow(panel, wxID_ANY, wxPoint(10, 10), wxSize(100, 40));
    m_frame->Show();
    pump_events();
    m_tooltip = new tooltip_probe_t;
    m_tooltip->SetText("Save the document");
    m_tooltip->Attach(m_target);
  }
  void TearDown() override {
    if (m_tooltip != nullptr) m_tooltip->Destroy();
    m_frame->Destroy();
    pump_events();
  }

  void enter_target(wxEventType type = wxEVT_ENTER_WINDOW) {
    wxMouseEvent event(type);
    event.SetEventObject(m_target);
    m_target->GetEventHandler()->ProcessEvent(event);
  }
  void leave_target() { enter_target(wxEVT_LEAVE_WINDOW); }
  int palette_delay() const {
    return orvix1::ui_settings_t::get()->get_metric(orvix1::metric_tooltip_delay);
  }

  talvar2::intrusive_pointer_t<orvix1::ui_settings_configure_t> m_settings =
      orvix1::ui_settings_configure_t::get();
  wxFrame* m_frame = nullptr;
  wxWindow* m_target = nullptr;
  tooltip_probe_t* m_tooltip = nullptr;
};

TEST_F(CustomTooltip, ShowDelaysComeFromThePaletteAndLaterHoversAreFaster) {
  EXPECT_EQ(wxCustomTooltip::GetAssociatedTooltip(m_target), m_tooltip);
  enter_target();
  EXPECT_FALSE(m_tooltip->IsShown());
  ASSERT_TRUE(m_tooltip->GetShowTimer().IsRunning());
  EXPECT_EQ(m_tooltip->GetShowTimer().GetInterval(), palette_delay());

  m_tooltip->GetShowTimer().Notify();  // the delay has passed
  EXPECT_TRUE(m_tooltip->IsShown());
  EXPECT_FALSE(m_tooltip->IsFirstShow());
  EXPECT_EQ(m_tooltip->GetHideTimer().GetInterval(), palette_delay() * 10);

  leave_target();
  EXPECT_FALSE(m_tooltip->IsShown());
  enter_target();
  EXPECT_EQ(m_tooltip->GetShowTimer().GetInterval(), palette_delay() / 5);
}

TEST_F(CustomTooltip, ZeroShowDelayPopsUpAtOnceAndZeroHideDelayNeverShows) {
  m_tooltip->SetShowDelay(0);
  enter_target();
  EXPECT_TRUE(m_tooltip->IsShown());
  m_tooltip->GetHideTimer().Notify();
  EXPECT_FALSE(m_tooltip->IsShown());

  m_tooltip->SetHideDelay(0);
  enter_target();
  EXPECT_FALSE(m_tooltip->IsShown());

  m_tooltip->SetHideDelay(-1);
  m_tooltip->SetText("");
  enter_target();
  EXPECT_FALSE(m_tooltip->IsShown());
}

TEST_F(CustomTooltip, HidingTheTargetHidesTheTooltip) {
  m_tooltip->SetShowDelay(0);
  enter_target();
  ASSERT_TRUE(m_tooltip->IsShown());
  m_target->Hide();
  EXPECT_FALSE(m_tooltip->IsShown());
}

TEST_F(CustomTooltip, PlacedBesideThePointerInsideTheWorkArea) {
  const wxRect area = wxDisplay(0u).GetClientArea();
  m_tooltip->SetPositionOffset(wxPoint(4, 12));
  const wxSize size = m_tooltip->CalculateSize();

  m_tooltip->mouse = wxPoint(200, 300);
  m_tooltip->UpdateSizeAndPosition();
  EXPECT_EQ(m_tooltip->GetPosition(), wxPoint(204, 312));
  EXPECT_EQ(m_tooltip->GetSize(), size);

  m_tooltip->mouse = wxPoint(area.GetRight() - 2, 300);  // pushed left, not flipped
  m_tooltip->UpdateSizeAndPosition();
  EXPECT_EQ(m_tooltip->GetPosition().x, area.x + area.width - 1 - 4 - size.x);

  m_tooltip->mouse = wxPoint(200, area.GetBottom() - 2);  // flipped above the pointer
  m_tooltip->UpdateSizeAndPosition();
  EXPECT_EQ(m_tooltip->GetPosition().y, area.GetBottom() - 2 - 12 - size.y);

  m_tooltip->SetText(std::string(400, 'W'));  // wider than the screen: at its left edge
  m_tooltip->mouse = wxPoint(600, 300);
  m_tooltip->UpdateSizeAndPosition();
  EXPECT_EQ(m_tooltip->GetPosition().x, area.x);

  // A second monitor to the right, with a panel along its top: never past
  // the work area's top-left corner.
  m_tooltip->work_area = wxRect(2000, 40, 300, 20);  // narrower and lower than the tooltip
  m_tooltip->mouse = wxPoint(2290, 45);
  m_tooltip->UpdateSizeAndPosition();
  EXPECT_EQ(m_tooltip->GetPosition(), wxPoint(2000, 40));
  m_tooltip->work_area = wxRect(2000, 40, 300, 200);
  m_tooltip->SetText("short");
  m_tooltip->mouse = wxPoint(2290, 100);
  m_tooltip->UpdateSizeAndPosition();
  EXPECT_EQ(m_tooltip->GetPosition().x, 2000 + 300 - 1 - 4 - m_tooltip->GetSize().x);
  m_tooltip->work_area = wxRect();

  m_tooltip->SetCustomPosition(wxPoint(20, 30));  // stands in for the pointer
  m_tooltip->SetText("short");
  m_tooltip->UpdateSizeAndPosition();
  EXPECT_EQ(m_tooltip->GetPosition(), wxPoint(24, 42));
  m_tooltip->ResetCustomPosition();
  m_tooltip->mouse = wxPoint(200, 300);
  m_tooltip->UpdateSizeAndPosition();
  EXPECT_EQ(m_tooltip->GetPosition(), wxPoint(204, 312));
}

TEST_F(CustomTooltip, SizeIsTheTextWithMarginsAndBorder) {
  const wxSize size = m_tooltip->CalculateSize();
  wxClientDC dc(m_target);
  dc.SetFont(m_settings->get_font(orvix1::font_tooltip));
  const wxSize text = dc.GetTextExtent("Save the document");
  // Margins 3 + 2 each way and a one-pixel border on both sides.
  EXPECT_EQ(size, wxSize(text.x + 5 + 2, text.y + 5 + 2));
}

TEST_F(CustomTooltip, ClicksOnTheTooltipReachTheTarget) {
  struct click_recorder_t {
    wxPoint at{-1, -1};
    void on_click(wxMouseEvent& event) { at = event.GetPosition(); }
  } recorder;
  m_target->Bind(wxEVT_LEFT_DOWN, &click_recorder_t::on_click, &recorder);
  m_tooltip->SetShowDelay(0);
  m_tooltip->mouse = m_target->GetScreenPosition() + wxPoint(150, 20);  // outside the target
  enter_target();
  ASSERT_TRUE(m_tooltip->IsShown());

  wxMouseEvent click(wxEVT_LEFT_DOWN);
  click.SetPosition(wxPoint(3, 4));
  click.SetEventObject(m_tooltip);
  m_tooltip->GetEventHandler()->ProcessEvent(click);
  EXPECT_FALSE(m_tooltip->IsShown());
  const wxPoint expected = m_target->ScreenToClient(m_tooltip->ClientToScreen(wxPoint(3, 4)));
  EXPECT_EQ(recorder.at, expected);
}

TEST_F(CustomTooltip, TargetsAreOneTooltipEachAndForgottenWhenDestroyed) {
  auto* second = new wxCustomTooltip;
  second->Attach(m_target);  // the target has one already
  second->Attach(nullptr);
  const auto asserts = take_asserts();
  ASSERT_EQ(asserts.size(), 2u);
  EXPECT_EQ(asserts[0].condition, "m_active_tooltips.find(target) == m_active_tooltips.end()");
  EXPECT_EQ(asserts[1].condition, "target != 0 && m_owner == 0");
  second->Destroy();

  m_target->Destroy();
  pump_events();
  EXPECT_EQ(wxCustomTooltip::GetAssociatedTooltip(m_target), nullptr);
  EXPECT_EQ(m_tooltip->GetTarget(), nullptr);
  EXPECT_FALSE(m_tooltip->AcceptsFocus());
}

TEST_F(CustomTooltip, DestroyingATooltipTellsItsListeners) {
  struct listener_t : talvar2::subscriber_base_t {
    wxCustomTooltip* gone = nullptr;
    void on_destroyed(wxCustomTooltip* tooltip) { gone = tooltip; }
  } listener;
  wxCustomTooltip::GetDestroyedSignal().connect(&listener, &listener_t::on_destroyed);
  wxCustomTooltip* tooltip = m_tooltip;
  m_tooltip->Destroy();
  m_tooltip = nullptr;
  pump_events();
  EXPECT_EQ(listener.gone, tooltip);
  EXPECT_TRUE(wxCustomTooltip::IsTooltipsMapEmpty());
}

}  // namespace
