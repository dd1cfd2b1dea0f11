#include "orvix1/dialog.h"

#include <gtest/gtest.h>
#include <wx/textctrl.h>

#include "orvix1/error_dialog.h"
#include "support/wx_test_environment.h"

namespace {

using orvix1_test::pump_events;
using orvix1_test::run_soon;

// Records what the host's callback saw and answers with a fixed result.
struct callback_log_t {
  int calls = 0;
  wxWindow* dialog = nullptr;
  bool was_shown = true;
  int answer = 0;
};
callback_log_t g_callback;

int host_callback(wxWindow* dialog) {
  ++g_callback.calls;
  g_callback.dialog = dialog;
  g_callback.was_shown = dialog->IsShown();
  return g_callback.answer;
}

class ModalCallback : public ::testing::Test {
 protected:
  void SetUp() override { g_callback = callback_log_t(); }
  void TearDown() override { orvix1::set_modal_callback(nullptr); }

  // Shows the dialog modally; if the library shows it, it is ended with
  // `end_code` from inside its loop.
  static int show(orvix1::modal_flavor<wxDialog>& dialog, int end_code, bool* shown_by_library) {
    *shown_by_library = false;
    const auto timer = run_soon([&dialog, end_code, shown_by_library] {
      if (!dialog.IsModal()) return;
      *shown_by_library = true;
      dialog.EndModal(end_code);
    });
    const int result = dialog.ShowModal();
    pump_events();
    return result;
  }
};

TEST_F(ModalCallback, WithoutCallbackTheLibraryShowsTheDialog) {
  EXPECT_EQ(orvix1::get_modal_callback(), nullptr);
  orvix1::modal_flavor<wxDialog> dialog(nullptr, wxID_ANY, "question");
  bool shown = false;
  EXPECT_EQ(show(dialog, wxID_APPLY, &shown), wxID_APPLY);
  EXPECT_TRUE(shown);
}

TEST_F(ModalCallback, NonZeroAnswerMeansTheHostShowedIt) {
  orvix1::set_modal_callback(host_callback);
  EXPECT_EQ(orvix1::get_modal_callback(), &host_callback);
  g_callback.answer = wxID_CANCEL;
  orvix1::modal_flavor<wxDialog> dialog(nullptr, wxID_ANY, "question");
  bool shown = false;
  EXPECT_EQ(show(dialog, wxID_APPLY, &shown), wxID_CANCEL);
  EXPECT_FALSE(shown);
  EXPECT_EQ(g_callback.calls, 1);
  EXPECT_EQ(g_callback.dialog, &dialog);
  EXPECT_FALSE(g_callback.was_shown);
}

TEST_F(ModalCallback, ZeroAnswerHandsTheDialogBack) {
  orvix1::set_modal_callback(host_callback);
  g_callback.answer = 0;
  orvix1::modal_flavor<wxDialog> dialog(nullptr, wxID_ANY, "question");
  bool shown = false;
  EXPECT_EQ(show(dialog, wxID_YES, &shown), wxID_YES);
  EXPECT_TRUE(shown);
  EXPECT_EQ(g_callback.calls, 1);
}

TEST(ErrorDialog, CollectsMessagesUntilClosed) {
  EXPECT_EQ(orvix1::get_error_dlg(), nullptr);
  orvix1::show_error_dlg("first problem");
  wxDialog* dialog = orvix1::get_error_dlg();
  ASSERT_NE(dialog, nullptr);
  EXPECT_TRUE(dialog->IsShown());
  orvix1::show_error_dlg("second problem");
  EXPECT_EQ(orvix1::get_error_dlg(), dialog);

  auto* text = dynamic_cast<wxTextCtrl*>(dialog->FindWindowByName(wxTextCtrlNameStr));
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(text->GetValue(), "first problem\nsecond problem");

  orvix1::destroy_error_dlg();
  EXPECT_EQ(orvix1::get_error_dlg(), nullptr);
  orvix1::destroy_error_dlg();  // nothing left to destroy
}

TEST(ErrorDialog, ClosingByTheUserStartsAFreshOne) {
  orvix1::show_error_dlg("old");
  wxDialog* first = orvix1::get_error_dlg();
  ASSERT_NE(first, nullptr);
  wxCommandEvent ok(wxEVT_BUTTON, wxID_OK);
  first->ProcessWindowEvent(ok);
  EXPECT_EQ(orvix1::get_error_dlg(), nullptr);
  pump_events();

  orvix1::show_error_dlg("new");
  ASSERT_NE(orvix1::get_error_dlg(), nullptr);
  auto* text =
      dynamic_cast<wxTextCtrl*>(orvix1::get_error_dlg()->FindWindowByName(wxTextCtrlNameStr));
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(text->GetValue(), "new");
  orvix1::destroy_error_dlg();
}

}  // namespace
