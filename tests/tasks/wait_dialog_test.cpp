#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

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
  bool finished = false;
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

  wxSizer* box = dialog.GetSizer();
  ASSERT_NE(nullptr, dynamic_cast<wxBoxSizer*>(box));
  EXPECT_EQ(wxVERTICAL, static_cast<wxBoxSizer*>(box)->GetOrientation());
  ASSERT_EQ(1u, box->GetItemCount());
  wxSizerItem* grid_item = box->GetItem(size_t(0));
  EXPECT_EQ(wxEXPAND | wxALL, grid_item->GetFlag());
  EXPECT_EQ(10, grid_item->GetBorder());
  auto* grid = dynamic_cast<wxFlexGridSizer*>(grid_item->GetSizer());
  ASSERT_NE(nullptr, grid);
  EXPECT_EQ(2, grid->GetCols());
  EXPECT_EQ(0, grid->GetVGap());
  EXPECT_EQ(0, grid->GetHGap());
  EXPECT_EQ(wxBOTH, grid->GetFlexibleDirection());
  EXPECT_EQ(wxFLEX_GROWMODE_SPECIFIED, grid->GetNonFlexibleGrowMode());
  ASSERT_EQ(4u, grid->GetItemCount());

  wxSizerItem* icon = grid->GetItem(size_t(0));
  EXPECT_EQ(dialog.GetAnimationCtrl(), icon->GetWindow());
  EXPECT_EQ(wxALIGN_CENTER_VERTICAL | wxALIGN_CENTER_HORIZONTAL | wxALL, icon->GetFlag());
  EXPECT_EQ(5, icon->GetBorder());
  EXPECT_FALSE(dialog.GetAnimationCtrl()->GetAnimation().IsOk());
  EXPECT_EQ(wxAC_DEFAULT_STYLE,
            dialog.GetAnimationCtrl()->GetWindowStyleFlag() & wxBORDER_MASK);

  wxSizerItem* title = grid->GetItem(size_t(1));
  EXPECT_EQ(dialog.GetTitleCtrl(), title->GetWindow());
  EXPECT_EQ(wxALIGN_CENTER_VERTICAL | wxALL, title->GetFlag());
  EXPECT_EQ(5, title->GetBorder());
  EXPECT_EQ("closing", label_of(dialog.GetTitleCtrl()));
  EXPECT_EQ(palette->get_font(orvix1::font_title), dialog.GetTitleCtrl()->GetFont());

  wxSizerItem* spacer = grid->GetItem(size_t(2));
  ASSERT_TRUE(spacer->IsSpacer());
  EXPECT_EQ(wxSize(0, 0), spacer->GetSpacer());
  EXPECT_EQ(1, spacer->GetProportion());
  EXPECT_EQ(wxEXPAND, spacer->GetFlag());
  EXPECT_EQ(5, spacer->GetBorder());

  wxSizerItem* message = grid->GetItem(size_t(3));
  EXPECT_EQ(dialog.GetMessageCtrl(), message->GetWindow());
  EXPECT_EQ(wxALIGN_CENTER_VERTICAL | wxALIGN_CENTER_HORIZONTAL | wxALL, message->GetFlag());
  EXPECT_EQ(5, message->GetBorder());
  EXPECT_EQ("please_wait", label_of(dialog.GetMessageCtrl()));
  EXPECT_NE(dialog.GetTitleCtrl()->GetFont(), dialog.GetMessageCtrl()->GetFont());
  EXPECT_EQ(palette->get_font(orvix1::font_normal), dialog.GetMessageCtrl()->GetFont());

  ASSERT_NE(nullptr, dialog.GetPollTimer());
  EXPECT_EQ(123, dialog.GetPollTimer()->GetId());
  EXPECT_EQ(&dialog, dialog.GetPollTimer()->GetOwner());
  EXPECT_FALSE(dialog.GetPollTimer()->IsRunning());
  EXPECT_FALSE(dialog.IsClosing());
}

wxAnimation two_frame_animation() {
  const std::string bytes = orvix1_test::gif_bytes(16, 16);
  wxMemoryInputStream in(bytes.data(), bytes.size());
  wxAnimation animation;
  animation.Load(in);
  return animation;
}

TEST(WaitDialogPolling, AnAnimationPlaysOnlyWhenOneIsSet) {
  take_asserts();
  for (const bool animated : {false, true}) {
    fake_status_t status;
    WaitDialog dialog(nullptr, &status);
    if (animated) dialog.SetAnimation(two_frame_animation());
    bool playing = !animated;
    const auto driver = run_soon([&] {
      playing = dialog.GetAnimationCtrl()->IsPlaying();
      status.finished = true;
      dialog.GetPollTimer()->Notify();
      end_if_still_modal(&dialog);
    });
    EXPECT_EQ(wxID_OK, dialog.ShowModal());
    EXPECT_EQ(animated, playing);
  }
  EXPECT_TRUE(take_asserts().empty());
}

