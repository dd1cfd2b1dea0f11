#include "orvix1/wxTabButtonsMenu.h"

#include "orvix1/wxTabButton.h"

namespace orvix1 {

wxTabButtonsMenu::wxTabButtonsMenu(wxWindow* parent) : wxPopupMenu(parent) {}

int wxTabButtonsMenu::AddTabButton(wxTabButton* button) {
  if (button == nullptr) return -1;
  m_buttons.push_back(button);
  return Append(button->GetLabel(), button->GetBitmap(), button->GetCrossed(),
                button->GetDisabled());
}

void wxTabButtonsMenu::ClearButtons() {
  m_buttons.clear();
  Clear();
}

wxTabButton* wxTabButtonsMenu::GetTabButton(int row) const {
  return row >= 0 && row < static_cast<int>(m_buttons.size()) ? m_buttons[row] : nullptr;
}

}  // namespace orvix1
