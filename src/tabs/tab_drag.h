#ifndef ORVIX1_SRC_TAB_DRAG_H
#define ORVIX1_SRC_TAB_DRAG_H

// Dragging a tab of a tab pane: a press on a tab and a move past the
// system's drag threshold start it, the pane then has the mouse. Inside its
// strip the tab moves along with the pointer; over the other strip a marker
// shows where it would go. The release drops it there, Esc or a lost capture
// put the order back.

#include <memory>
#include <vector>

#include <wx/event.h>
#include <wx/gdicmn.h>

#include "talvar2/functor/signal.h"

class wxWindow;

namespace orvix1 {

class wxTabButton;
class wxTabPane;
class wxTabPanel;

namespace detail {

class tab_drag_t {
 public:
  explicit tab_drag_t(wxTabPane* pane);
  ~tab_drag_t();
  tab_drag_t(const tab_drag_t&) = delete;
  tab_drag_t& operator=(const tab_drag_t&) = delete;

  // Watches the strip's buttons, those there now and those added later.
  void watch(wxTabPanel* panel);
  void forget(wxTabPanel* panel);
  // The button is going: a drag of it ends where it is.
  void forget(wxTabButton* button);

  bool dragging() const { return m_dragged != nullptr; }
  // The pointer moved to `screen` while the pane has the mouse.
  void follow(const wxPoint& screen);
  void drop();
  // Puts the order back; `release` also gives the mouse back.
  void cancel(bool release);

 private:
  struct strip_hook_t;

  void bind(wxTabButton* button);
  void on_press(wxMouseEvent& event);
  void on_motion(wxMouseEvent& event);
  void on_release(wxMouseEvent& event);
  void begin(wxTabButton* button);
  void end(bool release);
  wxTabPanel* strip_at(const wxPoint& screen) const;
  void follow_in_own_strip(wxTabPanel* strip, int x);
  void show_marker(wxTabPanel* strip, int index);

  wxTabPane* m_pane;
  std::vector<std::unique_ptr<strip_hook_t>> m_hooks;
  wxTabButton* m_pressed = nullptr;  // left button down on it, no drag yet
  wxPoint m_press_at;                // on the screen
  wxTabButton* m_dragged = nullptr;
  wxTabPanel* m_origin = nullptr;
  int m_origin_index = -1;  // in its strip
  int m_origin_tab = -1;    // over both strips
  wxTabPanel* m_target = nullptr;
  int m_target_index = -1;
  wxWindow* m_marker = nullptr;
};

}  // namespace detail
}  // namespace orvix1

#endif