TEST(WaitDialogPolling, EndsAtTheFirstTickAfterTheOperationFinishedAndRefusesCloseBefore) {
  take_asserts();
  fake_status_t status;
  auto* dialog = new WaitDialog(nullptr, &status);
  bool was_modal = false, vetoed = false, open_after_unfinished_tick = false;
  bool ended_by_tick = false;
  int interval = 0;
  bool one_shot = true;
  const auto driver = run_soon([&] {
    was_modal = dialog->IsModal();
    interval = dialog->GetPollTimer()->GetInterval();
    one_shot = dialog->GetPollTimer()->IsOneShot();
    dialog->GetPollTimer()->Notify();
    open_after_unfinished_tick = dialog->IsModal() && dialog->GetPollTimer()->IsRunning();
    vetoed = !dialog->Close() && dialog->IsModal() && dialog->IsShown();
    status.finished = true;
    dialog->GetPollTimer()->Notify();
    ended_by_tick = !dialog->IsModal();
    end_if_still_modal(dialog);
  });
  EXPECT_EQ(wxID_OK, dialog->ShowModal());
  EXPECT_TRUE(was_modal);
  EXPECT_EQ(500, interval);
  EXPECT_FALSE(one_shot);
  EXPECT_TRUE(open_after_unfinished_tick);
  EXPECT_TRUE(vetoed);
  EXPECT_TRUE(ended_by_tick);
  EXPECT_TRUE(dialog->IsClosing());
  EXPECT_FALSE(dialog->GetPollTimer()->IsRunning());

  wxWeakRef<wxDialog> alive(dialog);
  dialog->Close();
  pump_events();
  EXPECT_FALSE(alive);
  EXPECT_TRUE(take_asserts().empty());
}

TEST(WaitDialogPolling, FollowsTheSchedulerStatusOfAnOperation) {
  const auto status = boost::make_shared<operation_status_t>(1);
  WaitDialog dialog(nullptr, status);
  bool ended_early = true, ended_by_tick = false;
  const auto driver = run_soon([&] {
    dialog.GetPollTimer()->Notify();
    ended_early = !dialog.IsModal();
    status->count_down();
    dialog.GetPollTimer()->Notify();
    ended_by_tick = !dialog.IsModal();
    end_if_still_modal(&dialog);
  });
  EXPECT_EQ(wxID_OK, dialog.ShowModal());
  EXPECT_FALSE(ended_early);
  EXPECT_TRUE(ended_by_tick);
}

TEST(WaitDialogPolling, WithoutAnyStatusItNeverEndsByItself) {
  WaitDialog dialog(nullptr, static_cast<ISchedulerStatus*>(nullptr));
  bool still_modal = false;
  const auto driver = run_soon([&] {
    for (int tick = 0; tick < 3; ++tick) dialog.GetPollTimer()->Notify();
    still_modal = dialog.IsModal();
    end_if_still_modal(&dialog);
  });
  EXPECT_EQ(wxID_CANCEL, dialog.ShowModal());
  EXPECT_TRUE(still_modal);
  EXPECT_FALSE(dialog.IsClosing());
}

TEST(WaitDialogPolling, AFinishedTickOutsideAModalLoopOnlySetsTheReturnCode) {
  fake_status_t status;
  WaitDialog dialog(nullptr, &status);
  dialog.SetReturnCode(wxID_CANCEL);
  dialog.GetPollTimer()->Notify();
  EXPECT_EQ(wxID_CANCEL, dialog.GetReturnCode());
  status.finished = true;
  dialog.GetPollTimer()->Notify();
  EXPECT_EQ(wxID_OK, dialog.GetReturnCode());
  EXPECT_FALSE(dialog.IsClosing());
}

