#ifndef ORVIX1_TASKS_WAITCALLBACK_H
#define ORVIX1_TASKS_WAITCALLBACK_H
/// @file
/// How the GUI thread waits for a scheduler operation: with nothing to show it
/// keeps the event loop turning until the operation has finished; otherwise it
/// shows a modal WaitDialog that closes itself when the operation is done.

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include "orvix1/export.h"
#include "orvix1/tasks/dialog_info.h"
#include "talvar2/threading/callbacks.h"
#include "talvar2/threading/operation_status.h"

class wxWindow;

namespace orvix1 {
namespace tasks {
/// How the GUI thread waits for a scheduler operation.
class ORVIX1_API WaitCallback : public talvar2::threading::scheduler_wait_callback_t {
 public:
  WaitCallback();
  ~WaitCallback() override;

  /// On the GUI thread; returns when the operation has finished.
  void wait(boost::weak_ptr<talvar2::threading::scheduler_operation_status_t> status) override;

  void SetDialogInfo(const dialog_info_t& info);
  /// The wait dialog's parent; null (the default) for the main window.
  void SetDialogParent(wxWindow* parent) { m_parent = parent; }
  dialog_info_t& GetDialogInfo() { return m_info; }

 private:
  void PumpUntilFinished(const talvar2::threading::scheduler_operation_status_t& status);
  void ShowDialogUntilFinished(
      const boost::shared_ptr<talvar2::threading::scheduler_operation_status_t>& status);

  dialog_info_t m_info;
  wxWindow* m_parent = nullptr;
};

using WaitCallbackPtr = boost::shared_ptr<WaitCallback>;

}  // namespace tasks
}  // namespace orvix1

#endif
