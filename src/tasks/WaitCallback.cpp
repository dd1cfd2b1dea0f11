#include "orvix1/tasks/WaitCallback.h"

#include <wx/app.h>
#include <wx/utils.h>

#include "orvix1/native_window.h"
#include "orvix1/tasks/WaitDialog.h"
#include "orvix1/wx_dll_application.h"
#include "core/contract_sites.h"

namespace orvix1 {
namespace tasks {

using talvar2::threading::scheduler_operation_status_t;

WaitCallback::WaitCallback() = default;

WaitCallback::~WaitCallback() = default;

void WaitCallback::SetDialogInfo(const dialog_info_t& info) {
  m_info.animation = info.animation;
  m_info.caption = info.caption;
  m_info.title = info.title;
  m_info.text = info.text;
}

void WaitCallback::wait(boost::weak_ptr<scheduler_operation_status_t> status) {
  const boost::shared_ptr<scheduler_operation_status_t> locked = status.lock();
  if (!contract_holds(locked != nullptr, contract::site_t::wait_without_status)) return;
  if (locked->is_finished()) return;
  if (m_info.empty())
    PumpUntilFinished(*locked);
  else
    ShowDialogUntilFinished(locked);
}

void WaitCallback::PumpUntilFinished(const scheduler_operation_status_t& status) {
  while (!status.is_finished()) {
    process_message_loop();
    wxMilliSleep(100);
  }
}

void WaitCallback::ShowDialogUntilFinished(
    const boost::shared_ptr<scheduler_operation_status_t>& status) {
  talvar2::smart_pointer_t<wxWindow> main_window = get_main_window();
  auto* dialog = new WaitDialog(m_parent != nullptr ? m_parent : main_window.get(), status);
  dialog->SetName("scheduler_wait_dialog");
  dialog->SetAnimation(m_info.animation);
  dialog->SetCaption(m_info.caption);
  dialog->SetMsgTitle(m_info.title);
  dialog->SetMsgText(m_info.text);
  dialog->ShowModal();
  // At once, not at idle: the parent wrapper goes right after. A close
  // request after the end may have scheduled the dialog for deletion already.
  wxPendingDelete.DeleteObject(dialog);
  delete dialog;
  main_window.release_ref();
}

}  // namespace tasks
}  // namespace orvix1
