#include "pages/splitters_page.h"

#include <wx/dcbuffer.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/window.h>

#include "orvix1/ui_settings.h"
#include "orvix1/wxAdvancedSplitter.h"
#include "orvix1/wxQuadSplitter.h"
#include "pages/caption_pane.h"
#include "pages/scaled.h"

namespace gallery {
namespace {

using namespace orvix1;

const wxColour k_colours[] = {wxColour(214, 230, 245), wxColour(245, 226, 206),
                              wxColour(218, 240, 218), wxColour(240, 222, 240)};

class splitters_page_t : public wxWindow {
 public:
  explicit splitters_page_t(wxWindow* parent) {
    SetBackgroundStyle(wxBG_STYLE_PAINT);
    Create(parent, wxID_ANY);
    SetBackgroundColour(ui_settings_t::get()->get_color(color_window_bg));
    Bind(wxEVT_PAINT, [this](wxPaintEvent&) {
      wxAutoBufferedPaintDC dc(this);
      dc.SetBackground(wxBrush(GetBackgroundColour()));
      dc.Clear();
    });
    auto* top = new wxBoxSizer(wxHORIZONTAL);
    top->Add(section("Collapse: click the arrow or double-click the sash", advanced_splitter()), 1,
             wxEXPAND | wxRIGHT, dip(12));
    top->Add(section("Quad: the two short sashes move together", quad_splitter()), 1, wxEXPAND);
    auto* page = new wxBoxSizer(wxVERTICAL);
    page->Add(top, 3, wxEXPAND | wxALL, dip(12));
    page->Add(linked_splitters(), 2, wxEXPAND | wxLEFT | wxRIGHT | wxBOTTOM, dip(12));
    SetSizer(page);
  }

 private:
  wxSizer* section(const wxString& caption, wxWindow* content) {
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(new wxStaticText(this, wxID_ANY, caption), 0, wxBOTTOM, dip(4));
    sizer->Add(content, 1, wxEXPAND);
    return sizer;
  }

  wxWindow* advanced_splitter() {
    auto* splitter = new wxAdvancedSplitter(this);
    splitter->SetName(k_splitters_collapsible);
    splitter->SplitVertically(new caption_pane_t(splitter, "Editor", k_colours[0]),
                              new caption_pane_t(splitter, "Outline (collapsible)", k_colours[1]));
    splitter->SetRelativeSashPosition(0.6f);
    splitter->EnableAutoclosing(true);
    return splitter;
  }

  wxWindow* quad_splitter() {
    auto* quad = new wxQuadSplitter(this);
    quad->SplitVertically(new caption_pane_t(quad, "Top left", k_colours[0]),
                          new caption_pane_t(quad, "Bottom left", k_colours[1]),
                          new caption_pane_t(quad, "Top right", k_colours[2]),
                          new caption_pane_t(quad, "Bottom right", k_colours[3]));
    return quad;
  }

  // Two splitters stacked; each sash follows the other.
  wxSizer* linked_splitters() {
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(new wxStaticText(this, wxID_ANY, "Linked: drag either sash, the other follows"), 0,
               wxBOTTOM, dip(4));
    wxAdvancedSplitter* linked[2];
    for (int i = 0; i < 2; ++i) {
      linked[i] = new wxAdvancedSplitter(this);
      const wxString row = i == 0 ? "Upper" : "Lower";
      linked[i]->SplitVertically(new caption_pane_t(linked[i], row + " left", k_colours[2]),
                                 new caption_pane_t(linked[i], row + " right", k_colours[3]));
      sizer->Add(linked[i], 1, wxEXPAND | wxBOTTOM, dip(4));
    }
    linked[0]->SynchronizeWith(linked[1]->GetSplitterElement());
    linked[1]->SynchronizeWith(linked[0]->GetSplitterElement());
    for (wxAdvancedSplitter* splitter : linked) splitter->SetRelativeSashPosition(0.35f);
    return sizer;
  }
};

}  // namespace

wxWindow* create_splitters_page(wxWindow* parent) { return new splitters_page_t(parent); }

}  // namespace gallery
