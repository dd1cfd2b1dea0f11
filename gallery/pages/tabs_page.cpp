#include "pages/tabs_page.h"

#include <memory>
#include <vector>

#include <wx/button.h>
#include <wx/dcmemory.h>
#include <wx/msgdlg.h>  // declares what the generic dialog builds on
#include <wx/generic/msgdlgg.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include "orvix1/dialog.h"
#include "orvix1/ui_resources.h"
#include "orvix1/wxTabPane.h"
#include "pages/scaled.h"

namespace gallery {
namespace {

using orvix1::wxTabButton;
using orvix1::wxTabPane;
using orvix1::wxTabPanel;

// What a document tab stands for; its button carries it as user data.
struct document_t {
  wxString name;
  wxString text;
  bool modified = false;
};

// A 16-pixel page icon in `colour`, with a folded corner, as large as the
// screen's scale makes 16 pixels.
wxBitmap document_icon(const wxColour& colour) {
  const int side = dip(16);
  wxBitmap bitmap(side, side);
  {
    wxMemoryDC dc(bitmap);
    dc.SetBackground(*wxWHITE_BRUSH);
    dc.Clear();
    dc.SetUserScale(side / 16.0, side / 16.0);
    dc.SetBrush(wxBrush(colour));
    dc.SetPen(wxPen(colour.ChangeLightness(60)));
    const wxPoint page[] = {{2, 1}, {10, 1}, {13, 4}, {13, 14}, {2, 14}};
    dc.DrawPolygon(5, page);
  }
  bitmap.SetMask(new wxMask(bitmap, *wxWHITE));
  return bitmap;
}

class tabs_page_t : public wxPanel, public talvar2::subscriber_base_t {
 public:
  explicit tabs_page_t(wxWindow* parent) : wxPanel(parent) {
    m_pane = new wxTabPane(this, wxID_ANY);
    m_documents = m_pane->AddPanel(wxTabPane::primary_panel);
    m_documents->SetName(k_tabs_documents);
    m_documents->SetCrossed(true);
    m_tools = m_pane->AddPanel(wxTabPane::secondary_panel);
    m_pane->SetSecondaryPanelRightAligned(true);

    add_document("Report.txt", "Quarterly figures, not yet saved.", true, wxColour(70, 120, 220));
    add_document("Notes.md", "Ideas for the next release.", false, wxColour(60, 170, 90));
    add_document("Budget.ods", "Costs per team; edited a minute ago.", true, wxColour(230, 140, 40));
    add_document("Plan.odt", "The project plan.", false, wxColour(150, 90, 200));
    add_busy_tab();
    for (const char* tool : {"Output", "Problems"}) {
      wxTabButton* button = m_tools->AddButton(tool);
      button->SetTooltipText(std::string(tool) + " (a tool strip: equal widths, always closable)");
    }

    m_body = new wxStaticText(this, wxID_ANY, "");
    auto* hint = new wxStaticText(
        this, wxID_ANY,
        "Ctrl+Tab / Ctrl+Shift+Tab or Ctrl+PgDn / Ctrl+PgUp move through the tabs of both strips.\n"
        "Closing a document marked * asks first. Narrow the window or add documents: tabs "
        "that do not fit\nmove to the menu of the arrow button at the right.");
    auto* add = new wxButton(this, wxID_ANY, "New document");
    add->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { add_new_document(); });
    auto* modify = new wxButton(this, wxID_ANY, "Mark modified");
    modify->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { toggle_modified(); });

    auto* buttons = new wxBoxSizer(wxHORIZONTAL);
    buttons->Add(add, wxSizerFlags().Border(wxRIGHT));
    buttons->Add(modify);
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(m_pane, wxSizerFlags().Expand());
    column->Add(m_body, wxSizerFlags().Border(wxALL, dip(12)));
    column->Add(buttons, wxSizerFlags().Border(wxLEFT | wxRIGHT, dip(12)));
    column->AddStretchSpacer();
    column->Add(hint, wxSizerFlags().Border(wxALL, dip(12)));
    SetSizer(column);

    m_documents->delete_requested().connect(this, &tabs_page_t::on_close_document);
    m_pane->selection_changed().connect(this, &tabs_page_t::on_selection);
    m_documents->SetCurrentSelection(0);
  }

 private:
  wxTabButton* add_document(const wxString& name, const wxString& text, bool modified,
                            const wxColour& colour) {
    m_data.push_back(std::unique_ptr<document_t>(new document_t{name, text, modified}));
    wxTabButton* button = m_documents->AddButton(document_icon(colour), caption_of(*m_data.back()));
    button->SetUserData(m_data.back().get());
    button->SetTooltipText((name + ": " + text).utf8_string());
    return button;
  }

  // A tab whose image is a running animation, as for a build in progress.
  void add_busy_tab() {
    const wxAnimation spinner = orvix1::ui_resources_t::get()->get_animation("spinner_small");
    if (!spinner.IsOk()) return;
    m_data.push_back(std::unique_ptr<document_t>(new document_t{"Build", "Building...", false}));
    wxTabButton* button = m_documents->AddButton(spinner, "Build");
    button->SetUserData(m_data.back().get());
    button->SetTooltipText("A build in progress: the tab's image is an animation");
    button->Play();
  }

  void add_new_document() {
    const int number = ++m_new_documents;
    wxTabButton* button = add_document(wxString::Format("Untitled %d", number), "A new, empty document.",
                                       false, wxColour(90, 90, 90));
    m_documents->SetCurrentSelection(button->GetId());
  }

  void toggle_modified() {
    wxTabButton* button = m_documents->GetButton(m_documents->GetCurrentSelection());
    if (button == nullptr || button->GetUserData() == nullptr) return;
    document_t& document = *static_cast<document_t*>(button->GetUserData());
    document.modified = !document.modified;
    button->SetLabel(caption_of(document));
  }

  static wxString caption_of(const document_t& document) {
    return document.modified ? document.name + " *" : document.name;
  }

  // The veto: a modified document closes only when the user agrees.
  void on_close_document(wxTabPanel* panel, int id, bool& allow) {
    const wxTabButton* button = panel->GetButton(id);
    const auto* document = button != nullptr ? static_cast<document_t*>(button->GetUserData()) : nullptr;
    if (document == nullptr || !document->modified) return;
    // The generic dialog runs wx's own modal loop, which the host sees and
    // can end; the native one would run GTK's.
    orvix1::modal_flavor<wxGenericMessageDialog> question(
        this, "\"" + document->name + "\" has changes that are not saved. Close it anyway?",
        "Really close?", wxYES_NO | wxNO_DEFAULT | wxICON_QUESTION);
    allow = question.ShowModal() == wxID_YES;
  }

  void on_selection(wxTabPanel* panel, int index) {
    const wxTabButton* button = panel->GetButton(index);
    if (button == nullptr) return;
    const auto* document = static_cast<document_t*>(button->GetUserData());
    m_body->SetLabel(document != nullptr ? document->name + ": " + document->text
                                         : button->GetLabel() + ": a tool window.");
    Layout();
  }

  wxTabPane* m_pane;
  wxTabPanel* m_documents;
  wxTabPanel* m_tools;
  wxStaticText* m_body;
  std::vector<std::unique_ptr<document_t>> m_data;
  int m_new_documents = 0;
};

}  // namespace

wxWindow* create_tabs_page(wxWindow* parent) { return new tabs_page_t(parent); }

}  // namespace gallery
