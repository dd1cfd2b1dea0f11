#include "host_hooks.h"

#include <cstdio>

#include <wx/dialog.h>

#include "orvix1/wx_dll_application.h"

namespace gallery {

host_hooks_t* host_hooks_t::s_instance = nullptr;

host_hooks_t::host_hooks_t(host_window_t& host) : m_host(host) {
  s_instance = this;
  orvix1::set_modal_callback(&host_hooks_t::on_modal_dialog);
  m_host.set_mouse_handler([this](const GdkEventButton& event) { forward_click(event); });
}

host_hooks_t::~host_hooks_t() {
  m_host.set_mouse_handler(nullptr);
  orvix1::set_modal_callback(nullptr);
  s_instance = nullptr;
}

// The library asks before it shows a modal dialog. The host lets it show the
// dialog (0) and follows it: marked while shown, unmarked when hidden.
int host_hooks_t::on_modal_dialog(wxWindow* window) {
  auto* dialog = wxDynamicCast(window, wxDialog);
  if (s_instance == nullptr || dialog == nullptr) return 0;
  s_instance->on_dialog_shown(dialog);
  return 0;
}

void host_hooks_t::on_dialog_shown(wxDialog* dialog) {
  ++m_opened;
  m_last_title = dialog->GetTitle().utf8_string();
  std::fprintf(stderr, "gallery: host: modal dialog \"%s\" opens\n", m_last_title.c_str());
  m_host.mark_modal(true, m_last_title);
  dialog->Bind(wxEVT_SHOW, [this, dialog](wxShowEvent& event) {
    event.Skip();
    if (!event.IsShown()) on_dialog_hidden(dialog);
  });
}

void host_hooks_t::on_dialog_hidden(wxDialog* dialog) {
  if (!m_host.is_marked_modal()) return;
  ++m_closed;
  std::fprintf(stderr, "gallery: host: modal dialog \"%s\" closed (%d)\n",
               dialog->GetTitle().utf8_string().c_str(), dialog->GetReturnCode());
  m_host.mark_modal(false, std::string());
}

// The host's own mouse events reach the library's widgets through its
// mouse signal, in the host window's coordinates.
void host_hooks_t::forward_click(const GdkEventButton& event) {
  wxEventType type = wxEVT_NULL;
  const bool down = event.type == GDK_BUTTON_PRESS;
  switch (event.button) {
    case 1: type = down ? wxEVT_LEFT_DOWN : wxEVT_LEFT_UP; break;
    case 2: type = down ? wxEVT_MIDDLE_DOWN : wxEVT_MIDDLE_UP; break;
    case 3: type = down ? wxEVT_RIGHT_DOWN : wxEVT_RIGHT_UP; break;
    default: return;
  }
  if (event.type != GDK_BUTTON_PRESS && event.type != GDK_BUTTON_RELEASE) return;
  wxMouseEvent mouse(type);
  mouse.m_x = static_cast<wxCoord>(event.x);
  mouse.m_y = static_cast<wxCoord>(event.y);
  mouse.m_leftDown = event.button == 1 && down;
  mouse.m_middleDown = event.button == 2 && down;
  mouse.m_rightDown = event.button == 3 && down;
  mouse.m_controlDown = (event.state & GDK_CONTROL_MASK) != 0;
  mouse.m_shiftDown = (event.state & GDK_SHIFT_MASK) != 0;
  ++m_clicks;
  orvix1::fire_mouse_signal(&mouse);
}

}  // namespace gallery
