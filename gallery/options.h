#ifndef GALLERY_OPTIONS_H
#define GALLERY_OPTIONS_H

#include <string>

namespace gallery {

struct options_t {
  std::string screenshot_path;  // empty: run interactively
  std::string page_name;        // empty: the first page
  bool tour = false;            // walk every page with scripted input
  std::string out_dir;          // where the tour writes its pictures; empty: beside the program
  double scale = 1.0;           // the desktop's resolution relative to 96 dpi (1 to 4)
  bool list_pages = false;
  bool help = false;
  std::string error;            // set when the command line is wrong
};

// Reads the gallery's options from a command line that GTK has already
// stripped of its own.
options_t parse_options(int argc, char** argv);

const char* usage();

}  // namespace gallery

#endif
