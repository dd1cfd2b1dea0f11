#ifndef ORVIX1_TASKS_WAITDIALOG_H
#define ORVIX1_TASKS_WAITDIALOG_H
/// @file
/// The modal please-wait window shown while the GUI thread waits for an
/// operation. It polls the operation twice a second, ends its modal loop with
/// wxID_OK once the operation has finished, and refuses to be closed before.

#include <string>

#include <boost/shared_ptr.hpp>
#include <wx/animate.h>
#include <wx/dialog.h>
#include <wx/stattext.h>
#include <wx/timer.h>

#include "orvix1/dialog.h"
#include "orvix1/export.h"
#include "orvix1/tasks/ISchedulerStatus.h"
#include "orvix1/ui_update_helpers.h"
#include "talvar2/threading/operation_status.h"

namespace orvix1 {
namespace tasks {
/// The modal please-wait window shown while the GUI thread waits for an operation.
/// It follows the palette: the dialog and its texts take font_normal (1) on
/// color_face (1) in color_button_text (6), the title font_title (3).
class ORVIX1_API WaitDialog : public modal_flavor<wxDialog> {
 public:
  enum { poll_timer_id = 123, poll_interval_ms = 500 };

  WaitDialog(wxWindow* parent,
             boost::shared_ptr<talvar2::threading::scheduler_operation_status_t> status);
  /// `status` is not owned; it must outlive the dialog.
  WaitDialog(wxWindow* parent, ISchedulerStatus* status);
  ~WaitDialog() override;

  void SetAnimation(const wxAnimation& animation);
  void SetCaption(const std::string& caption);
  void SetMsgTitle(const std::string& title);
  void SetMsgText(const std::string& text);

  /// Sets `text` as the label of `control` and wraps it so that the dialog
  /// keeps about the proportions of the display.
  void SetMultilineText(wxStaticText* control, const std::string& text, const wxFont& font);

  wxAnimationCtrl* GetAnimationCtrl() const { return m_animation; }
  wxStaticText* GetTitleCtrl() const { return m_title; }
  wxStaticText* GetMessageCtrl() const { return m_message; }
  /// The timer whose ticks poll the operation.
  wxTimer* GetPollTimer() const { return m_timer; }
  bool IsClosing() const { return m_closing; }

 private:
  void Initialize(wxWindow* parent);
  bool IsOperationFinished() const;
  void OnTimer(wxTimerEvent& event);
  void KeepWithin(wxStaticText* control, const std::string& text, int wrap, int widest);
  void OnClose(wxCloseEvent& event);
  void OnInitDialog(wxInitDialogEvent& event);

  boost::shared_ptr<talvar2::threading::scheduler_operation_status_t> m_status;
  ISchedulerStatus* m_scheduler_status = nullptr;
  wxAnimationCtrl* m_animation = nullptr;
  wxStaticText* m_title = nullptr;
  style_updater_t m_look;
  wxStaticText* m_message = nullptr;
  bool m_closing = false;
  wxTimer* m_timer = nullptr;

  wxDECLARE_EVENT_TABLE();
};

}  // namespace tasks
}  // namespace orvix1

#endif
