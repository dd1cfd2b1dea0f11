#ifndef ORVIX1_HOST_SESSION_H
#define ORVIX1_HOST_SESSION_H
/// @file
/// Starting and ending the library in one object. A host makes one
/// host_session_t before it builds any library window and keeps it until the
/// last one is gone:
///
///     int main(int argc, char** argv) {
///       orvix1::host_session_t session(argc, argv);  // wx, the library, the palette
///       if (!session.ok()) return 2;                  // no display
///       (new main_frame_t)->Show();
///       wxTheApp->OnRun();
///     }
///
/// Starting, in this order:
/// 1. wxWidgets, unless the host has started it already: wxEntryStart, the
///    application object's OnInit, LC_CTYPE taken from the environment (or
///    "C.UTF-8" when that is not UTF-8: wx leaves it at "C", which turns UTF-8
///    text into nothing), and an active wxGUIEventLoop, so that queued events,
///    CallAfter and painting are handled by process_message_loop() and by
///    code that pumps the loop before the host runs a main loop of its own;
/// 2. initialize_wxwidgets() with the host's native main window (may be null);
/// 3. the live palette (ui_settings_configure_t::get()), held by the session:
///    widgets built afterwards get the desktop's colours and fonts.
///
/// Ending, in the reverse order: the palette reference is dropped, the
/// library's clean-up runs as cleanup_wxwidgets() does (the error dialog and
/// help window close on the last one, pending events are handled, the
/// clipboard is flushed) but never ends wxWidgets itself; then the session's
/// event loop goes, and wxWidgets ends only if this session started it and no
/// other client of the library is left (otherwise the last cleanup_wxwidgets()
/// of those ends it, as ever). Sessions nest: a session on a running wx
/// leaves it running.
///
/// The assertion handler and the wx log target stay the host's choice; set
/// them before the session (the default assertion handler opens dialogs).
///
/// The lower-level route is unchanged for hosts that drive wx themselves:
/// wxEntryStart, wxTheApp->CallOnInit(), initialize_wxwidgets(handle),
/// ui_settings_configure_t::get() held for the run, and cleanup_wxwidgets()
/// at the end (see wx_dll_application.h).
///
/// Asking for the palette before wxWidgets runs (ui_settings_t::get() or
/// ui_settings_configure_t::get(), which every library widget does when it
/// is built) writes one warning per process to the "orvix.settings" logger.

#include <memory>

#include "orvix1/export.h"
#include "orvix1/ui_settings.h"

class wxEventLoopActivator;
class wxGUIEventLoop;

namespace orvix1 {

/// Starts wxWidgets (when needed), the library and the live palette; ends them in reverse.
class ORVIX1_API host_session_t {
 public:
  /// `main_window` is the host's native main window (a GtkWidget*), or null.
  explicit host_session_t(void* main_window = nullptr);
  /// The program's arguments go to wxEntryStart when the session starts wx.
  host_session_t(int& argc, char** argv, void* main_window = nullptr);
  ~host_session_t();
  host_session_t(const host_session_t&) = delete;
  host_session_t& operator=(const host_session_t&) = delete;

  /// False when wxWidgets could not start (no display); the session then did
  /// nothing else, logged an error, and its end does nothing.
  bool ok() const { return m_ok; }
  /// True when this session started wxWidgets and so ends it.
  bool started_wx() const { return m_started_wx; }
  /// The live palette the session holds.
  const talvar2::intrusive_pointer_t<ui_settings_configure_t>& palette() const { return m_palette; }

 private:
  void start(int& argc, char** argv, void* main_window);
  bool start_wx(int& argc, char** argv);

  bool m_ok = false;
  bool m_started_wx = false;
  std::unique_ptr<wxGUIEventLoop> m_loop;
  std::unique_ptr<wxEventLoopActivator> m_activator;
  talvar2::intrusive_pointer_t<ui_settings_configure_t> m_palette;
};

}  // namespace orvix1

#endif
