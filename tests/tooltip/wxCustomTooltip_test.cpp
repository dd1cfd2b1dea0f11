#include "orvix1/wxCustomTooltip.h"

#include <gtk/gtk.h>

#include "accessibility/accessible.h"
#include "elements/adapter_fixture.h"
#include "orvix1/ui_settings.h"
#include "support/atk_event_log.h"
#include "support/atk_probe.h"
#include "support/dpi_scale.h"
#include "support/tab_fixture.h"

namespace {

using namespace orvix1_test;
using orvix1::wxCustomTooltip;

// A tooltip whose idea of the pointer and of the work area a test sets.
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

class CustomTooltip : public tab_frame_test_t {
 protected:
  void SetUp() override {
    tab_frame_test_t::SetUp();
    m_target = new wxWindow(m_host, wxID_ANY, wxPoint(10, 10), wxSize(100, 40));
    m_tooltip = new tooltip_probe_t;
    m_tooltip->SetText("Save the document");
    m_tooltip->Attach(m_target);
  }
  void TearDown() override {
    if (m_tooltip != nullptr) m_tooltip->Destroy();
    tab_frame_test_t::TearDown();
  }
  void enter_target() { send_mouse(m_target, wxEVT_ENTER_WINDOW, wxPoint(1, 1)); }
  int palette_delay() const {
    return orvix1::ui_settings_t::get()->get_metric(orvix1::metric_tooltip_delay);
  }
  // Holds the settings the tooltips read their metrics, font and colours from.
  talvar2::intrusive_pointer_t<orvix1::ui_settings_configure_t> m_settings =
      orvix1::ui_settings_configure_t::get();
  wxWindow* m_target = nullptr;
  tooltip_probe_t* m_tooltip = nullptr;
};

TEST_F(CustomTooltip, ShowAndHideDelaysFromThePaletteOrZeroAndLaterHoversAreFaster) {
  EXPECT_EQ(wxCustomTooltip::GetAssociatedTooltip(m_target), m_tooltip);
  enter_target();
  EXPECT_FALSE(m_tooltip->IsShown());
  ASSERT_TRUE(m_tooltip->GetShowTimer().IsRunning());
  EXPECT_EQ(m_tooltip->GetShowTimer().GetInterval(), palette_delay());

  m_tooltip->GetShowTimer().Notify();  // the delay has passed
  EXPECT_TRUE(m_tooltip->IsShown());
  EXPECT_EQ(m_tooltip->GetHideTimer().GetInterval(), palette_delay() * 10);
  send_mouse(m_target, wxEVT_LEAVE_WINDOW, wxPoint(-1, -1));
  EXPECT_FALSE(m_tooltip->IsShown());
  enter_target();
  EXPECT_EQ(m_tooltip->GetShowTimer().GetInterval(), palette_delay() / 5);
  send_mouse(m_target, wxEVT_LEAVE_WINDOW, wxPoint(-1, -1));

  // Zero show delay pops up at once, zero hide delay never shows.
  m_tooltip->SetShowDelay(0);
  enter_target();
  EXPECT_TRUE(m_tooltip->IsShown());
  m_tooltip->GetHideTimer().Notify();
  EXPECT_FALSE(m_tooltip->IsShown());

  m_tooltip->SetHideDelay(0);
  enter_target();
  EXPECT_FALSE(m_tooltip->IsShown());
  m_tooltip->SetHideDelay(-1);
  m_tooltip->SetText("");  // nor does an empty text
  enter_target();
  EXPECT_FALSE(m_tooltip->IsShown());
}

TEST_F(CustomTooltip, SizedToItsTextPlacedBesideThePointerInsideTheWorkArea) {
  const wxSize s = m_tooltip->CalculateSize();
  m_tooltip->SetPositionOffset(wxPoint(4, 12));
  const wxRect area(2000, 40, 900, 700);  // a second monitor; right 2899, bottom 739
  const struct {
    wxRect work_area;  // empty: the real one
    wxPoint mouse, expected;
    wxPoint custom = wxPoint(0, 0);  // stands in for the pointer unless (0, 0)
  } cases[] = {
      {wxRect(), {200, 300}, {204, 312}},
      {area, {2897, 300}, {2899 - 4 - s.x, 312}},   // pushed left, not flipped
      {area, {2100, 737}, {2104, 737 - 12 - s.y}},  // flipped above the pointer
      {wxRect(2000, 40, 50, 10), {2045, 45}, {2000, 40}},  // never past the top-left
      {wxRect(), {200, 300}, {24, 42}, {20, 30}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << "pointer " << c.mouse.x << "," << c.mouse.y);
    m_tooltip->work_area = c.work_area;
    m_tooltip->mouse = c.mouse;
    m_tooltip->SetCustomPosition(c.custom);
    m_tooltip->UpdateSizeAndPosition();
    EXPECT_EQ(m_tooltip->GetRect(), wxRect(c.expected, s));
  }
}

// Margins (3, 3, 2, 2 at 96 dpi) and the frame's border grow with the scale
// of the screen the tooltip is made on.
TEST_F(CustomTooltip, MarginsAndBorderGrowWithTheScale) {
  // The fixture's tooltip, made at 96 dpi: the text, 5 + 5 of margins and 1 + 1 of border.
  const wxSize text = m_tooltip->CalculateSize() - wxSize(7, 7);
  const scoped_DPI_scale_t scale(2.0);
  auto* tooltip = new wxCustomTooltip;
  tooltip->SetText("Save the document");
  const wxSize plain = tooltip->CalculateSize();
  tooltip->SetMargin(orvix1::elements::margin_t());
  EXPECT_EQ(plain - tooltip->CalculateSize(), wxSize(6 + 4, 6 + 4));  // left, top 6; right, bottom 4
  EXPECT_EQ(tooltip->CalculateSize(), text + wxSize(4, 4));
  tooltip->Destroy();
}

// The pointer is tested against the target's position and size as the
// target reports them (its parent's coordinates), not against where it is
// on screen: a click on a tooltip over its own target on screen reaches it.
TEST_F(CustomTooltip, ClicksOnTheTooltipReachTheTargetUnlessThePointerIsInItsReportedRect) {
  auto* inset = new wxPanel(m_host, wxID_ANY, wxPoint(300, 100), wxSize(200, 100));
  m_target->Reparent(inset);
  m_target->Move(10, 10);
  const wxRect reported(m_target->GetPosition(), m_target->GetSize());
  const wxPoint on_target_on_screen = m_target->GetScreenPosition() + wxPoint(5, 5);
  ASSERT_FALSE(reported.Contains(on_target_on_screen));
  const struct {
    wxPoint pointer;
    bool reaches_target;
  } cases[] = {
      {on_target_on_screen, true},
      {m_target->GetScreenPosition() + wxPoint(150, 20), true},  // beside the target
      {reported.GetPosition() + wxPoint(5, 5), false},             // inside the reported rect
  };
  wxPoint clicked_at;
  m_target->Bind(wxEVT_LEFT_DOWN, [&](wxMouseEvent& event) { clicked_at = event.GetPosition(); });
  m_tooltip->SetShowDelay(0);
  for (const auto& c : cases) {
    clicked_at = wxPoint(-1, -1);
    m_tooltip->mouse = c.pointer;
    enter_target();
    ASSERT_TRUE(m_tooltip->IsShown());
    send_mouse(m_tooltip, wxEVT_LEFT_DOWN, wxPoint(3, 4));
    EXPECT_EQ(m_tooltip->IsShown(), !c.reaches_target);
    const wxPoint forwarded = m_target->ScreenToClient(m_tooltip->ClientToScreen(wxPoint(3, 4)));
    EXPECT_EQ(clicked_at, c.reaches_target ? forwarded : wxPoint(-1, -1));
    m_tooltip->DoHideTooltip();
  }
}

TEST_F(CustomTooltip, OneTooltipPerTargetForgottenWithItsTargetAndReportedWhenDestroyed) {
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
  EXPECT_TRUE(wxCustomTooltip::IsTooltipsMapEmpty());
}

// A tool tip named by its text describes its target while attached, unless
// the host gave the target a description of its own.
TEST_F(CustomTooltip, IsAToolTipNamedByItsTextThatDescribesItsTargetWhileAttached) {
  m_tooltip->Detach(m_target);
  AtkObject* tip = gtk_widget_get_accessible(m_tooltip->GetHandle());
  AtkObject* target = orvix1::accessibility::accessible_of(m_target);
  EXPECT_EQ(atk_object_get_role(tip), ATK_ROLE_TOOL_TIP);
  EXPECT_EQ(name_of(tip), "Save the document");
  EXPECT_EQ(description_of(target), "");
  atk_event_log_t log;
  log.watch(tip, "tip");
  log.watch(target, "target");
  m_tooltip->Attach(m_target);
  m_tooltip->SetText("Save all documents");
  m_tooltip->Detach(m_target);
  EXPECT_EQ(log.take(), (std::vector<std::string>{"target description=Save the document", "tip name=Save all documents",
                                                  "target description=Save all documents", "target description="}));
  atk_object_set_description(target, "Stores the file");
  m_tooltip->Attach(m_target);
  m_tooltip->SetText("Save the file");
  EXPECT_EQ(description_of(target), "Stores the file");
  m_tooltip->Detach(m_target);
  EXPECT_EQ(description_of(target), "Stores the file");
}

// Element tooltips end to end, through a real holder and adapter.
class ElementTooltip : public adapter_fixture_t {
 protected:
  void SetUp() override {
    adapter_fixture_t::SetUp();
    left = add(root, wxSize(60, 100), "left");
    right = add(root, wxSize(60, 100), "right");
    paint();
  }
  recording_ptr_t left;
  recording_ptr_t right;
};

TEST_F(ElementTooltip, ShownOnTheHolderWhileThePointerIsOverItsElementAndForgottenWhenDestroyed) {
  wxCustomTooltip* tooltip = left->GetTooltip();
  ASSERT_NE(tooltip, nullptr);
  tooltip->SetText("left element");

  send_mouse(wxEVT_MOTION, 10, 10);
  EXPECT_EQ(wxCustomTooltip::GetAssociatedTooltip(holder), tooltip);
  EXPECT_TRUE(tooltip->IsShown());
  // The text describes the element, not the holder of every element.
  EXPECT_EQ(description_of(orvix1::accessibility::accessible_of(holder)), "");

  send_mouse(wxEVT_MOTION, 70, 10);  // onto the sibling, which has none
  EXPECT_FALSE(tooltip->IsShown());
  EXPECT_EQ(wxCustomTooltip::GetAssociatedTooltip(holder), nullptr);

  wxCustomTooltip* other = right->GetTooltip();
  other->SetText("right element");
  send_mouse(wxEVT_MOTION, 10, 10);
  send_mouse(wxEVT_MOTION, 70, 10);  // from one tooltip straight to another
  EXPECT_FALSE(tooltip->IsShown());
  EXPECT_TRUE(other->IsShown());
  EXPECT_EQ(wxCustomTooltip::GetAssociatedTooltip(holder), other);

  other->Destroy();  // a destroyed tooltip is forgotten
  pump_events();
  EXPECT_EQ(right->GetExistingTooltip(), nullptr);
  EXPECT_EQ(wxCustomTooltip::GetAssociatedTooltip(holder), nullptr);
  send_mouse(wxEVT_MOTION, 10, 10);  // leaving asks for nothing that is gone
  left->Destroy();  // an element that goes takes its tooltip along
  EXPECT_EQ(left->GetExistingTooltip(), nullptr);
}

}  // namespace
