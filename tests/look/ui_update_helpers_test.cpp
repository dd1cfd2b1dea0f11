#include "orvix1/ui_update_helpers.h"

#include <gtest/gtest.h>
#include <wx/frame.h>
#include <wx/panel.h>

#include "support/wx_test_environment.h"

namespace {

using namespace orvix1;
using orvix1_test::take_asserts;

using colours_t = std::vector<wxColour>;

// frame > outer > inner > deepest, and frame > side.
class StyleUpdater : public ::testing::Test {
 protected:
  void SetUp() override {
    for (wxWindow* window : windows()) window->SetBackgroundColour(k_untouched);
  }
  void TearDown() override {
    m_frame->Destroy();
    orvix1_test::pump_events();
  }

  std::vector<wxWindow*> windows() const { return {m_frame, m_outer, m_inner, m_deepest, m_side}; }
  colours_t backgrounds() const {
    colours_t colours;
    for (wxWindow* window : windows()) colours.push_back(window->GetBackgroundColour());
    return colours;
  }
  wxColour palette(default_colors_t index) const { return m_settings->get_color(index); }

  const wxColour k_untouched{7, 7, 7};
  talvar2::intrusive_pointer_t<ui_settings_configure_t> m_settings = ui_settings_configure_t::get();
  wxFrame* m_frame = new wxFrame(nullptr, wxID_ANY, "styled");
  wxPanel* m_outer = new wxPanel(m_frame);
  wxPanel* m_inner = new wxPanel(m_outer);
  wxPanel* m_deepest = new wxPanel(m_inner);
  wxPanel* m_side = new wxPanel(m_frame);
};

TEST_F(StyleUpdater, DepthZeroStylesTheRootAndTheExceptions) {
  style_updater_t updater;
  updater.create(m_frame, style_t::create_dialog_style(), 0);
  updater.add(m_deepest, style_t(-1, color_tooltip_bg, color_tooltip_text));
  EXPECT_EQ(m_frame->GetBackgroundColour(), k_untouched);  // create() applies nothing
  updater.propagate_style();
  // The dialog style: the face colour and the normal font.
  EXPECT_EQ(backgrounds(),
            (colours_t{palette(color_face), k_untouched, k_untouched, palette(color_tooltip_bg), k_untouched}));
  EXPECT_EQ(m_frame->GetFont(), m_settings->get_font(font_normal));
  EXPECT_EQ(m_deepest->GetForegroundColour(), palette(color_tooltip_text));
}

TEST_F(StyleUpdater, DepthOneReachesDirectChildrenAndExceptionsKeepTheirStyle) {
  style_updater_t updater(m_frame, style_t::create_inplace_style(), 1);
  updater.add(m_side, style_t(-1, color_note_bg, -1));
  updater.propagate_style();
  const wxColour window_bg = palette(color_window_bg);  // the in-place style
  EXPECT_EQ(backgrounds(), (colours_t{window_bg, window_bg, k_untouched, k_untouched, palette(color_note_bg)}));
}

// Depth -1 reaches every level; palette changes reapply; destroyed windows
// drop out, the root too.
TEST_F(StyleUpdater, MinusOneReachesEveryLevelAndDestroyedWindowsDropOut) {
  style_updater_t updater(m_frame, style_t(-1, color_strip_bg, -1), -1);
  EXPECT_EQ(m_deepest->GetBackgroundColour(), palette(color_strip_bg));
  m_outer->SetBackgroundColour(k_untouched);
  m_settings->changed()();
  EXPECT_EQ(m_outer->GetBackgroundColour(), palette(color_strip_bg));

  updater.add(m_deepest, style_t(-1, color_note_bg, -1));
  updater.add(m_deepest, style_t(-1, color_tooltip_bg, -1));  // replaces, binds once
  EXPECT_TRUE(updater.is_wnd_registred(m_deepest));
  delete m_deepest;
  EXPECT_FALSE(updater.is_wnd_registred(m_deepest));
  updater.propagate_style();  // would touch freed memory if it had kept the window

  auto* root = new wxFrame(nullptr, wxID_ANY, "short-lived");
  style_updater_t orphan(root, style_t(-1, color_face, -1), -1);
  delete root;
  m_settings->changed()();
}

TEST_F(StyleUpdater, NullWindowAssertsAndIsSkipped) {
  take_asserts();
  set_font_and_colors(nullptr, style_t::create_dialog_style(), *m_settings);
  const auto asserts = take_asserts();
  ASSERT_EQ(asserts.size(), 1u);
  EXPECT_EQ(asserts[0].condition, "wnd");
  EXPECT_EQ(asserts[0].function, "set_font_and_colors");
  EXPECT_EQ(asserts[0].line, 111);
}

}  // namespace
