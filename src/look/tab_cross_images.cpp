#include "look/tab_cross_images.h"

#include <algorithm>

#include <wx/image.h>

namespace orvix1 {
namespace detail {

// Each cross runs from a black outline through its colours to a white
// highlight on the upper-left edge of the strokes; '.' is transparent.
const char* const tab_cross_normal_xpm[] = {
    "9 10 8 1",    ". c None",    "# c #000000", "a c #3C3C3C", "b c #5A5A5A",
    "c c #808080", "d c #A8A8A8", "e c #D4D4D4", "w c #FFFFFF",
    "##.....##",   "#wa...ew#",   ".#da.eb#.",   "..#dcb#..",   "...#c#...",
    "..#ecb#..",   ".#dc.cb#.",   "#wc...cb#",   "##.....##",   ".........",
};

const char* const tab_cross_hovered_xpm[] = {
    "9 10 8 1",    ". c None",    "# c #000000", "a c #B05A00", "b c #E08A10",
    "c c #F5B040", "d c #FAD070", "e c #FFF0B0", "w c #FFFFFF",
    "##.....##",   "#wa...ew#",   ".#da.eb#.",   "..#dcb#..",   "...#c#...",
    "..#ecb#..",   ".#dc.cb#.",   "#wc...cb#",   "##.....##",   ".........",
};

const char* const tab_cross_pressed_xpm[] = {
    "9 10 8 1",    ". c None",    "# c #000000", "a c #800000", "b c #B01010",
    "c c #E03020", "d c #F06030", "e c #F8A060", "w c #FFFFFF",
    "##.....##",   "#wa...ew#",   ".#da.eb#.",   "..#dcb#..",   "...#c#...",
    "..#ecb#..",   ".#dc.cb#.",   "#wc...cb#",   "##.....##",   ".........",
};

namespace {

const int k_cross_width = 9;
const int k_cross_height = 10;

void turn_negative(wxImage& image) {
  unsigned char* rgb = image.GetData();
  for (int k = 0; k < 3 * image.GetWidth() * image.GetHeight(); ++k) rgb[k] = 255 - rgb[k];
  // The mask colour turned too: transparency stays where it was.
  if (image.HasMask())
    image.SetMaskColour(255 - image.GetMaskRed(), 255 - image.GetMaskGreen(),
                        255 - image.GetMaskBlue());
}

// Transparent pixels take the outline's colour (the top-left pixel is
// outline in every look), so that averaging blends the strokes' edges into
// their outline instead of into the mask colour.
void paint_transparent_as_outline(wxImage& image) {
  const unsigned char red = image.GetRed(0, 0);
  const unsigned char green = image.GetGreen(0, 0);
  const unsigned char blue = image.GetBlue(0, 0);
  for (int y = 0; y < image.GetHeight(); ++y)
    for (int x = 0; x < image.GetWidth(); ++x)
      if (image.GetAlpha(x, y) == 0) image.SetRGB(x, y, red, green, blue);
}

// Whole multiples of the pixel art keep it crisp: each pixel becomes a
// square block. Other sizes are taken from the next whole multiple up by
// averaging, so strokes keep one width along their length instead of the
// uneven steps that picking the nearest pixel gives at 1.5.
wxImage scaled_cross(wxImage image, const wxSize& pixels) {
  image.InitAlpha();  // the mask becomes transparency that scaling keeps
  const int multiple = std::max((pixels.x + k_cross_width - 1) / k_cross_width,
                                (pixels.y + k_cross_height - 1) / k_cross_height);
  image = image.Scale(k_cross_width * multiple, k_cross_height * multiple, wxIMAGE_QUALITY_NEAREST);
  if (image.GetSize() == pixels) return image;
  paint_transparent_as_outline(image);
  return image.Scale(pixels.x, pixels.y, wxIMAGE_QUALITY_BOX_AVERAGE);
}

}  // namespace

wxSize tab_cross_size(double scale) {
  return wxSize(static_cast<int>(k_cross_width * scale), static_cast<int>(k_cross_height * scale));
}

wxBitmap make_tab_cross(const char* const* xpm, double scale, double content_scale,
                        bool negative) {
  wxImage image(xpm);
  if (negative) turn_negative(image);
  const wxSize logical = tab_cross_size(scale);
  const wxSize pixels(static_cast<int>(logical.x * content_scale),
                      static_cast<int>(logical.y * content_scale));
  if (pixels == image.GetSize()) return wxBitmap(image);
  return wxBitmap(scaled_cross(image, pixels), wxBITMAP_SCREEN_DEPTH, content_scale);
}

}  // namespace detail
}  // namespace orvix1
