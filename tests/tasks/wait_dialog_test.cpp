#include <algorithm>
#include <chrono>
#include <future>
#include <string>
#include <vector>

#include <boost/make_shared.hpp>
#include <gtk/gtk.h>
#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/display.h>
#include <wx/frame.h>
#include <wx/mstream.h>
#include <wx/sizer.h>

#include "orvix1/tasks/WaitCallback.h"
#include "orvix1/tasks/WaitDialog.h"
#include "orvix1/ui_settings.h"
#include "support/atk_event_log.h"
#include "support/atk_probe.h"
#include "support/resource_archive.h"
#include "support/wx_test_environment.h"

namespace {

using orvix1::tasks::ISchedulerStatus;
using orvix1::tasks::WaitCallback;
using orvix1::tasks::WaitDialog;
using orvix1::tasks::dialog_info_t;
using namespace orvix1_test;
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

// A caption without a close box over an icon, the title, a spacer and the
// message in a two-column grid, in the palette's fonts, opened over its
// parent. Long messages wrap to the display's proportions but never wider
// than 60% of the work area: one long line once made it wider than the screen.
TEST(WaitDialogLayout, IconTitleSpacerAndMessageInAGridOverItsParentWrappedWithinTheWorkArea) {
  talvar2::intrusive_pointer_t<orvix1::ui_settings_configure_t> palette =
      orvix1::ui_settings_configure_t::get();
  palette->set_font(orvix1::font_title, wxFont(wxFontInfo(19).Bold()));
  palette->set_font(orvix1::font_normal, wxFont(wxFontInfo(9).Italic()));
  auto* parent = new wxFrame(nullptr, wxID_ANY, "host", wxPoint(240, 160), wxSize(600, 400));
  parent->Show();
  auto* dialog = new WaitDialog(parent, boost::shared_ptr<operation_status_t>());
  const long style = dialog->GetWindowStyleFlag();
  EXPECT_TRUE(style & wxCAPTION);
  EXPECT_FALSE(style & (wxCLOSE_BOX | wxSYSTEM_MENU | wxRESIZE_BORDER | wxMAXIMIZE_BOX));
  EXPECT_EQ("prod_name", dialog->GetTitle().utf8_string());

  ASSERT_EQ(1u, dialog->GetSizer()->GetItemCount());
  auto* grid = dynamic_cast<wxFlexGridSizer*>(dialog->GetSizer()->GetItem(size_t(0))->GetSizer());
  ASSERT_TRUE(grid != nullptr && grid->GetItemCount() == 4u);
  EXPECT_EQ(2, grid->GetCols());
  EXPECT_EQ(dialog->GetTitleCtrl(), grid->GetItem(size_t(1))->GetWindow());
  EXPECT_TRUE(grid->GetItem(size_t(2))->IsSpacer());
  EXPECT_EQ(dialog->GetMessageCtrl(), grid->GetItem(size_t(3))->GetWindow());
  EXPECT_EQ("closing", label_of(dialog->GetTitleCtrl()));
  EXPECT_EQ(palette->get_font(orvix1::font_title), dialog->GetTitleCtrl()->GetFont());
  EXPECT_EQ("please_wait", label_of(dialog->GetMessageCtrl()));
  EXPECT_EQ(palette->get_font(orvix1::font_normal), dialog->GetMessageCtrl()->GetFont());

  std::string text;
  for (int word = 0; word < 25; ++word) text += "waiting is the longest part ";
  dialog->SetMsgText(text + "of it");
  EXPECT_NE(wxNOT_FOUND, dialog->GetMessageCtrl()->GetLabel().Find('\n'));
  EXPECT_EQ(text + "of it", unwrapped_label_of(dialog->GetMessageCtrl()));
  const wxSize display = wxGetDisplaySize(), client = dialog->GetClientSize();
  EXPECT_GE(client.x, client.y * display.x / display.y);
  EXPECT_LT(client.x, display.x);

  for (int word = 0; word < 300; ++word) text += "waiting ";
  dialog->SetMsgText(text);
  dialog->InitDialog();
  const wxRect rect = dialog->GetScreenRect();
  EXPECT_LE(dialog->GetMessageCtrl()->GetSize().x, wxDisplay(0u).GetClientArea().width * 6 / 10);
  EXPECT_NEAR(rect.x + rect.width / 2, 540, 1);
  EXPECT_NEAR(rect.y + rect.height / 2, 360, 1);
  dialog->Destroy();
  parent->Destroy();
  pump_events();
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
    const std::string gif = orvix1_test::gif_bytes(16, 16);
    wxMemoryInputStream gif_stream(gif.data(), gif.size());
    wxAnimation animation;
    if (operation_status && animation.Load(gif_stream)) dialog->SetAnimation(animation);
    const auto driver = run_soon([&] {
      EXPECT_TRUE(dialog->IsModal());
      EXPECT_EQ(operation_status, dialog->GetAnimationCtrl()->IsPlaying());
      EXPECT_EQ(500, dialog->GetPollTimer()->GetInterval());
      dialog->GetPollTimer()->Notify();
      EXPECT_FALSE(dialog->Close());
      EXPECT_TRUE(dialog->IsModal() && dialog->IsShown());
      fake.finished = true;
      operation->count_down();
      dialog->GetPollTimer()->Notify();
      EXPECT_FALSE(dialog->IsModal());
      end_if_still_modal(dialog);
    });
    EXPECT_EQ(wxID_OK, dialog->ShowModal());
    EXPECT_FALSE(dialog->GetPollTimer()->IsRunning());
    dialog->Destroy();
  }
  EXPECT_TRUE(take_asserts().empty());
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

// An expired status is reported; a finished operation returns at once,
// without pumping or a window, even with dialog info.
TEST(WaitCallback, AnExpiredStatusIsReportedAFinishedOneReturnsAtOnce) {
  WaitCallback callback;
  take_asserts();
  const boost::weak_ptr<operation_status_t> expired = boost::make_shared<operation_status_t>(1);
  callback.wait(expired);
  const auto asserts = take_asserts();
  ASSERT_EQ(1u, asserts.size());
  EXPECT_EQ("status_callback", asserts[0].condition);
  EXPECT_EQ("wait", asserts[0].function);
  callback.SetDialogInfo(some_info());
  bool pumped = false;
  wxTheApp->CallAfter([&pumped] { pumped = true; });
  const size_t windows = wxTopLevelWindows.GetCount();
  callback.wait(boost::make_shared<operation_status_t>(0));
  EXPECT_FALSE(pumped);
  EXPECT_EQ(windows, wxTopLevelWindows.GetCount());
  pump_events();
}

// Without dialog info the wait pumps the event loop and shows no window. With
// it, the dialog shows the info, ends at the first tick after the operation
// finished and is gone afterwards.
TEST(WaitCallback, WaitsForTheOperationWithTheDialogOnlyWhenThereIsDialogInfo) {
  take_asserts();
  for (const bool with_info : {false, true}) {
    SCOPED_TRACE(with_info ? "dialog" : "no dialog");
    WaitCallback callback;
    if (with_info) callback.SetDialogInfo(some_info());
    const auto status = boost::make_shared<operation_status_t>(1);
    const auto driver = run_soon([&] {
      auto* dialog = dynamic_cast<WaitDialog*>(wxWindow::FindWindowByName("scheduler_wait_dialog"));
      EXPECT_EQ(with_info, dialog != nullptr);
      status->count_down();
      if (dialog == nullptr) return;
      EXPECT_TRUE(dialog->IsModal());
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
  }
  EXPECT_TRUE(take_asserts().empty());
}

// A dialog named by its title, its message a label, announced when shown.
TEST(WaitDialogAccessible, ADialogNamedByItsTitleWithItsMessageAsALabelAnnouncedWhenShown) {
  talvar2::intrusive_pointer_t<orvix1::ui_settings_configure_t> palette =
      orvix1::ui_settings_configure_t::get();
  auto* parent = new wxFrame(nullptr, wxID_ANY, "host", wxPoint(0, 0), wxSize(400, 300));
  parent->Show();
  fake_status_t status;
  auto* dialog = new orvix1::tasks::WaitDialog(parent, &status);
  dialog->SetCaption("Saving");
  dialog->SetMsgText("Writing the archive");
  AtkObject* frame = gtk_widget_get_accessible(dialog->GetHandle());
  EXPECT_EQ(atk_object_get_role(frame), ATK_ROLE_DIALOG);
  EXPECT_EQ(name_of(frame), "Saving");
  std::vector<std::string> labels;
  for (AtkObject* label : find_by_role(frame, ATK_ROLE_LABEL)) labels.push_back(name_of(label));
  EXPECT_NE(std::find(labels.begin(), labels.end(), "Writing the archive"), labels.end());

  atk_event_log_t log;
  log.watch(frame, "dialog", true);
  dialog->Show();
  const std::vector<std::string> events = log.take();
  for (const char* event : {"dialog showing=1", "dialog activate"})
    EXPECT_NE(std::find(events.begin(), events.end(), event), events.end()) << event;

  dialog->Hide();
  dialog->Destroy();
  parent->Destroy();
  pump_events();
}

}  // namespace
