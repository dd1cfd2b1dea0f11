// The order of a strip's buttons: moving one within the strip, and taking a
// new set (some of them from the other strip of a pane) in one go.

#include <algorithm>
#include <unordered_set>

#include "orvix1/wxTabPanel.h"

namespace orvix1 {

void wxTabPanel::ConnectButton(wxTabButton* button) {
  button->clicked().connect(this, &wxTabPanel::on_button_clicked);
  button->delete_requested().connect(this, &wxTabPanel::on_button_delete);
  button->resized().connect(this, &wxTabPanel::on_button_resized);
}

void wxTabPanel::DisconnectButton(wxTabButton* button) {
  button->clicked().disconnect(this, &wxTabPanel::on_button_clicked);
  button->delete_requested().disconnect(this, &wxTabPanel::on_button_delete);
  button->resized().disconnect(this, &wxTabPanel::on_button_resized);
}

// Only the buttons between the two places change their ids, and the
// measured sizes move with their buttons: a step of a drag through a long
// strip costs no more than a short one.
bool wxTabPanel::MoveButton(int from, int to) {
  if (GetButton(from) == nullptr || GetButton(to) == nullptr) return false;
  if (from == to) return true;
  const auto rotate = [from, to](auto& items) {
    if (from < to)
      std::rotate(items.begin() + from, items.begin() + from + 1, items.begin() + to + 1);
    else
      std::rotate(items.begin() + to, items.begin() + from, items.begin() + from + 1);
  };
  rotate(m_buttons);
  if (m_best_sizes_valid) rotate(m_best_sizes);
  for (int k = std::min(from, to); k <= std::max(from, to); ++k) m_buttons[k]->SetId(k);
  if (m_selection == from)
    m_selection = to;
  else if (from < m_selection && m_selection <= to)
    --m_selection;
  else if (to <= m_selection && m_selection < from)
    ++m_selection;
  // The layout rebuilds both lists; a frozen strip keeps them in order now.
  if (IsFrozen()) UpdateShowedLists();
  FullRefresh(!IsFrozen());
  return true;
}

int wxTabPanel::InsertionIndexAt(int x) const {
  for (const wxTabButton* button : m_shown) {
    const wxRect rect = button->GetRect();
    if (x < rect.x + rect.width / 2) return button->GetId();
  }
  return m_shown.empty() ? GetButtonsCount() : m_shown.back()->GetId() + 1;
}

// A button from elsewhere takes this strip's look and signals, and waits
// hidden for the layout to place it; its cross stays its own.
void wxTabPanel::AdoptButton(wxTabButton* button) {
  button->Hide();
  button->Reparent(this);
  ApplyLookTo(button);
  ConnectButton(button);
}

void wxTabPanel::ArrangeButtons(const std::vector<wxTabButton*>& buttons) {
  const std::unordered_set<const wxTabButton*> kept(buttons.begin(), buttons.end());
  const std::unordered_set<const wxTabButton*> had(m_buttons.begin(), m_buttons.end());
  wxTabButton* selected = GetButton(m_selection);
  for (wxTabButton* button : m_buttons)
    if (kept.count(button) == 0) DisconnectButton(button);
  for (wxTabButton* button : buttons)
    if (had.count(button) == 0) AdoptButton(button);
  const auto gone = [&kept](const wxTabButton* button) { return kept.count(button) == 0; };
  m_shown.erase(std::remove_if(m_shown.begin(), m_shown.end(), gone), m_shown.end());
  if (gone(m_brought_into_view)) m_brought_into_view = nullptr;
  m_buttons = buttons;
  Renumber(0);
  const auto found = std::find(m_buttons.begin(), m_buttons.end(), selected);
  m_selection = selected != nullptr && found != m_buttons.end() ? static_cast<int>(found - m_buttons.begin()) : -1;
  UpdateShowedLists();
  InvalidateBestSizes();
  FullRefresh(!IsFrozen());
}

}  // namespace orvix1
