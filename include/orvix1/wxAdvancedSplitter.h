#ifndef ORVIX1_WXADVANCEDSPLITTER_H
#define ORVIX1_WXADVANCEDSPLITTER_H
/// @file
/// A window split in two panes by a sash the user drags. A button on the
/// sash (or a click anywhere on the sash of a collapsed pane, or a
/// double-click on the sash) collapses and restores one pane with a short
/// animation. The sash keeps its relative position when the window is
/// resized, can follow another splitter's sash, and its state can be saved
/// to a string and restored.
///
/// The panes are the splitter's children: a pane given with another parent
/// is moved into the splitter.
///
/// The keyboard reaches the sash too: Tab stops at the splitter (the sash)
/// and then goes on into the first and the second pane. The arrow keys
/// along the splitter's axis move the sash by a hundredth of its track, Home
/// and End move it to the ends, and Enter or Space work as its button.

#include <memory>
#include <string>

#include <wx/timer.h>
#include <wx/window.h>

#include "orvix1/export.h"
#include "orvix1/wxSplitterElement.h"
#include "talvar2/functor/signal.h"
#include "talvar2/pointers/smart_pointer.h"

namespace orvix1 {
namespace detail {
class collapse_motion_t;
class splitter_accessible_t;
}

/// A window split in two panes by a sash with a collapse button.
class ORVIX1_API wxAdvancedSplitter : public wxWindow, public talvar2::subscriber_base_t {
 public:
  using element_ptr_t = talvar2::smart_pointer_t<wxSplitterElement>;

  /// What a resize of the splitter does to the sash.
  enum ResisingMode {
    rmProportional = 0,  ///< keeps the relative position (the default)
    rmKeepFirst = 1,     ///< the first pane keeps its size
    rmKeepSecond = 2     ///< the second pane keeps its size
  };
  /// The pane the collapse button closes.
  enum PaneToClose { ptcSecond = 0, ptcFirst = 1 };

  /// The collapse animation: a tick every AnimationInterval ms. Closing
  /// accelerates from one pixel per tick, the speed multiplied by
  /// AccelerationFactor each tick; opening starts at distance /
  /// AccelerationFactor and decelerates by the same factor, never below one
  /// pixel per tick. With the factor 2 both take about a tenth of a second
  /// across a few hundred pixels. A closed pane's sash sits at the edge; an
  /// opened one returns to its relative position.
  static const int AnimationInterval = 10;
  static constexpr float DefaultAccelerationFactor = 2.0f;
  /// A pane dragged smaller than this (before DPI scaling) closes on release
  /// when autoclosing is on.
  static const int AutocloseExtent = 40;

  wxAdvancedSplitter();
  wxAdvancedSplitter(wxWindow* parent, wxWindowID id = wxID_ANY,
                     const wxPoint& pos = wxDefaultPosition, const wxSize& size = wxDefaultSize,
                     long style = 0, const wxString& name = wxASCII_STR("advancedSplitter"));
  ~wxAdvancedSplitter() override;

  bool Create(wxWindow* parent, wxWindowID id = wxID_ANY, const wxPoint& pos = wxDefaultPosition,
              const wxSize& size = wxDefaultSize, long style = 0,
              const wxString& name = wxASCII_STR("advancedSplitter"));

  /// Panes side by side (vertical sash) or stacked (horizontal sash), the
  /// sash at the relative position. False, changing nothing, for a null pane.
  bool SplitVertically(wxWindow* panel1, wxWindow* panel2);
  bool SplitHorizontally(wxWindow* panel1, wxWindow* panel2);
  void SetPanel1(wxWindow* panel);
  wxWindow* GetPanel1() const { return m_panel1; }
  void SetPanel2(wxWindow* panel);
  wxWindow* GetPanel2() const { return m_panel2; }
  element_ptr_t GetSplitterElement() const { return m_element; }
  bool IsHorizontalMode() const { return m_horizontal; }

  /// Places the panes around the sash.
  void CalcLayout();
  bool Layout() override;
  void RemoveChild(wxWindowBase* child) override;
  void CenterSash();
  /// Clamped to [0, 1]; ignored while the pane is closed.
  void SetRelativeSashPosition(float relative);
  float GetRelativeSashPosition() const { return m_relative_position; }

  /// Opens (true) or closes (false) the pane chosen by SetPaneToClose,
  /// animated when the animation is on.
  void ChangePaneState(bool open);
  /// True once the closing pane has finished closing, until it has reopened.
  bool IsSecondPaneClosed() const;
  bool IsAnimating() const { return m_timer.IsRunning(); }
  bool IsModifiedByUser() const { return m_modified_by_user; }
  void ResetModifiedByUser() { m_modified_by_user = false; }

