#ifndef GALLERY_HOST_WINDOW_H
#define GALLERY_HOST_WINDOW_H

#include <functional>
#include <string>

#include <gtk/gtk.h>

namespace gallery {

// The host application's own main window: plain GTK 3, no wxWidgets. The
// gallery hands it to the library as the main window of the process.
class host_window_t {
 public:
  using resize_handler_t = std::function<void(int width, int height)>;

  host_window_t(const std::string& title, int width, int height);
  ~host_window_t();
  host_window_t(const host_window_t&) = delete;
  host_window_t& operator=(const host_window_t&) = delete;

  GtkWidget* widget() const { return m_window; }
  GdkWindow* gdk_window() const { return gtk_widget_get_window(m_window); }
  int width() const { return gtk_widget_get_allocated_width(m_window); }
  int height() const { return gtk_widget_get_allocated_height(m_window); }

  void show();
  // Called whenever the window gets a new size.
  void set_resize_handler(resize_handler_t handler) { m_on_resize = std::move(handler); }
  // Runs the GTK main loop until the user closes the window.
  void run_until_closed();

 private:
  static void on_size_allocate(GtkWidget* widget, GdkRectangle* allocation, gpointer self);
  static gboolean on_delete(GtkWidget* widget, GdkEvent* event, gpointer self);

  GtkWidget* m_window;
  resize_handler_t m_on_resize;
  int m_width = 0;
  int m_height = 0;
};

}  // namespace gallery

#endif
