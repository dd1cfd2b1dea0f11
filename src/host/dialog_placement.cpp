#include "host/dialog_placement.h"

#include <algorithm>

#include <wx/display.h>

#include "orvix1/wx_dll_application.h"

namespace orvix1 {
namespace detail {
namespace {

constexpr int k_text_share_percent = 60;

wxRect work_area_at(const wxPoint& point) {
  const int index = wxDisplay::GetFromPoint(point);
  return wxDisplay(index == wxNOT_FOUND ? 0u : static_cast<unsigned>(index)).GetClientArea();
}

// Where the host's main window is on screen; empty when it does not show.
// The wrapper made for the question goes with the smart pointer.
wxRect main_window_rect() {
  const talvar2::smart_pointer_t<wxWindow> main_window = get_main_window();
  if (!main_window || !main_window->IsShownOnScreen()) return wxRect();
  return main_window->GetScreenRect();
}

wxRect owner_rect(const wxWindow* owner) {
  if (owner != nullptr) return owner->GetScreenRect();
  const wxRect main_rect = main_window_rect();
  if (!main_rect.IsEmpty()) return main_rect;
  if (wxWindow* active = wxGetActiveWindow()) return wxGetTopLevelParent(active)->GetScreenRect();
  return wxRect();
}

int clamp(int value, int low, int high) { return std::max(low, std::min(value, high)); }

}  // namespace

void centre_dialog_on(wxTopLevelWindow* dialog, const wxWindow* owner) {
  wxRect over = owner_rect(owner);
  const wxRect area = work_area_at(over.IsEmpty() ? wxPoint(0, 0) : over.GetPosition() + over.GetSize() / 2);
  if (over.IsEmpty()) over = area;
  const wxSize size = dialog->GetSize();
  const int x = over.x + (over.width - size.x) / 2, y = over.y + (over.height - size.y) / 2;
  dialog->Move(clamp(x, area.x, area.GetRight() + 1 - size.x),
               clamp(y, area.y, area.GetBottom() + 1 - size.y));
}

int widest_dialog_text(const wxWindow* dialog) {
  const int index = wxDisplay::GetFromWindow(dialog);
  const wxRect area = wxDisplay(index == wxNOT_FOUND ? 0u : static_cast<unsigned>(index)).GetClientArea();
  return area.width * k_text_share_percent / 100;
}

}  // namespace detail
}  // namespace orvix1
