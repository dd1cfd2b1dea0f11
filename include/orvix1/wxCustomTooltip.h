#ifndef ORVIX1_WXCUSTOMTOOLTIP_H
#define ORVIX1_WXCUSTOMTOOLTIP_H
/// @file
/// An owner-drawn tooltip for any window: a text in a borderless popup that
/// appears after the pointer rests on its target, sits beside the pointer
/// inside the work area of the monitor under it, hides after a time or when
/// the pointer leaves, and passes input that lands on it to its target.
///
/// It follows the palette at every change of it: the text in font_tooltip
/// (4) and color_info_text (12) on color_tooltip_bg (10), framed in
/// color_info_text (12).

#include <map>
#include <memory>
#include <string>

#include <wx/popupwin.h>
#include <wx/timer.h>

#include "orvix1/elements/UIElement.h"
#include "orvix1/export.h"
#include "talvar2/functor/signal.h"

namespace orvix1 {

namespace detail {
class tooltip_accessible_t;
}  // namespace detail

namespace elements {
class ElementAdapter;
class RectangleElement;
class TextElement;
}  // namespace elements
/// An owner-drawn tooltip for any window.
class ORVIX1_API wxCustomTooltip : public wxPopupWindow, public talvar2::subscriber_base_t {
 public:
  using tooltip_signal_t = talvar2::signal_t<wxCustomTooltip*>;

  /// Space around the text: left, top, right, bottom, at 96 dpi; a new
  /// tooltip takes it, and its frame's border, times get_DPI_scale().
  static const elements::margin_t DefaultMargin;
  static const int show_timer_id = 1;
  static const int hide_timer_id = 2;

  wxCustomTooltip();
  ~wxCustomTooltip() override;

  /// One tooltip per target window.
  void Attach(wxWindow* target);
  void Detach(wxWindow* target);
  wxWindow* GetTarget() const { return m_owner; }
  static wxCustomTooltip* GetAssociatedTooltip(wxWindow* target);
  static bool IsTooltipsMapEmpty();
  /// Emitted by every tooltip that is being destroyed.
  static tooltip_signal_t& GetDestroyedSignal();

  /// An empty text hides the tooltip and keeps it from showing.
  void SetText(const std::string& text);
  std::string GetText() const;
  void SetMargin(const elements::margin_t& margin);

  /// Milliseconds; -1 takes the delay from the palette.
  void SetShowDelay(int milliseconds) { m_show_delay = milliseconds; }
  int GetShowDelay() const { return m_show_delay; }
  void SetHideDelay(int milliseconds) { m_hide_delay = milliseconds; }
  int GetHideDelay() const { return m_hide_delay; }
  /// Pixels from the pointer; the palette gives the default.
  void SetPositionOffset(const wxPoint& offset);
  const wxPoint& GetPositionOffset() const { return m_offset; }
  /// A screen position that stands in for the pointer's when the tooltip is
  /// placed; ResetCustomPosition goes back to the pointer.
  void SetCustomPosition(const wxPoint& position) { m_custom_position = position; }
  void ResetCustomPosition() { m_custom_position = wxPoint(0, 0); }

  /// Shows at once for the current target, or for `target`.
  void Popup();
  void Popup(wxWindow* target);
  void DoShowTooltip();
  void DoHideTooltip();
  void UpdateSizeAndPosition();
  wxSize CalculateSize() const;
  void OnUISettingsUpdated();

  bool Destroy() override;
  bool AcceptsFocus() const override { return false; }

  wxTimer& GetShowTimer() { return m_show_timer; }
  wxTimer& GetHideTimer() { return m_hide_timer; }
  bool IsFirstShow() const { return m_first_show; }

 protected:
  /// The pointer's screen position; tests replace it.
  virtual wxPoint GetMouseScreenPosition() const;
  /// The work area of the monitor under `pointer` (of the first monitor when
  /// no monitor has it); tests replace it.
  virtual wxRect GetWorkArea(const wxPoint& pointer) const;

 private:
  /// Where the tooltip is placed from: the custom position, else the pointer.
  wxPoint GetPlacementOrigin() const;

  void OnTimer(wxTimerEvent& event);
  void OnMouse(wxMouseEvent& event);
  void OnActivate(wxActivateEvent& event);
  void OnTargetEnterMouse(wxMouseEvent& event);
  void OnTargetLeaveMouse(wxMouseEvent& event);
  void OnTargetShow(wxShowEvent& event);
  void OnOwnerDestroyed(wxWindowDestroyEvent& event);
  void BindTarget(wxWindow* target, bool bind);

  elements::ElementAdapter* m_adapter = nullptr;
  talvar2::intrusive_pointer_t<elements::RectangleElement> m_frame;
  talvar2::intrusive_pointer_t<elements::TextElement> m_text;
  std::unique_ptr<detail::tooltip_accessible_t> m_accessible;
  wxWindow* m_owner = nullptr;
  wxPoint m_offset;
  bool m_offset_set_by_caller = false;
  bool m_first_show = true;
  wxPoint m_custom_position;
  int m_show_delay = -1;
  int m_hide_delay = -1;
  wxTimer m_show_timer;
  wxTimer m_hide_timer;

  static std::map<wxWindow*, wxCustomTooltip*> m_active_tooltips;
};

}  // namespace orvix1

#endif
