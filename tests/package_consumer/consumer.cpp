// A program outside the project, built against an installed orvix1 (through
// its CMake package or through pkg-config). It includes every public header
// and makes calls into both libraries, so that a missing header, an
// unexported symbol or a wrong link line fails the build or the run.

#include <cstdio>

#include <orvix1/orvix1.h>

namespace {

int answer_modal(wxWindow*) { return wxID_OK; }

class summer_t : public talvar2::subscriber_base_t {
 public:
  void add(int value) { total += value; }
  int total = 0;
};

bool check(bool condition, const char* what) {
  if (!condition) std::fprintf(stderr, "package consumer: %s\n", what);
  return condition;
}

}  // namespace

int main() {
  bool ok = true;

  ok &= check(orvix1::get_modal_callback() == nullptr, "a modal callback is set at start");
  orvix1::set_modal_callback(&answer_modal);
  ok &= check(orvix1::get_modal_callback() == &answer_modal, "the modal callback did not stick");

  talvar2::signal_t<int> signal;
  summer_t summer;
  signal.connect(&summer, &summer_t::add);
  signal(2);
  signal(3);
  ok &= check(summer.total == 5, "the signal did not reach its slot twice");
  ok &= check(signal.connection_count() == 1, "the signal lost its connection");

  ok &= check(!orvix1::get_mouse_signal().has_connections(), "the mouse signal has connections");
  ok &= check(!orvix1::get_main_window(), "there is a main window before initialisation");

  if (ok) std::puts("package consumer: ok");
  return ok ? 0 : 1;
}
