#include "options.h"

#include <cstdlib>
#include <cstring>

namespace gallery {

options_t parse_options(int argc, char** argv) {
  options_t options;
  for (int i = 1; i < argc; ++i) {
    const char* argument = argv[i];
    const bool has_value = i + 1 < argc;
    if (std::strcmp(argument, "--screenshot") == 0 && has_value) {
      options.screenshot_path = argv[++i];
    } else if (std::strcmp(argument, "--page") == 0 && has_value) {
      options.page_name = argv[++i];
    } else if (std::strcmp(argument, "--tour") == 0) {
      options.tour = true;
    } else if (std::strcmp(argument, "--out") == 0 && has_value) {
      options.out_dir = argv[++i];
    } else if (std::strcmp(argument, "--scale") == 0 && has_value) {
      char* end = nullptr;
      options.scale = std::strtod(argv[++i], &end);
      if (*end != '\0' || !(options.scale >= 1.0 && options.scale <= 4.0)) {
        options.error = std::string("--scale wants a number from 1 to 4, not ") + argv[i];
        break;
      }
    } else if (std::strcmp(argument, "--list-pages") == 0) {
      options.list_pages = true;
    } else if (std::strcmp(argument, "--help") == 0 || std::strcmp(argument, "-h") == 0) {
      options.help = true;
    } else {
      options.error = std::string("unknown or incomplete option: ") + argument;
      break;
    }
  }
  if (options.error.empty() && options.tour && !options.screenshot_path.empty())
    options.error = "--tour and --screenshot do not go together";
  if (options.error.empty() && !options.out_dir.empty() && !options.tour)
    options.error = "--out goes with --tour";
  return options;
}

const char* usage() {
  return "usage: gallery [--page NAME] [--screenshot FILE.png] [--tour [--out DIR]] [--scale N]\n"
         "               [--list-pages]\n"
         "  --page NAME        show this page (default: the first one)\n"
         "  --screenshot FILE  paint once, save the host window as PNG and exit\n"
         "  --tour             walk every page with scripted input, check each step,\n"
         "                     save DIR/<page>.png and DIR/<page>.a11y.txt (its accessible\n"
         "                     tree) after each page and exit (0: all held)\n"
         "  --out DIR          where the tour saves (default: the program's folder)\n"
         "  --scale N          run as on a desktop of N x 96 dpi (1 to 4, e.g. 2): fonts,\n"
         "                     the library's widgets and the window grow N times\n"
         "  --list-pages       print the page names and exit\n";
}

}  // namespace gallery
