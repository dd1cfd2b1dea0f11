#include <cstring>
#include <memory>

#include <gtk/gtk.h>
#include <wx/window.h>

#include "orvix1/testing.h"

namespace orvix1 {
namespace testing {
namespace {

struct pixbuf_unref_t {
  void operator()(GdkPixbuf* pixbuf) const { g_object_unref(pixbuf); }
};
using pixbuf_ptr_t = std::unique_ptr<GdkPixbuf, pixbuf_unref_t>;

bool has_one_colour(const GdkPixbuf* pixbuf) {
  const int width = gdk_pixbuf_get_width(pixbuf);
  const int height = gdk_pixbuf_get_height(pixbuf);
  const int stride = gdk_pixbuf_get_rowstride(pixbuf);
  const int pixel_size = gdk_pixbuf_get_n_channels(pixbuf);
  const guchar* pixels = gdk_pixbuf_read_pixels(pixbuf);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      if (std::memcmp(pixels, pixels + y * stride + x * pixel_size, pixel_size) != 0) return false;
  return true;
}

std::string save_pixbuf(const pixbuf_ptr_t& pixbuf, const std::string& path) {
  if (!pixbuf) return "the window could not be read back";
  if (has_one_colour(pixbuf.get())) return "the window shows a single colour";
  GError* error = nullptr;
  if (!gdk_pixbuf_save(pixbuf.get(), path.c_str(), "png", &error, nullptr)) {
    std::string reason = std::string("cannot write ") + path + ": " + error->message;
    g_error_free(error);
    return reason;
  }
  return std::string();
}

}  // namespace

std::string save_window_png(GdkWindow* window, const std::string& path) {
  if (window == nullptr || !gdk_window_is_viewable(window)) return "the window is not on screen";
  // A window's image on X includes the child windows inside it, which is
  // where the library's windows live.
  return save_pixbuf(pixbuf_ptr_t(gdk_pixbuf_get_from_window(window, 0, 0,
                                                             gdk_window_get_width(window),
                                                             gdk_window_get_height(window))),
                     path);
}

std::string save_screen_area_png(GdkWindow* window, const std::string& path) {
  if (window == nullptr || !gdk_window_is_viewable(window)) return "the window is not on screen";
  int x = 0;
  int y = 0;
  gdk_window_get_origin(window, &x, &y);
  return save_pixbuf(pixbuf_ptr_t(gdk_pixbuf_get_from_window(gdk_get_default_root_window(), x, y,
                                                             gdk_window_get_width(window),
                                                             gdk_window_get_height(window))),
                     path);
}

std::string save_presented_png(save_png_t save, GdkWindow* window, const std::string& path,
                               std::chrono::milliseconds timeout) {
  std::string failure;
  pump_until(
      [&] {
        gdk_display_sync(gdk_window_get_display(window));
        failure = save(window, path);
        return failure.empty();
      },
      timeout);
  return failure;
}

std::string capture_window_png(wxWindow* window, const std::string& path,
                               std::chrono::milliseconds timeout) {
  wxCHECK_MSG(window != nullptr, "no window", "a window to capture");
  GdkWindow* gdk_window = window->GetHandle() != nullptr ? gtk_widget_get_window(window->GetHandle()) : nullptr;
  if (gdk_window == nullptr) return "the window is not realised";
  return save_presented_png(&save_screen_area_png, gdk_window, path, timeout);
}

}  // namespace testing
}  // namespace orvix1
