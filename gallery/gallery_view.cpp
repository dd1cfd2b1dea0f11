#include "gallery_view.h"

#include <memory>

#include <wx/button.h>
#include <wx/choice.h>
#include <wx/sizer.h>

namespace gallery {

gallery_view_t::gallery_view_t(talvar2::smart_pointer_t<wxWindow> main_window, const page_t& first)
    : m_main_window(main_window),
      m_workspace(new wxWindow(m_main_window.get(), wxID_ANY)),
      m_pane(new orvix1::wxTabPane(m_workspace, wxID_ANY)),
      m_strip(m_pane->AddPanel(orvix1::wxTabPane::primary_panel)) {
  auto* column = new wxBoxSizer(wxVERTICAL);
  column->Add(m_pane, wxSizerFlags().Expand());
  m_workspace->SetSizer(column);
  // The host decides how much of its window the workspace takes (fit); the
  // wrapper must not stretch its only child over the whole window.
  m_main_window->Bind(wxEVT_SIZE, [](wxSizeEvent&) {});

  m_look.create(m_workspace, orvix1::style_t(-1, orvix1::color_window_bg, orvix1::color_window_text), -1);
  const std::vector<page_t>& pages = all_pages();
  int first_index = 0;
  for (const page_t& page : pages) {
    if (&page == &first) first_index = m_strip->GetButtonsCount();
    orvix1::wxTabButton* tab = m_strip->AddButton(page.title);
    tab->SetTooltipText(std::string(page.title) + " page (gallery --page " + page.name + ")");
  }
  m_pages.assign(pages.size(), nullptr);
  m_strip->selection_changed().connect(this, &gallery_view_t::on_tab_selected);
  m_strip->SetCurrentSelection(first_index);
  watch_painting(m_pane, false);
  watch_painting(m_pages[first_index], true);
  m_workspace->Show();
}

// Shows the selected tab's page and hides the others; a page is made the
// first time its tab is selected.
void gallery_view_t::on_tab_selected(orvix1::wxTabPanel*, int index) {
  if (index < 0 || index >= static_cast<int>(m_pages.size())) return;
  if (m_pages[index] == nullptr) {
    m_pages[index] = all_pages()[index].create(m_workspace);
    m_workspace->GetSizer()->Add(m_pages[index], wxSizerFlags(1).Expand());
    keep_native_controls(m_pages[index]);
    m_look.propagate_style();
  }
  for (wxWindow* page : m_pages)
    if (page != nullptr) page->Show(page == m_pages[index]);
  m_workspace->Layout();
}

// Buttons and choices keep the desktop's look: GTK draws their frames in
// its own colours, and a palette background would only fill their labels.
void gallery_view_t::keep_native_controls(wxWindow* window) {
  for (wxWindow* child : window->GetChildren()) {
    if (dynamic_cast<wxButton*>(child) != nullptr || dynamic_cast<wxChoice*>(child) != nullptr)
      m_look.add(child, orvix1::style_t());
    keep_native_controls(child);
  }
}

// A screenshot waits for the page and for every shown owner-drawn window in
// it and in the tab strip: a page's own paint can come before its
// children's. Native controls are left out, they never see a paint event.
void gallery_view_t::watch_painting(wxWindow* window, bool always) {
  if (!window->IsShown()) return;
  for (wxWindow* child : window->GetChildren()) watch_painting(child, false);
  if (!always && window->GetBackgroundStyle() != wxBG_STYLE_PAINT) return;
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

void gallery_view_t::watch_selected_page() {
  m_unpainted = 0;
  watch_painting(m_pane, false);
  wxWindow* selected = page(m_strip->GetCurrentSelection());
  if (selected != nullptr) watch_painting(selected, true);
  // Painted windows are painted again only when they are refreshed.
  m_pane->Refresh();
  if (selected != nullptr) selected->Refresh();
}

wxWindow* gallery_view_t::page(int index) const {
  return index >= 0 && index < static_cast<int>(m_pages.size()) ? m_pages[index] : nullptr;
}

void gallery_view_t::fit(int width, int height) {
  if (width <= 0 || height <= 0) return;
  m_workspace->SetSize(0, 0, width, height);
  m_workspace->Layout();
}

}  // namespace gallery
