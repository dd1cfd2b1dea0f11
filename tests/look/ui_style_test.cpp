#include "orvix1/ui_style.h"

#include <gtest/gtest.h>

#include "orvix1/styled.h"
#include "orvix1/ui_resources.h"
#include "support/wx_test_environment.h"

namespace {

using namespace orvix1;

class panel_style_t : public ui_style_t {
 public:
  panel_style_t() { set_style_info(); }
  void set_style_info() override {
    internal_set_color("clBg", m_settings->get_color(color_window_bg));
    internal_set_color("clText", m_settings->get_color(color_window_text));
  }
};

class styled_widget_t : public StyledBase {
 public:
  void on_style_updated() override {
    ++updates;
    if (auto style = GetUiStyle()) seen_background = style->get_color("clBg");
  }
  int updates = 0;
  wxColour seen_background;
};

class probe_settings_t : public ui_settings_configure_t {
 public:
  void make_stale(default_colors_t index, const wxColour& colour) { m_colors[index].value = colour; }
};

const wxColour k_stale(1, 2, 3);

class UiStyle : public ::testing::Test {
 protected:
  talvar2::intrusive_pointer_t<probe_settings_t> m_settings{new probe_settings_t};
};

TEST_F(UiStyle, ADesktopColourChangeReachesStylesAndWidgets) {
  talvar2::intrusive_pointer_t<panel_style_t> style(new panel_style_t);
  styled_widget_t widget;
  widget.SetUiStyle(style);
  EXPECT_EQ(widget.updates, 1);

  // As if the desktop had changed since the palette and the style were filled.
  m_settings->make_stale(color_window_bg, k_stale);
  style->set_style_info();
  EXPECT_EQ(style->get_color("clBg"), k_stale);

  wxSysColourChangedEvent event;
  m_settings->get_colors_monitor()->GetEventHandler()->ProcessEvent(event);
  const wxColour desktop = wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOW);
  EXPECT_EQ(style->get_color("clBg"), desktop);
  EXPECT_EQ(widget.updates, 2);
  EXPECT_EQ(widget.seen_background, desktop);

  // Locked entries survive refills.
  style->lock_color("clBg", k_stale);
  style->on_ui_settings_updated();
  EXPECT_EQ(style->get_color("clBg"), k_stale);
  EXPECT_EQ(style->get_color("clText"), wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOWTEXT));
}

// The same style set twice: one connection, no second refresh.
TEST_F(UiStyle, SameStyleTwiceConnectsOnceAndChangingStylesOrDyingMovesTheConnection) {
  talvar2::intrusive_pointer_t<panel_style_t> first(new panel_style_t);
  talvar2::intrusive_pointer_t<panel_style_t> second(new panel_style_t);
  {
    styled_widget_t widget;
    widget.SetUiStyle(first);
    widget.SetUiStyle(first);
    EXPECT_EQ(widget.updates, 1);
    EXPECT_EQ(first->updated().connection_count(), 1u);
    widget.SetUiStyle(second);
    EXPECT_EQ(widget.updates, 2);
    EXPECT_EQ(first->updated().connection_count(), 0u);
    EXPECT_EQ(first->ref_count(), 1u);  // the widget let go of it
    second->on_ui_settings_updated();
    EXPECT_EQ(widget.updates, 3);
    widget.SetUiStyle(nullptr);
    EXPECT_EQ(widget.updates, 4);
    EXPECT_EQ(second->updated().connection_count(), 0u);
    widget.SetUiStyle(second);
  }
  // The widget died: its style stays usable.
  EXPECT_EQ(second->ref_count(), 1u);
  EXPECT_EQ(second->updated().connection_count(), 0u);
}

TEST_F(UiStyle, ResourceStyleAsksTheRegistryUnderItsPrefix) {
  talvar2::intrusive_pointer_t<resource_style_t> style(new resource_style_t("panel"));
  ui_resources_t::get()->set_color("panel.clBg", *wxCYAN);
  EXPECT_EQ(style->get_color("clBg"), *wxCYAN);
  EXPECT_FALSE(style->get_color("clText").IsOk());
  ui_resources_t::get()->clear();
}

}  // namespace
