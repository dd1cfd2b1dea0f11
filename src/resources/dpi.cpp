#include "orvix1/dpi.h"

#include <algorithm>

#include <gdk/gdk.h>
#include <wx/dcscreen.h>
#include <wx/font.h>
#include <wx/settings.h>

namespace orvix1 {

// When true, the image loader passes what it loads through apply_DPI_scale.
bool s_image_loading_autoscale = true;

namespace {

// The pictures' authored resolution.
constexpr double k_reference_dpi = 96.0;
// A 16-pixel default font counts as scale 1.0.
constexpr double k_font_pixel_scale = 0.0625;

// The desktop's resolution relative to 96 dpi; below 0 while not yet known.
double g_desktop_scale = -1.0;
// A scale set by the host; 0 while the desktop decides.
double g_scale_override = 0.0;

double screen_dc_scale() {
  wxScreenDC dc;
  return dc.GetPPI().GetWidth() / k_reference_dpi;
}

// Asks the desktop once. Without a default screen, or while the desktop
// has no resolution setting (GDK reports -1), the cache stays unknown and
// the next call asks again.
void cache_desktop_scale() {
  if (g_desktop_scale >= 0.0) return;
  GdkScreen* screen = gdk_screen_get_default();
  if (screen == nullptr) return;
  g_desktop_scale = gdk_screen_get_resolution(screen) / k_reference_dpi;
}

double default_font_scale() {
  const wxFont font = wxSystemSettings::GetFont(wxSYS_DEFAULT_GUI_FONT);
  return font.GetPixelSize().GetHeight() * k_font_pixel_scale;
}

}  // namespace

// The desktop's resolution setting wins over the screen device context's
// (which GTK 3 always reports as 96); the default font's size is the last
// word only when neither says the screen is denser than 96 dpi.
// Layouts ask for every tab and element: the screen DC, whose answer the
// desktop's setting overrides anyway, is opened only when there is none.
double get_DPI_scale() {
  if (g_scale_override > 0.0) return g_scale_override;
  cache_desktop_scale();
  if (g_desktop_scale > 0.0) return std::max(1.0, g_desktop_scale);
  double scale = screen_dc_scale();
  if (scale <= 1.0) scale = default_font_scale();
  return std::max(1.0, scale);
}

void forget_DPI_scale() { g_desktop_scale = -1.0; }

void set_DPI_scale_override(double scale) {
  g_scale_override = scale > 0.0 ? std::max(1.0, scale) : 0.0;
}

int calculate_DPI_scaled_length(int length) {
  return static_cast<int>(length * get_DPI_scale());
}

double get_content_scale_factor() {
  GdkScreen* screen = gdk_screen_get_default();
  if (screen == nullptr) return 1.0;
  return std::max(1, gdk_window_get_scale_factor(gdk_screen_get_root_window(screen)));
}

void apply_DPI_scale(wxImage& image) {
  // A failed load stays as it is; the loader reports it.
  if (!image.IsOk()) return;
  const double scale = get_DPI_scale();
  if (scale <= 1.0) return;
  const int width = static_cast<int>(image.GetWidth() * scale);
  const int height = static_cast<int>(image.GetHeight() * scale);
  image = image.Scale(width, height, wxIMAGE_QUALITY_NORMAL);
}

wxSize calculate_DPI_scaled_size(int width, int height) {
  const double scale = get_DPI_scale();
  return wxSize(static_cast<int>(width * scale), static_cast<int>(height * scale));
}

void set_DPI_scaled_window_size(wxWindow* window, int width, int height, bool also_min_size) {
  if (window == nullptr) return;
  const wxSize size = calculate_DPI_scaled_size(width, height);
  window->SetSize(wxDefaultCoord, wxDefaultCoord, size.GetWidth(), size.GetHeight(),
                  wxSIZE_USE_EXISTING);
  if (also_min_size) window->SetMinSize(size);
}

bool get_image_loading_autoscale() { return s_image_loading_autoscale; }

void set_image_loading_autoscale(bool autoscale) { s_image_loading_autoscale = autoscale; }

autoscale_guard_t::autoscale_guard_t(bool enable) : m_saved(s_image_loading_autoscale) {
  s_image_loading_autoscale = enable;
}

autoscale_guard_t::~autoscale_guard_t() { s_image_loading_autoscale = m_saved; }

}  // namespace orvix1
