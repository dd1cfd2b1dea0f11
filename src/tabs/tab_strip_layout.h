#ifndef ORVIX1_SRC_TAB_STRIP_LAYOUT_H
#define ORVIX1_SRC_TAB_STRIP_LAYOUT_H

// Where the tabs of a strip go, worked out from numbers alone: the tabs'
// preferred sizes, the separator slots, the margins, the selection and the
// flags. No window is read or moved; the strip applies the result.

#include <vector>

#include <wx/gdicmn.h>

namespace orvix1 {
namespace detail {

// The gaps between tabs.
struct tab_margins_t {
  int margin = 2;
  bool front = true;  // the margin is paid before the first tab too

  // The margin paid before shown tab k.
  int before(int k) const { return k == 0 && !front ? 0 : margin; }
};

// What a strip's layout depends on besides the sizes of its tabs and slots.
struct tab_strip_params_t {
  wxSize room;  // the width the tabs may take, and the strip's own height
  tab_margins_t margins;
  bool resizable = true;  // tabs that do not fit are left out
  bool equal_width = false;
  bool right_aligned = false;
  int min_tab_width = 0;    // decides how many equal-width tabs fit
  int equal_width_cap = 0;  // the widest an equal-width tab gets when all fit
  int max_tab_width = 0;    // no tab is wider, in either mode; 0: no cap
  int desired_height = -1;  // a floor for the row height
  int selection = -1;       // counting what fits starts here
  // The run starts here if it can: the tab last brought into view, else the
  // selection.
  int anchor = -1;
};

struct tab_strip_layout_t {
  int first_shown = 0;   // the shown tabs are a run of consecutive ones
  int shown_count = 0;
  int equal_width = -1;  // -1 when each tab has its own width
  int row_height = 0;
  std::vector<wxRect> tabs;    // per shown tab, standing on the bottom edge
  std::vector<wxPoint> slots;  // the slots placed, from slot 0 on
  // The right alignment's move, already in the positions above.
  int shift = 0;
  wxSize size;  // what the strip needs: its width and the row plus the margin
};

// The width of the slots with an image, each with the margin of its
// position: the first pays none with the front margin off, though placing
// it pays the margin after it.
int tab_slots_width(const std::vector<wxSize>& slots, const tab_margins_t& margins);

// The first of `count` consecutive tabs out of `total` that hold `anchor`,
// ending at the last tab rather than running past it; without an anchor the
// run ends at the last tab.
int tab_run_start(int anchor, int count, int total);

// A tab's width under the strip's cap.
inline int capped_tab_width(int width, const tab_strip_params_t& params) {
  return params.max_tab_width > 0 && width > params.max_tab_width ? params.max_tab_width : width;
}

// `tabs`: the preferred size of every tab, by index. `slots`: the image size
// of every separator slot, (0, 0) for an empty one.
tab_strip_layout_t layout_tab_strip(const std::vector<wxSize>& tabs,
                                    const std::vector<wxSize>& slots,
                                    const tab_strip_params_t& params);
// The same into `layout`, whose vectors keep their capacity: a strip of
// thousands of tabs lays out on every resize.
void layout_tab_strip(const std::vector<wxSize>& tabs, const std::vector<wxSize>& slots,
                      const tab_strip_params_t& params, tab_strip_layout_t& layout);

}  // namespace detail
}  // namespace orvix1

#endif
