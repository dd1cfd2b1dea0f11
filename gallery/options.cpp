#include "options.h"

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
  return "usage: gallery [--page NAME] [--screenshot FILE.png] [--tour [--out DIR]] [--list-pages]\n"
         "  --page NAME        show this page (default: the first one)\n"
         "  --screenshot FILE  paint once, save the host window as PNG and exit\n"
         "  --tour             walk every page with scripted input, check each step,\n"
         "                     save DIR/<page>.png after each page and exit (0: all held)\n"
         "  --out DIR          where the tour saves (default: the program's folder)\n"
         "  --list-pages       print the page names and exit\n";
}

}  // namespace gallery
