// A program outside the project, built against an installed orvix1 (through
// its CMake package or through pkg-config). It includes every public header
// and makes calls into both libraries, so that a missing header, an
// unexported symbol or a wrong link line fails the build or the run.
//
// The CMake build also starts wx (it needs a display), reads back a resource
// archive packed by the package's orvix1_add_resource_archive, and drives a
// frame with orvix1::testing: pumping, a picture, a click, a modal answer.

#include <clocale>
#include <cstdio>

#include <orvix1/orvix1.h>
#ifdef CONSUMER_RESOURCE_ARCHIVE
#include <wx/button.h>
#include <wx/filefn.h>
#include <wx/filename.h>
#include <wx/frame.h>
#include <wx/image.h>
#include <wx/init.h>
#include <wx/log.h>
#include <wx/panel.h>

#include <orvix1/dialog.h>
#include <orvix1/testing.h>
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
bool check_resource_archive() {
  auto resources = orvix1::ui_resources_t::get();
  return check(resources->add_archive(CONSUMER_RESOURCE_ARCHIVE), "the resource archive did not load") &&
         check(resources->get_color("consumer.accent") == wxColour(0x12, 0x34, 0x56),
               "the archive's colour did not arrive");
}

// A frame in the archive's colour with a button: pictured, clicked, and the
// dialog the click opens answered.
bool check_testing_helpers() {
  using namespace std::chrono_literals;
  auto palette = orvix1::ui_settings_configure_t::get();
  auto* frame = new wxFrame(nullptr, wxID_ANY, "consumer", wxPoint(0, 0), wxSize(200, 120));
  auto* page = new wxPanel(frame);  // a frame's only child fills it
  page->SetBackgroundColour(orvix1::ui_resources_t::get()->get_color("consumer.accent"));
  auto* button = new wxButton(page, wxID_ANY, "Ask", wxPoint(150, 90), wxSize(50, 30));
  int answer = 0;
  button->Bind(wxEVT_LEFT_UP, [&](wxMouseEvent&) {
    orvix1::modal_flavor<wxDialog> dialog(frame, wxID_ANY, "Question");
    answer = dialog.ShowModal();
  });
  frame->Show();
  bool ok = check(orvix1::testing::pump_until([frame] { return frame->IsShownOnScreen(); }, 10s),
                  "the frame did not show");
  const std::string path = wxFileName::CreateTempFileName("orvix1-consumer").utf8_string();
  ok &= check(orvix1::testing::capture_window_png(frame, path).empty(), "no picture of the frame");
  const wxImage picture(path, wxBITMAP_TYPE_PNG);
  const wxColour pictured = picture.IsOk() ? wxColour(picture.GetRed(5, 5), picture.GetGreen(5, 5),
                                                      picture.GetBlue(5, 5))
                                           : wxColour();
  ok &= check(pictured == wxColour(0x12, 0x34, 0x56), "the picture does not show the page's colour");
  wxRemoveFile(path);
  orvix1::set_modal_callback(nullptr);
  {
    const orvix1::testing::modal_answer_t answering(wxID_CANCEL);
    orvix1::testing::click(button, wxPoint(5, 5));
    ok &= check(answering.answered() && answer == wxID_CANCEL, "the dialog was not answered");
  }
  frame->Destroy();
  orvix1::testing::pump_once();
  return ok;
}

bool check_with_wx(int argc, char** argv) {
  if (!wxEntryStart(argc, argv)) return check(false, "wxWidgets did not start (no display?)");
  std::setlocale(LC_ALL, "C.UTF-8");
  delete wxLog::SetActiveTarget(new wxLogStderr);
  wxTheApp->CallOnInit();
  orvix1::initialize_wxwidgets(nullptr);
  const bool ok = check_resource_archive() && check_testing_helpers();
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
  ok &= check_with_wx(argc, argv);
#endif

  if (ok) std::puts("package consumer: ok");
  return ok ? 0 : 1;
}
