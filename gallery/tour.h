#ifndef GALLERY_TOUR_H
#define GALLERY_TOUR_H

#include <string>

namespace gallery {

class gallery_view_t;
class host_hooks_t;
class host_window_t;

// The headless tour: selects every page by clicking its tab and plays each
// page's script on it with real events on real windows (clicks, a hover
// that raises a tooltip, a close veto answered through the host's modal
// hook, a collapsing splitter, a task drained through the wait dialog, a
// theme switch), checks the effect of every step, and writes
// `<out_dir>/<page>.png` and the page's accessible tree as text,
// `<out_dir>/<page>.a11y.txt`, after each page. Prints one line per step. Zero
// when every step held.
int run_tour(host_window_t& host, host_hooks_t& hooks, gallery_view_t& view,
             const std::string& out_dir);

}  // namespace gallery

#endif
