// The gallery: a host program of its own kind. It owns a plain GTK main
// window, starts wxWidgets through the library with that window's handle,
// pumps the library's events from its own loop, forwards its mouse clicks,
// follows the library's modal dialogs, and shows the library's parts inside
// its window, one page per topic. Pictures and animations come from the
// gallery's resource archive.

#include <chrono>
#include <clocale>
#include <cstdio>
#include <string>

#include <gtk/gtk.h>
#include <wx/evtloop.h>
#include <wx/init.h>
#include <wx/log.h>

#include "gallery_view.h"
#include "host_hooks.h"
#include "host_window.h"
#include "options.h"
#include "orvix1/orvix1.h"
#include "orvix1/testing.h"
#include "pages/pages.h"
#include "pages/palette_page.h"
#include "tour.h"

namespace gallery {
namespace {

using orvix1::testing::pump_once;
using orvix1::testing::pump_until;

constexpr int k_exit_usage = 2;
constexpr int k_exit_no_display = 2;
constexpr int k_exit_failed = 1;
constexpr auto k_paint_timeout = std::chrono::seconds(10);

int g_assertion_count = 0;
int g_critical_count = 0;

void print_assertion(const wxString& file, int line, const wxString& function,
                     const wxString& condition, const wxString& message) {
  ++g_assertion_count;
  std::fprintf(stderr, "gallery: assertion \"%s\" failed in %s (%s:%d): %s\n",
               condition.utf8_str().data(), function.utf8_str().data(), file.utf8_str().data(),
               line, message.utf8_str().data());
}

// GLib's criticals are failed preconditions in GTK and GDK: as bad as a failed
// wx assertion.
void count_criticals(const gchar* domain, GLogLevelFlags level, const gchar* message,
                     gpointer data) {
  if ((level & G_LOG_LEVEL_CRITICAL) != 0) ++g_critical_count;
  g_log_default_handler(domain, level, message, data);
}

// A screenshot run fails on any failed assertion of wx, GTK or GDK.
int check_diagnostics(int status) {
  if (g_assertion_count > 0)
    std::fprintf(stderr, "gallery: %d wx assertion(s) failed\n", g_assertion_count);
  if (g_critical_count > 0)
    std::fprintf(stderr, "gallery: %d GLib critical(s)\n", g_critical_count);
  const bool clean = g_assertion_count == 0 && g_critical_count == 0;
  return status == 0 && !clean ? k_exit_failed : status;
}

int take_screenshot(const host_window_t& host, const gallery_view_t& view,
                    const std::string& path) {
  if (!pump_until([&view] { return view.has_painted(); }, k_paint_timeout)) {
    std::fprintf(stderr, "gallery: the page did not paint within %lld s\n",
                 static_cast<long long>(k_paint_timeout.count()));
    return k_exit_failed;
  }
  const std::string failure =
      orvix1::testing::save_presented_png(&orvix1::testing::save_window_png, host.gdk_window(), path, k_paint_timeout);
  if (!failure.empty()) {
    std::fprintf(stderr, "gallery: no screenshot: %s\n", failure.c_str());
    return k_exit_failed;
  }
  return 0;
}

// Announces a desktop of `scale` × 96 dpi as its settings service would,
// before anything is measured: GTK's fonts grow with it, and the library
// reads the same resolution for its own scale.
void set_desktop_scale(double scale) {
  if (scale == 1.0) return;
  g_object_set(gtk_settings_get_default(), "gtk-xft-dpi", static_cast<int>(96 * 1024 * scale),
               nullptr);
}

// The folder the gallery program is in.
std::string program_folder() {
  gchar* program = g_file_read_link("/proc/self/exe", nullptr);
  if (program == nullptr) return ".";
  gchar* folder = g_path_get_dirname(program);
  std::string result = folder;
  g_free(folder);
  g_free(program);
  return result;
}

// Shows `page` in the host's window through the library's wrapper, until the
// user closes the window, the page is captured or the tour has ended.
int show_in_wrapper(host_window_t& host, const page_t& page, const options_t& options) {
  // The palette every page draws with, from the desktop, for the whole run.
  const talvar2::intrusive_pointer_t<orvix1::ui_settings_configure_t> palette =
      orvix1::ui_settings_configure_t::get();
  talvar2::smart_pointer_t<wxWindow> main_window = orvix1::get_main_window();
  if (!main_window) {
    std::fprintf(stderr, "gallery: the library did not wrap the host window\n");
    return k_exit_failed;
  }
  // The gallery's pictures and animations, by name, from its archive.
  if (!orvix1::ui_resources_t::get()->add_archive(GALLERY_RESOURCE_ARCHIVE)) {
    std::fprintf(stderr, "gallery: cannot read the resource archive %s\n", GALLERY_RESOURCE_ARCHIVE);
    return k_exit_failed;
  }
  host_hooks_t hooks(host);
  const std::string out_dir = options.out_dir.empty() ? program_folder() : options.out_dir;
  if (options.tour) {
    g_mkdir_with_parents(out_dir.c_str(), 0755);
    set_palette_page_file(wxString::FromUTF8(out_dir + "/palette.xml"));
  }
  int status = 0;
  {
    gallery_view_t view(main_window, page);
    host.set_resize_handler([&view](int width, int height) { view.fit(width, height); });
    if (options.tour) {
      status = run_tour(host, hooks, view, out_dir);
    } else if (!options.screenshot_path.empty()) {
      status = take_screenshot(host, view, options.screenshot_path);
    } else {
      host.run_until_closed();
    }
    host.set_resize_handler(nullptr);
  }
  return status;
}

// Starts wxWidgets and the library for the host, shows the page and ends
// both again, the wrapper first.
int show_page(int& argc, char** argv, host_window_t& host, const page_t& page,
              const options_t& options) {
  wxSetAssertHandler(print_assertion);
  if (!wxEntryStart(argc, argv)) {
    std::fprintf(stderr, "gallery: wxWidgets did not start\n");
    return k_exit_no_display;
  }
  // wx leaves the C library's character set at "C", which loses UTF-8 text.
  std::setlocale(LC_ALL, "C.UTF-8");
  delete wxLog::SetActiveTarget(new wxLogStderr);

  bool initialised = false;
  int status = k_exit_failed;
  {
    // The host runs no wx loop of its own: this one makes wx's queues work.
    wxGUIEventLoop loop;
    wxEventLoopActivator activator(&loop);
    initialised = wxTheApp->CallOnInit() && orvix1::initialize_wxwidgets(host.widget());
    if (initialised)
      status = show_in_wrapper(host, page, options);
    else
      std::fprintf(stderr, "gallery: the library did not start\n");
    pump_once();
  }
  if (initialised)
    orvix1::cleanup_wxwidgets();  // the last client ends wxWidgets too
  else
    wxEntryCleanup();
  return status;
}

int run(int argc, char** argv) {
  g_log_set_default_handler(count_criticals, nullptr);
  gtk_parse_args(&argc, &argv);
  const options_t options = parse_options(argc, argv);
  if (!options.error.empty() || options.help) {
    std::fprintf(options.help ? stdout : stderr, "%s%s%s", options.error.c_str(),
                 options.error.empty() ? "" : "\n", usage());
    return options.help ? 0 : k_exit_usage;
  }
  if (options.list_pages) {
    for (const page_t& page : all_pages()) std::printf("%s\t%s\n", page.name, page.title);
    return 0;
  }
  const page_t* page = find_page(options.page_name);
  if (page == nullptr) {
    std::fprintf(stderr, "gallery: no page called \"%s\" (see --list-pages)\n",
                 options.page_name.c_str());
    return k_exit_usage;
  }
  if (!gtk_init_check(&argc, &argv)) {
    const char* display = g_getenv("DISPLAY");
    std::fprintf(stderr, "gallery: cannot open the display \"%s\"\n", display ? display : "");
    return k_exit_no_display;
  }

  set_desktop_scale(options.scale);
  host_window_t host("orvix1 gallery", static_cast<int>(900 * options.scale),
                     static_cast<int>(560 * options.scale));
  host.show();
  const int status = show_page(argc, argv, host, *page, options);
  const bool scripted = options.tour || !options.screenshot_path.empty();
  return scripted ? check_diagnostics(status) : status;
}

}  // namespace
}  // namespace gallery

int main(int argc, char** argv) { return gallery::run(argc, argv); }
