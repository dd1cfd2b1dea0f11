#include "pages/tooltips_page.h"

#include <vector>

#include <wx/button.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include "orvix1/wxCustomTooltip.h"
#include "pages/caption_pane.h"
#include "pages/scaled.h"

namespace gallery {
namespace {

using orvix1::wxCustomTooltip;

class tooltips_page_t : public wxPanel {
 public:
  explicit tooltips_page_t(wxWindow* parent) : wxPanel(parent) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(new wxStaticText(this, wxID_ANY,
                                 "Rest the pointer on a card or the button: the library's tooltip "
                                 "appears beside it, stays inside the screen and goes\nwhen the "
                                 "pointer leaves. The tabs of the gallery and of the Tabs page, and "
                                 "the Elements page, carry the same tooltips."),
                wxSizerFlags().Border(wxALL, dip(12)));
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    caption_pane_t* first = add_card(row, "Palette delay", wxColour(214, 230, 245),
                             "The delay before this tooltip comes from the palette's tooltip "
                             "metric; the theme files set it to 400 ms.", -1);
    first->SetName(k_tooltips_first_target);
    add_card(row, "At once", wxColour(245, 226, 206),
             "No delay: this one shows as soon as the pointer enters.", 0);
    add_card(row, "Long text", wxColour(218, 240, 218),
             "A longer text is wrapped by the tooltip itself: it measures the text, keeps a "
             "margin around it and places itself beside the pointer inside the work area of "
             "the monitor under the pointer.",
             -1);
    column->Add(row, wxSizerFlags().Border(wxLEFT | wxRIGHT, dip(12)));
    auto* button = new wxButton(this, wxID_ANY, "A native button");
    attach(button, "Native controls take the library's tooltip too.", -1);
    column->Add(button, wxSizerFlags().Border(wxALL, dip(12)));
    SetSizer(column);
  }

  ~tooltips_page_t() override {
    for (wxCustomTooltip* tooltip : m_tooltips) tooltip->Destroy();
  }

 private:
  caption_pane_t* add_card(wxSizer* row, const wxString& caption, const wxColour& colour,
                   const std::string& text, int delay_ms) {
    auto* card = new caption_pane_t(this, caption, colour, dip(wxSize(180, 90)));
    attach(card, text, delay_ms);
    row->Add(card, wxSizerFlags().Border(wxRIGHT, dip(12)));
    return card;
  }

  void attach(wxWindow* target, const std::string& text, int delay_ms) {
    auto* tooltip = new wxCustomTooltip;
    tooltip->Attach(target);
    tooltip->SetText(text);
    tooltip->SetShowDelay(delay_ms);
    m_tooltips.push_back(tooltip);
  }

  std::vector<wxCustomTooltip*> m_tooltips;
};

}  // namespace

wxWindow* create_tooltips_page(wxWindow* parent) { return new tooltips_page_t(parent); }

}  // namespace gallery
