#ifndef ORVIX1_SRC_CORE_CONTRACT_SITES_H
#define ORVIX1_SRC_CORE_CONTRACT_SITES_H

// The library's contract assertions. Hosts and tests filter failed
// preconditions on the file, line, function and condition text they report,
// so those texts are data, kept in one table (contract_sites.cpp), and do not
// move when code is edited or files change folders. Every precondition check
// in the library goes through contract_holds or contract_fails with its site.
//
// Reported file: "src/" followed by the name of the source the assertion was
// written in, without extension and without the subsystem folder that holds
// it now; only the element framework and the tasks, which always had folders
// of their own, keep them ("src/elements/UIElement", "src/tasks/Task"). The
// pixel helpers report the source they grew up in, "src/utils".
// Reported line: the line hosts have been told, fixed in the table; a row
// never takes its line from where the check stands today.
// Reported function: what the check has always reported (mostly the bare
// name of the public function, the tooltip's full signature).
//
// Reports take wxASSERT's path: the installed wx assertion handler, then a
// trap into the debugger if the handler asks for one.

#include <cstddef>

#include "orvix1/export.h"

namespace orvix1 {
namespace contract {

enum class site_t {
  // resources: pixel helpers
  watermark_image_invalid,
  composite_images_invalid,
  composite_sizes_differ,
  alpha_images_invalid,
  alpha_sizes_differ,
  paletteless_image_invalid,
  // look
  system_color_ex_unsupported,
  style_window_null,
  // elements: the tree
  element_parent_null,
  element_size_unanswered,
  element_layout_null,
  add_child_null,
  add_child_present,
  remove_child_null,
  remove_child_absent,
  to_top_child_absent,
  to_back_child_absent,
  before_child_absent,
  before_pos_absent,
  after_child_absent,
  after_pos_absent,
  new_parent_null,
  replace_child_null,
  replace_child_absent,
  element_holder_unanswered,
  element_rect_unanswered,
  element_root_null,
  set_timer_unanswered,
  kill_timer_unanswered,
  capture_mouse_unanswered,
  release_mouse_unanswered,
  // elements: layouts
  layout_element_null,
  stack_child_unknown,
  optimal_child_lost,
  // elements: the adapter and bindings
  adapter_holder_null,
  adapter_root_not_centred,
  adapter_timer_not_started,
  adapter_second_timer,
  adapter_second_capture,
  adapter_root_null,
  binding_element_null,
  unbind_element_null,
  // tooltip
  tooltip_target_taken,
  tooltip_target_has_one,
  element_tooltip_unusable,
  // splitters
  splitter_holder_null,
  // tabs
  tab_splitter_slot_beyond,
  // host
  cleanup_unbalanced,
  // tasks
  wait_on_gui_thread,
  post_signal_without_scheduler,
  wait_without_status,
  scheduling_error,
  batch_cancel_context_unknown,
  cancel_and_wait_off_gui_thread,
  schedule_failed,
};

struct site_row_t {
  site_t site;
  const char* file;
  int line;
  const char* function;
  const char* condition;  // "Assert failure" for wxFAIL_MSG's form
  const char* message;    // nullptr when the assertion carries none
};

// The whole table, in the order of site_t (exported for the tests only).
ORVIX1_API const site_row_t* site_rows();
ORVIX1_API std::size_t site_count();

void report(site_t site);

// Reports `site` when `condition` is false; yields the condition, so that a
// caller can go on with an empty result.
inline bool contract_holds(bool condition, site_t site) {
  if (!condition) report(site);
  return condition;
}

// Reports `site` unconditionally: a branch that must not be reached.
inline void contract_fails(site_t site) { report(site); }

}  // namespace contract
}  // namespace orvix1

#endif
