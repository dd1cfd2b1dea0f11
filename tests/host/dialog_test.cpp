#include "orvix1/dialog.h"

#include <vector>

#include <gtest/gtest.h>
#include <wx/frame.h>
#include <wx/textctrl.h>

#include "orvix1/error_dialog.h"
#include "orvix1/tasks/WaitDialog.h"
#include "orvix1/ui_settings.h"
#include "support/wx_test_environment.h"

namespace {

using orvix1_test::pump_events;
using orvix1_test::run_soon;

// The host callback answers with g_answer and records each dialog it was
// given while that was still hidden.
int g_answer = 0;
std::vector<wxWindow*> g_hidden_dialogs;
int host_callback(wxWindow* dialog) {
  if (!dialog->IsShown()) g_hidden_dialogs.push_back(dialog);
  return g_answer;
}

// The three outcomes: no callback, a host that showed the dialog itself (a
// non-zero answer is the result) and a host that hands it back (zero).
TEST(ModalCallback, DecidesWhoShowsTheDialog) {
  struct case_t {
    orvix1::modal_callback_t callback;
    int answer;
    int expected_result;
    bool shown_by_library;
  };
  const case_t cases[] = {{nullptr, 0, wxID_APPLY, true},
                          {host_callback, wxID_CANCEL, wxID_CANCEL, false},
                          {host_callback, 0, wxID_APPLY, true}};
  for (const case_t& c : cases) {
    SCOPED_TRACE(c.answer);
    g_answer = c.answer;
    g_hidden_dialogs.clear();
    orvix1::set_modal_callback(c.callback);
    orvix1::modal_flavor<wxDialog> dialog(nullptr, wxID_ANY, "question");
    bool shown = false;
    const auto timer = run_soon([&dialog, &shown] {
      shown = dialog.IsModal();
      if (shown) dialog.EndModal(wxID_APPLY);
    });
    EXPECT_EQ(dialog.ShowModal(), c.expected_result);
    pump_events();
    EXPECT_EQ(shown, c.shown_by_library);
    EXPECT_EQ(g_hidden_dialogs, c.callback != nullptr ? std::vector<wxWindow*>{&dialog} : std::vector<wxWindow*>{});
  }
  orvix1::set_modal_callback(nullptr);
}

TEST(ErrorDialog, CollectsMessagesUntilClosed) {
  orvix1::show_error_dlg("first problem");
  wxDialog* dialog = orvix1::get_error_dlg();
  ASSERT_NE(dialog, nullptr);
  EXPECT_TRUE(dialog->IsShown());
  orvix1::show_error_dlg("second problem");
  EXPECT_EQ(orvix1::get_error_dlg(), dialog);

  auto* text = dynamic_cast<wxTextCtrl*>(dialog->FindWindowByName(wxTextCtrlNameStr));
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(text->GetValue(), "first problem\nsecond problem");

  // Closed by the user: the next message starts a fresh dialog.
  wxCommandEvent ok(wxEVT_BUTTON, wxID_OK);
  dialog->ProcessWindowEvent(ok);
  EXPECT_EQ(orvix1::get_error_dlg(), nullptr);
  pump_events();
  // Over the window it belongs to, not at the screen's corner.
  auto* owner = new wxFrame(nullptr, wxID_ANY, "owner", wxPoint(300, 200), wxSize(500, 400));
  owner->Show();
  orvix1::show_error_dlg("new", owner);
  ASSERT_NE(orvix1::get_error_dlg(), nullptr);
  const wxRect rect = orvix1::get_error_dlg()->GetScreenRect();
  EXPECT_NEAR(rect.x + rect.width / 2, 550, 1);
  EXPECT_NEAR(rect.y + rect.height / 2, 400, 1);
  orvix1::destroy_error_dlg();
  owner->Destroy();
  EXPECT_EQ(orvix1::get_error_dlg(), nullptr);
}

// The library's plain windows follow a theme switch while they are open.
TEST(LibraryDialogs, FollowTheThemeWhileOpen) {
  talvar2::intrusive_pointer_t<orvix1::ui_settings_configure_t> palette(new orvix1::ui_settings_configure_t);
  orvix1::show_error_dlg("themed");
  auto* wait = new orvix1::tasks::WaitDialog(nullptr, boost::shared_ptr<talvar2::threading::scheduler_operation_status_t>());
  for (const char* theme : {"dark", "light"}) {
    SCOPED_TRACE(theme);
    ASSERT_TRUE(palette->apply_theme(std::string(ORVIX1_THEMES_DIR "/") + theme + ".xml"));
    for (wxWindow* dialog : {static_cast<wxWindow*>(orvix1::get_error_dlg()), static_cast<wxWindow*>(wait)}) {
      EXPECT_EQ(dialog->GetBackgroundColour(), palette->get_color(orvix1::color_face));
      EXPECT_EQ(dialog->GetForegroundColour(), palette->get_color(orvix1::color_button_text));
    }
    EXPECT_EQ(wait->GetMessageCtrl()->GetForegroundColour(), palette->get_color(orvix1::color_button_text));
    EXPECT_EQ(wait->GetTitleCtrl()->GetFont(), palette->get_font(orvix1::font_title));
  }
  wait->Destroy();
  orvix1::destroy_error_dlg();
}

}  // namespace
