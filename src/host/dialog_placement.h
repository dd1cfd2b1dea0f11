#ifndef ORVIX1_SRC_HOST_DIALOG_PLACEMENT_H
#define ORVIX1_SRC_HOST_DIALOG_PLACEMENT_H

// Where the library's own dialogs (the wait dialog, the error dialog) open,
// and how wide their text may grow. Left to wx, a dialog whose parent wraps
// a host window, or that has none, opens at the screen's top-left corner.

#include <wx/toplevel.h>

namespace orvix1 {
namespace detail {

// Centres `dialog` over `owner` when given, else over the host's main window
// when it shows, else over the active top-level window, else on the work
// area; the dialog stays wholly inside the work area it lands on.
void centre_dialog_on(wxTopLevelWindow* dialog, const wxWindow* owner);

// The widest a dialog's text may wrap to: 60% of the width of the work area
// of the display `dialog` is on.
int widest_dialog_text(const wxWindow* dialog);

}  // namespace detail
}  // namespace orvix1

#endif
