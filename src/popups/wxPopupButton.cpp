#include "orvix1/wxPopupButton.h"

#include <algorithm>

#include <wx/dcbuffer.h>

#include "orvix1/dpi.h"
#include "orvix1/text_utils.h"
#include "popups/popup_accessible.h"

namespace orvix1 {
namespace {

// At 96 dpi: the arrow's column, the space around the contents, and the
// arrow's half width and half height.
const int k_arrow_width = 16;
const int k_padding = 3;
const int k_arrow_half_width = 4;
const int k_arrow_half_height = 2;

int scaled(int length) { return calculate_DPI_scaled_length(length); }

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

wxPopupButton::~wxPopupButton() = default;

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
  SetUiStyle(new popup_style_t);
  SetInitialSize(size);
  m_accessible = std::make_unique<detail::popup_button_accessible_t>(*this);
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

void wxPopupButton::SetAccessibleName(const wxString& name) {
  if (name == m_accessible_name) return;
  m_accessible_name = name;
  if (m_accessible) accessibility::notify_name(accessibility::accessible_of(this));
}

wxString wxPopupButton::CountText() const {
  return m_active && m_count > 0 ? wxString::Format("%d", m_count) : wxString();
}

wxSize wxPopupButton::DoGetBestSize() const {
  const wxFont font = StyleFont("fnPopup");
  const wxSize text = GetTextSize(this, CountText(), font);
  const int arrow = scaled(k_arrow_width);
  const int padding = scaled(k_padding);
  const int height = std::max(GetTextSize(this, "Ag", font).y, arrow) + 2 * padding;
  return wxSize(arrow + text.x + 2 * padding, height);
}

void wxPopupButton::on_style_updated() {
  InvalidateBestSize();
  Refresh();
}

void wxPopupButton::OnPaint(wxPaintEvent&) {
  wxBufferedPaintDC dc(this);
  DrawButton(dc);
}

// Painted from the style, not by the desktop's renderer: a native button
// keeps the desktop's light look under a dark palette.
void wxPopupButton::DrawButton(wxDC& dc) const {
  const wxRect client(GetClientSize());
  const wxColour background = StyleColor(m_active ? "clPopupSelBg" : m_hovered ? "clPopupHover" : "clPopupBg");
  dc.SetBackground(wxBrush(background));
  dc.Clear();
  if (m_hovered || m_active) {
    dc.SetPen(wxPen(StyleColor("clPopupBorder")));
    dc.SetBrush(*wxTRANSPARENT_BRUSH);
    dc.DrawRectangle(client);
  }
  const wxColour ink = StyleColor(m_active ? "clPopupSelText" : "clPopupText");
  const wxString text = CountText();
  int arrow_x = client.x;
  if (!text.empty()) {
    // Without a live palette the style has no font: the window's stands in.
    const wxFont font = StyleFont("fnPopup");
    dc.SetFont(font.IsOk() ? font : GetFont());
    dc.SetTextForeground(ink);
    const int padding = scaled(k_padding);
    dc.DrawLabel(text, wxRect(client.x + padding, client.y, client.width, client.height),
                 wxALIGN_LEFT | wxALIGN_CENTRE_VERTICAL);
    arrow_x = client.GetRight() - scaled(k_arrow_width) - padding;
  }
  // A small downward triangle centred in the arrow's column.
  const int centre_x = arrow_x + (client.GetRight() - arrow_x + 1) / 2;
  const int centre_y = client.y + client.height / 2;
  const int half_width = scaled(k_arrow_half_width);
  const int half_height = scaled(k_arrow_half_height);
  const wxPoint arrow[] = {wxPoint(centre_x - half_width, centre_y - half_height),
                           wxPoint(centre_x + half_width, centre_y - half_height),
                           wxPoint(centre_x, centre_y + half_height)};
  dc.SetPen(wxPen(ink));
  dc.SetBrush(wxBrush(ink));
  dc.DrawPolygon(WXSIZEOF(arrow), arrow);
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
