#ifndef ORVIX1_SRC_SPLITTERS_SASH_FOCUS_H
#define ORVIX1_SRC_SPLITTERS_SASH_FOCUS_H

// Tab order through a splitter: first its sash (the splitter window itself),
// then the controls of its panes; Shift+Tab the other way round. The toolkit
// moves the focus itself, and it never enters the children of a window that
// takes the focus: left to it, the panes could not be reached.

class wxWindow;

namespace orvix1 {
namespace detail {

void order_sash_focus(wxWindow* splitter);

}  // namespace detail
}  // namespace orvix1

#endif
