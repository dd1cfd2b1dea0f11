#include "orvix1/native_window.h"

#include <gtk/gtk.h>
#include <wx/app.h>
#include <wx/nativewin.h>

#include "log.h"

namespace orvix1 {
namespace {

// Wraps a window that belongs to the host: it never keeps the wx application
// alive on its own account.
class dummy_wrapper_t : public wxNativeContainerWindow {
 public:
  bool ShouldPreventAppExit() const override { return false; }
};

GdkWindow* gdk_window_of(void* native_handle) {
  if (GDK_IS_WINDOW(native_handle)) return GDK_WINDOW(native_handle);
  if (!GTK_IS_WIDGET(native_handle)) return nullptr;
  GtkWidget* widget = GTK_WIDGET(native_handle);
  if (!gtk_widget_get_realized(widget)) gtk_widget_realize(widget);
  return gtk_widget_get_window(widget);
}

}  // namespace

wxWindow* create_dummy_wrapper(void* native_handle) {
  if (native_handle == nullptr) return nullptr;
  GdkWindow* gdk_window = gdk_window_of(native_handle);
  if (gdk_window == nullptr) {
    ORVIX_LOG_ERROR(log::get_logger("orvix.native"),
                    "create_dummy_wrapper: the handle is neither a GtkWidget with a window "
                    "nor a GdkWindow");
    return nullptr;
  }
  auto* wrapper = new dummy_wrapper_t;
  if (!wrapper->Create(gdk_window)) {
    delete wrapper;
    ORVIX_LOG_ERROR(log::get_logger("orvix.native"),
                    "create_dummy_wrapper: wxWidgets refused the native window");
    return nullptr;
  }
  // The wrapper stands for the host's window: same size, so that dialogs
  // centre on it and children lay out against it.
  wrapper->SetSize(gdk_window_get_width(gdk_window), gdk_window_get_height(gdk_window));
  return wrapper;
}

void release_dummy_wrapper(wxWindow* wrapper) {
  if (wrapper == nullptr) return;
  // Deleting the last top-level window ends a running wx main loop; the
  // host's window outlives its wrapper, so that must not happen here.
  wxApp* app = wxTheApp;
  const bool exit_on_delete = app != nullptr && app->GetExitOnFrameDelete();
  if (exit_on_delete) app->SetExitOnFrameDelete(false);
  delete wrapper;
  if (exit_on_delete) app->SetExitOnFrameDelete(true);
}

}  // namespace orvix1
