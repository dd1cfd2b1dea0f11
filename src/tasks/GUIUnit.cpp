#include "orvix1/tasks/GUIUnit.h"

#include <boost/make_shared.hpp>

namespace orvix1 {
namespace tasks {

namespace {
// The wake-up event of every GUIUnit; its type is allocated once per process.
wxDEFINE_EVENT(EVT_GUI_UNIT_UPDATE, wxCommandEvent);
}  // namespace

wxBEGIN_EVENT_TABLE(GUIUnit, wxEvtHandler)
  EVT_COMMAND(wxID_ANY, EVT_GUI_UNIT_UPDATE, GUIUnit::HandleUpdate)
wxEND_EVENT_TABLE()

GUIUnit::GUIUnit() : m_queue(boost::make_shared<talvar2::threading::queue_unit_t>()) {
  m_queue->new_job.connect(this, &GUIUnit::OnNewJobReceived);
}

GUIUnit::~GUIUnit() {
  // Cut the connection while this object is still whole: a worker may be
  // queueing a job right now, and the queue may outlive the unit (the
  // scheduler holds it too).
  m_queue->new_job.disconnect(this, &GUIUnit::OnNewJobReceived);
}

// The job itself stays in the queue; only a wake-up crosses threads.
void GUIUnit::OnNewJobReceived(const talvar2::threading::task_ptr_t&,
                               const talvar2::threading::stage_ptr_t&) {
  QueueEvent(new wxCommandEvent(EVT_GUI_UNIT_UPDATE, 0));
}

void GUIUnit::HandleUpdate(wxCommandEvent&) { m_queue->process_queue(1); }

}  // namespace tasks
}  // namespace orvix1
