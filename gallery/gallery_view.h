#ifndef GALLERY_GALLERY_VIEW_H
#define GALLERY_GALLERY_VIEW_H

#include <vector>

#include <wx/window.h>

#include "orvix1/ui_update_helpers.h"
#include "orvix1/wxTabPane.h"
#include "pages/pages.h"
#include "talvar2/functor/signal.h"
#include "talvar2/pointers/smart_pointer.h"

namespace gallery {

// The library's side of the gallery: the wrapper around the host's main
// window, filled with a tabbed workspace that holds one tab per page. A
// page is made when its tab is first selected.
class gallery_view_t : public talvar2::subscriber_base_t {
 public:
  // `main_window` must hold the library's wrapper of the host's window;
  // `first` is the page whose tab is selected at the start.
  gallery_view_t(talvar2::smart_pointer_t<wxWindow> main_window, const page_t& first);
  gallery_view_t(const gallery_view_t&) = delete;
  gallery_view_t& operator=(const gallery_view_t&) = delete;

  // Gives the workspace the host window's size.
  void fit(int width, int height);
  // True once the tabs, the first page and every window in it have been
  // painted (or, after watch_selected_page, the page selected then).
  bool has_painted() const { return m_unpainted == 0; }
  // Waits again for the selected page and the tabs to paint.
  void watch_selected_page();

  orvix1::wxTabPanel* strip() const { return m_strip; }
  // The page of a tab; null until the tab has been selected once.
  wxWindow* page(int index) const;

 private:
  void keep_native_controls(wxWindow* window);
  void on_tab_selected(orvix1::wxTabPanel* panel, int index);
  void watch_painting(wxWindow* window, bool always);

  // Dropping the last handle deletes the wrapper and the workspace with it.
  talvar2::smart_pointer_t<wxWindow> m_main_window;
  wxWindow* m_workspace;
  orvix1::wxTabPane* m_pane;
  orvix1::wxTabPanel* m_strip;
  std::vector<wxWindow*> m_pages;  // by tab; null until first shown
  int m_unpainted = 0;
  // The pages' plain windows follow the palette; the library's widgets in
  // them keep their own styles.
  orvix1::style_updater_t m_look;
};

}  // namespace gallery

#endif
