// The element's tooltip: made on first use, shown by the host while the
// pointer is over the element.

#include "orvix1/elements/UIElement.h"
#include "orvix1/wxCustomTooltip.h"

namespace orvix1 {
namespace elements {

wxCustomTooltip* UIElement::GetTooltip() {
  if (m_tooltip == nullptr) {
    m_tooltip = new wxCustomTooltip();
    wxCustomTooltip::GetDestroyedSignal().connect(this, &UIElement::OnTooltipDestroyed);
  }
  return m_tooltip;
}

void UIElement::DestroyTooltip() {
  wxCustomTooltip* tooltip = m_tooltip;
  if (tooltip == nullptr) return;
  m_tooltip = nullptr;
  wxCustomTooltip::GetDestroyedSignal().disconnect(this, &UIElement::OnTooltipDestroyed);
  tooltip->Destroy();
}

// Only this element's own tooltip is forgotten.
void UIElement::OnTooltipDestroyed(wxCustomTooltip* tooltip) {
  if (m_tooltip != tooltip) return;
  m_tooltip = nullptr;
  wxCustomTooltip::GetDestroyedSignal().disconnect(this, &UIElement::OnTooltipDestroyed);
}

}  // namespace elements
}  // namespace orvix1
