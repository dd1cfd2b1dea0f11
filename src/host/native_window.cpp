#include "orvix1/native_window.h"

#include <gtk/gtk.h>
#include <wx/app.h>
#include <wx/nativewin.h>

#include "core/log.h"

namespace orvix1 {
namespace {

// wxNativeContainerWindow places a GTK window of its own inside the host's
// window. This wrapper keeps that inner window as large as the host's, and
// never keeps the wx application alive (or ends it) on its own account: the
// window it stands for belongs to the host.
class dummy_wrapper_t : public wxNativeContainerWindow {
 public:
  ~dummy_wrapper_t() override;

  bool attach(GdkWindow* host_window, GtkWidget* host_widget);
  bool ShouldPreventAppExit() const override { return false; }

 private:
  static void on_host_allocated(GtkWidget* widget, GdkRectangle* allocation, gpointer self);
  void follow_host_size(int width, int height);
  void keep_app_running_past_deletion();

  GtkWidget* m_host_widget = nullptr;  // weak: nulled by GLib if the host goes first
  gulong m_allocation_handler = 0;
};

bool dummy_wrapper_t::attach(GdkWindow* host_window, GtkWidget* host_widget) {
  if (!Create(host_window)) return false;
  follow_host_size(gdk_window_get_width(host_window), gdk_window_get_height(host_window));
  if (host_widget != nullptr) {
    m_host_widget = host_widget;
    g_object_add_weak_pointer(G_OBJECT(m_host_widget), reinterpret_cast<gpointer*>(&m_host_widget));
    m_allocation_handler =
        g_signal_connect(m_host_widget, "size-allocate", G_CALLBACK(on_host_allocated), this);
  }
  return true;
}

dummy_wrapper_t::~dummy_wrapper_t() {
  if (m_host_widget != nullptr) {
    g_signal_handler_disconnect(m_host_widget, m_allocation_handler);
    g_object_remove_weak_pointer(G_OBJECT(m_host_widget),
                                 reinterpret_cast<gpointer*>(&m_host_widget));
  }
  // wx connects every top-level window to its GDK frame clock and leaves
  // that connection when the window dies. The inner window is a child of the
  // host's window and shares the host's clock, which lives on: its next frame
  // would call into this freed wrapper.
  GdkFrameClock* clock = GetHandle() != nullptr ? gtk_widget_get_frame_clock(GetHandle()) : nullptr;
  if (clock != nullptr) g_signal_handlers_disconnect_by_data(clock, static_cast<wxWindow*>(this));
  keep_app_running_past_deletion();
}

void dummy_wrapper_t::on_host_allocated(GtkWidget*, GdkRectangle* allocation, gpointer self) {
  static_cast<dummy_wrapper_t*>(self)->follow_host_size(allocation->width, allocation->height);
}

// The inner window is a child GdkWindow: resizing it the way a top-level is
// resized (wxWindow::SetSize) waits for a window manager that never answers
// a child. Its GdkWindow and allocation are set directly; wx reads its size
// from the allocation.
void dummy_wrapper_t::follow_host_size(int width, int height) {
  if (width <= 0 || height <= 0) return;
  GtkWidget* widget = GetHandle();
  gdk_window_resize(gtk_widget_get_window(widget), width, height);
  GtkAllocation allocation = {0, 0, width, height};
  gtk_widget_size_allocate(widget, &allocation);
}

// Deleting the last top-level window ends a running wx main loop when the
// application exits on frame deletion. The flag is held off until the next
// pump, after the base destructor has looked at it.
void dummy_wrapper_t::keep_app_running_past_deletion() {
  wxApp* app = wxTheApp;
  if (app == nullptr || !app->GetExitOnFrameDelete()) return;
  app->SetExitOnFrameDelete(false);
  app->CallAfter([] {
    if (wxTheApp != nullptr) wxTheApp->SetExitOnFrameDelete(true);
  });
}

struct host_handles_t {
  GdkWindow* window = nullptr;
  GtkWidget* widget = nullptr;
};

host_handles_t host_handles_of(void* native_handle) {
  host_handles_t handles;
  if (GDK_IS_WINDOW(native_handle)) {
    handles.window = GDK_WINDOW(native_handle);
  } else if (GTK_IS_WIDGET(native_handle)) {
    handles.widget = GTK_WIDGET(native_handle);
    if (!gtk_widget_get_realized(handles.widget)) gtk_widget_realize(handles.widget);
    handles.window = gtk_widget_get_window(handles.widget);
  }
  return handles;
}

}  // namespace

wxWindow* create_dummy_wrapper(void* native_handle) {
  if (native_handle == nullptr) return nullptr;
  const host_handles_t host = host_handles_of(native_handle);
  if (host.window == nullptr) {
    ORVIX_LOG_ERROR(log::get_logger("orvix.native"),
                    "create_dummy_wrapper: the handle is neither a GtkWidget with a window "
                    "nor a GdkWindow");
    return nullptr;
  }
  auto* wrapper = new dummy_wrapper_t;
  if (!wrapper->attach(host.window, host.widget)) {
    delete wrapper;
    ORVIX_LOG_ERROR(log::get_logger("orvix.native"),
                    "create_dummy_wrapper: wxWidgets refused the native window");
    return nullptr;
  }
  return wrapper;
}

void release_dummy_wrapper(wxWindow* wrapper) { delete wrapper; }

}  // namespace orvix1
