#ifndef ORVIX1_TESTS_FAKE_ELEMENT_HOST_H
#define ORVIX1_TESTS_FAKE_ELEMENT_HOST_H

// Answers a root element's requests without a window and records them, for
// tests of the element side alone.

#include <string>
#include <vector>

#include "orvix1/elements/UIElement.h"

namespace orvix1_test {

class fake_element_host_t : public talvar2::subscriber_base_t {
 public:
  using element_ptr_t = orvix1::elements::element_ptr_t;

  explicit fake_element_host_t(const element_ptr_t& root, wxRect client = wxRect(0, 0, 100, 100))
      : m_client(client), m_root(root) {
    m_root->RequestClientRect.connect(this, &fake_element_host_t::on_client_rect);
    m_root->RequestHolderWindow.connect(this, &fake_element_host_t::on_holder);
    m_root->RequestSetTimer.connect(this, &fake_element_host_t::on_set_timer);
    m_root->RequestKillTimer.connect(this, &fake_element_host_t::on_kill_timer);
    m_root->RequestCaptureMouse.connect(this, &fake_element_host_t::on_capture);
    m_root->RequestReleaseMouse.connect(this, &fake_element_host_t::on_release);
    m_root->RequestChangeFocus.connect(this, &fake_element_host_t::on_change_focus);
  }

  wxRect m_client;
  wxWindow* m_holder = nullptr;
  int holder_requests = 0;
  std::vector<std::string> requests;  // "timer <id> <ms>", "kill <id>", "capture <id>", ...

 private:
  void on_client_rect(wxRect& rect) { rect = m_client; }
  void on_holder(wxWindow** window) {
    ++holder_requests;
    *window = m_holder;
  }
  void on_set_timer(element_ptr_t element, int ms) {
    requests.push_back("timer " + element->GetTestID() + " " + std::to_string(ms));
  }
  void on_kill_timer(element_ptr_t element) { requests.push_back("kill " + element->GetTestID()); }
  void on_capture(element_ptr_t element) { requests.push_back("capture " + element->GetTestID()); }
  void on_release() { requests.push_back("release"); }
  void on_change_focus(element_ptr_t element) { requests.push_back("focus " + element->GetTestID()); }

  element_ptr_t m_root;
};

}  // namespace orvix1_test

#endif
