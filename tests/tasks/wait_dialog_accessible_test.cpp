#include <gtk/gtk.h>

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <wx/frame.h>

#include "orvix1/tasks/WaitDialog.h"
#include "orvix1/ui_settings.h"
#include "support/atk_event_log.h"
#include "support/atk_probe.h"
#include "support/wx_test_environment.h"

namespace {

using namespace orvix1_test;

struct unfinished_t : orvix1::tasks::ISchedulerStatus {
  bool IsFinished() override { return false; }
};

// A dialog named by its title, its message a label, announced when shown.
TEST(WaitDialogAccessible, ADialogNamedByItsTitleWithItsMessageAsALabelAnnouncedWhenShown) {
  talvar2::intrusive_pointer_t<orvix1::ui_settings_configure_t> palette =
      orvix1::ui_settings_configure_t::get();
  auto* parent = new wxFrame(nullptr, wxID_ANY, "host", wxPoint(0, 0), wxSize(400, 300));
  parent->Show();
  unfinished_t status;
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
