#include "orvix1/elements/DropArrowElement.h"

#include <wx/renderer.h>

#include "core/log.h"
#include "orvix1/dpi.h"

namespace orvix1 {
namespace elements {

DropArrowElement::DropArrowElement() { Init(); }

DropArrowElement::DropArrowElement(element_ptr_t parent) : UIElement(parent) { Init(); }

DropArrowElement::DropArrowElement(element_ptr_t parent, int position_flags)
    : UIElement(parent, position_flags) {
  Init();
}

// Nothing of its own to set up: the size comes from the desktop each time.
void DropArrowElement::Init() {}

int DropArrowElement::GetSystemMetric(wxSystemMetric metric) const {
  return wxSystemSettings::GetMetric(metric);
}

wxSize DropArrowElement::GetMinSize() const {
  int width = GetSystemMetric(wxSYS_VSCROLL_ARROW_X);
  int height = GetSystemMetric(wxSYS_VSCROLL_ARROW_Y);
  if (width < 0) width = GetSystemMetric(wxSYS_VSCROLL_X);
  if (height < 0) height = GetSystemMetric(wxSYS_HSCROLL_Y);
  // The desktop's metrics do not follow its resolution setting.
  return LimitSize(calculate_DPI_scaled_size(width, height));
}

wxSize DropArrowElement::GetSize() const { return GetMinSize(); }

void DropArrowElement::OnDraw(wxDC& dc, const wxRect& rect) {
  wxWindow* holder = GetHolder();
  if (holder == nullptr) {
    ORVIX_LOG_WARNING(log::get_logger("orvix.elements"),
                      "drop arrow not drawn: the host gave no holder window");
    return;
  }
  wxRendererNative::Get().DrawComboBoxDropButton(holder, dc, rect, wxCONTROL_CURRENT);
}

}  // namespace elements
}  // namespace orvix1
