#include "elements/measuring_context.h"

#include <algorithm>
#include <memory>
#include <vector>

#include <pango/pangocairo.h>
#include <wx/app.h>
#include <wx/dcclient.h>
#include <wx/dcscreen.h>
#include <wx/fontutil.h>
#include <wx/graphics.h>

namespace orvix1 {
namespace elements {
namespace detail {
namespace {

void on_window_destroyed(wxWindowDestroyEvent& event);

// A context makes a new Pango layout for every text it measures, which costs
// a fifth of the measuring. The entry keeps one layout on the context's own
// Cairo context and measures with it once it has given the context's result
// for the font at hand: the context may scale fonts for the screen.
struct entry_t {
  wxWindow* window = nullptr;
  std::unique_ptr<wxDC> dc;
  PangoLayout* layout = nullptr;
  wxFont checked_font;  ///< held: a font freed and made anew could reuse the address
  bool layout_agrees = false;

  entry_t() = default;
  entry_t(entry_t&& other) noexcept { *this = std::move(other); }
  entry_t& operator=(entry_t&& other) noexcept {
    std::swap(window, other.window);
    std::swap(dc, other.dc);
    std::swap(layout, other.layout);
    std::swap(checked_font, other.checked_font);
    std::swap(layout_agrees, other.layout_agrees);
    return *this;
  }
  ~entry_t() {
    if (layout != nullptr) g_object_unref(layout);
    if (window != nullptr) window->Unbind(wxEVT_DESTROY, &on_window_destroyed);
  }
};

// Made once and never destroyed: contexts must not be deleted after wx has
// shut down, which a static's destructor would do.
std::vector<entry_t>& entries() {
  static auto* kept = new std::vector<entry_t>;
  return *kept;
}

bool g_drop_queued = false;

// A window's state (its font options, its scale) may change between events:
// the contexts live for the current one only.
void drop_all() {
  g_drop_queued = false;
  entries().clear();
}

void on_window_destroyed(wxWindowDestroyEvent& event) {
  event.Skip();
  // The destroy events of a window's children reach it too.
  auto& list = entries();
  const auto found = std::find_if(list.begin(), list.end(), [&event](const entry_t& entry) {
    return entry.window != nullptr && entry.window == event.GetEventObject();
  });
  if (found != list.end()) list.erase(found);
}

entry_t& entry_of(wxWindow* window) {
  auto& list = entries();
  const auto found = std::find_if(list.begin(), list.end(),
                                  [window](const entry_t& entry) { return entry.window == window; });
  if (found != list.end()) return *found;
  entry_t entry;
  if (window != nullptr) {
    entry.dc.reset(new wxClientDC(window));
    entry.window = window;
    window->Bind(wxEVT_DESTROY, &on_window_destroyed);
  } else {
    entry.dc.reset(new wxScreenDC);
  }
  list.push_back(std::move(entry));
  if (!g_drop_queued && wxTheApp != nullptr) {
    g_drop_queued = true;
    wxTheApp->CallAfter(&drop_all);
  }
  return list.back();
}

wxSize context_extent(wxDC& dc, const wxFont& font, const wxString& text) {
  if (dc.GetFont().GetRefData() != font.GetRefData()) dc.SetFont(font);
  wxCoord width = 0;
  wxCoord height = 0;
  dc.GetTextExtent(text, &width, &height);
  return wxSize(width, height);
}

// What the context's own measuring does, minus making the layout.
wxSize layout_extent(PangoLayout* layout, const wxString& text) {
  const wxScopedCharBuffer utf8 = text.utf8_str();
  pango_layout_set_text(layout, utf8.data(), static_cast<int>(utf8.length()));
  int width = 0;
  int height = 0;
  pango_layout_get_pixel_size(layout, &width, &height);
  return wxSize(width, height);
}

}  // namespace

wxDC& measuring_context(wxWindow* window) { return *entry_of(window).dc; }

bool is_measuring_context(const wxDC* dc) {
  const auto& list = entries();
  return std::any_of(list.begin(), list.end(), [dc](const entry_t& entry) { return entry.dc.get() == dc; });
}

wxSize measure_line(wxWindow* window, const wxFont& font, const wxString& text) {
  if (text.empty()) return wxSize(0, 0);
  entry_t& entry = entry_of(window);
  const bool checked = entry.checked_font.IsOk() && entry.checked_font.GetRefData() == font.GetRefData();
  if (checked && entry.layout_agrees) return layout_extent(entry.layout, text);
  const wxSize extent = context_extent(*entry.dc, font, text);
  if (checked) return extent;
  entry.checked_font = font;
  entry.layout_agrees = false;
  wxGraphicsContext* graphics = entry.dc->GetGraphicsContext();
  const wxNativeFontInfo* info = font.IsOk() ? font.GetNativeFontInfo() : nullptr;
  if (graphics == nullptr || graphics->GetNativeContext() == nullptr || info == nullptr) return extent;
  if (entry.layout == nullptr)
    entry.layout = pango_cairo_create_layout(static_cast<cairo_t*>(graphics->GetNativeContext()));
  pango_layout_set_font_description(entry.layout, info->description);
  entry.layout_agrees = layout_extent(entry.layout, text) == extent;
  return extent;
}

}  // namespace detail
}  // namespace elements
}  // namespace orvix1
