#include "pages/workspace_page.h"

#include <functional>

#include <wx/button.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/treectrl.h>

#include "orvix1/wxAdvancedSplitter.h"
#include "orvix1/wxTabPane.h"

namespace gallery {
namespace {

using orvix1::wxAdvancedSplitter;
using orvix1::wxTabButton;
using orvix1::wxTabPane;
using orvix1::wxTabPanel;

// What a tab stands for, carried as the page's typed data.
struct log_file_t {
  const char* key;
  const char* text;
  bool pinned;  // its close is refused
};

const log_file_t k_logs[] = {
    {"app.log", "10:02:11 INFO  started\n10:02:12 INFO  listening on port 8080\n", false},
    {"system.log", "10:00:01 kernel: usb 1-1 connected\n10:01:15 cron: job done\n", false},
    {"audit.log", "10:05:00 login admin\n10:05:09 config changed\n", true},
    {"kernel-and-services-2026-11-24.log", "A caption too long for its tab: hover it.\n", false},
    {"todo.txt", "Rotate the logs weekly.\n", false},
};
const log_file_t k_tools[] = {
    {"search", "Search: no query yet.", false},
    {"bookmarks", "Bookmarks: none.", false},
};

class workspace_page_t : public wxPanel, public talvar2::subscriber_base_t {
 public:
  explicit workspace_page_t(wxWindow* parent) : wxPanel(parent) {
    m_body = new wxPanel(this);
    m_body->SetSizer(new wxBoxSizer(wxVERTICAL));
    m_status = new wxStaticText(this, wxID_ANY, "Drag tabs, also to the other strip; Ctrl+Shift+PgUp/PgDn move the selected one.");
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(button(k_workspace_save, "Save layout", [this] { save(); }), 0, wxRIGHT, 6);
    row->Add(button(k_workspace_rebuild, "Rebuild", [this] { build(); }), 0, wxRIGHT, 6);
    row->Add(button(k_workspace_restore, "Restore layout", [this] { restore(); }), 0, wxRIGHT, 12);
    row->Add(m_status, 1, wxALIGN_CENTRE_VERTICAL);
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(row, 0, wxEXPAND | wxALL, 8);
    column->Add(m_body, 1, wxEXPAND);
    SetSizer(column);
    build();
  }

  wxTabPane* pane() const { return m_pane; }
  wxAdvancedSplitter* splitter() const { return m_splitter; }

 private:
  wxButton* button(const char* name, const wxString& label, std::function<void()> action) {
    auto* made = new wxButton(this, wxID_ANY, label, wxDefaultPosition, wxDefaultSize, 0,
                              wxDefaultValidator, name);
    made->Bind(wxEVT_BUTTON, [action](wxCommandEvent&) { action(); });
    return made;
  }

  // Everything from nothing, as a program builds it at its start.
  void build() {
    m_body->DestroyChildren();
    m_splitter = new wxAdvancedSplitter(m_body, wxID_ANY);
    m_splitter->SetName("workspace_splitter");
    m_splitter->EnableAnimation(false);
    auto* tree = new wxTreeCtrl(m_splitter, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                                wxTR_DEFAULT_STYLE | wxTR_HIDE_ROOT);
    m_pane = new wxTabPane(m_splitter, wxID_ANY);
    m_pane->SetLayoutRoot(this);
    m_pane->SetMaxTabWidth(FromDIP(120));
    m_splitter->SplitVertically(tree, m_pane);
    m_splitter->SetRelativeSashPosition(0.2f);
    fill_tree(tree);
    for (const log_file_t& log : k_logs) add(wxTabPane::primary_panel, log);
    for (const log_file_t& tool : k_tools) add(wxTabPane::secondary_panel, tool);
    for (int strip : {wxTabPane::primary_panel, wxTabPane::secondary_panel})
      m_pane->GetPanel(strip)->delete_requested().connect(this, &workspace_page_t::on_close);
    m_pane->tab_moved().connect(this, &workspace_page_t::on_moved);
    m_pane->tab_closed().connect(this, &workspace_page_t::on_closed);
    m_body->GetSizer()->Add(m_splitter, 1, wxEXPAND);
    m_body->Layout();
  }

  void fill_tree(wxTreeCtrl* tree) {
    const wxTreeItemId root = tree->AddRoot("workspace");
    const wxTreeItemId logs = tree->AppendItem(root, "logs");
    for (const log_file_t& log : k_logs) tree->AppendItem(logs, log.key);
    const wxTreeItemId tools = tree->AppendItem(root, "tools");
    for (const log_file_t& tool : k_tools) tree->AppendItem(tools, tool.key);
    tree->ExpandAll();
  }

  void add(int strip, const log_file_t& file) {
    auto* text = new wxTextCtrl(m_pane->GetPageArea(), wxID_ANY, file.text, wxDefaultPosition,
                                wxDefaultSize, wxTE_MULTILINE | wxTE_READONLY | wxBORDER_NONE);
    m_pane->AddPage(strip, text, file.key, true);
    m_pane->SetPageKey(text, file.key);
    m_pane->SetPageData(text, file);
  }

  void save() {
    m_saved = m_pane->SaveLayout();
    m_status->SetLabel("Saved: " + workspace_order(this));
  }

  void restore() {
    const bool whole = m_pane->RestoreLayout(m_saved);
    m_status->SetLabel(wxString(whole ? "Restored: " : "Restored in part: ") + workspace_order(this));
  }

  // The veto: a pinned log stays open.
  void on_close(wxTabPanel* panel, int id, bool& allow) {
    const log_file_t* file = m_pane->GetPageData<log_file_t>(m_pane->GetPage(m_pane->FindTab(panel->GetButton(id))));
    if (file == nullptr || !file->pinned) return;
    allow = false;
    m_status->SetLabel(wxString(file->key) + " is pinned: it stays open.");
  }

  void on_closed(wxTabPane*, wxWindow*, wxTabButton* button) {
    m_status->SetLabel("Closed " + button->GetLabel() + ".");
  }

  void on_moved(int from, int to) {
    m_status->SetLabel(wxString::Format("Moved the tab at %d to %d: ", from, to) + workspace_order(this));
  }

  wxPanel* m_body;
  wxStaticText* m_status;
  wxAdvancedSplitter* m_splitter = nullptr;
  wxTabPane* m_pane = nullptr;
  std::string m_saved;
};

}  // namespace

wxWindow* create_workspace_page(wxWindow* parent) { return new workspace_page_t(parent); }

orvix1::wxTabPane* workspace_pane(wxWindow* page) {
  auto* workspace = dynamic_cast<workspace_page_t*>(page);
  return workspace != nullptr ? workspace->pane() : nullptr;
}

orvix1::wxAdvancedSplitter* workspace_splitter(wxWindow* page) {
  auto* workspace = dynamic_cast<workspace_page_t*>(page);
  return workspace != nullptr ? workspace->splitter() : nullptr;
}

std::string workspace_order(wxWindow* page) {
  const wxTabPane* pane = workspace_pane(page);
  std::string order;
  for (int strip : {wxTabPane::primary_panel, wxTabPane::secondary_panel}) {
    if (strip == wxTabPane::secondary_panel) order += " |";
    const wxTabPanel* panel = pane != nullptr ? pane->GetPanel(strip) : nullptr;
    for (int k = 0; panel != nullptr && k < panel->GetButtonsCount(); ++k)
      order += (order.empty() ? "" : " ") + pane->GetPageKey(pane->GetPage(pane->FindTab(panel->GetButton(k))));
  }
  return order;
}

}  // namespace gallery
