#ifndef ORVIX1_WXPOPUPWND_H
#define ORVIX1_WXPOPUPWND_H
/// @file
/// Popup windows that open beside an anchor window (a drop-down button) and
/// close when the user clicks elsewhere or presses Escape.

#include <wx/popupwin.h>

#include "orvix1/export.h"
#include "orvix1/ui_style.h"
#include "talvar2/functor/signal.h"

namespace orvix1 {

/// What an opener needs of a popup.
class ORVIX1_API IPopup {
 public:
  using popup_signal_t = talvar2::signal_t<IPopup*>;

  virtual ~IPopup();

  /// Raises before_popup() (the owner fills the content), then shows the
  /// popup below `anchor`, or above it when there is no room below. Nothing
  /// is shown when the content is empty after before_popup().
  virtual void PopupAt(wxWindow* anchor) = 0;
  virtual void ClosePopup() = 0;
  virtual bool IsPoppedUp() const = 0;
  /// False when there is nothing to show.
  virtual bool HasContent() const = 0;

  popup_signal_t& before_popup() { return m_before_popup; }
  popup_signal_t& closed() { return m_closed; }

 protected:
  popup_signal_t m_before_popup;
  popup_signal_t m_closed;
};
/// The look of the library's popups (the popup menu and the popup button).
/// They draw with these keys whatever colours or fonts the window itself
/// carries; the palette entry behind each key:
/// - "clPopupBg": color_window_bg (0), the menu and the resting button;
/// - "clPopupText": color_window_text (7), rows, the button's count and arrow;
/// - "clPopupDisabled": color_shadow_3d (4), disabled rows;
/// - "clPopupSelBg": color_selection_bg (8), the hot row and the active button;
/// - "clPopupSelText": color_selection_text (9), text on those;
/// - "clPopupHover": color_light_3d (3), the hovered button;
/// - "clPopupBorder": color_shadow_3d (4), separators and the button's frame;
/// - "fnPopup": font_normal (1).
class ORVIX1_API popup_style_t : public ui_style_t {
 public:
  popup_style_t();
  void set_style_info() override;
};

/// A popup window that opens beside an anchor window and closes on a click elsewhere.
class ORVIX1_API wxPopupWnd : public wxPopupTransientWindow, public IPopup {
 public:
  explicit wxPopupWnd(wxWindow* parent);

  void PopupAt(wxWindow* anchor) override;
  void ClosePopup() override;
  /// Hide() and Show(false) close an open popup as ClosePopup() does, so it
  /// opens again cleanly; closed() is raised only when the user closes it.
  bool Show(bool show = true) override;
  bool IsPoppedUp() const override { return IsShown(); }
  bool HasContent() const override { return true; }

  wxWindow* GetAnchor() const { return m_anchor; }
  /// True once after a click on the anchor closed the popup: the anchor must
  /// not open it again with the same click.
  bool TakeAnchorClick();

 protected:
  bool ProcessLeftDown(wxMouseEvent& event) override;
  void OnDismiss() override;

 private:
  void PlaceAtAnchor();

  wxWindow* m_anchor = nullptr;
  bool m_anchor_click = false;
  bool m_dismissing = false;
};

}  // namespace orvix1

#endif
