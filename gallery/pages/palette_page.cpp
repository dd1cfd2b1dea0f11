#include "pages/palette_page.h"

#include <wx/button.h>
#include <wx/choice.h>
#include <wx/dcbuffer.h>
#include <wx/filename.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include "orvix1/styled.h"
#include "orvix1/ui_settings.h"
#include "orvix1/ui_style.h"
#include "orvix1/ui_update_helpers.h"
#include "pages/scaled.h"

namespace gallery {
namespace {

using namespace orvix1;

// The keys the palette view paints with, filled from the palette.
class palette_view_style_t : public ui_style_t {
 public:
  palette_view_style_t() { set_style_info(); }
  void set_style_info() override {
    internal_set_color("clBg", m_settings->get_color(color_window_bg));
    internal_set_color("clText", m_settings->get_color(color_window_text));
    internal_set_color("clBorder", m_settings->get_color(color_shadow_3d));
    internal_set_font("fnNormal", m_settings->get_font(font_normal));
    internal_set_font("fnTitle", m_settings->get_font(font_normal_bold));
  }
};

// Paints every entry of the palette; repaints when its style says so.
class palette_view_t : public wxWindow, public StyledBase {
 public:
  explicit palette_view_t(wxWindow* parent) {
    SetBackgroundStyle(wxBG_STYLE_PAINT);
    Create(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxFULL_REPAINT_ON_RESIZE);
    Bind(wxEVT_PAINT, &palette_view_t::on_paint, this);
    SetUiStyle(new palette_view_style_t);
  }

  void on_style_updated() override { Refresh(); }

 private:
  void on_paint(wxPaintEvent&) {
    wxAutoBufferedPaintDC dc(this);
    talvar2::intrusive_pointer_t<ui_style_t> style = GetUiStyle();
    dc.SetBackground(wxBrush(style->get_color("clBg")));
    dc.Clear();
    dc.SetTextForeground(style->get_color("clText"));
    const int margin = dip(10);
    const int column = (GetClientSize().x - 2 * margin) / 3;
    draw_colours(dc, *style, wxPoint(margin, margin), column);
    draw_fonts_and_metrics(dc, *style, wxPoint(margin + 2 * column, margin));
  }

  int row_height() const { return dip(20); }

  void draw_colours(wxDC& dc, const ui_style_t& style, wxPoint origin, int column) {
    const talvar2::intrusive_pointer_t<ui_settings_t> settings = ui_settings_t::get();
    dc.SetFont(style.get_font("fnNormal"));
    dc.SetPen(wxPen(style.get_color("clBorder")));
    const wxSize swatch = dip(wxSize(28, 14));
    for (int i = 0; i < colors_count; ++i) {
      const auto index = static_cast<default_colors_t>(i);
      const wxPoint at(origin.x + (i / 13) * column, origin.y + (i % 13) * row_height());
      const wxColour colour = settings->get_color(index);
      dc.SetBrush(colour.IsOk() ? wxBrush(colour) : *wxTRANSPARENT_BRUSH);
      dc.DrawRectangle(wxRect(at, swatch));
      const wxString value = colour.IsOk() ? colour.GetAsString(wxC2S_HTML_SYNTAX) : "-";
      dc.DrawText(wxString::Format("%d %s %s", i, get_color_name(index), value),
                  at.x + swatch.x + dip(6), at.y);
    }
  }

