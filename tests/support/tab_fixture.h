#ifndef ORVIX1_TESTS_TAB_FIXTURE_H
#define ORVIX1_TESTS_TAB_FIXTURE_H

// A shown frame for widgets, mouse input as wx delivers it, signal recorders.

#include <vector>

#include <gtest/gtest.h>
#include <wx/frame.h>
#include <wx/panel.h>

#include "orvix1/testing.h"
#include "orvix1/wxTabPanel.h"
#include "support/wx_test_environment.h"
#include "talvar2/functor/signal.h"

namespace orvix1_test {

// Fails a test that leaves a wx assertion unchecked.
class tab_frame_test_t : public ::testing::Test {
 protected:
  void SetUp() override {
    take_asserts();
    m_frame = new wxFrame(nullptr, wxID_ANY, "widgets", wxPoint(0, 0), wxSize(900, 500));
    m_host = new wxPanel(m_frame);  // a frame would stretch a lone widget
    m_frame->Show();
    pump_events();
  }
  void TearDown() override {
    m_frame->Destroy();
    pump_events();
    for (const recorded_assert_t& left : take_asserts())
      ADD_FAILURE() << "unchecked assertion " << left.condition << " at " << left.line;
  }
  wxFrame* m_frame = nullptr;
  wxPanel* m_host = nullptr;
};

using orvix1::testing::send_mouse;

// Enter, press and release at `at`, released at `release` when given.
inline void click(wxWindow* window, const wxPoint& at, const wxPoint& release = wxDefaultPosition) {
  send_mouse(window, wxEVT_ENTER_WINDOW, at);
  orvix1::testing::click(window, at, release);
}

inline wxPoint cross_inside(orvix1::wxTabButton* button) {
  const wxRect cross = button->CalculateCrossRect();
  return wxPoint(cross.x + 4, cross.y + 4);
}

inline void middle_click(wxWindow* window, const wxPoint& at) {
  send_mouse(window, wxEVT_MIDDLE_DOWN, at);
  send_mouse(window, wxEVT_MIDDLE_UP, at);
}

// Vetoes closes unless `allow`.
struct strip_listener_t : talvar2::subscriber_base_t {
  bool allow = true;
  std::vector<int> close_requests;
  std::vector<int> selections;
  void on_delete(orvix1::wxTabPanel*, int id, bool& allowed) {
    close_requests.push_back(id);
    allowed = allow;
  }
  void on_selection(orvix1::wxTabPanel*, int index) { selections.push_back(index); }
};

struct int_recorder_t : talvar2::subscriber_base_t {
  std::vector<int> values;
  void on(int value) { values.push_back(value); }
};

}  // namespace orvix1_test

#endif
