#ifndef GALLERY_HOST_HOOKS_H
#define GALLERY_HOST_HOOKS_H

#include <string>

#include "host_window.h"

class wxDialog;
class wxWindow;

namespace gallery {

// What the host tells the library and what it hears from it: it forwards
// the mouse clicks on its own part of the window through the library's mouse
// signal, and its modal callback marks the host window while one of the
// library's modal dialogs is up. One at a time; it removes its hooks when it
// goes. Scripted runs answer dialogs with orvix1::testing::modal_answer_t,
// which lets these hooks hear of each dialog first.
class host_hooks_t {
 public:
  explicit host_hooks_t(host_window_t& host);
  ~host_hooks_t();
  host_hooks_t(const host_hooks_t&) = delete;
  host_hooks_t& operator=(const host_hooks_t&) = delete;

  int dialogs_opened() const { return m_opened; }
  int dialogs_closed() const { return m_closed; }
  const std::string& last_dialog_title() const { return m_last_title; }
  int clicks_forwarded() const { return m_clicks; }

 private:
  static int on_modal_dialog(wxWindow* window);
  void on_dialog_shown(wxDialog* dialog);
  void on_dialog_hidden(wxDialog* dialog);
  void forward_click(const GdkEventButton& event);

  static host_hooks_t* s_instance;
  host_window_t& m_host;
  int m_opened = 0;
  int m_closed = 0;
  int m_clicks = 0;
  std::string m_last_title;
};

}  // namespace gallery

#endif
