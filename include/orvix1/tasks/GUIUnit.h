#ifndef ORVIX1_TASKS_GUIUNIT_H
#define ORVIX1_TASKS_GUIUNIT_H
/// @file
/// The "main" unit: stages queued for the GUI thread run inside the wx event
/// loop, one job per posted wake-up event.

#include <boost/shared_ptr.hpp>
#include <wx/event.h>

#include "orvix1/export.h"
#include "talvar2/functor/signal.h"
#include "talvar2/threading/queue_unit.h"

namespace orvix1 {
namespace tasks {
/// The "main" unit: stages queued for the GUI thread run inside the wx event loop.
class ORVIX1_API GUIUnit : public wxEvtHandler, public talvar2::subscriber_base_t {
 public:
  GUIUnit();
  ~GUIUnit() override;
  GUIUnit(const GUIUnit&) = delete;
  GUIUnit& operator=(const GUIUnit&) = delete;

  boost::shared_ptr<talvar2::threading::queue_unit_t> GetQueuePtr() const { return m_queue; }

  /// A job was queued (any thread): posts one wake-up (a CallAfter) to this handler.
  void OnNewJobReceived(const talvar2::threading::task_ptr_t& task,
                        const talvar2::threading::stage_ptr_t& stage);
  /// GUI thread: runs one queued job, as each wake-up does.
  void HandleUpdate(wxCommandEvent& event);

 private:
  boost::shared_ptr<talvar2::threading::queue_unit_t> m_queue;

  wxDECLARE_EVENT_TABLE();
};

}  // namespace tasks
}  // namespace orvix1

#endif