  void draw_fonts_and_metrics(wxDC& dc, const ui_style_t& style, wxPoint at) {
    const talvar2::intrusive_pointer_t<ui_settings_t> settings = ui_settings_t::get();
    for (int i = 0; i < fonts_count; ++i) {
      const auto index = static_cast<default_fonts_t>(i);
      const wxFont font = settings->get_font(index);
      dc.SetFont(font.IsOk() ? font : style.get_font("fnNormal"));
      dc.DrawText(wxString::Format("%d %s", i, get_font_name(index)), at);
      at.y += dc.GetTextExtent("Ag").y + dip(2);
    }
    at.y += dip(8);
    dc.SetFont(style.get_font("fnNormal"));
    for (int i = 0; i < metrics_count; ++i) {
      const auto index = static_cast<default_metrics_t>(i);
      dc.DrawText(wxString::Format("%d %s = %d", i, get_metric_name(index), settings->get_metric(index)),
                  at);
      at.y += row_height();
    }
  }
};

// The themes the library ships, by the name the theme choice shows.
struct theme_t {
  const char* label;
  const char* file;
};
const theme_t k_themes[] = {{"Light", "light.xml"}, {"Dark", "dark.xml"}};

// Colours that "Change colour" steps through for colour 0.
const wxColour k_backgrounds[] = {wxColour(255, 250, 235), wxColour(225, 240, 255),
                                  wxColour(235, 255, 235), wxColour(255, 255, 255)};

class palette_page_t : public wxPanel {
 public:
  explicit palette_page_t(wxWindow* parent)
      : wxPanel(parent), m_settings(ui_settings_configure_t::get()),
        m_file(palette_page_file()) {
    auto* buttons = new wxBoxSizer(wxHORIZONTAL);
    buttons->Add(new wxStaticText(this, wxID_ANY, "Theme:"), wxSizerFlags().Center().Border(wxLEFT));
    m_theme = new wxChoice(this, wxID_ANY);
    m_theme->SetName(k_palette_theme_choice);
    for (const theme_t& theme : k_themes) m_theme->Append(theme.label);
    m_theme->Bind(wxEVT_CHOICE, [this](wxCommandEvent& event) { on_theme(event.GetSelection()); });
    buttons->Add(m_theme, wxSizerFlags().Center().Border());
    add_button(buttons, "Save palette", &palette_page_t::on_save)->SetName(k_palette_save_button);
    add_button(buttons, "Change colour", &palette_page_t::on_change);
    add_button(buttons, "Load palette", &palette_page_t::on_load);
    m_status = new wxStaticText(this, wxID_ANY, "File: " + m_file);
    m_status->SetName(k_palette_status);
    buttons->Add(m_status, wxSizerFlags().Center().Border());

    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(buttons, wxSizerFlags().Expand());
    sizer->Add(new palette_view_t(this), wxSizerFlags(1).Expand());
    SetSizer(sizer);
    // The panel and its buttons follow the palette as plain wx windows.
    m_updater.create(this, style_t::create_inplace_style(), -1);
    m_updater.propagate_style();
  }

 private:
  wxButton* add_button(wxSizer* sizer, const wxString& label, void (palette_page_t::*handler)()) {
    auto* button = new wxButton(this, wxID_ANY, label);
    button->Bind(wxEVT_BUTTON, [this, handler](wxCommandEvent&) { (this->*handler)(); });
    sizer->Add(button, wxSizerFlags().Border());
    return button;
  }

  // Live theme switching: the theme replaces the live palette's colours and
  // its one change signal makes every styled window repaint in them.
  void on_theme(int index) {
    if (index < 0 || index >= static_cast<int>(WXSIZEOF(k_themes))) return;
    const std::string file = std::string(ORVIX1_THEMES_DIR) + "/" + k_themes[index].file;
    const bool applied = m_settings->apply_theme(file);
    m_status->SetLabel((applied ? "Theme: " : "Could not load the theme ") + wxString::FromUTF8(file));
    Layout();
  }

  void on_save() {
    report(m_settings->save(m_file.utf8_string()) ? "Saved to " : "Could not save to ");
  }

  void on_change() {
    m_next = (m_next + 1) % WXSIZEOF(k_backgrounds);
    m_settings->set_color(color_window_bg, k_backgrounds[m_next]);
    m_settings->changed()();  // styles refill, styled windows repaint
    report("Changed colour 0; file: ");
  }

  void on_load() {
    const bool loaded = m_settings->load(m_file.utf8_string());
    m_settings->changed()();
    report(loaded ? "Loaded from " : "Could not load ");
  }

  void report(const wxString& what) {
    m_status->SetLabel(what + m_file);
    Layout();
  }

  talvar2::intrusive_pointer_t<ui_settings_configure_t> m_settings;
  style_updater_t m_updater;
  wxString m_file;
  wxStaticText* m_status = nullptr;
  wxChoice* m_theme = nullptr;
  size_t m_next = WXSIZEOF(k_backgrounds) - 1;
};

}  // namespace

wxWindow* create_palette_page(wxWindow* parent) { return new palette_page_t(parent); }

namespace {
wxString& chosen_palette_file() {
  static wxString path;
  return path;
}
}  // namespace

wxString palette_page_file() {
  if (!chosen_palette_file().empty()) return chosen_palette_file();
  return wxFileName(wxFileName::GetTempDir(), "orvix1-gallery-palette.xml").GetFullPath();
}

void set_palette_page_file(const wxString& path) { chosen_palette_file() = path; }

}  // namespace gallery
