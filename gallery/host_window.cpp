#include "host_window.h"

namespace gallery {

host_window_t::host_window_t(const std::string& title, int width, int height)
    : m_window(gtk_window_new(GTK_WINDOW_TOPLEVEL)) {
  gtk_window_set_title(GTK_WINDOW(m_window), title.c_str());
  gtk_window_set_default_size(GTK_WINDOW(m_window), width, height);
  g_signal_connect(m_window, "size-allocate", G_CALLBACK(on_size_allocate), this);
  g_signal_connect(m_window, "delete-event", G_CALLBACK(on_delete), this);
}

host_window_t::~host_window_t() { gtk_widget_destroy(m_window); }

void host_window_t::show() {
  gtk_widget_show_all(m_window);
  // The library wraps the window's GdkWindow, so it must exist now.
  gtk_widget_realize(m_window);
}

void host_window_t::run_until_closed() { gtk_main(); }

void host_window_t::on_size_allocate(GtkWidget*, GdkRectangle* allocation, gpointer self) {
  auto* host = static_cast<host_window_t*>(self);
  if (allocation->width == host->m_width && allocation->height == host->m_height) return;
  host->m_width = allocation->width;
  host->m_height = allocation->height;
  if (host->m_on_resize) host->m_on_resize(host->m_width, host->m_height);
}

// Closing only ends the main loop: the window is destroyed after the library
// has let go of it.
gboolean host_window_t::on_delete(GtkWidget*, GdkEvent*, gpointer) {
  gtk_main_quit();
  return TRUE;
}

}  // namespace gallery
