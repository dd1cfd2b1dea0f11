#ifndef ORVIX1_NATIVE_WINDOW_H
#define ORVIX1_NATIVE_WINDOW_H
/// @file
/// Embedding of foreign native windows: a host hands over a GTK widget (or a
/// GDK window) and gets a wx window that our windows can use as their parent.

#include <wx/window.h>

#include "orvix1/export.h"

namespace orvix1 {

/// Wraps a host's native window in a wx window. `native_handle` is a
/// GtkWidget* (realised here if it is not yet) or a GdkWindow*. Returns null
/// for a null or unknown handle. The wrapper never destroys the native window;
/// it has the host window's size and, for a widget handle, follows it.
ORVIX1_API wxWindow* create_dummy_wrapper(void* native_handle);

/// Destroys a wrapper made by create_dummy_wrapper; the native window stays.
/// Deleting the wrapper with `delete` is equivalent.
ORVIX1_API void release_dummy_wrapper(wxWindow* wrapper);

}  // namespace orvix1

#endif
