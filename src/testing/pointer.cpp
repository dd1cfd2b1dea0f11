#include <gtk/gtk.h>
#include <wx/window.h>

#include "orvix1/testing.h"

namespace orvix1 {
namespace testing {

void send_mouse(wxWindow* window, wxEventType type, const wxPoint& at, bool left_held) {
  wxMouseEvent event(type);
  event.SetEventObject(window);
  event.SetId(window->GetId());
  event.SetPosition(at);
  event.m_leftDown = left_held || type == wxEVT_LEFT_DOWN || type == wxEVT_LEFT_DCLICK;
  event.m_middleDown = type == wxEVT_MIDDLE_DOWN;
  window->GetEventHandler()->ProcessEvent(event);
}

// Code that asks where the pointer is (tooltips placing themselves, hit
// tests) finds it where the events say it is.
void move_pointer(wxWindow* window, const wxPoint& at) {
  GdkDisplay* display = gdk_display_get_default();
  GdkDevice* pointer = gdk_seat_get_pointer(gdk_display_get_default_seat(display));
  const wxPoint screen = window->ClientToScreen(at);
  gdk_device_warp(pointer, gdk_display_get_default_screen(display), screen.x, screen.y);
  send_mouse(window, wxEVT_ENTER_WINDOW, at);
  send_mouse(window, wxEVT_MOTION, at);
}

void click(wxWindow* window, const wxPoint& at, const wxPoint& release) {
  const wxPoint up = release == wxDefaultPosition ? at : release;
  send_mouse(window, wxEVT_MOTION, at);
  send_mouse(window, wxEVT_LEFT_DOWN, at);
  send_mouse(window, wxEVT_MOTION, up);
  send_mouse(window, wxEVT_LEFT_UP, up);
}

}  // namespace testing
}  // namespace orvix1
