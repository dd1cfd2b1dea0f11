#include "splitters/sash_focus.h"

#include <gtk/gtk.h>
#include <wx/window.h>

namespace orvix1 {
namespace detail {
namespace {

gboolean take_focus(GtkWidget* widget) {
  gtk_widget_grab_focus(widget);
  return TRUE;
}

// The toolkit's own walk over the children, which it takes only for a
// window that does not take the focus itself.
gboolean move_among_panes(GtkWidget* widget, GtkDirectionType direction) {
  gtk_widget_set_can_focus(widget, FALSE);
  const gboolean moved = GTK_WIDGET_GET_CLASS(widget)->focus(widget, direction);
  gtk_widget_set_can_focus(widget, TRUE);
  return moved;
}

gboolean next_stop(GtkWidget* widget, GtkDirectionType direction) {
  const bool forward = direction == GTK_DIR_TAB_FORWARD;
  const bool on_sash = gtk_widget_has_focus(widget);
  const bool in_pane = gtk_container_get_focus_child(GTK_CONTAINER(widget)) != nullptr;
  if (forward && !on_sash && !in_pane) return take_focus(widget);  // coming in
  if (!forward && on_sash) return FALSE;                           // going out
  if (move_among_panes(widget, direction)) return TRUE;
  return forward ? FALSE : take_focus(widget);
}

// A splitter the host made unfocusable is left to the toolkit.
gboolean on_focus(GtkWidget* widget, GtkDirectionType direction, gpointer) {
  if (direction != GTK_DIR_TAB_FORWARD && direction != GTK_DIR_TAB_BACKWARD) return FALSE;
  if (!gtk_widget_get_can_focus(widget)) return FALSE;
  // The class's handler would take the focus back for the sash.
  g_signal_stop_emission_by_name(widget, "focus");
  return next_stop(widget, direction);
}

}  // namespace

void order_sash_focus(wxWindow* splitter) {
  g_signal_connect(splitter->GetHandle(), "focus", G_CALLBACK(on_focus), nullptr);
}

}  // namespace detail
}  // namespace orvix1
