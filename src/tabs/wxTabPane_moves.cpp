// Tabs that change places: within a strip, to the other strip, by the
// keys, from code and by dragging (whose gesture is in tab_drag).

#include <algorithm>

#include "orvix1/wxTabPane.h"
#include "tabs/tab_drag.h"
#include "tabs/tab_pages.h"

namespace orvix1 {

bool wxTabPane::MoveTab(int from, int panel_index, int position) {
  wxTabButton* button = GetTab(from);
  wxTabPanel* target = GetPanel(panel_index);
  if (button == nullptr || target == nullptr) return false;
  wxTabPanel* own = PanelOf(button);
  if (own == target)
    own->MoveButton(button->GetId(), std::clamp(position, 0, own->GetButtonsCount() - 1));
  else
    MoveTabAcross(button, target, std::clamp(position, 0, target->GetButtonsCount()));
  ReportMove(button, from);
  return true;
}

bool wxTabPane::MoveSelectedTab(int step) {
  wxTabButton* button = SelectedTab();
  wxTabPanel* strip = PanelOf(button);
  if (strip == nullptr || !strip->IsTabMoveEnabled() || !AreTabMovesEnabled()) return false;
  const int from = FindTab(button);
  if (!strip->MoveButton(button->GetId(), button->GetId() + step)) return false;
  ReportMove(button, from);
  return true;
}

void wxTabPane::ReportMove(wxTabButton* button, int from) {
  const int to = FindTab(button);
  if (from >= 0 && to >= 0 && to != from) m_tab_moved(from, to);
}

void wxTabPane::MoveTabAcross(wxTabButton* button, wxTabPanel* to, int position) {
  const wxTabPanel* from = PanelOf(button);
  std::vector<wxTabButton*> strips[2];
  for (int slot : {primary_panel, secondary_panel}) {
    const wxTabPanel* panel = m_slots[slot].panel;
    if (panel == nullptr) continue;
    std::vector<wxTabButton*>& buttons = strips[slot - primary_panel];
    buttons = panel->m_buttons;
    if (panel == from) buttons.erase(std::find(buttons.begin(), buttons.end(), button));
    if (panel == to) buttons.insert(buttons.begin() + std::min<size_t>(position, buttons.size()), button);
  }
  ArrangeStrips(strips[0], strips[1]);
}

// Each strip takes its new buttons without a signal, so nothing lays out a
// strip that still lists buttons the other took; the selected tab is then
// selected again wherever it went.
void wxTabPane::ArrangeStrips(const std::vector<wxTabButton*>& primary,
                              const std::vector<wxTabButton*>& secondary) {
  wxTabButton* selected = SelectedTab();
  if (wxTabPanel* panel = GetPanel(primary_panel)) panel->ArrangeButtons(primary);
  if (wxTabPanel* panel = GetPanel(secondary_panel)) panel->ArrangeButtons(secondary);
  if (wxTabPanel* strip = PanelOf(selected)) strip->SetCurrentSelection(selected->GetId());
  UpdateSelectedButton();
  OnChangeSizes();
}

// --- dragging -----------------------------------------------------------------

bool wxTabPane::AreTabMovesEnabled() const {
  return m_moves == moves_on || (m_moves == moves_with_pages && !m_pages->empty());
}

bool wxTabPane::IsDragging() const { return m_drag->dragging(); }

void wxTabPane::CancelDrag() { m_drag->cancel(true); }

void wxTabPane::OnMouseWhileDragging(wxMouseEvent& event) {
  if (!IsDragging()) {
    event.Skip();
    return;
  }
  if (event.GetEventType() == wxEVT_LEFT_UP)
    m_drag->drop();
  else
    m_drag->follow(ClientToScreen(event.GetPosition()));
}

void wxTabPane::OnCaptureLost(wxMouseCaptureLostEvent&) { m_drag->cancel(false); }

}  // namespace orvix1
