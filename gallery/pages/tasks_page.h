#ifndef GALLERY_PAGES_TASKS_PAGE_H
#define GALLERY_PAGES_TASKS_PAGE_H

class wxWindow;

namespace gallery {

// Background work through the library's scheduler: service, long, delayed
// and GUI tasks with progress from animation tasks, cancelling their group,
// and cancel-and-wait behind the please-wait dialog.
wxWindow* create_tasks_page(wxWindow* parent);

// Names of the page's windows.
constexpr const char* k_tasks_long_task = "long_task";
constexpr const char* k_tasks_long_task_gauge = "long_task_gauge";
constexpr const char* k_tasks_cancel_and_wait = "cancel_and_wait";
constexpr const char* k_tasks_status = "tasks_status";

}  // namespace gallery

#endif
