// How elements show their tooltips. The element framework only names the
// tooltip window; making it, attaching it to the holder and watching it die
// are done here, on the tooltip's side, so that elements/ never includes it.
//
// An element's tooltip is made on first use and shown by the root's host
// while the pointer is over the element. The host attaches it to the holder
// for that time, since that is the window the pointer is in.

#include "orvix1/elements/ElementAdapter.h"
#include "orvix1/elements/UIElement.h"
#include "orvix1/wxCustomTooltip.h"
#include "core/contract_sites.h"
#include "elements/element_accessible.h"

namespace orvix1 {
namespace elements {

wxCustomTooltip* UIElement::GetTooltip() {
  wxCustomTooltip*& tooltip = Extras().tooltip;
  if (tooltip == nullptr) {
    tooltip = new wxCustomTooltip();
    wxCustomTooltip::GetDestroyedSignal().connect(this, &UIElement::OnTooltipDestroyed);
  }
  return tooltip;
}

void UIElement::DestroyTooltip() {
  wxCustomTooltip* tooltip = GetExistingTooltip();
  if (tooltip == nullptr) return;
  m_extras->tooltip = nullptr;
  wxCustomTooltip::GetDestroyedSignal().disconnect(this, &UIElement::OnTooltipDestroyed);
  tooltip->Destroy();
}

// Only this element's own tooltip is forgotten.
void UIElement::OnTooltipDestroyed(wxCustomTooltip* tooltip) {
  if (GetExistingTooltip() != tooltip) return;
  if (m_extras) m_extras->tooltip = nullptr;
  wxCustomTooltip::GetDestroyedSignal().disconnect(this, &UIElement::OnTooltipDestroyed);
}

// A screen reader reads the tooltip as the element's description.
std::string detail::tooltip_text_of(const UIElement& element) {
  const wxCustomTooltip* tooltip = element.GetExistingTooltip();
  return tooltip ? tooltip->GetText() : std::string();
}

void ElementAdapter::OnRequestSetTooltip(wxCustomTooltip* tip) {
  if (!contract_holds(m_holder && tip, contract::site_t::element_tooltip_unusable)) return;
  if (m_tooltip != nullptr) OnRequestClearTooltip();
  // The holder may carry a tooltip of its own: the element's goes first.
  if (wxCustomTooltip* other = wxCustomTooltip::GetAssociatedTooltip(m_holder))
    other->Detach(m_holder);
  tip->Attach(m_holder);
  tip->Bind(wxEVT_DESTROY, &ElementAdapter::OnTooltipDestroyed, this);
  m_tooltip = tip;
  tip->Popup();
}

void ElementAdapter::OnRequestClearTooltip() {
  wxCustomTooltip* tip = m_tooltip;
  if (tip == nullptr) return;
  m_tooltip = nullptr;
  tip->Unbind(wxEVT_DESTROY, &ElementAdapter::OnTooltipDestroyed, this);
  if (m_holder != nullptr) tip->Detach(m_holder);
}

void ElementAdapter::OnTooltipDestroyed(wxWindowDestroyEvent& event) {
  event.Skip();
  if (event.GetEventObject() == m_tooltip) m_tooltip = nullptr;
}

}  // namespace elements
}  // namespace orvix1
