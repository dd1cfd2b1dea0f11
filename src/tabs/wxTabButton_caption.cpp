// A caption cut to fit its tab is shown whole in the tab's tooltip, ahead of
// whatever the owner put there.

#include "orvix1/wxTabButton.h"

namespace orvix1 {

void wxTabButton::SetTooltipText(const std::string& text) {
  m_tooltip_text = text;
  ShowTooltipText(TooltipTextToShow());
}

std::string wxTabButton::TooltipTextToShow() const {
  if (m_tooltip_caption.empty()) return m_tooltip_text;
  std::string text = m_tooltip_caption.utf8_string();
  if (!m_tooltip_text.empty() && m_tooltip_text != text) text += "\n" + m_tooltip_text;
  return text;
}

// Follows the shown text: a new cut, a caption no longer cut, or another
// caption cut.
void wxTabButton::UpdateCaptionCut() {
  const wxString cut = m_shown_text != m_caption ? m_caption : wxString();
  if (cut == m_tooltip_caption) return;
  m_tooltip_caption = cut;
  ShowTooltipText(TooltipTextToShow());
}

}  // namespace orvix1
