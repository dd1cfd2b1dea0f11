#include "pages/tasks_page.h"

#include <memory>
#include <vector>

#include <wx/button.h>
#include <wx/gauge.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include "orvix1/tasks/AnimationTask.h"
#include "orvix1/tasks/Scheduler.h"
#include "orvix1/tasks/dialog_info.h"
#include "pages/scaled.h"

namespace gallery {
namespace {

using namespace orvix1;
using namespace orvix1::tasks;

const char* const k_group = "gallery";
constexpr int k_duration_ms = 3000;

// An animation task that asks for the long-task workers.
class long_animation_task_t : public AnimationTask {
 public:
  using AnimationTask::AnimationTask;
  bool IsLongTask() override { return true; }
};

// Work done on the GUI thread itself: fills its gauge at once.
class fill_gauge_task_t : public GUITask {
 public:
  explicit fill_gauge_task_t(wxGauge* gauge) : m_gauge(gauge) {}
  void DoGUITask() override { m_gauge->SetValue(m_gauge->GetRange()); }

 private:
  wxGauge* m_gauge;
};

// One kind of task: a button that starts it and a gauge for its progress.
class task_row_t : public talvar2::subscriber_base_t {
 public:
  wxGauge* gauge = nullptr;
  void on_step(int value) { gauge->SetValue(value); }
};

class tasks_page_t : public wxPanel {
 public:
  explicit tasks_page_t(wxWindow* parent)
      : wxPanel(parent), m_scheduler(Scheduler::Get(new ISchedulerStatusCallback)) {
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(new wxStaticText(this, wxID_ANY,
                                "Each task moves its bar over three seconds from a worker; the "
                                "values reach the window on the GUI thread."),
               wxSizerFlags().Border());
    auto* grid = new wxFlexGridSizer(2, dip(wxSize(12, 8)));
    grid->AddGrowableCol(1);
    add_row(grid, "Service task", "", [this](task_row_t& row) { start(row, false, 0); });
    add_row(grid, "Long task", k_tasks_long_task, [this](task_row_t& row) { start(row, true, 0); });
    add_row(grid, "Delayed task (1 s)", "", [this](task_row_t& row) { start(row, false, 1000); });
    add_row(grid, "GUI task", "", [this](task_row_t& row) {
      row.gauge->SetValue(0);
      add(new fill_gauge_task_t(row.gauge), 0);
    });
    sizer->Add(grid, wxSizerFlags().Expand().Border());

    auto* actions = new wxBoxSizer(wxHORIZONTAL);
    add_action(actions, "Cancel the group", [this] { m_scheduler->Cancel(k_group); });
    add_action(actions, "Cancel and wait", [this] { cancel_and_wait(); })
        ->SetName(k_tasks_cancel_and_wait);
    sizer->Add(actions, wxSizerFlags().Border());
    m_status = new wxStaticText(this, wxID_ANY, wxEmptyString);
    m_status->SetName(k_tasks_status);
    sizer->Add(m_status, wxSizerFlags().Border());
    SetSizer(sizer);
  }

  // Work still running ends before the page does, and so does the
  // scheduler the page started.
  ~tasks_page_t() override {
    if (!m_scheduler) return;
    m_scheduler->CancelAndWait(k_group, dialog_info_t(), true);
    m_scheduler = SchedulerPtr();
    Scheduler::Release();
  }

 private:
  // A named row's button takes the name, its gauge the name + "_gauge".
  void add_row(wxSizer* grid, const wxString& label, const wxString& name,
               std::function<void(task_row_t&)> start_task) {
    m_rows.push_back(std::make_unique<task_row_t>());
    task_row_t& row = *m_rows.back();
    auto* button = new wxButton(this, wxID_ANY, label);
    row.gauge = new wxGauge(this, wxID_ANY, 100);
    if (!name.empty()) {
      button->SetName(name);
      row.gauge->SetName(name + "_gauge");
    }
    button->Bind(wxEVT_BUTTON, [&row, start_task](wxCommandEvent&) { start_task(row); });
    grid->Add(button, wxSizerFlags().Expand());
    grid->Add(row.gauge, wxSizerFlags().Expand().CenterVertical());
  }

  wxButton* add_action(wxSizer* sizer, const wxString& label, std::function<void()> action) {
    auto* button = new wxButton(this, wxID_ANY, label);
    button->Bind(wxEVT_BUTTON, [action](wxCommandEvent&) { action(); });
    sizer->Add(button, wxSizerFlags().Border(wxRIGHT));
    return button;
  }

  void start(task_row_t& row, bool long_task, int delay_ms) {
    row.gauge->SetValue(0);
    talvar2::intrusive_pointer_t<AnimationTask> task(
        long_task ? new long_animation_task_t(k_duration_ms, 0, 100)
                  : new AnimationTask(k_duration_ms, 0, 100));
    task->step.connect(&row, &task_row_t::on_step);
    add(task, delay_ms);
  }

  void add(const ITaskPtr& task, int delay_ms) {
    const int status = delay_ms > 0 ? m_scheduler->AddDelayedTask(task, delay_ms, k_group)
                                    : m_scheduler->AddTask(task, k_group);
    m_status->SetLabel(status == 0 ? "Started." : wxString::Format("Refused (status %d).", status));
  }

  void cancel_and_wait() {
    dialog_info_t info;
    info.caption = "Tasks";
    info.title = "Stopping";
    info.text = "Waiting for the running tasks to finish.";
    m_scheduler->CancelAndWait(k_group, info, false);
    m_status->SetLabel("Every task of the group has finished.");
  }

  SchedulerPtr m_scheduler;
  std::vector<std::unique_ptr<task_row_t>> m_rows;
  wxStaticText* m_status = nullptr;
};

}  // namespace

wxWindow* create_tasks_page(wxWindow* parent) { return new tasks_page_t(parent); }

}  // namespace gallery
