#ifndef ORVIX1_TESTS_WX_TEST_ENVIRONMENT_H
#define ORVIX1_TESTS_WX_TEST_ENVIRONMENT_H

// One wx application per test process, started by a global test environment
// with one initialize_wxwidgets(nullptr) that the tear-down cleans up again.

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <wx/timer.h>

namespace orvix1_test {

// A failed wx assertion (talvar2 assertions arrive through wx as well).
struct recorded_assert_t {
  std::string file;
  int line = 0;
  std::string function;
  std::string condition;
  std::string message;
};

// Assertions recorded since the last take_asserts().
std::vector<recorded_assert_t> take_asserts();

// Handles what is pending, with a bound: queued and pending events, idle.
void pump_events();

// Starts wx again (with the environment's reference) if a test ended it.
void ensure_wx_running();

// Runs `body` inside a running wx main loop, then leaves the loop.
void run_in_main_loop(const std::function<void()>& body);

// Runs `body` from a one-shot timer once the loop turns (e.g. inside a
// ShowModal()); destroying the timer cancels it.
std::unique_ptr<wxTimer> run_soon(const std::function<void()>& body);

}  // namespace orvix1_test

// Readable values in test failure messages.
#include <ostream>

#include <wx/colour.h>
#include <wx/font.h>
#include <wx/gdicmn.h>

inline void PrintTo(const wxColour& colour, std::ostream* out) {
  *out << (colour.IsOk() ? colour.GetAsString(wxC2S_CSS_SYNTAX).utf8_string() : "invalid colour");
}
inline void PrintTo(const wxFont& font, std::ostream* out) {
  *out << (font.IsOk() ? font.GetNativeFontInfoUserDesc().utf8_string() : "null font");
}
inline void PrintTo(const wxSize& size, std::ostream* out) {
  *out << size.x << "x" << size.y;
}
inline void PrintTo(const wxPoint& point, std::ostream* out) {
  *out << "(" << point.x << ", " << point.y << ")";
}
inline void PrintTo(const wxRect& rect, std::ostream* out) {
  *out << "(" << rect.x << ", " << rect.y << ") " << rect.width << "x" << rect.height;
}

#endif
