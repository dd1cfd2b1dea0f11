// The pane as a workspace: pages behind the tabs, shown one at a time in a
// page area under the strips, added, removed and closed by index.

#include <algorithm>

#include "core/log.h"
#include "orvix1/wxTabPane.h"
#include "tabs/tab_drag.h"
#include "tabs/tab_pages.h"

namespace orvix1 {
namespace {

log4cplus::Logger tabs_logger() { return log::get_logger("orvix.tabs"); }

// Holds the pages; the shown one fills it.
class page_area_t : public wxWindow {
 public:
  explicit page_area_t(wxWindow* parent)
      : wxWindow(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxBORDER_NONE, "pageArea") {
    Bind(wxEVT_SIZE, &page_area_t::OnSize, this);
  }

 protected:
  // The largest page: a workspace wants room for any of them.
  wxSize DoGetBestSize() const override {
    wxSize size(0, 0);
    for (const wxWindow* page : GetChildren()) size.IncTo(page->GetBestSize());
    return size;
  }

 private:
  void OnSize(wxSizeEvent& event) {
    for (wxWindow* page : GetChildren())
      if (page->IsShown()) page->SetSize(GetClientSize());
    event.Skip();
  }
};

// Why a page cannot be added; null when it can.
const char* page_refusal(const wxWindow* page, bool already_a_page, int panel_index) {
  if (page == nullptr) return "no window";
  if (already_a_page) return "the window is a page already";
  if (panel_index != wxTabPane::primary_panel && panel_index != wxTabPane::secondary_panel)
    return "no such strip";
  return nullptr;
}

}  // namespace

wxWindow* wxTabPane::GetPageArea() {
  if (m_page_area == nullptr) {
    m_page_area = new page_area_t(this);
    OnChangeSizes();
  }
  return m_page_area;
}

void wxTabPane::PlacePageArea(int height) {
  if (m_page_area == nullptr) return;
  const wxSize client = GetClientSize();
  m_page_area->SetSize(0, height, client.x, std::max(client.y - height, 0));
}

// --- indices ------------------------------------------------------------------

wxTabPanel* wxTabPane::PanelOf(const wxTabButton* button) const {
  if (button == nullptr) return nullptr;
  for (int index : {primary_panel, secondary_panel}) {
    wxTabPanel* panel = m_slots[index].panel;
    if (panel != nullptr && button->GetParent() == panel && panel->GetButton(button->GetId()) == button)
      return panel;
  }
  return nullptr;
}

bool wxTabPane::LocateTab(int index, wxTabPanel*& panel, int& position) const {
  position = index;
  for (int slot : {primary_panel, secondary_panel}) {
    panel = m_slots[slot].panel;
    const int count = panel != nullptr ? panel->GetButtonsCount() : 0;
    if (position >= 0 && position < count) return true;
    position -= count;
  }
  panel = nullptr;
  return false;
}

int wxTabPane::GetPageCount() const {
  int count = 0;
  for (int slot : {primary_panel, secondary_panel})
    if (m_slots[slot].panel != nullptr) count += m_slots[slot].panel->GetButtonsCount();
  return count;
}

wxTabButton* wxTabPane::GetTab(int index) const {
  wxTabPanel* panel = nullptr;
  int position = 0;
  return LocateTab(index, panel, position) ? panel->GetButton(position) : nullptr;
}

int wxTabPane::FindTab(const wxTabButton* button) const {
  const wxTabPanel* panel = PanelOf(button);
  if (panel == nullptr) return -1;
  const wxTabPanel* primary = GetPanel(primary_panel);
  return button->GetId() + (panel != primary && primary != nullptr ? primary->GetButtonsCount() : 0);
}

wxWindow* wxTabPane::GetPage(int index) const {
  const detail::tab_page_t* page = m_pages->find(GetTab(index));
  return page != nullptr ? page->window : nullptr;
}

int wxTabPane::FindPage(const wxWindow* page) const { return FindTab(m_pages->button_of(page)); }

// --- adding -------------------------------------------------------------------

wxTabButton* wxTabPane::AddPage(wxWindow* page, const wxString& caption, bool closable,
                                const wxBitmap& image) {
  return InsertPageInto(primary_panel, -1, page, caption, closable, image);
}

wxTabButton* wxTabPane::AddPage(int panel_index, wxWindow* page, const wxString& caption,
                                bool closable, const wxBitmap& image) {
  return InsertPageInto(panel_index, -1, page, caption, closable, image);
}

wxTabButton* wxTabPane::InsertPage(int index, wxWindow* page, const wxString& caption,
                                   bool closable, const wxBitmap& image) {
  wxTabPanel* panel = nullptr;
  int position = -1;
  if (!LocateTab(index, panel, position)) return AddPage(page, caption, closable, image);
  const int slot = panel == GetPanel(primary_panel) ? primary_panel : secondary_panel;
  return InsertPageInto(slot, position, page, caption, closable, image);
}

wxTabButton* wxTabPane::InsertPageInto(int panel_index, int position, wxWindow* page,
                                       const wxString& caption, bool closable,
                                       const wxBitmap& image) {
  const char* refused = page_refusal(page, m_pages->button_of(page) != nullptr, panel_index);
  if (refused != nullptr) {
    ORVIX_LOG_WARNING(tabs_logger(), "page \"" << caption.utf8_string() << "\" not added: " << refused);
    return nullptr;
  }
  wxWindow* area = GetPageArea();
  page->Hide();
  if (page->GetParent() != area) page->Reparent(area);
  wxTabButton* button = AddPanel(panel_index)->InsertButton(image, caption, position);
  m_pages->add(button, page);
  page->Bind(wxEVT_DESTROY, &wxTabPane::OnPageDestroyed, this);
  button->SetCrossed(closable);
  if (SelectedTab() == nullptr)
    PanelOf(button)->SetCurrentSelection(button->GetId());
  return button;
}

// --- removing -----------------------------------------------------------------

bool wxTabPane::RemovePage(int index) { return RemoveTab(index, true); }

bool wxTabPane::DeletePage(int index) { return RemoveTab(index, false); }

bool wxTabPane::RemoveTab(int index, bool keep_page) {
  wxTabPanel* panel = nullptr;
  int position = 0;
  if (!LocateTab(index, panel, position)) return false;
  m_keep_removed_page = keep_page;
  const bool removed = panel->RemoveButton(position, false);
  m_keep_removed_page = false;
  return removed;
}

// Exactly the close cross's way: the button's own signal, which its strip
// turns into the veto and the removal. The button may be gone afterwards:
// it is looked for by its address only.
bool wxTabPane::RequestClose(int index) {
  wxTabButton* button = GetTab(index);
  if (button == nullptr) return false;
  button->delete_requested()(button->GetId());
  return !OwnsButton(button);
}

void wxTabPane::OnTabRemoving(wxTabPanel* panel, int index) {
  wxTabButton* button = panel->GetButton(index);
  if (button == nullptr) return;
  m_drag->forget(button);
  if (m_last_pressed == button) m_last_pressed = nullptr;
  const detail::tab_page_t* page = m_pages->find(button);
  m_tab_closed(this, page != nullptr ? page->window : nullptr, button);
  DisposePage(button);
}

// The page of a tab that goes: hidden for RemovePage, destroyed otherwise.
void wxTabPane::DisposePage(wxTabButton* button) {
  const detail::tab_page_t* page = m_pages->find(button);
  if (page == nullptr) return;
  wxWindow* window = page->window;
  m_pages->erase(button);
  // A removed page may outlive the pane.
  window->Unbind(wxEVT_DESTROY, &wxTabPane::OnPageDestroyed, this);
  if (window == m_shown_page) m_shown_page = nullptr;
  if (m_keep_removed_page)
    window->Hide();
  else
    window->Destroy();
}

// A strip that goes takes its tabs and their pages with it.
void wxTabPane::DropPanelPages(wxTabPanel* panel) {
  for (int index = 0; index < panel->GetButtonsCount(); ++index) {
    wxTabButton* button = panel->GetButton(index);
    if (m_last_pressed == button) m_last_pressed = nullptr;
    const detail::tab_page_t* page = m_pages->find(button);
    m_tab_closed(this, page != nullptr ? page->window : nullptr, button);
    DisposePage(button);
  }
}

// The host destroyed a page: its tab goes too.
void wxTabPane::OnPageDestroyed(wxWindowDestroyEvent& event) {
  event.Skip();
  wxWindow* window = event.GetWindow();
  wxTabButton* button = m_destroying ? nullptr : m_pages->button_of(window);
  if (button == nullptr) return;
  m_pages->erase(button);
  if (window == m_shown_page) m_shown_page = nullptr;
  if (wxTabPanel* panel = PanelOf(button)) panel->RemoveButton(button, false);
}

// --- selection and data -------------------------------------------------------

// The tab pressed last while it is still selected, else the selection of the
// primary strip, else of the secondary.
wxTabButton* wxTabPane::SelectedTab() const {
  if (m_last_pressed != nullptr && m_last_pressed->IsSelected() && PanelOf(m_last_pressed) != nullptr)
    return m_last_pressed;
  for (int slot : {primary_panel, secondary_panel}) {
    const wxTabPanel* panel = m_slots[slot].panel;
    if (panel != nullptr && panel->GetCurrentSelection() >= 0)
      return panel->GetButton(panel->GetCurrentSelection());
  }
  return nullptr;
}

int wxTabPane::GetSelection() const { return FindTab(SelectedTab()); }

wxWindow* wxTabPane::GetSelectedPage() const { return GetPage(GetSelection()); }

int wxTabPane::SetSelection(int index) {
  const int previous = GetSelection();
  wxTabPanel* panel = nullptr;
  int position = 0;
  if (LocateTab(index, panel, position)) panel->SetCurrentSelection(position);
  return previous;
}

void wxTabPane::ShowSelectedPage() {
  const detail::tab_page_t* selected = m_pages->find(SelectedTab());
  wxWindow* page = selected != nullptr ? selected->window : nullptr;
  if (page == m_shown_page) return;
  if (m_shown_page != nullptr) m_shown_page->Hide();
  m_shown_page = page;
  if (page == nullptr) return;
  page->SetSize(m_page_area->GetClientSize());
  page->Show();
}

bool wxTabPane::SetPageData(const wxWindow* page, std::any data) {
  detail::tab_page_t* record = m_pages->find(m_pages->button_of(page));
  if (record == nullptr) return false;
  record->data = std::move(data);
  return true;
}

std::any* wxTabPane::GetPageAny(const wxWindow* page) {
  detail::tab_page_t* record = m_pages->find(m_pages->button_of(page));
  return record != nullptr ? &record->data : nullptr;
}

// --- long captions ------------------------------------------------------------

void wxTabPane::SetMaxTabWidth(int width) {
  m_max_tab_width = std::max(width, 0);
  for (int slot : {primary_panel, secondary_panel})
    if (m_slots[slot].panel != nullptr) m_slots[slot].panel->SetMaxButtonWidth(m_max_tab_width);
  OnChangeSizes();
}

}  // namespace orvix1
