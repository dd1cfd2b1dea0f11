#ifndef GALLERY_GALLERY_VIEW_H
#define GALLERY_GALLERY_VIEW_H

#include <wx/window.h>

#include "pages/pages.h"
#include "talvar2/pointers/smart_pointer.h"

namespace gallery {

// The library's side of the gallery: the wrapper around the host's main
// window and the page shown inside it, filling it.
class gallery_view_t {
 public:
  // `main_window` must hold the library's wrapper of the host's window.
  gallery_view_t(talvar2::smart_pointer_t<wxWindow> main_window, const page_t& page);
  gallery_view_t(const gallery_view_t&) = delete;
  gallery_view_t& operator=(const gallery_view_t&) = delete;

  // Gives the wrapper and the page the host window's size.
  void fit(int width, int height);
  // True once the page and every window in it have been painted.
  bool has_painted() const { return m_unpainted == 0; }

 private:
  void watch_painting(wxWindow* window);

  // Dropping the last handle deletes the wrapper and the page with it.
  talvar2::smart_pointer_t<wxWindow> m_main_window;
  wxWindow* m_page;
  int m_unpainted = 0;
};

}  // namespace gallery

#endif
