// A program outside the project, built against an installed orvix1 (through
// its CMake package or through pkg-config). It includes every public header
// and makes calls into both libraries, so that a missing header, an
// unexported symbol or a wrong link line fails the build or the run.
//
// The CMake build also packs a resource archive with the package's
// orvix1_add_resource_archive and reads it back: that part starts wx and
// needs a display.

#include <clocale>
#include <cstdio>

#include <orvix1/orvix1.h>
#ifdef CONSUMER_RESOURCE_ARCHIVE
#include <wx/init.h>
#include <wx/log.h>
#endif

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

#ifdef CONSUMER_RESOURCE_ARCHIVE
// Reads a colour that only the archive declares.
bool check_resource_archive(int argc, char** argv) {
  if (!wxEntryStart(argc, argv)) return check(false, "wxWidgets did not start (no display?)");
  std::setlocale(LC_ALL, "C.UTF-8");
  delete wxLog::SetActiveTarget(new wxLogStderr);
  wxTheApp->CallOnInit();
  orvix1::initialize_wxwidgets(nullptr);
  bool ok = true;
  {
    auto resources = orvix1::ui_resources_t::get();
    ok &= check(resources->add_archive(CONSUMER_RESOURCE_ARCHIVE), "the resource archive did not load");
    ok &= check(resources->get_color("consumer.accent") == wxColour(0x12, 0x34, 0x56),
                "the archive's colour did not arrive");
  }
  orvix1::cleanup_wxwidgets();
  return ok;
}
#endif

}  // namespace

int main([[maybe_unused]] int argc, [[maybe_unused]] char** argv) {
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

#ifdef CONSUMER_RESOURCE_ARCHIVE
  ok &= check_resource_archive(argc, argv);
#endif

  if (ok) std::puts("package consumer: ok");
  return ok ? 0 : 1;
}