TEST(WaitDialogPolling, AnUnvetoableCloseWhileWorkingIsReportedAndIgnored) {
  fake_status_t status;
  auto* dialog = new WaitDialog(nullptr, &status);
  wxWeakRef<wxDialog> alive(dialog);
  take_asserts();
  wxCloseEvent close(wxEVT_CLOSE_WINDOW, dialog->GetId());
  close.SetEventObject(dialog);
  close.SetCanVeto(false);
  dialog->GetEventHandler()->ProcessEvent(close);
  pump_events();
  EXPECT_TRUE(alive);
  const auto asserts = take_asserts();
  ASSERT_EQ(1u, asserts.size());
  EXPECT_EQ("call to Veto() ignored (can't veto this event)", asserts[0].message);
  delete dialog;
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

// Counts the operation down from a worker if the test's own path never does,
// so that a broken wait ends instead of hanging; reports whether it had to.
class rescue_t {
 public:
  explicit rescue_t(boost::shared_ptr<operation_status_t> status)
      : m_thread([this, status] {
          std::unique_lock<std::mutex> lock(m_mutex);
          if (!m_done.wait_for(lock, std::chrono::seconds(10), [this] { return m_stop; })) {
            m_used = true;
            status->count_down();
          }
        }) {}
  ~rescue_t() { stop(); }
  bool stop() {
    {
      std::lock_guard<std::mutex> lock(m_mutex);
      m_stop = true;
    }
    m_done.notify_all();
    if (m_thread.joinable()) m_thread.join();
    return m_used;
  }

 private:
  std::mutex m_mutex;
  std::condition_variable m_done;
  bool m_stop = false;
  std::atomic<bool> m_used{false};
  std::thread m_thread;
};

// Soon after the wait starts: hands its dialog to `look`, finishes the
// operation and lets the dialog's next tick end it.
std::unique_ptr<wxTimer> answer_wait_dialog(const boost::shared_ptr<operation_status_t>& status,
                                            const std::function<void(WaitDialog*)>& look) {
  return run_soon([status, look] {
    auto* dialog = dynamic_cast<WaitDialog*>(wxWindow::FindWindowByName("scheduler_wait_dialog"));
    if (dialog == nullptr) return;
    look(dialog);
    status->count_down();
    dialog->GetPollTimer()->Notify();
    end_if_still_modal(dialog);
  });
}

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
  boost::weak_ptr<operation_status_t> expired;
  {
    const auto status = boost::make_shared<operation_status_t>(1);
    expired = status;
  }
  callback.wait(expired);
  const auto asserts = take_asserts();
  ASSERT_EQ(1u, asserts.size());
  EXPECT_EQ("status_callback", asserts[0].condition);
  EXPECT_EQ("wait", asserts[0].function);
  EXPECT_NE(std::string::npos, asserts[0].file.find("src/tasks/WaitCallback"));
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

TEST(WaitCallback, WithoutDialogInfoItPumpsEventsUntilTheOperationFinishes) {
  WaitCallback callback;
  ASSERT_TRUE(callback.GetDialogInfo().empty());
  const auto status = boost::make_shared<operation_status_t>(1);
  rescue_t rescue(status);
  bool window_seen = true;
  wxTheApp->CallAfter([&] {
    window_seen = wxWindow::FindWindowByName("scheduler_wait_dialog") != nullptr;
    status->count_down();
  });
  callback.wait(status);
  EXPECT_FALSE(rescue.stop()) << "the wait did not pump the event loop";
  EXPECT_TRUE(status->is_finished());
  EXPECT_FALSE(window_seen);
}

TEST(WaitCallback, WithDialogInfoItShowsTheWaitDialogUntilTheOperationFinishes) {
  take_asserts();
  WaitCallback callback;
  callback.SetDialogInfo(some_info());
  const auto status = boost::make_shared<operation_status_t>(1);
  std::string caption, title, text;
  bool modal = false, parentless = false;
  const auto driver = answer_wait_dialog(status, [&](WaitDialog* dialog) {
    modal = dialog->IsModal();
    parentless = dialog->GetParent() == nullptr;
    caption = dialog->GetTitle().utf8_string();
    title = label_of(dialog->GetTitleCtrl());
    text = unwrapped_label_of(dialog->GetMessageCtrl());
  });
  rescue_t rescue(status);
  callback.wait(status);
  EXPECT_FALSE(rescue.stop());
  EXPECT_TRUE(modal);
  EXPECT_TRUE(parentless);
  EXPECT_EQ("Closing", caption);
  EXPECT_EQ("Stopping the work", title);
  EXPECT_EQ("Please wait until the last tasks have ended.", text);
  pump_events();
  EXPECT_EQ(nullptr, wxWindow::FindWindowByName("scheduler_wait_dialog"));
  EXPECT_TRUE(take_asserts().empty());
}

TEST(WaitCallback, TheDialogSitsOnTheHostsMainWindow) {
  take_asserts();
  orvix1_test::host_window_t host(300, 200);
  orvix1::initialize_wxwidgets(host.widget());
  WaitCallback callback;
  callback.SetDialogInfo(some_info());
  const auto status = boost::make_shared<operation_status_t>(1);
  wxSize parent_size;
  const auto driver = answer_wait_dialog(status, [&](WaitDialog* dialog) {
    if (dialog->GetParent() != nullptr) parent_size = dialog->GetParent()->GetSize();
  });
  rescue_t rescue(status);
  callback.wait(status);
  EXPECT_FALSE(rescue.stop());
  EXPECT_EQ(wxSize(300, 200), parent_size);
  EXPECT_TRUE(host.still_alive());
  orvix1::initialize_wxwidgets(nullptr);  // back to a host without a main window
  orvix1::cleanup_wxwidgets();
  orvix1::cleanup_wxwidgets();
  pump_events();
  EXPECT_TRUE(take_asserts().empty());
}

}  // namespace