  void EnableAnimation(bool enable) { m_animation_enabled = enable; }
  bool IsAnimationEnabled() const { return m_animation_enabled; }
  void SetAccelerationFactor(float factor);
  float GetAccelerationFactor() const;
  void EnableAutoclosing(bool enable) { m_autoclosing = enable; }
  bool IsAutoclosingEnabled() const { return m_autoclosing; }
  /// A disabled button is drawn greyed, and no click on the sash toggles the
  /// pane (dragging still works). A hidden button is not drawn; a closed
  /// pane still reopens from a click on its sash.
  void EnableCloseButton(bool enable);
  void ShowCloseButton(bool show);
  void SetResizingMode(ResisingMode mode) { m_resizing_mode = mode; }
  ResisingMode GetResizingMode() const { return m_resizing_mode; }
  void SetPaneToClose(PaneToClose pane);
  PaneToClose GetPaneToClose() const { return m_pane_to_close; }

  /// Makes this sash follow `other`'s position and hover state; a null
  /// pointer ends the link. False for this splitter's own element.
  bool SynchronizeWith(element_ptr_t other);
  /// Points the button's arrow the way the next click moves the sash.
  void UpdateButtonDirection();

  /// "position=0.2500;closed=0": the relative position and whether the pane
  /// is closed. RestoreState applies it without animation; text it cannot
  /// read changes nothing and gives false.
  std::string SaveState() const;
  bool RestoreState(const std::string& state);

  void OnSize(wxSizeEvent& event);
  void OnMouseEvent(wxMouseEvent& event);
  void OnPaint(wxPaintEvent& event);
  void OnTimer(wxTimerEvent& event);
  void OnEnterSash();
  void OnLeaveSash();
  void OnSysColourChanged(wxSysColourChangedEvent& event);
  void OnKeyDown(wxKeyEvent& event);
  void OnFocusChanged(wxFocusEvent& event);
  void OnSplitterSashPosChanged(int position);
  void OnLinkedSplitterSashPosChanged(int position);
  void OnLinkedSplitterSashStateChanged(wxSplitterElement::VisualState state);

  wxTimer& GetAnimationTimer() { return m_timer; }

 private:
  bool Split(wxWindow* panel1, wxWindow* panel2, bool horizontal);
  void AdoptPanel(wxWindow* panel);
  int Extent() const;
  int OpenPosition() const;
  int ClosedPosition() const;
  /// The closing pane's extent with the sash at `position`.
  int PanelExtentAt(int position) const;
  int MinimumPanelExtent() const;
  bool ClosingOrClosed() const;
  void MoveSashKeepingRelative(int position);
  void StartAnimation(bool close, int target);
  void FinishAnimation();
  void DoSashMoving(const wxPoint& point);
  bool OnSash(const wxPoint& point) const;
  bool ButtonTakesClicks() const;
  void OnLeftDown(const wxPoint& point);
  void OnLeftUp(const wxPoint& point);
  void EndDragging();
  void OnCaptureLost(wxMouseCaptureLostEvent& event);
  void OnDoubleClick(const wxPoint& point);
  void UpdateHover(const wxPoint& point);
  void TogglePane();
  /// What a click on the sash's button does, when it would open (true) or
  /// close the pane.
  void SetPaneOpenByUser(bool open);
  /// Moves the sash as a drag does; false while the animation owns it.
  bool MoveSashByUser(int position);
  bool HandleSashKey(int key_code);
  void PaneSettled();
  wxWindow* ClosingPanel() const;
  void PlacePanels(const wxRect& sash);
  void ApplySize();
  void Unlink();

  wxWindow* m_panel1 = nullptr;
  wxWindow* m_panel2 = nullptr;
  element_ptr_t m_element;
  element_ptr_t m_linked;
  bool m_horizontal = false;
  bool m_modified_by_user = false;
  bool m_animation_enabled = true;
  bool m_autoclosing = false;
  bool m_hovering = false;
  ResisingMode m_resizing_mode = rmProportional;
  PaneToClose m_pane_to_close = ptcSecond;
  float m_relative_position = 0.5f;
  float m_relative_before_drag = 0.5f;
  bool m_dragging = false;
  bool m_down_toggled = false;
  wxPoint m_last_point;
  int m_last_extent = 0;
  int m_closing_panel_extent = 0;  ///< what the closing pane keeps while it slides out
  wxTimer m_timer;
  /// Closed, open or on the way, and where the sash goes next.
  std::unique_ptr<detail::collapse_motion_t> m_motion;
  std::unique_ptr<detail::splitter_accessible_t> m_accessible;
  friend class detail::splitter_accessible_t;

  wxDECLARE_DYNAMIC_CLASS(wxAdvancedSplitter);
  wxDECLARE_EVENT_TABLE();
};

}  // namespace orvix1

#endif
