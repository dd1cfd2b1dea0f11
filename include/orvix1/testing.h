#ifndef ORVIX1_TESTING_H
#define ORVIX1_TESTING_H

/// @file
/// Helpers for tests and scripted runs of programs built on orvix1, in the
/// library `orvix1::testing` (CMake: `target_link_libraries(app PRIVATE
/// orvix1::testing)`). They drive real windows deterministically: events are
/// handled by pumping with a bound, never by sleeping and hoping. GUI thread
/// only. The project's own tests and the gallery's tour use them.

#include <chrono>
#include <functional>
#include <string>

#include <wx/event.h>
#include <wx/gdicmn.h>
#include <wx/timer.h>

class wxDialog;
class wxWindow;
typedef struct _GdkWindow GdkWindow;
typedef struct _AtkObject AtkObject;

namespace orvix1 {
namespace testing {

// --- the loop -------------------------------------------------------------

/// Handles everything pending on both sides of the process: GTK's event
/// sources (a host's and wx's windows), then the library's wx queues, idle
/// work and deferred deletions through process_message_loop(). With `wait`,
/// first waits for something to happen when nothing is pending. Works in a
/// host that runs no wx loop as well as inside one.
void pump_once(bool wait = false);

/// Pumps until `done` holds, checking it after every round, for at most
/// `timeout`. True when `done` held. Between rounds it yields briefly to
/// the X server instead of spinning.
bool pump_until(const std::function<bool()>& done, std::chrono::milliseconds timeout);

// --- pictures -------------------------------------------------------------
// Under GTK 3 (and Xvfb) a wxScreenDC returns the first picture again and
// again; these read the GDK window back instead. Each returns an empty
// string on success, otherwise what went wrong. A picture of a single
// colour counts as a failure: nothing was painted.

/// Saves what `window` shows, its child windows included, as a PNG file.
std::string save_window_png(GdkWindow* window, const std::string& path);

/// The same for what the screen shows where `window` is: popups over it,
/// such as tooltips, are in the picture too.
std::string save_screen_area_png(GdkWindow* window, const std::string& path);

/// Saves with `save` (one of the two above) once the painted frame is on the
/// X server. GTK hands it over at the end of its frame cycle, after the
/// paint handlers ran, so the capture is tried again, pumping in between,
/// until it succeeds or `timeout` passes. Returns the last failure.
using save_png_t = std::string (*)(GdkWindow*, const std::string&);
std::string save_presented_png(save_png_t save, GdkWindow* window, const std::string& path,
                               std::chrono::milliseconds timeout);

/// What a shown wx window presents, children and popups over it included,
/// as a PNG file: save_presented_png() of save_screen_area_png() on the
/// window's GDK window.
std::string capture_window_png(wxWindow* window, const std::string& path,
                               std::chrono::milliseconds timeout = std::chrono::seconds(10));

// --- modal dialogs --------------------------------------------------------

/// Answers the next modal dialog the library shows, as if the user had: the
/// dialog ends with `answer` as soon as its modal loop runs. While it lives
/// it is the library's modal callback (see set_modal_callback()); the
/// callback it replaced, such as a host's, still hears of every dialog
/// first, and comes back when the answer goes. One at a time.
class modal_answer_t : public wxEvtHandler {
 public:
  explicit modal_answer_t(int answer);
  ~modal_answer_t() override;
  modal_answer_t(const modal_answer_t&) = delete;
  modal_answer_t& operator=(const modal_answer_t&) = delete;

  /// Whether a dialog was ended with the answer.
  bool answered() const { return m_answered; }
  /// The title of the dialog that was answered (UTF-8), or "".
  const std::string& title() const { return m_title; }

 private:
  using callback_t = int (*)(wxWindow*);
  static int on_modal_dialog(wxWindow* window);
  void on_timer(wxTimerEvent& event);

  static modal_answer_t* s_instance;
  callback_t m_previous;
  int m_answer;
  bool m_answered = false;
  std::string m_title;
  wxDialog* m_dialog = nullptr;
  wxTimer m_timer;
};

// --- the pointer ----------------------------------------------------------

/// A mouse event at `at` (client coordinates) as the window would get it
/// from the toolkit, handled at once. The button state follows `type`; a
/// drag passes `left_held` with its motions.
void send_mouse(wxWindow* window, wxEventType type, const wxPoint& at, bool left_held = false);

/// Moves the real pointer over `at` in the window, then lets the window
/// hear it enter and move there: hovers start their tooltips as for a user.
void move_pointer(wxWindow* window, const wxPoint& at);

/// A left click: motion to `at`, press, motion to `release` (by default
/// `at`), release; handled at once, nothing pumped.
void click(wxWindow* window, const wxPoint& at, const wxPoint& release = wxDefaultPosition);

// --- accessibility --------------------------------------------------------

/// What a screen reader learns about `window` and everything inside it, read
/// in-process from the toolkit's accessibility objects (ATK; no bus needed).
/// One line per accessible object, indented two spaces per level: role,
/// quoted name, then what applies of: [noted states] (focusable, focused,
/// selectable, selected, expandable, expanded, collapsed, checked, and "not
/// showing" where a hidden part begins), actions=(...), value=V (MIN..MAX),
/// description="...", id="..." (the accessible id). Quotes, backslashes and
/// line breaks in texts are escaped.
std::string describe_accessible_tree(wxWindow* window);

/// The same from any accessible object, such as a popup's: popups are top
/// levels of their own for the toolkit, not children of the window they
/// show over.
std::string describe_accessible_tree(AtkObject* object);

}  // namespace testing
}  // namespace orvix1

#endif
