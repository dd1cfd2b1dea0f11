#include "tabs/tab_strip_layout.h"

#include <algorithm>

namespace orvix1 {
namespace detail {
namespace {

// The tabs shown and the width they share.
struct tab_run_t {
  int first = 0;
  int count = 0;
  int equal_width = -1;
};

// How many tabs fit, counted from the selection rightwards and then
// leftwards (from the last tab leftwards without a selection). Margins and
// slots go by position in the run, widths by tab.
int variable_count(const std::vector<wxSize>& tabs, const std::vector<wxSize>& slots,
                   const tab_strip_params_t& params) {
  const int total = static_cast<int>(tabs.size());
  const int slot_count = static_cast<int>(slots.size());
  const tab_margins_t& margins = params.margins;
  int used = 0;
  int count = 0;
  const auto fits = [&](int index) {
    const int step = capped_tab_width(tabs[index].x, params) + margins.before(count) +
                     (count < slot_count ? slots[count].x + margins.margin : 0);
    if (used + step + margins.before(count + 1) > params.room.x) return false;
    used += step;
    ++count;
    return true;
  };
  const int start = params.selection < 0 ? total : std::min(params.selection, total);
  for (int k = start; k < total; ++k)
    if (!fits(k)) return count;
  for (int k = start - 1; k >= 0; --k)
    if (!fits(k)) return count;
  return count;
}

// Equal widths: as many tabs as the minimum width lets fit; when all fit,
// the cap keeps a few tabs from stretching over a wide strip.
tab_run_t equal_width_run(int total, const std::vector<wxSize>& slots,
                          const tab_strip_params_t& params) {
  const tab_margins_t& margins = params.margins;
  const int front = !margins.front && !slots.empty() ? margins.margin : margins.before(0);
  const int available = params.room.x - front - tab_slots_width(slots, margins);
  // A cap below the minimum lets more tabs fit.
  const int min_width = capped_tab_width(std::max(params.min_tab_width, 1), params);
  const int fitting = std::max(available, 0) / (margins.margin + min_width);
  tab_run_t run;
  if (fitting == 0) return run;
  run.count = std::min(fitting, total);
  run.first = tab_run_start(params.anchor, run.count, total);
  if (fitting <= total)
    run.equal_width = available / fitting - margins.margin;
  else
    run.equal_width = std::min(available / total - margins.margin, params.equal_width_cap);
  run.equal_width = capped_tab_width(run.equal_width, params);
  return run;
}

tab_run_t choose_run(const std::vector<wxSize>& tabs, const std::vector<wxSize>& slots,
                     const tab_strip_params_t& params) {
  const int total = static_cast<int>(tabs.size());
  tab_run_t run;
  if (total == 0 || (params.room.x == 0 && params.resizable)) return run;
  if (params.equal_width) return equal_width_run(total, slots, params);
  run.count = params.resizable ? variable_count(tabs, slots, params) : total;
  run.first = tab_run_start(params.anchor, run.count, total);
  return run;
}

// Slot `slot`, when the strip has it, goes at x, centred in the strip's
// height. The margin after it is always paid, even for an empty slot or the
// first one with the front margin off: the gap belongs to the separator.
void place_slot(const std::vector<wxSize>& slots, int slot, const tab_strip_params_t& params,
                int& x, tab_strip_layout_t& layout) {
  if (slot >= static_cast<int>(slots.size())) return;
  layout.slots.push_back(wxPoint(x, (params.room.y - slots[slot].y) / 2));
  x += slots[slot].x + params.margins.margin;
}

// Each shown tab after its margin and its slot; returns where the last ends.
int place_tabs(const std::vector<wxSize>& tabs, const std::vector<wxSize>& slots,
               const tab_strip_params_t& params, tab_strip_layout_t& layout) {
  int x = 0;
  const wxSize* tab = tabs.data() + layout.first_shown;
  for (int k = 0; k < layout.shown_count; ++k) {
    x += params.margins.before(k);
    place_slot(slots, k, params, x, layout);
    const int width = layout.equal_width >= 0 ? layout.equal_width : capped_tab_width(tab[k].x, params);
    const int height = std::max(tab[k].y, params.desired_height);
    layout.tabs[k] = wxRect(x, params.room.y - height, width, height);
    x += width;
  }
  return x;
}

// Places the run left to right and returns the width taken.
int place_run(const std::vector<wxSize>& tabs, const std::vector<wxSize>& slots,
              const tab_strip_params_t& params, tab_strip_layout_t& layout) {
  if (tabs.empty()) {
    int x = 0;
    for (int slot = 0; slot < static_cast<int>(slots.size()); ++slot)
      place_slot(slots, slot, params, x, layout);
    return x + params.margins.margin;
  }
  int x = place_tabs(tabs, slots, params, layout) + params.margins.before(layout.shown_count);
  // A slot behind the last tab only when it is the strip's last slot.
  if (static_cast<int>(slots.size()) == layout.shown_count + 1 && slots.back().x > 0)
    place_slot(slots, layout.shown_count, params, x, layout);
  return x;
}

void shift_right(int dx, tab_strip_layout_t& layout) {
  layout.shift = dx;
  for (wxRect& tab : layout.tabs) tab.x += dx;
  for (wxPoint& slot : layout.slots) slot.x += dx;
}

}  // namespace

int tab_slots_width(const std::vector<wxSize>& slots, const tab_margins_t& margins) {
  int width = 0;
  for (size_t slot = 0; slot < slots.size(); ++slot)
    if (slots[slot].x > 0) width += slots[slot].x + margins.before(static_cast<int>(slot));
  return width;
}

int tab_run_start(int anchor, int count, int total) {
  return anchor < 0 ? total - count : std::min(anchor, total - count);
}

tab_strip_layout_t layout_tab_strip(const std::vector<wxSize>& tabs,
                                    const std::vector<wxSize>& slots,
                                    const tab_strip_params_t& params) {
  tab_strip_layout_t layout;
  layout_tab_strip(tabs, slots, params, layout);
  return layout;
}

void layout_tab_strip(const std::vector<wxSize>& tabs, const std::vector<wxSize>& slots,
                      const tab_strip_params_t& params, tab_strip_layout_t& layout) {
  const tab_run_t run = choose_run(tabs, slots, params);
  layout.first_shown = run.first;
  layout.shown_count = run.count;
  layout.tabs.resize(run.count);
  layout.slots.clear();
  layout.shift = 0;
  layout.equal_width = run.equal_width;
  layout.row_height = std::max(params.desired_height, 0);
  for (int k = run.first; k < run.first + run.count; ++k)
    layout.row_height = std::max(layout.row_height, tabs[k].y);
  const int width = place_run(tabs, slots, params, layout);
  layout.size = wxSize(width, layout.row_height + params.margins.margin);
  if (params.right_aligned && width < params.room.x) shift_right(params.room.x - width, layout);
}

}  // namespace detail
}  // namespace orvix1
