#include "tasks/dialog_accessible.h"

#include <gtk/gtk.h>
#include <wx/dialog.h>

#include "accessibility/accessible.h"

namespace orvix1 {
namespace detail {

void make_accessible_dialog(wxDialog& dialog) {
  AtkObject* frame = gtk_widget_get_accessible(dialog.GetHandle());
  atk_object_set_role(frame, ATK_ROLE_DIALOG);
  dialog.Bind(wxEVT_SHOW, [frame](wxShowEvent& event) {
    event.Skip();
    if (!event.IsShown()) return;
    accessibility::notify_state(frame, ATK_STATE_SHOWING, true);
    g_signal_emit_by_name(frame, "activate");
  });
}

}  // namespace detail
}  // namespace orvix1
