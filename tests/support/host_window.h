#ifndef ORVIX1_TESTS_HOST_WINDOW_H
#define ORVIX1_TESTS_HOST_WINDOW_H

#include <gtk/gtk.h>

namespace orvix1_test {

// A plain GTK window as a host program would own it: shown and realised,
// with a fixed size.
class host_window_t {
 public:
  host_window_t(int width, int height) : m_widget(gtk_window_new(GTK_WINDOW_TOPLEVEL)) {
    g_object_ref_sink(m_widget);
    gtk_window_set_default_size(GTK_WINDOW(m_widget), width, height);
    gtk_widget_show(m_widget);
    // Let GTK apply the size before anybody asks for it.
    for (int round = 0; round < 100 && gtk_events_pending(); ++round) gtk_main_iteration_do(FALSE);
  }
  ~host_window_t() {
    gtk_widget_destroy(m_widget);
    g_object_unref(m_widget);
  }
  host_window_t(const host_window_t&) = delete;
  host_window_t& operator=(const host_window_t&) = delete;

  GtkWidget* widget() const { return m_widget; }
  GdkWindow* gdk_window() const { return gtk_widget_get_window(m_widget); }
  bool still_alive() const {
    return gtk_widget_get_realized(m_widget) && GDK_IS_WINDOW(gdk_window()) &&
           !gdk_window_is_destroyed(gdk_window());
  }

 private:
  GtkWidget* m_widget;
};

}  // namespace orvix1_test

#endif
