#include "orvix1/tasks/GUIUnit.h"

#include <mutex>

#include <boost/make_shared.hpp>

namespace orvix1 {
namespace tasks {

namespace {

// The queue of a GUIUnit wakes its unit itself: a call under a small lock,
// cheaper per job than a signal emission. The queue may outlive the unit
// (the scheduler holds it too), so the unit detaches itself when it goes.
class gui_queue_t final : public talvar2::threading::queue_unit_t {
 public:
  explicit gui_queue_t(GUIUnit* unit) : m_unit(unit) {}

  void detach() {
    std::lock_guard<std::mutex> lock(m_unit_mutex);
    m_unit = nullptr;
  }

 protected:
  void job_queued(const talvar2::threading::job_t& job) override {
    {
      std::lock_guard<std::mutex> lock(m_unit_mutex);
      if (m_unit != nullptr) m_unit->OnNewJobReceived(job.task(), job.stage());
    }
    queue_unit_t::job_queued(job);  // other listeners of new_job
  }

 private:
  std::mutex m_unit_mutex;
  GUIUnit* m_unit;
};

}  // namespace

// Wake-ups come as CallAfter events, which wx runs without an event table.
wxBEGIN_EVENT_TABLE(GUIUnit, wxEvtHandler)
wxEND_EVENT_TABLE()

GUIUnit::GUIUnit() : m_queue(boost::make_shared<gui_queue_t>(this)) {}

GUIUnit::~GUIUnit() {
  // Cut the way in while this object is still whole: a worker may be
  // queueing a job right now.
  static_cast<gui_queue_t&>(*m_queue).detach();
}

// The job itself stays in the queue; only a wake-up crosses threads. A
// wake-up still pending when the unit goes is dropped with it.
void GUIUnit::OnNewJobReceived(const talvar2::threading::task_ptr_t&,
                               const talvar2::threading::stage_ptr_t&) {
  CallAfter([this] { m_queue->process_queue(1); });
}

void GUIUnit::HandleUpdate(wxCommandEvent&) { m_queue->process_queue(1); }

}  // namespace tasks
}  // namespace orvix1
