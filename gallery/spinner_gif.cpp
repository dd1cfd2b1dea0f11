#include "spinner_gif.h"

#include <cmath>

#include <wx/anidecod.h>
#include <wx/dcmemory.h>
#include <wx/filename.h>
#include <wx/imaggif.h>
#include <wx/quantize.h>
#include <wx/wfstream.h>

namespace gallery {

wxString write_spinner_gif(int size) {
  wxImageArray frames;
  const double orbit = size * 0.35;
  const int dot_radius = std::max(size / 10, 1);
  for (int frame = 0; frame < 8; ++frame) {
    wxBitmap bitmap(size, size);
    {
      wxMemoryDC dc(bitmap);
      dc.SetBackground(*wxWHITE_BRUSH);
      dc.Clear();
      for (int dot = 0; dot < 8; ++dot) {
        const double angle = dot * M_PI / 4;
        const int shade = 40 + ((dot - frame + 8) % 8) * 26;
        dc.SetBrush(wxBrush(wxColour(shade, shade, 255)));
        dc.SetPen(*wxTRANSPARENT_PEN);
        dc.DrawCircle(size / 2 + static_cast<int>(orbit * std::cos(angle)),
                      size / 2 + static_cast<int>(orbit * std::sin(angle)), dot_radius);
      }
    }
    wxImage quantized;
    wxQuantize::Quantize(bitmap.ConvertToImage(), quantized, 64);
    frames.Add(quantized);
  }
  const wxString path = wxFileName::CreateTempFileName("orvix1-gallery-spinner") + ".gif";
  wxFFileOutputStream out(path);
  wxGIFHandler().SaveAnimation(frames, &out, false, 100);
  return path;
}

}  // namespace gallery
