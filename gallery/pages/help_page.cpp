#include "pages/help_page.h"

#include <wx/button.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include "orvix1/help.h"

namespace gallery {
namespace {

const std::string k_resources = GALLERY_RESOURCES_DIR;

class help_page_t : public wxPanel {
 public:
  explicit help_page_t(wxWindow* parent) : wxPanel(parent) {
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(new wxStaticText(this, wxID_ANY,
                                "Help documents open in the desktop's own viewers; an HTML page "
                                "falls back to the library's help window."),
               wxSizerFlags().Border());
    add_action(sizer, "Open the guide (PDF)", [this] {
      report(orvix1::OpenPDF(k_resources + "/guide.pdf", 1), "PDF guide");
    });
    add_action(sizer, "Open the help page (HTML)", [this] {
      report(orvix1::OpenHTML(k_resources + "/guide.html"), "help page");
    });
    m_status = new wxStaticText(this, wxID_ANY, wxEmptyString);
    sizer->Add(m_status, wxSizerFlags().Border());
    SetSizer(sizer);
  }

 private:
  void add_action(wxSizer* sizer, const wxString& label, std::function<void()> action) {
    auto* button = new wxButton(this, wxID_ANY, label);
    button->Bind(wxEVT_BUTTON, [action](wxCommandEvent&) { action(); });
    sizer->Add(button, wxSizerFlags().Border(wxLEFT | wxRIGHT | wxBOTTOM));
  }

  void report(bool opened, const wxString& what) {
    m_status->SetLabel(opened ? "Opened the " + what + "."
                              : "Could not open the " + what + ": no viewer started.");
  }

  wxStaticText* m_status = nullptr;
};

}  // namespace

wxWindow* create_help_page(wxWindow* parent) { return new help_page_t(parent); }

}  // namespace gallery
