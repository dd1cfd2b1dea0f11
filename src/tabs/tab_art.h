#ifndef ORVIX1_SRC_TAB_ART_H
#define ORVIX1_SRC_TAB_ART_H

// How a tab looks: its size and its picture, worked out from what it shows,
// its state and its colours, in the manner of wx's notebook art providers.
// The tab button paints and measures itself through it; a strip measures
// thousands of tabs through it on a single DC.

#include <memory>

#include <wx/bitmap.h>
#include <wx/dcclient.h>
#include <wx/font.h>
#include <wx/image.h>
#include <wx/string.h>
#include <wx/window.h>

namespace orvix1 {
namespace detail {

// What a tab shows: everything its size depends on.
struct tab_face_t {
  const wxString& caption;
  const wxBitmap& image;  // may be invalid; when painting, the image as drawn
  bool animated;          // an animation takes the image's place
  wxSize animation;       // the size of the animation's control
  bool crossed;           // the close cross is shown
  bool checkbox;          // a native check box in place of the image
  int width;              // the tab's current width, which a check box keeps
};

// What a tab's picture depends on besides what it shows.
struct tab_state_t {
  bool hovered;
  bool left_pressed;
  bool selected;
  bool disabled;
  bool cross_hovered;
};

// The colours of one state.
struct tab_colours_t {
  wxColour background;
  wxColour border;
  wxColour text;
};

// How a tab is painted: its colours in each state, its background and frame.
struct tab_look_t {
  tab_colours_t normal;
  tab_colours_t hovered;
  tab_colours_t pressed;  // also selected
  tab_colours_t disabled;
  wxImage background;        // drawn stretched instead of the background colour
  int border_sides = wxALL;  // 0: no border
  bool centred_label = false;
};

// Bound to the window the tabs appear in: its theme and scale decide the
// native check box, and a DC on it measures text. Every length is the
// 96-dpi one times get_DPI_scale(), truncated; a bitmap counts with its
// logical size (its pixels over its scale factor).
class tab_art_t {
 public:
  explicit tab_art_t(wxWindow* window) : m_window(window) {}

  wxWindow* window() const { return m_window; }
  wxSize checkbox_size() const;
  static wxSize cross_size();
  // Where image and caption go in a tab of `client` size.
  static wxRect content_rect(const wxSize& client, bool crossed);
  static wxRect cross_rect(const wxSize& client);
  // The width left to the caption beside an image of `image` size.
  static int caption_width(const wxSize& client, bool crossed, const wxSize& image);

  // The whole tab; `shown_text` is the caption as it fits.
  void draw_tab(wxDC& dc, const wxSize& client, const tab_face_t& face, const wxString& shown_text,
                const tab_state_t& state, const tab_look_t& look, const wxFont& font) const;
  static void draw_border(wxDC& dc, const wxRect& rect, const wxColour& colour, int sides);
  // On a dark `background` the resting cross is drawn as its negative.
  void draw_cross(wxDC& dc, const wxRect& rect, const tab_state_t& state,
                  const wxColour& background) const;
  // Top and left edges with one pen, bottom and right with the other.
  static void draw_two_coloured_rect(wxDC& dc, const wxRect& rect, const wxPen& top_left,
                                     const wxPen& bottom_right);
  // The colours of the state a tab is in.
  static const tab_colours_t& colours(const tab_look_t& look, const tab_state_t& state);

 private:
  // The crosses as made for one scale: normal, hovered, pressed, and the
  // normal one's negative for dark tabs; made when first drawn.
  struct crosses_t {
    double scale = 0.0;
    double content_scale = 0.0;
    wxBitmap looks[4];
  };

  static void draw_background(wxDC& dc, const wxRect& rect, const tab_look_t& look,
                              const tab_state_t& state);
  // The label's rectangle once the check box or the animation took its part.
  wxRect draw_image_part(wxDC& dc, const wxSize& client, const tab_face_t& face,
                         const tab_state_t& state) const;
  void draw_checkbox(wxDC& dc, const wxRect& rect, const tab_state_t& state) const;
  static void draw_label(wxDC& dc, const wxString& text, const wxBitmap& image, const wxRect& rect,
                         int alignment);
  const wxBitmap& cross_bitmap(int look) const;

  wxWindow* m_window;
  mutable crosses_t m_crosses;
};

// Measures tabs on one DC, made when first needed and given a new font only
// when a tab's font differs from the one before.
class tab_measurer_t {
 public:
  explicit tab_measurer_t(const tab_art_t& art) : m_art(art) {}

  // The tab's preferred size.
  wxSize measure(const tab_face_t& face, const wxFont& font);
  // The caption, shortened with dots when it is wider than `width`.
  wxString shown_text(const wxString& caption, int width, const wxFont& font);

 private:
  wxDC& dc_in(const wxFont& font);

  const tab_art_t& m_art;
  std::unique_ptr<wxClientDC> m_dc;
  wxFont m_font;
  wxSize m_checkbox = wxDefaultSize;
};

}  // namespace detail
}  // namespace orvix1

#endif
