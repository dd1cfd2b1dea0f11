// TEMPORARY: replaced when the custom tooltip lands. Until then a tooltip
// request is checked and otherwise ignored.
#include "orvix1/elements/ElementAdapter.h"

#include "wx_assert.h"

namespace orvix1 {
namespace elements {

void ElementAdapter::OnRequestSetTooltip(wxCustomTooltip* tip) {
  ORVIX_ASSERT_AT(m_holder && tip, "m_holder && tip", nullptr, __LINE__);
}

void ElementAdapter::OnRequestClearTooltip() {}

void ElementAdapter::OnTooltipDestroyed(wxWindowDestroyEvent& event) { event.Skip(); }

}  // namespace elements
}  // namespace orvix1
