#include "orvix1/wxPopupWnd.h"

#include <algorithm>

namespace orvix1 {

IPopup::~IPopup() = default;

popup_style_t::popup_style_t() { set_style_info(); }

void popup_style_t::set_style_info() {
  const talvar2::intrusive_pointer_t<ui_settings_t>& palette = get_settings();
  const struct {
    const char* key;
    default_colors_t index;
  } colours[] = {
      {"clPopupBg", color_window_bg},         {"clPopupText", color_window_text},
      {"clPopupDisabled", color_shadow_3d},   {"clPopupSelBg", color_selection_bg},
      {"clPopupSelText", color_selection_text}, {"clPopupHover", color_light_3d},
      {"clPopupBorder", color_shadow_3d},
  };
  for (const auto& colour : colours) internal_set_color(colour.key, palette->get_color(colour.index));
  internal_set_font("fnPopup", palette->get_font(font_normal));
}

wxPopupWnd::wxPopupWnd(wxWindow* parent) : wxPopupTransientWindow(parent, wxBORDER_SIMPLE) {}

void wxPopupWnd::PopupAt(wxWindow* anchor) {
  m_anchor = anchor;
  m_anchor_click = false;
  m_before_popup(this);
  if (!HasContent()) return;
  SetSize(GetBestSize());
  PlaceAtAnchor();
  Popup();
}

void wxPopupWnd::ClosePopup() {
  if (IsShown()) Dismiss();
}

// wxPopupTransientWindow pushes event handlers on opening and pops them only
// in Dismiss(); a plain hide would leave them pushed, and the next opening
// would chain them onto themselves. Dismiss() hides through here again.
bool wxPopupWnd::Show(bool show) {
  if (show || !IsShown() || m_dismissing) return wxPopupTransientWindow::Show(show);
  m_dismissing = true;
  Dismiss();
  m_dismissing = false;
  return true;
}

void wxPopupWnd::PlaceAtAnchor() {
  // Right-aligned with the anchor: drop-down buttons sit at the right end
  // of the bars they serve.
  const wxPoint anchor = m_anchor->ClientToScreen(wxPoint(0, 0));
  const wxSize anchor_size = m_anchor->GetSize();
  const int left = anchor.x + anchor_size.x - GetSize().x;
  Position(wxPoint(std::max(left, 0), anchor.y), wxSize(0, anchor_size.y));
}

bool wxPopupWnd::TakeAnchorClick() {
  const bool taken = m_anchor_click;
  m_anchor_click = false;
  return taken;
}

bool wxPopupWnd::ProcessLeftDown(wxMouseEvent& event) {
  if (m_anchor == nullptr || GetClientRect().Contains(event.GetPosition())) return false;
  const wxPoint screen = ClientToScreen(event.GetPosition());
  if (!m_anchor->GetScreenRect().Contains(screen)) return false;
  m_anchor_click = true;
  Dismiss();
  return true;
}

void wxPopupWnd::OnDismiss() { m_closed(this); }

}  // namespace orvix1
