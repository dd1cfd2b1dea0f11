#include "gallery_view.h"

#include <memory>

namespace gallery {

gallery_view_t::gallery_view_t(talvar2::smart_pointer_t<wxWindow> main_window, const page_t& page)
    : m_main_window(main_window), m_page(page.create(m_main_window.get())) {
  watch_painting(m_page);
  m_page->Show();
}

// A screenshot waits for the page and for every owner-drawn window in it: a
// page's own paint can come before its children's. Native controls are left
// out, they never see a paint event.
void gallery_view_t::watch_painting(wxWindow* window) {
  for (wxWindow* child : window->GetChildren()) watch_painting(child);
  if (window != m_page && window->GetBackgroundStyle() != wxBG_STYLE_PAINT) return;
  ++m_unpainted;
  auto painted = std::make_shared<bool>(false);
  window->Bind(wxEVT_PAINT, [this, painted](wxPaintEvent& event) {
    if (!*painted) {
      *painted = true;
      --m_unpainted;
    }
    event.Skip();  // the window paints itself
  });
}

void gallery_view_t::fit(int width, int height) {
  if (width <= 0 || height <= 0) return;
  m_page->SetSize(0, 0, width, height);
}

}  // namespace gallery
