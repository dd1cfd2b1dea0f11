#ifndef ORVIX1_SRC_TASKS_DIALOG_ACCESSIBLE_H
#define ORVIX1_SRC_TASKS_DIALOG_ACCESSIBLE_H

class wxDialog;

namespace orvix1 {
namespace detail {

// GTK calls a wx dialog a frame and, without a window manager to focus it,
// never says it opened: the dialog's window object takes the dialog role
// (its name stays the title) and announces itself each time it is shown.
void make_accessible_dialog(wxDialog& dialog);

}  // namespace detail
}  // namespace orvix1

#endif
