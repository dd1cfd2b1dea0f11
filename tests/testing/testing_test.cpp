#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <wx/button.h>
#include <wx/image.h>
#include <wx/panel.h>
#include <wx/slider.h>
#include <wx/stattext.h>

#include "orvix1/dialog.h"
#include "orvix1/testing.h"
#include "support/scratch_dir.h"
#include "support/tab_fixture.h"

namespace orvix1_test {
namespace {

using namespace std::chrono_literals;
namespace testing_helpers = orvix1::testing;

using TestingHelpers = tab_frame_test_t;

TEST_F(TestingHelpers, PumpUntilStopsWhenTheConditionHoldsOrTheBoundPasses) {
  bool called = false;
  m_frame->CallAfter([&] { called = true; });
  EXPECT_TRUE(testing_helpers::pump_until([&] { return called; }, 5s));
  int rounds = 0;
  EXPECT_FALSE(testing_helpers::pump_until([&] { return ++rounds < 0; }, 30ms));
  EXPECT_GT(rounds, 1);
}

TEST_F(TestingHelpers, CaptureReadsBackWhatTheWindowPainted) {
  auto* panel = new wxPanel(m_host, wxID_ANY, wxPoint(0, 0), wxSize(120, 80));
  panel->SetBackgroundColour(wxColour(200, 30, 60));
  wxPanel* other = new wxPanel(panel, wxID_ANY, wxPoint(60, 0), wxSize(60, 80));
  other->SetBackgroundColour(wxColour(10, 120, 240));
  panel->Refresh();
  scratch_folder_t scratch;
  const std::string path = scratch.file("panel.png");
  ASSERT_EQ(testing_helpers::capture_window_png(panel, path), "");
  const wxImage image(wxString::FromUTF8(path), wxBITMAP_TYPE_PNG);
  ASSERT_TRUE(image.IsOk());
  EXPECT_EQ(image.GetSize(), wxSize(120, 80));
  EXPECT_EQ(wxColour(image.GetRed(10, 40), image.GetGreen(10, 40), image.GetBlue(10, 40)), wxColour(200, 30, 60));
  EXPECT_EQ(wxColour(image.GetRed(100, 40), image.GetGreen(100, 40), image.GetBlue(100, 40)),
            wxColour(10, 120, 240));
}

int g_previous_heard = 0;
int previous_callback(wxWindow*) {
  ++g_previous_heard;
  return 0;
}

TEST_F(TestingHelpers, ModalAnswerEndsTheNextDialogAfterTheCallbackItReplaced) {
  g_previous_heard = 0;
  orvix1::set_modal_callback(&previous_callback);
  {
    const testing_helpers::modal_answer_t answer(wxID_NO);
    orvix1::modal_flavor<wxDialog> dialog(m_frame, wxID_ANY, "Really?");
    EXPECT_EQ(dialog.ShowModal(), wxID_NO);
    EXPECT_TRUE(answer.answered());
    EXPECT_EQ(answer.title(), "Really?");
    EXPECT_EQ(g_previous_heard, 1);
  }
  EXPECT_EQ(orvix1::get_modal_callback(), &previous_callback);
  orvix1::set_modal_callback(nullptr);
}

TEST_F(TestingHelpers, PointerInputArrivesAsTheToolkitWouldSendItOnTheScreen) {
  auto* target = new wxPanel(m_host, wxID_ANY, wxPoint(20, 20), wxSize(100, 100));
  pump_events();
  std::vector<std::string> seen;
  const auto record = [&](wxMouseEvent& event) {
    seen.push_back(std::to_string(event.GetEventType() == wxEVT_MOTION ? 0 : 1) + "@" +
                   std::to_string(event.GetX()) + "," + std::to_string(event.GetY()) +
                   (event.LeftIsDown() ? "+" : ""));
  };
  for (wxEventType type : {wxEVT_MOTION, wxEVT_LEFT_DOWN, wxEVT_LEFT_UP, wxEVT_ENTER_WINDOW})
    target->Bind(wxEventTypeTag<wxMouseEvent>(type), record);

  testing_helpers::click(target, wxPoint(5, 6), wxPoint(30, 40));
  EXPECT_EQ(seen, (std::vector<std::string>{"0@5,6", "1@5,6+", "0@30,40", "1@30,40"}));
  seen.clear();
  testing_helpers::send_mouse(target, wxEVT_MOTION, wxPoint(7, 8), true);
  EXPECT_EQ(seen, (std::vector<std::string>{"0@7,8+"}));

  seen.clear();
  testing_helpers::move_pointer(target, wxPoint(50, 60));
  EXPECT_EQ(seen, (std::vector<std::string>{"1@50,60", "0@50,60"}));
  EXPECT_TRUE(testing_helpers::pump_until(
      [&] { return wxGetMousePosition() == target->ClientToScreen(wxPoint(50, 60)); }, 5s));
  // The real pointer's own events may still be on their way: the recorder
  // must not outlive this test.
  target->Destroy();
}

TEST_F(TestingHelpers, AccessibleTreeTellsRolesNamesStatesActionsValuesAndWhatIsHidden) {
  auto* panel = new wxPanel(m_host, wxID_ANY, wxPoint(0, 0), wxSize(300, 200));
  new wxButton(panel, wxID_ANY, "Save", wxPoint(0, 0));
  new wxSlider(panel, wxID_ANY, 30, 0, 100, wxPoint(0, 40), wxSize(200, -1));
  auto* hidden = new wxPanel(panel, wxID_ANY, wxPoint(0, 80));
  new wxStaticText(hidden, wxID_ANY, "Two \"lines\"\nhere");
  hidden->Hide();
  AtkObject* accessible = gtk_widget_get_accessible(panel->GetHandle());
  atk_object_set_description(accessible, "the panel");
  atk_object_set_accessible_id(accessible, "panel-1");
  ASSERT_TRUE(testing_helpers::pump_until([accessible] {
    AtkStateSet* states = atk_object_ref_state_set(accessible);
    const bool showing = atk_state_set_contains_state(states, ATK_STATE_SHOWING);
    g_object_unref(states);
    return showing;
  }, 5s));
  EXPECT_EQ(testing_helpers::describe_accessible_tree(panel),
            "panel \"\" description=\"the panel\" id=\"panel-1\"\n"
            "  push button \"Save\" [focusable] actions=(click)\n"
            "  slider \"\" [focusable] value=30 (0..100)\n"
            "  panel \"\" [focusable, not showing]\n"
            "    label \"Two \\\"lines\\\"\\nhere\"\n");
}

}  // namespace
}  // namespace orvix1_test
