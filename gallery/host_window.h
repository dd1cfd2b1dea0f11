#ifndef GALLERY_HOST_WINDOW_H
#define GALLERY_HOST_WINDOW_H

#include <functional>
#include <string>

#include <gtk/gtk.h>

namespace gallery {

// The host application's own main window: plain GTK 3, no wxWidgets. The
// gallery hands it to the library as the main window of the process. The
// library's windows fill its top; a status line of the host's own runs
// along its bottom, and the host forwards the clicks it gets there to the
// library.
class host_window_t {
 public:
  // The size the library's windows may take: the window above the status line.
  using resize_handler_t = std::function<void(int width, int height)>;
  using mouse_handler_t = std::function<void(const GdkEventButton& event)>;

  host_window_t(const std::string& title, int width, int height);
  ~host_window_t();
  host_window_t(const host_window_t&) = delete;
  host_window_t& operator=(const host_window_t&) = delete;

  GtkWidget* widget() const { return m_window; }
  GdkWindow* gdk_window() const { return gtk_widget_get_window(m_window); }
  int width() const { return gtk_widget_get_allocated_width(m_window); }
  // Height of the library's part of the window.
  int content_height() const;
  // Where the host's status line is, in window coordinates.
  GdkRectangle status_area() const;

  void show();
  // Called at once when the window has its size already, then on every change.
  void set_resize_handler(resize_handler_t handler);
  // Button presses and releases on the host's own part of the window.
  void set_mouse_handler(mouse_handler_t handler) { m_on_mouse = std::move(handler); }

  void set_status(const std::string& text);
  std::string status() const;
  // While a modal dialog of the library is up the host greys its status line
  // and says so in its title.
  void mark_modal(bool modal, const std::string& dialog_title);
  bool is_marked_modal() const { return m_marked_modal; }

  // The host's main loop: GTK's events, then whatever the library has
  // pending, until the user closes the window.
  void run_until_closed();

 private:
  static void on_size_allocate(GtkWidget* widget, GdkRectangle* allocation, gpointer self);
  static gboolean on_delete(GtkWidget* widget, GdkEvent* event, gpointer self);
  static gboolean on_button(GtkWidget* widget, GdkEventButton* event, gpointer self);

  std::string m_title;
  GtkWidget* m_window;
  GtkWidget* m_status;
  resize_handler_t m_on_resize;
  mouse_handler_t m_on_mouse;
  int m_width = 0;
  int m_height = 0;
  bool m_closed = false;
  bool m_marked_modal = false;
  GdkEventButton m_last_button{};
};

}  // namespace gallery

#endif
