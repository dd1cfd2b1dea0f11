#include <chrono>
#include <memory>
#include <future>
#include <string>
#include <vector>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/mstream.h>
#include <wx/dcclient.h>
#include <wx/sizer.h>
#include <wx/weakref.h>

#include "orvix1/tasks/WaitCallback.h"
#include "orvix1/tasks/WaitDialog.h"
#include "orvix1/ui_settings.h"
#include "orvix1/wx_dll_application.h"
#include "support/host_window.h"
#include "support/resource_archive.h"
#include "support/wx_test_environment.h"

namespace {

using orvix1::tasks::ISchedulerStatus;
using orvix1::tasks::WaitCallback;
using orvix1::tasks::WaitDialog;
using orvix1::tasks::dialog_info_t;
using orvix1_test::pump_events;
using orvix1_test::run_soon;
using orvix1_test::take_asserts;
using operation_status_t = talvar2::threading::scheduler_operation_status_t;

struct fake_status_t : ISchedulerStatus {
  explicit fake_status_t(bool finished = false) : finished(finished) {}
  bool finished;
  bool IsFinished() override { return finished; }
};

// Closes a dialog that a broken poll left open, so that a failing test ends.
void end_if_still_modal(WaitDialog* dialog) {
  if (dialog != nullptr && dialog->IsModal()) dialog->EndModal(wxID_CANCEL);
}

std::string label_of(const wxWindow* window) { return window->GetLabel().utf8_string(); }

std::string unwrapped_label_of(const wxWindow* window) {
  wxString label = window->GetLabel();
  label.Replace("\n", " ");
  return label.utf8_string();
}

// A caption without a close box over an icon, the title, a spacer and the
// message in a two-column grid, in the palette's fonts.
TEST(WaitDialogLayout, IconTitleSpacerAndMessageInATwoColumnGrid) {
  talvar2::intrusive_pointer_t<orvix1::ui_settings_configure_t> palette =
      orvix1::ui_settings_configure_t::get();
  palette->set_font(orvix1::font_title, wxFont(wxFontInfo(19).Bold()));
  palette->set_font(orvix1::font_normal, wxFont(wxFontInfo(9).Italic()));
  WaitDialog dialog(nullptr, boost::shared_ptr<operation_status_t>());
  const long style = dialog.GetWindowStyleFlag();
  EXPECT_TRUE(style & wxCAPTION);
  EXPECT_FALSE(style & (wxCLOSE_BOX | wxSYSTEM_MENU | wxRESIZE_BORDER | wxMAXIMIZE_BOX));
  EXPECT_EQ("prod_name", dialog.GetTitle().utf8_string());

  ASSERT_EQ(1u, dialog.GetSizer()->GetItemCount());
  auto* grid = dynamic_cast<wxFlexGridSizer*>(dialog.GetSizer()->GetItem(size_t(0))->GetSizer());
  ASSERT_NE(nullptr, grid);
  EXPECT_EQ(2, grid->GetCols());
  ASSERT_EQ(4u, grid->GetItemCount());
  EXPECT_EQ(dialog.GetAnimationCtrl(), grid->GetItem(size_t(0))->GetWindow());
  EXPECT_EQ(dialog.GetTitleCtrl(), grid->GetItem(size_t(1))->GetWindow());
  EXPECT_TRUE(grid->GetItem(size_t(2))->IsSpacer());
  EXPECT_EQ(dialog.GetMessageCtrl(), grid->GetItem(size_t(3))->GetWindow());

  EXPECT_FALSE(dialog.GetAnimationCtrl()->GetAnimation().IsOk());
  EXPECT_EQ("closing", label_of(dialog.GetTitleCtrl()));
  EXPECT_EQ(palette->get_font(orvix1::font_title), dialog.GetTitleCtrl()->GetFont());
  EXPECT_EQ("please_wait", label_of(dialog.GetMessageCtrl()));
  EXPECT_EQ(palette->get_font(orvix1::font_normal), dialog.GetMessageCtrl()->GetFont());
  ASSERT_NE(nullptr, dialog.GetPollTimer());
  EXPECT_EQ(&dialog, dialog.GetPollTimer()->GetOwner());
  EXPECT_FALSE(dialog.GetPollTimer()->IsRunning());
}

wxAnimation two_frame_animation() {
  const std::string bytes = orvix1_test::gif_bytes(16, 16);
  wxMemoryInputStream in(bytes.data(), bytes.size());
  wxAnimation animation;
  animation.Load(in);
  return animation;
}

// The dialog polls either kind of status every 500 ms, refuses to close
// while the work runs, and ends at the first tick after it finished. An
// animation plays only when one is set (here with the operation status).
TEST(WaitDialogPolling, EndsAtTheFirstTickAfterTheOperationFinishedAndRefusesCloseBefore) {
  take_asserts();
  for (const bool operation_status : {false, true}) {
    SCOPED_TRACE(operation_status ? "operation status, animated" : "scheduler status");
    fake_status_t fake;
    const auto operation = boost::make_shared<operation_status_t>(1);
    auto* dialog = operation_status ? new WaitDialog(nullptr, operation) : new WaitDialog(nullptr, &fake);
    if (operation_status) dialog->SetAnimation(two_frame_animation());
    const auto driver = run_soon([&] {
      EXPECT_TRUE(dialog->IsModal());
      EXPECT_EQ(operation_status, dialog->GetAnimationCtrl()->IsPlaying());
      EXPECT_EQ(500, dialog->GetPollTimer()->GetInterval());
      EXPECT_FALSE(dialog->GetPollTimer()->IsOneShot());
      dialog->GetPollTimer()->Notify();
      EXPECT_TRUE(dialog->IsModal() && dialog->GetPollTimer()->IsRunning());
      EXPECT_FALSE(dialog->Close());
      EXPECT_TRUE(dialog->IsModal() && dialog->IsShown());
      // A close that cannot be vetoed is reported and ignored.
      wxCloseEvent close(wxEVT_CLOSE_WINDOW, dialog->GetId());
      close.SetEventObject(dialog);
      close.SetCanVeto(false);
      dialog->GetEventHandler()->ProcessEvent(close);
      std::vector<std::string> reported;
      for (const auto& assertion : take_asserts()) reported.push_back(assertion.message);
      EXPECT_EQ(std::vector<std::string>{"call to Veto() ignored (can't veto this event)"}, reported);
      EXPECT_TRUE(dialog->IsModal() && dialog->IsShown());
      fake.finished = true;
      operation->count_down();
      dialog->GetPollTimer()->Notify();
      EXPECT_FALSE(dialog->IsModal());
      end_if_still_modal(dialog);
    });
    EXPECT_EQ(wxID_OK, dialog->ShowModal());
    EXPECT_TRUE(dialog->IsClosing());
    EXPECT_FALSE(dialog->GetPollTimer()->IsRunning());
    wxWeakRef<wxDialog> alive(dialog);
    dialog->Close();
    pump_events();
    EXPECT_FALSE(alive);
  }
  EXPECT_TRUE(take_asserts().empty());
}

// Outside a modal loop a tick that finds the operation finished only sets
// the return code; without any status no tick ever finds it finished.
TEST(WaitDialogPolling, TicksOutsideAModalLoopOnlySetTheReturnCode) {
  fake_status_t status{true};
  WaitDialog watching(nullptr, &status), blind(nullptr, static_cast<ISchedulerStatus*>(nullptr));
  for (WaitDialog* dialog : {&watching, &blind}) {
    dialog->SetReturnCode(wxID_CANCEL);
    dialog->GetPollTimer()->Notify();
    EXPECT_FALSE(dialog->IsClosing());
  }
  EXPECT_EQ(wxID_OK, watching.GetReturnCode());
  EXPECT_EQ(wxID_CANCEL, blind.GetReturnCode());
}

TEST(WaitDialogWrap, ALongMessageWrapsToTheDisplaysProportions) {
  fake_status_t status;
  WaitDialog dialog(nullptr, &status);
  std::string text;
  for (int word = 0; word < 25; ++word) text += "waiting is the longest part ";
  text += "of it";
  dialog.SetMsgText(text);

  EXPECT_NE(wxNOT_FOUND, dialog.GetMessageCtrl()->GetLabel().Find('\n'));
  EXPECT_EQ(text, unwrapped_label_of(dialog.GetMessageCtrl()));

  wxClientDC dc(&dialog);
  dc.SetFont(dialog.GetFont());
  const int sample_width = dc.GetTextExtent("is the").x;
  const wxSize display = wxGetDisplaySize();
  const wxSize client = dialog.GetClientSize();
  EXPECT_GE(client.x, client.y * display.x / display.y + sample_width);
  EXPECT_LT(client.x, display.x);
  EXPECT_EQ(client, dialog.GetSizer()->ComputeFittingClientSize(&dialog));
}

// Counts the operation down from a worker unless stopped within ten
// seconds, so that a broken wait ends instead of hanging.
class rescue_t {
 public:
  explicit rescue_t(boost::shared_ptr<operation_status_t> status)
      : m_rescued(std::async(std::launch::async, [stopped = m_stop.get_future(), status] {
          if (stopped.wait_for(std::chrono::seconds(10)) == std::future_status::ready) return false;
          status->count_down();
          return true;
        })) {}
  // True if the rescue had to end the wait.
  bool stop() {
    m_stop.set_value();
    return m_rescued.get();
  }

