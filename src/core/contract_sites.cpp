#include "core/contract_sites.h"

#include <iterator>

#include <wx/debug.h>

namespace orvix1 {
namespace contract {
namespace {

constexpr const char* k_fail = "Assert failure";  // wxFAIL_MSG's condition text

constexpr const char* k_pixels = "src/utils";
constexpr const char* k_element = "src/elements/UIElement";
constexpr const char* k_adapter = "src/elements/ElementAdapter";
constexpr const char* k_tooltip = "src/wxCustomTooltip";
constexpr const char* k_scheduler = "src/tasks/Scheduler";

constexpr const char* k_tooltip_attach = "void orvix1::wxCustomTooltip::Attach(wxWindow*)";

const site_row_t k_rows[] = {
    {site_t::watermark_image_invalid, k_pixels, 64, "create_watermark_image",
     "image.IsOk() == true && image.HasAlpha() == true", nullptr},
    {site_t::composite_images_invalid, k_pixels, 107, "create_composite_image",
     "image_front.IsOk() == true && image_front.HasAlpha() == true && image_back.IsOk()", nullptr},
    {site_t::composite_sizes_differ, k_pixels, 115, "create_composite_image",
     "w == image_back.GetWidth() && h == image_back.GetHeight()", nullptr},
    {site_t::alpha_images_invalid, k_pixels, 150, "create_alpha_image",
     "image_alpha_mask.IsOk() == true && image.IsOk()", nullptr},
    {site_t::alpha_sizes_differ, k_pixels, 158, "create_alpha_image",
     "w == image.GetWidth() && h == image.GetHeight()", nullptr},
    {site_t::paletteless_image_invalid, k_pixels, 192, "create_paletteless_image",
     "image.IsOk() == true", nullptr},

    {site_t::system_color_ex_unsupported, "src/ui_settings", 195, "get_system_color_ex", k_fail,
     "Specified color index is not supported"},
    {site_t::style_window_null, "src/ui_update_helpers", 111, "set_font_and_colors", "wnd", nullptr},

    {site_t::element_parent_null, k_element, 36, "UIElement", "parent != __null", nullptr},
    {site_t::element_size_unanswered, k_element, 55, "GetSize", "RequestClientRect.empty() == false",
     nullptr},
    {site_t::element_layout_null, k_element, 69, "SetLayoutLogic", "layout != __null", nullptr},
    {site_t::add_child_null, k_element, 89, "AddChild", "child != __null", nullptr},
    {site_t::add_child_present, k_element, 95, "AddChild",
     "std::find(m_children.begin(),m_children.end(),element) == m_children.end()", nullptr},
    {site_t::remove_child_null, k_element, 112, "RemoveChild", "child != __null", nullptr},
    {site_t::remove_child_absent, k_element, 116, "RemoveChild",
     "std::find(m_children.begin(),m_children.end(),element) != m_children.end()", nullptr},
    {site_t::to_top_child_absent, k_element, 128, "ChangeZOrderToTop",
     "element != m_children.end()", nullptr},
    {site_t::to_back_child_absent, k_element, 136, "ChangeZOrderToBack",
     "element != m_children.end()", nullptr},
    {site_t::before_child_absent, k_element, 155, "ChangeZOrderToBeforeElement",
     "element != m_children.end()", nullptr},
    {site_t::before_pos_absent, k_element, 160, "ChangeZOrderToBeforeElement",
     "pos != m_children.end()", nullptr},
    {site_t::after_child_absent, k_element, 155, "ChangeZOrderToAfterElement",
     "element != m_children.end()", nullptr},
    {site_t::after_pos_absent, k_element, 160, "ChangeZOrderToAfterElement",
     "pos != m_children.end()", nullptr},
    {site_t::new_parent_null, k_element, 168, "ChangeParent", "parent != __null", nullptr},
    {site_t::replace_child_null, k_element, 180, "ReplaceChild", "child != __null", nullptr},
    {site_t::replace_child_absent, k_element, 182, "ReplaceChild", "element != m_children.end()",
     nullptr},
    {site_t::element_holder_unanswered, k_element, 223, "GetHolder",
     "RequestHolderWindow.empty() == false", nullptr},
    {site_t::element_rect_unanswered, k_element, 237, "GetRect",
     "RequestClientRect.empty() == false", nullptr},
    {site_t::element_root_null, k_element, 251, "RefreshLayoutIfDirty", "GetRootElement() != 0",
     nullptr},
    {site_t::set_timer_unanswered, k_element, 487, "SetTimer",
     "GetRootElement()->RequestSetTimer.empty() == false", nullptr},
    {site_t::kill_timer_unanswered, k_element, 496, "KillTimer",
     "GetRootElement()->RequestKillTimer.empty() == false", nullptr},
    {site_t::capture_mouse_unanswered, k_element, 508, "CaptureMouse",
     "GetRootElement()->RequestCaptureMouse.empty() == false", nullptr},
    {site_t::release_mouse_unanswered, k_element, 515, "ReleaseMouse",
     "GetRootElement()->RequestReleaseMouse.empty() == false", nullptr},

    {site_t::layout_element_null, "src/elements/Layout", 106, "GetControlledElement",
     "element != __null", nullptr},
    {site_t::stack_child_unknown, "src/elements/StackLayout", 45, "GetChildRect",
     "it != m_rects.end()", nullptr},
    {site_t::optimal_child_lost, "src/elements/OptimalLayout", 26, "OnInvalidate",
     "m_rects.size() == children.size()", nullptr},

    {site_t::adapter_holder_null, k_adapter, 41, "ElementAdapter", "holder != __null", nullptr},
    {site_t::adapter_root_not_centred, k_adapter, 61, "SetRootElement",
     "(element->GetPositionFlags()&(UIElement::pfVCenter|UIElement::pfHCenter)) == "
     "(UIElement::pfVCenter|UIElement::pfHCenter)",
     nullptr},
    {site_t::adapter_timer_not_started, k_adapter, 253, "StartTimer", "timer_started == true",
     "Cannot create new timer. From wxWidgets documentation, Timers are limited resource on "
     "windows"},
    {site_t::adapter_second_timer, k_adapter, 259, "OnRequestSetTimer",
     "m_timers.find(sender) == m_timers.end()", nullptr},
    {site_t::adapter_second_capture, k_adapter, 332, "OnRequestCaptureMouse",
     "m_mouse_capture_element == __null", nullptr},
    {site_t::adapter_root_null, k_adapter, 401, "OnKeyPress", "m_root_element != 0", nullptr},
    {site_t::binding_element_null, "src/elements/bindings", 11, "keep_with", "element != __null",
     nullptr},
    {site_t::unbind_element_null, "src/elements/bindings", 29, "unbind", "element != __null",
     nullptr},

    {site_t::tooltip_target_taken, k_tooltip, 82, k_tooltip_attach, "target != 0 && m_owner == 0",
     nullptr},
    {site_t::tooltip_target_has_one, k_tooltip, 88, k_tooltip_attach,
     "m_active_tooltips.find(target) == m_active_tooltips.end()", nullptr},
    {site_t::element_tooltip_unusable, "src/element_tooltips", 41, "OnRequestSetTooltip",
     "m_holder && tip", nullptr},

    {site_t::splitter_holder_null, "src/wxSplitterElement", 37, "wxSplitterElement",
     "m_holder_wnd != __null", nullptr},

    {site_t::tab_splitter_slot_beyond, "src/wxTabPanel", 724, "OnPaint", "k < m_splitters.size()",
     nullptr},

    {site_t::cleanup_unbalanced, "src/wx_dll_application", 158, "assert_not_over_cleaned",
     "g_initialization_counter > 0",
     "cleanup_wxwidgets() was called more times than initialize_wxwidgets()"},

    {site_t::wait_on_gui_thread, "src/tasks/Task", 80, "Wait", "wxThread::IsMain() == false",
     nullptr},
    {site_t::post_signal_without_scheduler, "src/tasks/PostSignal", 13, "PostSignal",
     "Scheduler::IsInitialized()",
     "Attempt to schedule a task in uninitialized Scheduler. Task will not complete."},
    {site_t::wait_without_status, "src/tasks/WaitCallback", 29, "wait", "status_callback", nullptr},
    {site_t::scheduling_error, k_scheduler, 113, "task_scheduling_error", k_fail,
     "Scheduling error detected"},
    {site_t::batch_cancel_context_unknown, k_scheduler, 138, "UnitName", k_fail,
     "Invalid condition"},
    {site_t::cancel_and_wait_off_gui_thread, k_scheduler, 249, "CancelAndWait",
     "wxThread::IsMain() == true", nullptr},
    {site_t::schedule_failed, k_scheduler, 353, "HandleNewTask", k_fail,
     "Failed to schedule task. See debug output for details."},
};

static_assert(std::size(k_rows) == static_cast<std::size_t>(site_t::schedule_failed) + 1,
              "one row per site");

}  // namespace

const site_row_t* site_rows() { return k_rows; }

std::size_t site_count() { return std::size(k_rows); }

void report(site_t site) {
  if (wxTheAssertHandler == nullptr) return;  // the host switched assertions off
  const site_row_t& row = k_rows[static_cast<std::size_t>(site)];
  if (row.message != nullptr)
    wxOnAssert(row.file, row.line, row.function, row.condition, row.message);
  else
    wxOnAssert(row.file, row.line, row.function, row.condition);
  if (wxTrapInAssert) {
    wxTrapInAssert = false;
    wxTrap();
  }
}

}  // namespace contract
}  // namespace orvix1
