#ifndef ORVIX1_WX_DLL_APPLICATION_H
#define ORVIX1_WX_DLL_APPLICATION_H
/// @file
/// The library's entry surface towards its host: the application object that
/// wxWidgets creates in the process, start-up and clean-up counting, the
/// message pump and three process-wide hooks. Most hosts start and end the
/// library with one host_session_t (host_session.h), which calls these.

#include <wx/app.h>
#include <wx/dialog.h>
#include <wx/event.h>
#include <wx/toplevel.h>
#include <wx/window.h>

#include "orvix1/export.h"
#include "talvar2/functor/signal.h"
#include "talvar2/pointers/smart_pointer.h"

namespace orvix1 {

/// Suppresses idle processing while a modal dialog is up, at the top level or
/// directly under a top-level window: idle handlers and UI updates of the
/// windows behind it must not run while the user answers it.
template <class App>
class application_wrapper_t : public App {
 public:
  bool ProcessIdle() override {
    for (wxWindow* window : wxTopLevelWindows) {
      if (is_modal_dialog(window)) return false;
      const wxWindowList children = window->GetChildren();  // a snapshot
      for (wxWindow* child : children)
        if (is_modal_dialog(child)) return false;
    }
    return App::ProcessIdle();
  }

 private:
  static bool is_modal_dialog(wxWindow* window) {
    const auto* dialog = dynamic_cast<const wxDialog*>(window);
    return dialog != nullptr && dialog->IsModal();
  }
};

/// The application object of every process that loads the library.
class ORVIX1_API wxDLLGlobalApp : public application_wrapper_t<wxApp> {
 public:
  bool OnInit() override;  ///< no command-line parsing
  int OnExit() override;
  wxLayoutDirection GetLayoutDirection() const override;
};

/// The application factory that the library registers with wxWidgets at load
/// time, and the accessor of the current application object.
ORVIX1_API wxAppConsole* wxCreateApp();
ORVIX1_API wxDLLGlobalApp& wxGetApp();

/// Counts one client of the library. The latest handle wins; the first call
/// registers the image, resource and archive handlers. Always true.
ORVIX1_API bool initialize_wxwidgets(void* main_window);

/// Ends one client. The last call drops the handle and ends wxWidgets unless a
/// wx main loop is running.
ORVIX1_API void cleanup_wxwidgets();

/// Handles everything pending: idle work, queued events, pending events.
ORVIX1_API void process_message_loop();

/// A new wrapper window around the host's main window, or an empty handle when
/// the host gave none.
ORVIX1_API talvar2::smart_pointer_t<wxWindow> get_main_window();

using mouse_signal_t = talvar2::signal_t<wxMouseEvent*>;

/// Mouse events that the host forwards with fire_mouse_signal.
ORVIX1_API mouse_signal_t& get_mouse_signal();
ORVIX1_API void fire_mouse_signal(wxMouseEvent* event);

/// The host's hook for modal dialogs: it returns a non-zero dialog result when
/// it has shown the dialog itself, 0 when the library is to show it.
using modal_callback_t = int (*)(wxWindow*);
ORVIX1_API void set_modal_callback(modal_callback_t callback);
ORVIX1_API modal_callback_t get_modal_callback();

}  // namespace orvix1

#endif