 private:
  std::promise<void> m_stop;
  std::future<bool> m_rescued;
};

dialog_info_t some_info() {
  dialog_info_t info;
  info.caption = "Closing";
  info.title = "Stopping the work";
  info.text = "Please wait until the last tasks have ended.";
  return info;
}

TEST(WaitCallback, AnExpiredStatusIsReportedAndDoesNotBlock) {
  WaitCallback callback;
  take_asserts();
  const boost::weak_ptr<operation_status_t> expired = boost::make_shared<operation_status_t>(1);
  callback.wait(expired);
  const auto asserts = take_asserts();
  ASSERT_EQ(1u, asserts.size());
  EXPECT_EQ("status_callback", asserts[0].condition);
  EXPECT_EQ("wait", asserts[0].function);
}

TEST(WaitCallback, AFinishedOperationReturnsAtOnceWithoutPumpingOrAWindow) {
  for (const bool with_dialog : {false, true}) {
    WaitCallback callback;
    if (with_dialog) callback.SetDialogInfo(some_info());
    bool pumped = false;
    wxTheApp->CallAfter([&pumped] { pumped = true; });
    const size_t windows = wxTopLevelWindows.GetCount();
    callback.wait(boost::make_shared<operation_status_t>(0));
    EXPECT_FALSE(pumped) << "with dialog: " << with_dialog;
    EXPECT_EQ(windows, wxTopLevelWindows.GetCount());
    pump_events();
    EXPECT_TRUE(pumped);
  }
}

// Without dialog info the wait pumps the event loop and shows no window. With
// it, the dialog shows the info, ends at the first tick after the operation
// finished and is gone afterwards; a host's main window is its parent.
TEST(WaitCallback, WaitsForTheOperationWithTheDialogOnlyWhenThereIsDialogInfo) {
  take_asserts();
  struct setup_t {
    bool with_info, hosted;
  };
  for (const setup_t setup : {setup_t{false, false}, setup_t{true, false}, setup_t{true, true}}) {
    SCOPED_TRACE(std::string(setup.with_info ? "dialog" : "no dialog") + (setup.hosted ? ", hosted" : ""));
    std::unique_ptr<orvix1_test::host_window_t> host;
    if (setup.hosted) host = std::make_unique<orvix1_test::host_window_t>(300, 200);
    if (setup.hosted) orvix1::initialize_wxwidgets(host->widget());
    WaitCallback callback;
    if (setup.with_info) callback.SetDialogInfo(some_info());
    const auto status = boost::make_shared<operation_status_t>(1);
    const auto driver = run_soon([&] {
      auto* dialog = dynamic_cast<WaitDialog*>(wxWindow::FindWindowByName("scheduler_wait_dialog"));
      EXPECT_EQ(setup.with_info, dialog != nullptr);
      status->count_down();
      if (dialog == nullptr) return;
      EXPECT_TRUE(dialog->IsModal());
      const wxWindow* parent = dialog->GetParent();
      EXPECT_EQ(setup.hosted ? wxSize(300, 200) : wxSize(), parent != nullptr ? parent->GetSize() : wxSize());
      EXPECT_EQ("Closing", dialog->GetTitle().utf8_string());
      EXPECT_EQ("Stopping the work", label_of(dialog->GetTitleCtrl()));
      EXPECT_EQ("Please wait until the last tasks have ended.", unwrapped_label_of(dialog->GetMessageCtrl()));
      dialog->GetPollTimer()->Notify();
      end_if_still_modal(dialog);
    });
    rescue_t rescue(status);
    callback.wait(status);
    EXPECT_FALSE(rescue.stop()) << "the wait neither pumped the event loop nor showed the dialog";
    pump_events();
    EXPECT_EQ(nullptr, wxWindow::FindWindowByName("scheduler_wait_dialog"));
    if (!setup.hosted) continue;
    EXPECT_TRUE(host->still_alive());
    orvix1::initialize_wxwidgets(nullptr);  // back to a host without a main window
    orvix1::cleanup_wxwidgets();
    orvix1::cleanup_wxwidgets();
    pump_events();
  }
  EXPECT_TRUE(take_asserts().empty());
}

}  // namespace
