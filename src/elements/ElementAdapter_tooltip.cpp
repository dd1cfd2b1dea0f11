// Tooltips of elements: the root asks the host to show an element's tooltip
// while the pointer is over it. The tooltip is attached to the holder for
// that time, since that is the window the pointer is in.

#include "orvix1/elements/ElementAdapter.h"
#include "orvix1/wxCustomTooltip.h"
#include "wx_assert.h"

namespace orvix1 {
namespace elements {

void ElementAdapter::OnRequestSetTooltip(wxCustomTooltip* tip) {
  if (!ORVIX_ASSERT_AT(m_holder && tip, "m_holder && tip", nullptr, __LINE__)) return;
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
