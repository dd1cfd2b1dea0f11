#include "pages/images_page.h"

#include <vector>

#include <wx/animate.h>
#include <wx/dcbuffer.h>
#include <wx/filename.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include "orvix1/dpi.h"
#include "orvix1/image_helpers.h"
#include "orvix1/ui_resources.h"
#include "orvix1/ui_settings.h"
#include "pages/scaled.h"

namespace gallery {
namespace {

using namespace orvix1;

// `small` centred on a transparent picture of `size`, so that it can be laid
// over a picture of that size.
wxImage centred_on_transparent(const wxImage& small, const wxSize& size) {
  wxImage result(size);
  result.InitAlpha();
  for (int y = 0; y < size.y; ++y)
    for (int x = 0; x < size.x; ++x) result.SetAlpha(x, y, 0);
  const int left = (size.x - small.GetWidth()) / 2;
  const int top = (size.y - small.GetHeight()) / 2;
  for (int y = 0; y < small.GetHeight(); ++y)
    for (int x = 0; x < small.GetWidth(); ++x) {
      result.SetRGB(left + x, top + y, small.GetRed(x, y), small.GetGreen(x, y), small.GetBlue(x, y));
      result.SetAlpha(left + x, top + y, small.HasAlpha() ? small.GetAlpha(x, y) : 255);
    }
  return result;
}

// The pictures, each above its caption.
class pictures_view_t : public wxWindow {
 public:
  explicit pictures_view_t(wxWindow* parent) {
    SetBackgroundStyle(wxBG_STYLE_PAINT);
    Create(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxFULL_REPAINT_ON_RESIZE);
    SetName(k_images_pictures);
    Bind(wxEVT_PAINT, &pictures_view_t::on_paint, this);

    const talvar2::intrusive_pointer_t<ui_resources_t> resources = ui_resources_t::get();
    const wxImage logo = resources->get_image("logo");
    const wxImage badge = resources->get_image("badge");
    const wxImage stripes = resources->get_image("stripes");
    // As a bitmap: under GDK_SCALE=2 it carries scale factor 2 and stays sharp.
    add(resources->get_bitmap("logo"), "\"logo\" (DPI-scaled)");
    {
      const autoscale_guard_t unscaled(false);
      add(resources->get_image("logo"), "\"logo\" unscaled");
    }
    if (logo.IsOk()) {
      add(image_helpers_t::create_watermark_image(logo), "watermark");
      add(image_helpers_t::create_watermark_image(logo, wxColour(42, 157, 143), *wxWHITE),
          "watermark, own colours");
      if (badge.IsOk())
        add(image_helpers_t::create_composite_image(centred_on_transparent(badge, logo.GetSize()),
                                                    logo),
            "badge over logo");
      if (stripes.IsOk() && stripes.GetSize() == logo.GetSize())
        add(image_helpers_t::create_alpha_image(stripes, logo), "alpha from stripes");
      add(image_helpers_t::create_paletteless_image(logo), "without palette");
    }
  }

  // Every picture the page was to show, and was given.
  bool shows_every_picture() const {
    for (const entry_t& entry : m_entries)
      if (!entry.bitmap.IsOk()) return false;
    return m_entries.size() == 7;
  }

 private:
  struct entry_t {
    wxBitmap bitmap;
    wxString caption;
  };

  void add(const wxBitmap& bitmap, const wxString& caption) {
    m_entries.push_back(entry_t{bitmap, caption});
  }
  void add(const wxImage& image, const wxString& caption) {
    add(image.IsOk() ? wxBitmap(image) : wxBitmap(), caption);
  }

  void on_paint(wxPaintEvent&) {
    wxAutoBufferedPaintDC dc(this);
    const talvar2::intrusive_pointer_t<ui_settings_t> settings = ui_settings_t::get();
    dc.SetBackground(wxBrush(settings->get_color(color_window_bg)));
    dc.Clear();
    dc.SetFont(GetFont());
    dc.SetTextForeground(settings->get_color(color_window_text));
    const int cell = dip(150);
    const int margin = dip(12);
    int x = margin;
    int y = margin;
    for (const entry_t& entry : m_entries) {
      if (x + cell > GetClientSize().x && x > margin) {
        x = margin;
        y += cell;
      }
      if (entry.bitmap.IsOk())
        dc.DrawBitmap(entry.bitmap, x + (cell - entry.bitmap.GetLogicalSize().x) / 2, y, true);
      else
        dc.DrawText("(not loaded)", x, y);
      const wxSize text = dc.GetTextExtent(entry.caption);
      dc.DrawText(entry.caption, x + (cell - text.x) / 2, y + dip(60));
      x += cell;
    }
  }

  std::vector<entry_t> m_entries;
};

class images_page_t : public wxPanel {
 public:
  explicit images_page_t(wxWindow* parent) : wxPanel(parent) {
    const talvar2::intrusive_pointer_t<ui_resources_t> resources = ui_resources_t::get();
    const std::vector<std::string> archives = resources->get_archives();
    const wxSize scaled = calculate_DPI_scaled_size(48, 48);
    auto* column = new wxBoxSizer(wxVERTICAL);
    // Short lines: GTK wraps a label too wide for the page without making
    // room for the wrapped line.
    const wxString archive = archives.empty()
                                 ? wxString("(none registered)")
                                 : wxFileName(wxString::FromUTF8(archives.back())).GetFullName();
    column->Add(new wxStaticText(this, wxID_ANY,
                                 wxString::Format("Pictures and animations come by name from the "
                                                  "resource archive %s (its resources.xrc names "
                                                  "them).",
                                                  archive)),
                wxSizerFlags().Border(wxLEFT | wxRIGHT | wxTOP, dip(12)));
    column->Add(new wxStaticText(this, wxID_ANY,
                                 wxString::Format("DPI scale: %.2f; a picture authored at 48 x 48 "
                                                  "is loaded at %d x %d (\"logo\" from its "
                                                  "\"logo@2x\" twin from 1.5 on).",
                                                  get_DPI_scale(), scaled.x, scaled.y)),
                wxSizerFlags().Border(wxALL, dip(12)));

    auto* row = new wxBoxSizer(wxHORIZONTAL);
    auto* animation = new wxAnimationCtrl(this, wxID_ANY, resources->get_animation("spinner"));
    animation->SetName(k_images_animation);
    animation->Play();
    row->Add(animation, wxSizerFlags().Border(wxRIGHT, dip(12)));
    row->Add(new wxStaticText(this, wxID_ANY,
                              "\"spinner\": an animated GIF from the archive, playing."),
             wxSizerFlags().Center());
    column->Add(row, wxSizerFlags().Border(wxLEFT | wxRIGHT | wxBOTTOM, dip(12)));
    column->Add(new pictures_view_t(this), wxSizerFlags(1).Expand());
    SetSizer(column);
  }
};

}  // namespace

wxWindow* create_images_page(wxWindow* parent) { return new images_page_t(parent); }

bool images_page_shows_every_picture(wxWindow* page) {
  const auto* view = dynamic_cast<pictures_view_t*>(wxWindow::FindWindowByName(k_images_pictures, page));
  return view != nullptr && view->shows_every_picture();
}

}  // namespace gallery
