#ifndef ORVIX1_TESTS_PAINT_CANVAS_H
#define ORVIX1_TESTS_PAINT_CANVAS_H

// A bitmap to paint on through a memory DC and to read pixels back from.

#include <algorithm>
#include <cmath>

#include <wx/bitmap.h>
#include <wx/brush.h>
#include <wx/colour.h>
#include <wx/dcmemory.h>
#include <wx/image.h>

namespace orvix1_test {

class paint_canvas_t {
 public:
  paint_canvas_t(int width, int height, const wxColour& background = *wxWHITE)
      : m_bitmap(width, height, 24) {
    paint([&](wxDC& dc) {
      dc.SetBackground(wxBrush(background));
      dc.Clear();
    });
  }

  template <class Body>
  void paint(Body&& body) {
    {
      wxMemoryDC dc(m_bitmap);
      body(static_cast<wxDC&>(dc));
    }
    m_image = m_bitmap.ConvertToImage();
  }

  wxColour at(int x, int y) const {
    return wxColour(m_image.GetRed(x, y), m_image.GetGreen(x, y), m_image.GetBlue(x, y));
  }
  wxColour at(const wxPoint& point) const { return at(point.x, point.y); }

  // How many pixels of `area` have exactly `colour`.
  int count(const wxRect& area, const wxColour& colour) const {
    int found = 0;
    for (int y = area.y; y < area.y + area.height; ++y)
      for (int x = area.x; x < area.x + area.width; ++x)
        if (at(x, y) == colour) ++found;
    return found;
  }
  // How many pixels of `area` differ in brightness from `background` by
  // more than `by` (0 to 1): what a reader can make out on it.
  int standing_out(const wxRect& area, const wxColour& background, double by) const {
    int found = 0;
    for (int y = area.y; y < area.y + area.height; ++y)
      for (int x = area.x; x < area.x + area.width; ++x)
        if (std::abs(at(x, y).GetLuminance() - background.GetLuminance()) > by) ++found;
    return found;
  }
  bool all(const wxRect& area, const wxColour& colour) const {
    return count(area, colour) == area.width * area.height;
  }
  // Whether both canvases hold the same pixels.
  bool same_as(const paint_canvas_t& other) const {
    return m_image.GetSize() == other.m_image.GetSize() &&
           std::equal(m_image.GetData(), m_image.GetData() + 3 * m_image.GetWidth() * m_image.GetHeight(),
                      other.m_image.GetData());
  }
  const wxImage& image() const { return m_image; }

 private:
  wxBitmap m_bitmap;
  wxImage m_image;
};

// A picture of `colour` whose left half has the colour `masked`, which is
// its mask colour.
inline wxImage half_masked_image(const wxSize& size, const wxColour& colour,
                                 const wxColour& masked) {
  wxImage image(size);
  image.SetRGB(wxRect(size), colour.Red(), colour.Green(), colour.Blue());
  image.SetRGB(wxRect(0, 0, size.x / 2, size.y), masked.Red(), masked.Green(), masked.Blue());
  image.SetMaskColour(masked.Red(), masked.Green(), masked.Blue());
  return image;
}

}  // namespace orvix1_test

#endif
