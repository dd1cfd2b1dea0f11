#ifndef GALLERY_SPINNER_GIF_H
#define GALLERY_SPINNER_GIF_H

#include <wx/string.h>

namespace gallery {

// Draws a spinner of `size` pixels square, saves it as an animated GIF in
// the temporary folder and gives its path; the caller removes the file.
wxString write_spinner_gif(int size);

}  // namespace gallery

#endif
