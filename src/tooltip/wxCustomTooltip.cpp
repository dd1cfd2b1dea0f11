#include "orvix1/wxCustomTooltip.h"

#include <wx/app.h>
#include <wx/display.h>

#include "orvix1/dpi.h"
#include "orvix1/elements/ElementAdapter.h"
#include "orvix1/elements/RectangleElement.h"
#include "orvix1/elements/TextElement.h"
#include "orvix1/ui_settings.h"
#include "core/contract_sites.h"
#include "tooltip/tooltip_accessible.h"

namespace orvix1 {

using elements::UIElement;

const elements::margin_t wxCustomTooltip::DefaultMargin(3, 3, 2, 2);

namespace {

// The palette's tooltip delay; a store without the metric (a plain one, no
// palette yet) counts as the palette's own default.
// DefaultMargin and the frame's one-pixel border as the screen's scale
// makes them.
elements::margin_t scaled(const elements::margin_t& margin) {
  return elements::margin_t(calculate_DPI_scaled_length(margin.left),
                            calculate_DPI_scaled_length(margin.top),
                            calculate_DPI_scaled_length(margin.right),
                            calculate_DPI_scaled_length(margin.bottom));
}

int palette_tooltip_delay() {
  const int delay = ui_settings_t::get()->get_metric(metric_tooltip_delay);
  return delay >= 0 ? delay : 500;
}

}  // namespace
std::map<wxWindow*, wxCustomTooltip*> wxCustomTooltip::m_active_tooltips;

wxCustomTooltip::tooltip_signal_t& wxCustomTooltip::GetDestroyedSignal() {
  static tooltip_signal_t destroyed;
  return destroyed;
}

wxCustomTooltip::wxCustomTooltip()
    : wxPopupWindow(nullptr, wxBORDER_NONE),
      m_show_timer(this, show_timer_id),
      m_hide_timer(this, hide_timer_id) {
  SetBackgroundStyle(wxBG_STYLE_PAINT);
  m_accessible = std::make_unique<detail::tooltip_accessible_t>(*this);
  m_adapter = new elements::ElementAdapter(this);
  m_frame = new elements::RectangleElement();
  m_adapter->SetRootElement(m_frame);
  m_text = new elements::TextElement(m_frame, UIElement::pfHExpand | UIElement::pfVExpand);
  m_text->SetMargin(scaled(DefaultMargin));
  m_frame->ShowBorder(true);
  m_frame->SetBorderThickness(calculate_DPI_scaled_length(m_frame->GetBorderThickness()));

  // Bound after the adapter's: wx calls the handlers bound last first, so
  // these see every mouse event before the content's elements do.
  Bind(wxEVT_TIMER, &wxCustomTooltip::OnTimer, this);
  for (const wxEventTypeTag<wxMouseEvent>& type :
       std::initializer_list<wxEventTypeTag<wxMouseEvent>>{wxEVT_LEFT_DOWN, wxEVT_LEFT_UP, wxEVT_LEFT_DCLICK, wxEVT_MIDDLE_DOWN, wxEVT_MIDDLE_UP,
        wxEVT_MIDDLE_DCLICK, wxEVT_RIGHT_DOWN, wxEVT_RIGHT_UP, wxEVT_RIGHT_DCLICK, wxEVT_AUX1_DOWN,
        wxEVT_AUX1_UP, wxEVT_AUX1_DCLICK, wxEVT_AUX2_DOWN, wxEVT_AUX2_UP, wxEVT_AUX2_DCLICK,
        wxEVT_MOTION, wxEVT_ENTER_WINDOW, wxEVT_LEAVE_WINDOW, wxEVT_MOUSEWHEEL})
    Bind(type, &wxCustomTooltip::OnMouse, this);
  Bind(wxEVT_ACTIVATE, &wxCustomTooltip::OnActivate, this);
  Bind(wxEVT_ACTIVATE_APP, &wxCustomTooltip::OnActivate, this);


  ui_settings_t::get()->changed().connect(this, &wxCustomTooltip::OnUISettingsUpdated);
  OnUISettingsUpdated();
}

wxCustomTooltip::~wxCustomTooltip() {
  if (m_owner != nullptr) Detach(m_owner);
  GetDestroyedSignal()(this);
  // The adapter is bound to this window's events: it goes before the window.
  delete m_adapter;
  m_adapter = nullptr;
}

bool wxCustomTooltip::Destroy() {
  ui_settings_t::get()->changed().disconnect(this, &wxCustomTooltip::OnUISettingsUpdated);
  if (m_owner != nullptr) Detach(m_owner);
  return wxPopupWindow::Destroy();
}

// --- targets ------------------------------------------------------------------

void wxCustomTooltip::Attach(wxWindow* target) {
  if (!contract_holds(target != nullptr && m_owner == nullptr,
                      contract::site_t::tooltip_target_taken))
    return;
  if (!contract_holds(m_active_tooltips.find(target) == m_active_tooltips.end(),
                      contract::site_t::tooltip_target_has_one))
    return;
  m_owner = target;
  BindTarget(target, true);
  m_active_tooltips[target] = this;
  m_accessible->attached(*target, GetText());
}

void wxCustomTooltip::Detach(wxWindow* target) {
  if (target == nullptr || target != m_owner) return;
  DoHideTooltip();
  BindTarget(target, false);
  m_active_tooltips.erase(target);
  m_owner = nullptr;
  m_accessible->detached(true);
}

void wxCustomTooltip::BindTarget(wxWindow* target, bool bind) {
  if (bind) {
    target->Bind(wxEVT_ENTER_WINDOW, &wxCustomTooltip::OnTargetEnterMouse, this);
    target->Bind(wxEVT_LEAVE_WINDOW, &wxCustomTooltip::OnTargetLeaveMouse, this);
    target->Bind(wxEVT_SHOW, &wxCustomTooltip::OnTargetShow, this);
    target->Bind(wxEVT_DESTROY, &wxCustomTooltip::OnOwnerDestroyed, this);
  } else {
    target->Unbind(wxEVT_ENTER_WINDOW, &wxCustomTooltip::OnTargetEnterMouse, this);
    target->Unbind(wxEVT_LEAVE_WINDOW, &wxCustomTooltip::OnTargetLeaveMouse, this);
    target->Unbind(wxEVT_SHOW, &wxCustomTooltip::OnTargetShow, this);
    target->Unbind(wxEVT_DESTROY, &wxCustomTooltip::OnOwnerDestroyed, this);
  }
}

wxCustomTooltip* wxCustomTooltip::GetAssociatedTooltip(wxWindow* target) {
  const auto found = m_active_tooltips.find(target);
  return found != m_active_tooltips.end() ? found->second : nullptr;
}

bool wxCustomTooltip::IsTooltipsMapEmpty() { return m_active_tooltips.empty(); }

// --- content and look ---------------------------------------------------------

void wxCustomTooltip::SetText(const std::string& text) {
  m_text->SetText(text);
  m_accessible->text_changed(GetText());
  if (text.empty()) DoHideTooltip();
}

std::string wxCustomTooltip::GetText() const { return m_text->GetText(); }

void wxCustomTooltip::SetMargin(const elements::margin_t& margin) { m_text->SetMargin(margin); }

void wxCustomTooltip::SetPositionOffset(const wxPoint& offset) {
  m_offset = offset;
  m_offset_set_by_caller = true;
}

void wxCustomTooltip::OnUISettingsUpdated() {
  const talvar2::intrusive_pointer_t<ui_settings_t> settings = ui_settings_t::get();
  m_text->SetFont(settings->get_font(font_tooltip));
  m_text->SetColor(settings->get_color(color_info_text));
  m_frame->SetBkColor(settings->get_color(color_tooltip_bg));
  m_frame->SetBorderColor(settings->get_color(color_info_text));
  // Below the pointer by three quarters of the cursor height. Not scaled:
  // the metric is the desktop's pointer size, which a dense desktop already
  // makes larger.
  if (!m_offset_set_by_caller)
    m_offset = wxPoint(0, static_cast<int>(settings->get_metric(metric_cursor_y) * 0.75));
}

wxSize wxCustomTooltip::CalculateSize() const {
  const wxSize text = m_text->GetSize();
  const elements::margin_t& margin = m_text->GetMargin();
  const int border = 2 * m_frame->GetBorderThickness();
  return wxSize(text.x + margin.left + margin.right + border,
                text.y + margin.top + margin.bottom + border);
}

// --- showing and hiding -------------------------------------------------------

void wxCustomTooltip::DoShowTooltip() {
  if (IsShown() || GetText().empty()) return;
  const int delay = m_show_delay >= 0 ? m_show_delay : palette_tooltip_delay();
  if (delay == 0) {
    Popup(m_owner);
    return;
  }
  // Once a tooltip has appeared, later hovers bring it up five times faster.
  m_show_timer.StartOnce(m_first_show ? delay : delay / 5);
}

void wxCustomTooltip::Popup() { Popup(m_owner); }

void wxCustomTooltip::Popup(wxWindow* target) {
  if (target == nullptr || GetText().empty()) return;
  UpdateSizeAndPosition();
  const int hide_delay = m_hide_delay >= 0 ? m_hide_delay : palette_tooltip_delay() * 10;
  // A hide delay of 0 keeps the tooltip from ever appearing.
  if (hide_delay <= 0) return;
  Show();
  m_hide_timer.StartOnce(hide_delay);
}

void wxCustomTooltip::DoHideTooltip() {
  if (m_show_timer.IsRunning()) m_show_timer.Stop();
  if (m_hide_timer.IsRunning()) m_hide_timer.Stop();
  Hide();
}

wxPoint wxCustomTooltip::GetMouseScreenPosition() const { return wxGetMousePosition(); }

wxRect wxCustomTooltip::GetWorkArea(const wxPoint& pointer) const {
  const int display = wxDisplay::GetFromPoint(pointer);
  return wxDisplay(display == wxNOT_FOUND ? 0u : static_cast<unsigned>(display)).GetClientArea();
}

wxPoint wxCustomTooltip::GetPlacementOrigin() const {
  if (m_custom_position != wxPoint(0, 0)) return m_custom_position;
  return GetMouseScreenPosition();
}

void wxCustomTooltip::UpdateSizeAndPosition() {
  const wxSize size = CalculateSize();
  SetMinSize(size);
  SetSize(size);
  const wxPoint pointer = GetPlacementOrigin();
  const wxRect area = GetWorkArea(pointer);
  int x = pointer.x + m_offset.x;
  int y = pointer.y + m_offset.y;
  // Pushed left against the right edge, not flipped.
  if (x + size.x >= area.x + area.width) {
    x = area.x + area.width - 1 - m_offset.x - size.x;
    if (x < area.x) x = area.x;
  }
  // Flipped above the pointer at the bottom.
  if (y + size.y >= area.y + area.height) {
    y = pointer.y - m_offset.y - size.y;
    if (y < area.y) y = area.y;
  }
  Move(x, y);
}

// --- events -------------------------------------------------------------------

void wxCustomTooltip::OnTimer(wxTimerEvent& event) {
  if (event.GetId() == show_timer_id && m_owner != nullptr) {
    Popup(m_owner);
    m_first_show = false;
  } else if (event.GetId() == hide_timer_id && IsShown()) {
    DoHideTooltip();
  } else {
    event.Skip();
  }
}

void wxCustomTooltip::OnTargetEnterMouse(wxMouseEvent& event) {
  event.Skip();
  DoShowTooltip();
}

void wxCustomTooltip::OnTargetLeaveMouse(wxMouseEvent& event) {
  event.Skip();
  if (event.GetEventObject() != this) DoHideTooltip();
}

void wxCustomTooltip::OnTargetShow(wxShowEvent& event) {
  event.Skip();
  if (!event.IsShown()) DoHideTooltip();
}

void wxCustomTooltip::OnOwnerDestroyed(wxWindowDestroyEvent& event) {
  event.Skip();
  if (event.GetEventObject() != m_owner) return;
  DoHideTooltip();
  m_active_tooltips.erase(m_owner);
  m_owner = nullptr;
  m_accessible->detached(false);
}

// Input that lands on the tooltip outside its target goes on to the target.
void wxCustomTooltip::OnMouse(wxMouseEvent& event) {
  event.Skip();  // the content's elements see it too
  if (m_owner == nullptr || event.GetEventType() == wxEVT_LEAVE_WINDOW) return;
  const wxPoint pointer = GetMouseScreenPosition();
  // The target's rectangle as it reports it, in its parent's coordinates:
  // a pointer over the target on screen does not count as inside, so a
  // click on a tooltip covering its own target still reaches the target.
  const wxRect target_rect(m_owner->GetPosition(), m_owner->GetSize());
  if (target_rect.Contains(pointer)) return;
  event.Skip(false);
  DoHideTooltip();
  wxMouseEvent forwarded(event);
  forwarded.SetPosition(m_owner->ScreenToClient(ClientToScreen(event.GetPosition())));
  forwarded.SetEventObject(m_owner);
  forwarded.SetId(m_owner->GetId());
  m_owner->GetEventHandler()->ProcessEvent(forwarded);
}

void wxCustomTooltip::OnActivate(wxActivateEvent& event) {
  event.Skip();
  if (wxTheApp != nullptr && !wxTheApp->IsActive()) DoHideTooltip();
}

}  // namespace orvix1
