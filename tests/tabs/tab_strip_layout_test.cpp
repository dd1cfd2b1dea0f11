#include "tabs/tab_strip_layout.h"

#include <functional>

#include <gtest/gtest.h>

namespace {

using orvix1::detail::layout_tab_strip;
using orvix1::detail::tab_strip_layout_t;
using orvix1::detail::tab_strip_params_t;

// Tabs 20 pixels high, in a strip 30 high with margins of 2.
std::vector<wxSize> tabs_of(std::initializer_list<int> widths) {
  std::vector<wxSize> tabs;
  for (int width : widths) tabs.emplace_back(width, 20);
  return tabs;
}

struct row_t {
  const char* rule;
  std::vector<wxSize> tabs;
  std::vector<wxSize> slots;
  std::function<void(tab_strip_params_t&)> set;
  int first, count, equal_width;
  std::vector<int> xs;
  std::vector<wxPoint> slots_at;
  wxSize size;
};

const std::vector<row_t> k_rows = {
    {"variable widths all shown when not resizable", tabs_of({50, 30, 40}), {},
     [](tab_strip_params_t& p) { p.room.x = 100; p.resizable = false; },
     0, 3, -1, {2, 54, 86}, {}, {128, 22}},
    {"what fits counts from the selection, the run starts at it", tabs_of({50, 30, 40, 60}), {},
     [](tab_strip_params_t& p) { p.room.x = 100; p.selection = p.anchor = 1; },
     1, 2, -1, {2, 34}, {}, {76, 22}},
    {"the run ends at the last tab when too few follow the selection",
     tabs_of({50, 30, 40, 60}), {},
     [](tab_strip_params_t& p) { p.room.x = 150; p.selection = p.anchor = 3; },
     1, 3, -1, {2, 34, 76}, {}, {138, 22}},
    {"without a selection the run ends at the last tab", tabs_of({50, 30, 40, 60}), {},
     [](tab_strip_params_t& p) { p.room.x = 110; },
     2, 2, -1, {2, 44}, {}, {106, 22}},
    {"the margin after the last tab that fits must fit too", tabs_of({50, 30}), {},
     [](tab_strip_params_t& p) { p.room.x = 85; }, 1, 1, -1, {2}, {}, {34, 22}},
    {"a tab brought into view anchors the run", tabs_of({50, 30, 40, 60}), {},
     [](tab_strip_params_t& p) { p.room.x = 110; p.selection = 3; p.anchor = 0; },
     0, 2, -1, {2, 54}, {}, {86, 22}},
    {"equal widths: as many as the minimum lets fit share the room",
     tabs_of({50, 30, 40, 60, 20}), {},
     [](tab_strip_params_t& p) { p.room.x = 140; p.equal_width = true; p.min_tab_width = 40; },
     2, 3, 44, {2, 48, 94}, {}, {140, 22}},
    {"equal widths: with room for all, the cap", tabs_of({50, 30}), {},
     [](tab_strip_params_t& p) {
       p.room.x = 400; p.equal_width = true; p.min_tab_width = 40; p.equal_width_cap = 35;
     },
     0, 2, 35, {2, 39}, {}, {76, 22}},
    {"equal widths: room for none", tabs_of({50, 30}), {},
     [](tab_strip_params_t& p) { p.room.x = 40; p.equal_width = true; p.min_tab_width = 40; },
     0, 0, -1, {}, {}, {2, 2}},
    {"equal widths with the front margin off pay the margin before slots", tabs_of({50, 30, 40}),
     {{5, 8}},
     [](tab_strip_params_t& p) {
       p.room.x = 130; p.equal_width = true; p.margins.front = false; p.min_tab_width = 40;
     },
     1, 2, 59, {7, 68}, {{0, 11}}, {129, 22}},
    {"no room hides every tab of a resizable strip", tabs_of({50}), {},
     [](tab_strip_params_t& p) { p.room.x = 0; }, 0, 0, -1, {}, {}, {2, 2}},
    {"slot k before tab k, even an empty one, the last slot behind the run",
     tabs_of({50, 30}), {{5, 8}, {0, 0}, {3, 6}},
     [](tab_strip_params_t& p) { p.room.x = 400; },
     0, 2, -1, {9, 63}, {{2, 11}, {61, 15}, {95, 12}}, {100, 22}},
    {"a slot behind the run only when it is the strip's last", tabs_of({50, 30}),
     {{5, 8}, {0, 0}, {3, 6}, {3, 6}},
     [](tab_strip_params_t& p) { p.room.x = 400; },
     0, 2, -1, {9, 63}, {{2, 11}, {61, 15}}, {95, 22}},
    {"an empty last slot is not placed behind the run", tabs_of({50}), {{5, 8}, {0, 0}},
     [](tab_strip_params_t& p) { p.room.x = 400; }, 0, 1, -1, {9}, {{2, 11}}, {61, 22}},
    {"front margin off: the first slot still pays the margin after it", tabs_of({50, 30}),
     {{5, 8}},
     [](tab_strip_params_t& p) { p.room.x = 400; p.margins.front = false; },
     0, 2, -1, {7, 59}, {{0, 11}}, {91, 22}},
    {"slots count in what fits", tabs_of({50, 30}), {{5, 8}, {9, 8}},
     [](tab_strip_params_t& p) { p.room.x = 100; },
     1, 1, -1, {9}, {{2, 11}, {41, 11}}, {52, 22}},
    {"the width cap narrows the tabs over it, so more fit", tabs_of({50, 30, 40}), {},
     [](tab_strip_params_t& p) { p.room.x = 110; p.max_tab_width = 35; },
     0, 3, -1, {2, 39, 71}, {}, {108, 22}},
    {"equal widths: the width cap below the share", tabs_of({50, 30}), {},
     [](tab_strip_params_t& p) {
       p.room.x = 400; p.equal_width = true; p.min_tab_width = 40; p.equal_width_cap = 60;
       p.max_tab_width = 25;
     },
     0, 2, 25, {2, 29}, {}, {56, 22}},
    {"no tabs: every slot in turn, then one margin", {}, {{5, 8}, {3, 6}},
     [](tab_strip_params_t& p) { p.room.x = 200; },
     0, 0, -1, {}, {{0, 11}, {7, 12}}, {14, 2}},
};

TEST(TabStripLayout, EachRule) {
  for (const row_t& row : k_rows) {
    SCOPED_TRACE(row.rule);
    tab_strip_params_t params;
    params.room = wxSize(0, 30);
    row.set(params);
    const tab_strip_layout_t layout = layout_tab_strip(row.tabs, row.slots, params);
    EXPECT_EQ(layout.first_shown, row.first);
    EXPECT_EQ(layout.shown_count, row.count);
    EXPECT_EQ(layout.equal_width, row.equal_width);
    std::vector<int> xs;
    for (const wxRect& tab : layout.tabs) xs.push_back(tab.x);
    EXPECT_EQ(xs, row.xs);
    for (size_t k = 0; k < layout.tabs.size() && row.count > 0; ++k) {
      const int own = orvix1::detail::capped_tab_width(row.tabs[row.first + k].x, params);
      EXPECT_EQ(layout.tabs[k].width, row.equal_width >= 0 ? row.equal_width : own) << k;
    }
    EXPECT_EQ(layout.slots, row.slots_at);
    EXPECT_EQ(layout.size, row.size);
  }
}

// The row is as high as the tallest shown tab, or the desired height; each
// tab keeps its own height and stands on the strip's bottom edge.
TEST(TabStripLayout, TabsStandOnTheBottomEdgeAndRightAlignmentShiftsThem) {
  tab_strip_params_t params;
  params.room = wxSize(100, 40);  // the tall third tab does not fit
  params.desired_height = 24;
  params.right_aligned = true;
  params.selection = params.anchor = 0;
  const std::vector<wxSize> tabs = {{50, 20}, {30, 26}, {40, 60}};
  tab_strip_layout_t layout = layout_tab_strip(tabs, {{4, 10}}, params);
  EXPECT_EQ(layout.row_height, 26);
  EXPECT_EQ(layout.size, wxSize(2 + 4 + 2 + 50 + 2 + 30 + 2, 28));
  EXPECT_EQ(layout.shift, 100 - layout.size.x);
  EXPECT_EQ(layout.tabs[0], wxRect(8 + layout.shift, 16, 50, 24));
  EXPECT_EQ(layout.tabs[1], wxRect(60 + layout.shift, 14, 30, 26));
  EXPECT_EQ(layout.slots[0], wxPoint(2 + layout.shift, 15));
  // Laid out again into the same buffers: nothing of the first layout stays.
  params.right_aligned = false;
  layout_tab_strip({}, {}, params, layout);
  EXPECT_EQ(layout.shown_count, 0);
  EXPECT_EQ(layout.size, wxSize(2, 24 + 2));  // the desired height without a tab
  EXPECT_TRUE(layout.tabs.empty() && layout.slots.empty());
  EXPECT_EQ(layout.shift, 0);
}

TEST(TabStripLayout, RunStartAndSlotWidths) {
  using orvix1::detail::tab_run_start;
  EXPECT_EQ(tab_run_start(-1, 3, 10), 7);
  EXPECT_EQ(tab_run_start(2, 3, 10), 2);
  EXPECT_EQ(tab_run_start(9, 3, 10), 7);
  orvix1::detail::tab_margins_t margins;
  margins.front = false;
  EXPECT_EQ(orvix1::detail::tab_slots_width({{5, 8}, {0, 0}, {3, 6}}, margins), 5 + 3 + 2);
}

}  // namespace
