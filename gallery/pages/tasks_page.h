#ifndef GALLERY_PAGES_TASKS_PAGE_H
#define GALLERY_PAGES_TASKS_PAGE_H

class wxWindow;

namespace gallery {

// Background work through the library's scheduler: service, long, delayed
// and GUI tasks with progress from animation tasks, cancelling their group,
// and cancel-and-wait behind the please-wait dialog.
wxWindow* create_tasks_page(wxWindow* parent);

}  // namespace gallery

#endif
