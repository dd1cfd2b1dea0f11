#include "pages/welcome_page.h"

#include <algorithm>

#include <wx/dcbuffer.h>
#include <wx/stattext.h>
#include <wx/window.h>

#include "orvix1/wx_dll_application.h"
#include "pages/scaled.h"
#include "talvar2/functor/signal.h"

namespace gallery {
namespace {

const wxColour k_background(38, 50, 72);
const wxColour k_title(240, 240, 240);
const wxColour k_subtitle(170, 185, 205);
const wxColour k_shape_colours[] = {wxColour(231, 111, 81), wxColour(244, 162, 97),
                                    wxColour(233, 196, 106), wxColour(42, 157, 143)};

class welcome_page_t : public wxWindow, public talvar2::subscriber_base_t {
 public:
  explicit welcome_page_t(wxWindow* parent) {
    // The paint handler covers every pixel; wx must not erase first.
    SetBackgroundStyle(wxBG_STYLE_PAINT);
    Create(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxFULL_REPAINT_ON_RESIZE);
    SetBackgroundColour(k_background);
    Bind(wxEVT_PAINT, &welcome_page_t::on_paint, this);
    Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
      place_click_line();
      event.Skip();
    });
    m_click_line = new wxStaticText(this, wxID_ANY,
                                    "Last click on the host's status line: none yet (click it)",
                                    wxDefaultPosition, wxDefaultSize, wxST_NO_AUTORESIZE);
    m_click_line->SetName(k_welcome_click_line);
    m_click_line->SetForegroundColour(k_shape_colours[2]);
    m_click_line->SetBackgroundColour(k_background);
    // The host forwards the clicks on its own part of the window.
    orvix1::get_mouse_signal().connect(this, &welcome_page_t::on_host_mouse);
  }

 private:
  void on_host_mouse(wxMouseEvent* event) {
    if (!event->ButtonDown()) return;
    const char* button = event->LeftDown() ? "left" : event->MiddleDown() ? "middle" : "right";
    m_click_line->SetLabel(wxString::Format("Last click on the host's status line: %s button at (%d, %d), #%d",
                                            button, event->GetX(), event->GetY(), ++m_clicks));
  }

  void place_click_line() {
    const int margin = dip(24);
    const int height = m_click_line->GetBestSize().y;
    m_click_line->SetSize(margin, GetClientSize().y - margin - height,
                          std::max(GetClientSize().x - 2 * margin, 1), height);
  }

  void on_paint(wxPaintEvent&) {
    wxAutoBufferedPaintDC dc(this);
    dc.SetBackground(wxBrush(GetBackgroundColour()));
    dc.Clear();
    const wxSize size = GetClientSize();
    const int margin = dip(24);
    const int text_bottom = draw_texts(dc, margin);
    const int line = m_click_line->GetSize().y + margin;
    draw_shapes(dc, wxRect(margin, text_bottom + margin, size.x - 2 * margin,
                           size.y - text_bottom - 2 * margin - line));
  }

  // Returns the y below the texts.
  int draw_texts(wxDC& dc, int margin) {
    wxFont title_font = GetFont();
    title_font.SetPointSize(title_font.GetPointSize() * 2);
    title_font.SetWeight(wxFONTWEIGHT_BOLD);
    dc.SetFont(title_font);
    dc.SetTextForeground(k_title);
    dc.DrawText("orvix1 gallery", margin, margin);
    const int subtitle_y = margin + dc.GetTextExtent("orvix1 gallery").y + dip(4);

    dc.SetFont(GetFont());
    dc.SetTextForeground(k_subtitle);
    const wxString subtitle = "A wxWidgets window inside the host's own GTK window";
    dc.DrawText(subtitle, margin, subtitle_y);
    return subtitle_y + dc.GetTextExtent(subtitle).y;
  }

  // Four shapes side by side in `area`, each in a cell of its own.
  void draw_shapes(wxDC& dc, const wxRect& area) {
    if (area.width <= 0 || area.height <= 0) return;
    const int cell = area.width / 4;
    const int side = std::min(cell - dip(16), area.height);
    if (side <= 0) return;
    dc.SetPen(wxPen(k_title, dip(2)));
    for (int i = 0; i < 4; ++i) {
      const wxRect box(area.x + i * cell + (cell - side) / 2, area.y + (area.height - side) / 2,
                       side, side);
      dc.SetBrush(wxBrush(k_shape_colours[i]));
      draw_shape(dc, i, box);
    }
  }

  static void draw_shape(wxDC& dc, int which, const wxRect& box) {
    switch (which) {
      case 0:
        dc.DrawRectangle(box);
        break;
      case 1:
        dc.DrawEllipse(box);
        break;
      case 2:
        dc.DrawRoundedRectangle(box, box.width / 6.0);
        break;
      default: {
        const wxPoint triangle[] = {wxPoint(box.x + box.width / 2, box.y), box.GetBottomRight(),
                                    box.GetBottomLeft()};
        dc.DrawPolygon(3, triangle);
      }
    }
  }

  wxStaticText* m_click_line = nullptr;
  int m_clicks = 0;
};

}  // namespace

wxWindow* create_welcome_page(wxWindow* parent) { return new welcome_page_t(parent); }

}  // namespace gallery
