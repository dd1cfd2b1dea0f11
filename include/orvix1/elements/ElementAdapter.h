#ifndef ORVIX1_ELEMENTS_ELEMENTADAPTER_H
#define ORVIX1_ELEMENTS_ELEMENTADAPTER_H
/// @file
/// Joins a tree of elements to one real wx window, the holder: the holder's
/// paint, size, mouse, focus, keyboard, timer, show and colour events become
/// calls on the root element, and the root's requests (client rectangle,
/// holder, timers, capture, tooltips, focus) are answered here. The holder's
/// accessible object shows the tree to screen readers, unless the holder's
/// own class describes it.

#include <map>
#include <memory>

#include <wx/event.h>
#include <wx/timer.h>
#include <wx/window.h>

#include "orvix1/elements/UIElement.h"
#include "orvix1/export.h"
#include "talvar2/functor/signal.h"
#include "talvar2/pointers/smart_pointer.h"

namespace orvix1 {
namespace elements {
namespace detail {
class tree_accessible_t;
}

/// Joins a tree of elements to one real wx window, the holder.
class ORVIX1_API ElementAdapter : public wxEvtHandler, public talvar2::subscriber_base_t {
 public:
  /// The holder must paint with wxBG_STYLE_PAINT.
  explicit ElementAdapter(wxWindow* holder);
  ~ElementAdapter() override;
  ElementAdapter(const ElementAdapter&) = delete;
  ElementAdapter& operator=(const ElementAdapter&) = delete;

  void SetRootElement(element_ptr_t root);
  element_ptr_t GetRootElement() const { return m_root_element; }
  wxWindow* GetHolder() const { return m_holder; }
  /// Unbinds from the holder and forgets it.
  void DetachHolder(bool holder_is_dying);
  /// true: erase-background events are consumed, nothing is erased.
  void HandleEraseBackground(bool handle);

  // --- holder events ---
  void OnPaint(wxPaintEvent& event);
  void OnSize(wxSizeEvent& event);
  void OnSetFocus(wxFocusEvent& event);
  void OnKillFocus(wxFocusEvent& event);
  void OnEraseBackground(wxEraseEvent& event);
  void OnTimer(wxTimerEvent& event);
  void OnSysColourChanged(wxSysColourChangedEvent& event);
  void OnMouse(wxMouseEvent& event);
  void OnMouseCaptureLost(wxMouseCaptureLostEvent& event);
  void OnWindowShow(wxShowEvent& event);
  void OnKeyPress(wxKeyEvent& event);
  void OnTooltipDestroyed(wxWindowDestroyEvent& event);
  void OnHolderDestroyed(wxWindowDestroyEvent& event);

  // --- the root's requests ---
  void OnRequestClientRect(wxRect& rect);
  void OnRequestHolderWindow(wxWindow** window);
  void OnRequestSetTimer(element_ptr_t element, int milliseconds);
  void OnRequestKillTimer(element_ptr_t element);
  void OnRequestCaptureMouse(element_ptr_t element);
  void OnRequestReleaseMouse();
  void OnRequestSetTooltip(wxCustomTooltip* tooltip);
  void OnRequestClearTooltip();
  void OnRequestChangeFocus(element_ptr_t element);

  void HandleMouseEnterLeave(wxMouseEvent& event);
  /// Moves the keyboard focus to the holder's next (1) or previous (0) sibling
  /// control; false when the holder has no parent.
  bool PassFocusToNextWindow(int direction);

  /// The element under the pointer, the one holding the capture, the focused one.
  element_ptr_t GetHoveredElement() const { return m_hovered; }
  element_ptr_t GetCaptureElement() const { return m_mouse_capture_element; }
  element_ptr_t GetFocusedElement() const { return m_focused; }
  /// The shared timer (id 1000), null before the first timer request.
  wxTimer* GetTimer() const { return m_timer.get(); }

  static constexpr int timer_id = 1000;

 private:
  struct timer_info_t {
    int interval;
    int accumulated;
  };

  void BindHolder();
  void UnbindHolder();
  void ConnectRoot();
  void DisconnectRoot();
  /// Drops hover, capture, focus and timers of the tree being replaced.
  void ForgetTreeState();
  /// Lets the holder's capture go if an element asked for it.
  void ReleaseHolderCapture();
  int SmallestInterval() const;
  /// Starts (or restarts) the shared timer, creating it on first use.
  void StartTimer(int milliseconds);
  /// Stops the shared timer and frees it.
  void StopTimer();
  /// Brings the hovered element up to date with the last known pointer position.
  void CatchUpHover();

  element_ptr_t m_root_element;
  wxWindow* m_holder = nullptr;
  std::map<element_ptr_t, timer_info_t> m_timers;
  talvar2::smart_pointer_t<wxTimer> m_timer;
  element_ptr_t m_hovered;
  element_ptr_t m_mouse_capture_element;
  element_ptr_t m_focused;
  wxCustomTooltip* m_tooltip = nullptr;
  bool m_handle_erase_background = false;
  // Set while the focus is being passed on: a holder that is the only stop
  // gets it straight back and must not pass it again.
  bool m_passing_focus = false;
  /// Where the last mouse event on the holder happened, in client coordinates.
  wxPoint m_last_mouse_position;
  /// The tree as screen readers see it, while there is a holder.
  std::unique_ptr<detail::tree_accessible_t> m_accessible;
};

}  // namespace elements
}  // namespace orvix1

#endif
