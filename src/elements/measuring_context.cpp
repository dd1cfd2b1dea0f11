#include "elements/measuring_context.h"

#include <algorithm>
#include <memory>
#include <vector>

#include <wx/app.h>
#include <wx/dcclient.h>
#include <wx/dcscreen.h>

namespace orvix1 {
namespace elements {
namespace detail {
namespace {

struct entry_t {
  wxWindow* window;
  std::unique_ptr<wxDC> dc;
};

// Made once and never destroyed: contexts must not be deleted after wx has
// shut down, which a static's destructor would do.
std::vector<entry_t>& entries() {
  static auto* kept = new std::vector<entry_t>;
  return *kept;
}

bool g_drop_queued = false;

void on_window_destroyed(wxWindowDestroyEvent& event);

void forget(std::vector<entry_t>::iterator entry) {
  if (entry->window != nullptr) entry->window->Unbind(wxEVT_DESTROY, &on_window_destroyed);
  entries().erase(entry);
}

// A window's state (its font options, its scale) may change between events:
// the contexts live for the current one only.
void drop_all() {
  g_drop_queued = false;
  while (!entries().empty()) forget(entries().end() - 1);
}

void on_window_destroyed(wxWindowDestroyEvent& event) {
  event.Skip();
  // The destroy events of a window's children reach it too.
  auto& list = entries();
  const auto found = std::find_if(list.begin(), list.end(), [&event](const entry_t& entry) {
    return entry.window != nullptr && entry.window == event.GetEventObject();
  });
  if (found != list.end()) forget(found);
}

}  // namespace

wxDC& measuring_context(wxWindow* window) {
  auto& list = entries();
  const auto found = std::find_if(list.begin(), list.end(),
                                  [window](const entry_t& entry) { return entry.window == window; });
  if (found != list.end()) return *found->dc;
  entry_t entry{window, nullptr};
  if (window != nullptr) {
    entry.dc.reset(new wxClientDC(window));
    window->Bind(wxEVT_DESTROY, &on_window_destroyed);
  } else {
    entry.dc.reset(new wxScreenDC);
  }
  list.push_back(std::move(entry));
  if (!g_drop_queued && wxTheApp != nullptr) {
    g_drop_queued = true;
    wxTheApp->CallAfter(&drop_all);
  }
  return *list.back().dc;
}

bool is_measuring_context(const wxDC* dc) {
  const auto& list = entries();
  return std::any_of(list.begin(), list.end(), [dc](const entry_t& entry) { return entry.dc.get() == dc; });
}

}  // namespace detail
}  // namespace elements
}  // namespace orvix1
