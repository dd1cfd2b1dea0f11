#include "tabs/tab_drag.h"

#include <algorithm>
#include <cstdlib>

#include <wx/settings.h>

#include "orvix1/wxTabPane.h"

namespace orvix1 {
namespace detail {
namespace {

// How far the pointer must move, pressed, before a drag starts.
wxSize drag_threshold(wxWindow* window) {
  const int x = wxSystemSettings::GetMetric(wxSYS_DRAG_X, window);
  const int y = wxSystemSettings::GetMetric(wxSYS_DRAG_Y, window);
  return wxSize(x > 0 ? x : 4, y > 0 ? y : 4);
}

// The marker's x in the strip: in the gap before the tab at `index`, or
// behind the last shown tab.
int gap_before(const wxTabPanel* strip, int index) {
  const int half_margin = strip->GetMargin() / 2;
  for (const wxTabButton* button : strip->GetShownButtons())
    if (button->GetId() == index) return button->GetPosition().x - half_margin - 1;
  const auto& shown = strip->GetShownButtons();
  return shown.empty() ? 0 : shown.back()->GetRect().GetRight() + half_margin;
}

}  // namespace

// New buttons of a watched strip are bound as they come.
struct tab_drag_t::strip_hook_t : talvar2::subscriber_base_t {
  tab_drag_t* drag = nullptr;
  wxTabPanel* panel = nullptr;
  void on_added(int index) {
    if (wxTabButton* button = panel->GetButton(index)) drag->bind(button);
  }
};

tab_drag_t::tab_drag_t(wxTabPane* pane) : m_pane(pane) {}

tab_drag_t::~tab_drag_t() = default;

void tab_drag_t::watch(wxTabPanel* panel) {
  auto hook = std::make_unique<strip_hook_t>();
  hook->drag = this;
  hook->panel = panel;
  panel->button_added().connect(hook.get(), &strip_hook_t::on_added);
  m_hooks.push_back(std::move(hook));
  for (int index = 0; index < panel->GetButtonsCount(); ++index) bind(panel->GetButton(index));
}

void tab_drag_t::forget(wxTabPanel* panel) {
  m_hooks.erase(std::remove_if(m_hooks.begin(), m_hooks.end(),
                               [panel](const auto& hook) { return hook->panel == panel; }),
                m_hooks.end());
  if (dragging() && (m_origin == panel || m_target == panel)) end(true);
  if (m_pressed != nullptr && m_pressed->GetParent() == panel) m_pressed = nullptr;
}

// Bound to the button itself, not through a closure: a button given up
// with RemoveButton(…, true) may outlive the pane, so the binding must go.
void tab_drag_t::bind(wxTabButton* button) {
  button->Bind(wxEVT_LEFT_DOWN, &tab_drag_t::on_press, this);
  button->Bind(wxEVT_LEFT_DCLICK, &tab_drag_t::on_press, this);
  button->Bind(wxEVT_MOTION, &tab_drag_t::on_motion, this);
  button->Bind(wxEVT_LEFT_UP, &tab_drag_t::on_release, this);
}

void tab_drag_t::forget(wxTabButton* button) {
  button->Unbind(wxEVT_LEFT_DOWN, &tab_drag_t::on_press, this);
  button->Unbind(wxEVT_LEFT_DCLICK, &tab_drag_t::on_press, this);
  button->Unbind(wxEVT_MOTION, &tab_drag_t::on_motion, this);
  button->Unbind(wxEVT_LEFT_UP, &tab_drag_t::on_release, this);
  if (m_pressed == button) m_pressed = nullptr;
  if (m_dragged == button) end(true);
}

// --- the gesture --------------------------------------------------------------

void tab_drag_t::on_press(wxMouseEvent& event) {
  event.Skip();
  auto* button = dynamic_cast<wxTabButton*>(event.GetEventObject());
  const wxTabPanel* strip = m_pane->PanelOf(button);
  if (dragging() || strip == nullptr || !strip->IsTabMoveEnabled() || !m_pane->AreTabMovesEnabled())
    return;
  m_pressed = button;
  m_press_at = button->ClientToScreen(event.GetPosition());
}

void tab_drag_t::on_motion(wxMouseEvent& event) {
  event.Skip();
  if (dragging() || m_pressed == nullptr || event.GetEventObject() != m_pressed || !event.LeftIsDown())
    return;
  const wxPoint at = m_pressed->ClientToScreen(event.GetPosition());
  const wxSize threshold = drag_threshold(m_pressed);
  if (std::abs(at.x - m_press_at.x) <= threshold.x && std::abs(at.y - m_press_at.y) <= threshold.y)
    return;
  begin(m_pressed);
  follow(at);
}

void tab_drag_t::on_release(wxMouseEvent& event) {
  event.Skip();
  m_pressed = nullptr;
}

// The tab's release will not reach it: it must not look pressed nor take
// the release for a click.
void tab_drag_t::begin(wxTabButton* button) {
  m_pressed = nullptr;
  m_dragged = button;
  m_origin = m_target = m_pane->PanelOf(button);
  m_origin_index = m_target_index = button->GetId();
  m_origin_tab = m_pane->FindTab(button);
  button->SetState(button->GetState() & ~wxTabButton::state_pressed);
  m_marker = new wxWindow(m_pane, wxID_ANY, wxDefaultPosition, wxSize(2, 2), wxBORDER_NONE, "dropMarker");
  m_marker->SetBackgroundColour(m_origin->GetColor(wxTabButton::border_hover));
  m_marker->Hide();
  m_pane->CaptureMouse();
}

void tab_drag_t::follow(const wxPoint& screen) {
  if (!dragging()) return;
  wxTabPanel* own = m_pane->PanelOf(m_dragged);
  wxTabPanel* strip = strip_at(screen);
  if (strip != nullptr && strip == own) {
    follow_in_own_strip(own, own->ScreenToClient(screen).x);
  } else if (strip != nullptr && strip->IsTabDropEnabled()) {
    m_target = strip;
    m_target_index = strip->InsertionIndexAt(strip->ScreenToClient(screen).x);
  } else {  // off the strips the tab stays where it is
    m_target = own;
    m_target_index = m_dragged->GetId();
  }
  show_marker(m_target, m_target_index);
}

// The tab takes the place the pointer is over, the others make way. Over the
// tab itself nothing moves, so tabs of different widths do not swap back
// and forth.
void tab_drag_t::follow_in_own_strip(wxTabPanel* strip, int x) {
  const int at = m_dragged->GetId();
  const int insertion = strip->InsertionIndexAt(x);
  const int to = insertion > at ? insertion - 1 : insertion;
  if (to != at) strip->MoveButton(at, to);
  m_target = strip;
  m_target_index = m_dragged->GetId();
}

wxTabPanel* tab_drag_t::strip_at(const wxPoint& screen) const {
  for (int index : {wxTabPane::primary_panel, wxTabPane::secondary_panel}) {
    wxTabPanel* strip = m_pane->GetPanel(index);
    if (strip != nullptr && strip->IsShown() && strip->GetScreenRect().Contains(screen)) return strip;
  }
  return nullptr;
}

void tab_drag_t::show_marker(wxTabPanel* strip, int index) {
  const wxPoint at = strip->GetPosition() + wxPoint(gap_before(strip, index), 0);
  m_marker->SetSize(at.x, at.y, 2, strip->GetSize().y);
  m_marker->Show();
  m_marker->Raise();
}

// --- the end ------------------------------------------------------------------

// The tab goes where the marker is and is selected there.
void tab_drag_t::drop() {
  if (!dragging()) return;
  wxTabButton* button = m_dragged;
  wxTabPanel* target = m_target;
  const int index = m_target_index;
  const int from = m_origin_tab;
  end(true);
  if (target != nullptr && target != m_pane->PanelOf(button)) m_pane->MoveTabAcross(button, target, index);
  if (wxTabPanel* strip = m_pane->PanelOf(button)) strip->SetCurrentSelection(button->GetId());
  m_pane->ReportMove(button, from);
}

void tab_drag_t::cancel(bool release) {
  if (!dragging()) return;
  wxTabPanel* own = m_pane->PanelOf(m_dragged);
  if (own != nullptr && own == m_origin)
    own->MoveButton(m_dragged->GetId(), std::min(m_origin_index, own->GetButtonsCount() - 1));
  end(release);
}

void tab_drag_t::end(bool release) {
  if (release && m_pane->HasCapture()) m_pane->ReleaseMouse();
  if (m_marker != nullptr) m_marker->Destroy();
  m_marker = nullptr;
  m_dragged = nullptr;
  m_origin = m_target = nullptr;
}

}  // namespace detail
}  // namespace orvix1
