#include "gallery_view.h"

namespace gallery {

gallery_view_t::gallery_view_t(talvar2::smart_pointer_t<wxWindow> main_window, const page_t& page)
    : m_main_window(main_window), m_page(page.create(m_main_window.get())) {
  m_page->Bind(wxEVT_PAINT, [this](wxPaintEvent& event) {
    m_painted = true;
    event.Skip();  // the page paints itself
  });
  m_page->Show();
}

void gallery_view_t::fit(int width, int height) {
  if (width <= 0 || height <= 0) return;
  m_page->SetSize(0, 0, width, height);
}

}  // namespace gallery
