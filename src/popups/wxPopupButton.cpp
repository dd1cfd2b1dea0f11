#include "orvix1/wxPopupButton.h"

#include <algorithm>

#include <wx/dcbuffer.h>
#include <wx/renderer.h>
#include <wx/settings.h>

#include "orvix1/text_utils.h"

namespace orvix1 {
namespace {

const int k_arrow_width = 16;
const int k_padding = 3;

}  // namespace

wxIMPLEMENT_DYNAMIC_CLASS(wxPopupButton, wxControl);

wxBEGIN_EVENT_TABLE(wxPopupButton, wxControl)
  EVT_PAINT(wxPopupButton::OnPaint)
  EVT_LEFT_DOWN(wxPopupButton::OnLeftDown)
  EVT_LEFT_DCLICK(wxPopupButton::OnLeftDown)
  EVT_ENTER_WINDOW(wxPopupButton::OnEnterOrLeave)
  EVT_LEAVE_WINDOW(wxPopupButton::OnEnterOrLeave)
wxEND_EVENT_TABLE()

wxPopupButton::wxPopupButton() = default;

wxPopupButton::wxPopupButton(wxWindow* parent, wxWindowID id, const wxPoint& position,
                             const wxSize& size, long style) {
  Create(parent, id, position, size, style);
}

bool wxPopupButton::Create(wxWindow* parent, wxWindowID id, const wxPoint& position,
                           const wxSize& size, long style) {
  SetBackgroundStyle(wxBG_STYLE_PAINT);
  if (!wxControl::Create(parent, id, position, size, style | wxBORDER_NONE, wxDefaultValidator,
                         "wxPopupButton"))
    return false;
  SetInitialSize(size);
  return true;
}

void wxPopupButton::SetPopup(wxPopupWnd* popup) {
  if (m_popup == popup) return;
  if (m_popup != nullptr) m_popup->Destroy();
  m_popup = popup;
}

void wxPopupButton::OpenPopup() {
  if (m_popup != nullptr && !m_popup->IsPoppedUp()) m_popup->PopupAt(this);
}

void wxPopupButton::SetActive(bool active, int count) {
  if (m_active == active && m_count == count) return;
  m_active = active;
  m_count = count;
  InvalidateBestSize();
  Refresh();
}

wxString wxPopupButton::CountText() const {
  return m_active && m_count > 0 ? wxString::Format("%d", m_count) : wxString();
}

wxSize wxPopupButton::DoGetBestSize() const {
  const wxSize text = GetTextSize(this, CountText());
  const int height = std::max(GetTextSize(this, "Ag").y, k_arrow_width) + 2 * k_padding;
  return wxSize(k_arrow_width + text.x + 2 * k_padding, height);
}

void wxPopupButton::OnPaint(wxPaintEvent&) {
  wxBufferedPaintDC dc(this);
  const wxRect client(GetClientSize());
  dc.SetBackground(wxBrush(GetBackgroundColour()));
  dc.Clear();
  int flags = 0;
  if (m_hovered) flags |= wxCONTROL_CURRENT;
  if (m_active) flags |= wxCONTROL_PRESSED;
  if (m_hovered || m_active) wxRendererNative::Get().DrawPushButton(this, dc, client, flags);
  const wxString text = CountText();
  int arrow_x = client.x;
  if (!text.empty()) {
    dc.SetFont(GetFont());
    dc.SetTextForeground(GetForegroundColour());
    dc.DrawLabel(text, wxRect(client.x + k_padding, client.y, client.width, client.height),
                 wxALIGN_LEFT | wxALIGN_CENTRE_VERTICAL);
    arrow_x = client.GetRight() - k_arrow_width - k_padding;
  }
  wxRendererNative::Get().DrawDropArrow(
      this, dc, wxRect(arrow_x, client.y, client.GetRight() - arrow_x + 1, client.height), flags);
}

void wxPopupButton::OnLeftDown(wxMouseEvent& event) {
  // The click that closed the popup on this button must not reopen it.
  if (m_popup != nullptr && !m_popup->TakeAnchorClick()) OpenPopup();
  event.Skip();
}

void wxPopupButton::OnEnterOrLeave(wxMouseEvent& event) {
  m_hovered = event.Entering();
  Refresh();
  event.Skip();
}

}  // namespace orvix1
