#include "host_window.h"

#include "orvix1/testing.h"

namespace gallery {

host_window_t::host_window_t(const std::string& title, int width, int height)
    : m_title(title), m_window(gtk_window_new(GTK_WINDOW_TOPLEVEL)), m_status(gtk_label_new("")) {
  gtk_window_set_title(GTK_WINDOW(m_window), title.c_str());
  gtk_window_set_default_size(GTK_WINDOW(m_window), width, height);
  // The library's windows cover the empty top of the box; the status line
  // is the host's own.
  GtkWidget* column = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  gtk_label_set_xalign(GTK_LABEL(m_status), 0.0f);
  gtk_widget_set_margin_start(m_status, 8);
  gtk_widget_set_margin_top(m_status, 4);
  gtk_widget_set_margin_bottom(m_status, 4);
  gtk_box_pack_end(GTK_BOX(column), m_status, FALSE, FALSE, 0);
  gtk_container_add(GTK_CONTAINER(m_window), column);
  set_status("Host status line: click here, the host forwards the click to the library.");
  gtk_widget_add_events(m_window, GDK_BUTTON_PRESS_MASK | GDK_BUTTON_RELEASE_MASK);
  g_signal_connect(m_status, "size-allocate", G_CALLBACK(on_size_allocate), this);
  g_signal_connect(m_window, "delete-event", G_CALLBACK(on_delete), this);
  g_signal_connect(m_window, "button-press-event", G_CALLBACK(on_button), this);
  g_signal_connect(m_window, "button-release-event", G_CALLBACK(on_button), this);
}

host_window_t::~host_window_t() { gtk_widget_destroy(m_window); }

int host_window_t::content_height() const { return status_area().y; }

GdkRectangle host_window_t::status_area() const {
  GtkAllocation label;
  gtk_widget_get_allocation(m_status, &label);
  // The whole strip across the window, margins included.
  const int top = label.y - gtk_widget_get_margin_top(m_status);
  return GdkRectangle{0, top, width(), gtk_widget_get_allocated_height(m_window) - top};
}

void host_window_t::show() {
  gtk_widget_show_all(m_window);
  // The library wraps the window's GdkWindow, so it must exist now.
  gtk_widget_realize(m_window);
}

void host_window_t::set_resize_handler(resize_handler_t handler) {
  m_on_resize = std::move(handler);
  m_width = 0;
  m_height = 0;
  if (gtk_widget_get_allocated_width(m_status) > 1) on_size_allocate(m_status, nullptr, this);
}

void host_window_t::set_status(const std::string& text) {
  gtk_label_set_text(GTK_LABEL(m_status), text.c_str());
}

std::string host_window_t::status() const { return gtk_label_get_text(GTK_LABEL(m_status)); }

void host_window_t::mark_modal(bool modal, const std::string& dialog_title) {
  m_marked_modal = modal;
  gtk_widget_set_sensitive(m_status, !modal);
  const std::string title = modal ? m_title + " (waiting for \"" + dialog_title + "\")" : m_title;
  gtk_window_set_title(GTK_WINDOW(m_window), title.c_str());
}

void host_window_t::run_until_closed() {
  m_closed = false;
  while (!m_closed) orvix1::testing::pump_once(true);
}

void host_window_t::on_size_allocate(GtkWidget*, GdkRectangle*, gpointer self) {
  auto* host = static_cast<host_window_t*>(self);
  const int width = host->width();
  const int height = host->content_height();
  if (height <= 0 || (width == host->m_width && height == host->m_height)) return;
  host->m_width = width;
  host->m_height = height;
  if (host->m_on_resize) host->m_on_resize(width, height);
}

// Closing only ends the main loop: the window is destroyed after the library
// has let go of it.
gboolean host_window_t::on_delete(GtkWidget*, GdkEvent*, gpointer self) {
  static_cast<host_window_t*>(self)->m_closed = true;
  return TRUE;
}

gboolean host_window_t::on_button(GtkWidget*, GdkEventButton* event, gpointer self) {
  auto* host = static_cast<host_window_t*>(self);
  // With the library's wrapper around this window, each button event reaches
  // the handler twice. A real press is always followed by a release, so a
  // repeat of the last event is that second delivery.
  const bool repeat = event->type == host->m_last_button.type &&
                      event->time == host->m_last_button.time &&
                      event->button == host->m_last_button.button &&
                      event->x == host->m_last_button.x && event->y == host->m_last_button.y;
  host->m_last_button = *event;
  if (!repeat && host->m_on_mouse) host->m_on_mouse(*event);
  return FALSE;
}

}  // namespace gallery
