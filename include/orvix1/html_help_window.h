#ifndef ORVIX1_HTML_HELP_WINDOW_H
#define ORVIX1_HTML_HELP_WINDOW_H
/// @file
/// The library's own HTML help window: a plain frame around a wxHtmlWindow
/// that shows help pages when the desktop has no browser to show them.
/// There is at most one; showing another page reuses it. GUI thread only.
/// The frame follows the palette (font_normal (1), color_window_bg (0),
/// color_window_text (7)); pages keep the colours they set.

#include <string>

#include <wx/frame.h>

#include "orvix1/export.h"

namespace orvix1 {

/// Shows `url` (a local file path or a "file:" URL; anything wxFileSystem can
/// open) in the help window, creating it on first use, and raises it. The
/// caption is `title`, or the page's own title when `title` is empty.
/// Returns the window, or null (and a log line) when the page cannot be
/// loaded; an open window then keeps its page.
ORVIX1_API wxFrame* show_html_help_window(const std::string& url, const std::string& title);

/// The open help window, or null.
ORVIX1_API wxFrame* get_html_help_window();

/// The address of the page the help window shows; empty without a window.
ORVIX1_API std::string get_html_help_window_page();

/// Destroys the help window if it exists.
ORVIX1_API void destroy_html_help_window();

}  // namespace orvix1

#endif
