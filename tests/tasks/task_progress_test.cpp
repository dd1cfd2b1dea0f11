// Progress reported from DoTask reaches the GUI thread coalesced, before
// TaskFinished and never after it, in one queue with posted signals.

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tasks/pump_until.h"
#include "talvar2/functor/signal.h"

namespace {

using orvix1_test::hold_until;
using orvix1_test::pump_until;
using TaskProgress = orvix1_test::scheduler_fixture_t;

// What reached the GUI thread, in order; only the GUI thread writes it.
struct gui_record_t : talvar2::subscriber_base_t {
  std::vector<std::string> entries;
  bool off_gui = false;
  void add(const std::string& entry) {
    if (!wxThread::IsMain()) off_gui = true;
    entries.push_back(entry);
  }
  void on_progress(std::uint64_t done, std::uint64_t total, const std::string& text) {
    add(std::to_string(done) + "/" + std::to_string(total) + " " + text);
  }
};

// DoTask waits for `go`, so that the test decides whether the GUI loop turns
// while it works; TaskFinished reports once more, too late to be delivered.
class reporting_task_t : public orvix1::tasks::DefaultTaskImpl {
 public:
  reporting_task_t(gui_record_t& record, std::function<void(reporting_task_t&)> work)
      : m_record(record), m_work(std::move(work)) {}
  std::atomic<bool> started{false}, go{false}, worked{false};
  talvar2::signal_t<int> posted;

  void TaskStarted() override { started = true; }
  void DoTask() override {
    hold_until([this] { return go.load(); });
    m_work(*this);
    worked = true;
  }
  void TaskFinished() override {
    m_record.add("finished");
    ReportProgress(9, 9, "from TaskFinished");
  }

 private:
  gui_record_t& m_record;
  std::function<void(reporting_task_t&)> m_work;
};
using reporting_ptr = talvar2::intrusive_pointer_t<reporting_task_t>;

TEST_F(TaskProgress, PendingDeliveryCarriesTheLatestReportAheadOfPostedSignalsAndTaskFinished) {
  gui_record_t record;
  reporting_ptr task(new reporting_task_t(record, [](reporting_task_t& self) {
    self.ReportProgress(1, 4, "a");
    self.ReportProgress(2, 4, "b");
    orvix1::tasks::PostSignal(self.posted, 7);
    self.ReportProgress(4, 4, "d");  // still the one pending delivery, queued before the post
  }));
  task->progress.connect(&record, &gui_record_t::on_progress);
  task->posted.connect(&record, [&record](int value) { record.add("posted " + std::to_string(value)); });
  ASSERT_EQ(m_scheduler->AddTask(task, "progress"), 0);
  ASSERT_TRUE(pump_until([&] { return task->started.load(); }));
  task->go = true;
  hold_until([&] { return task->worked.load(); });  // the GUI loop stands still meanwhile
  ASSERT_TRUE(task->worked);
  ASSERT_TRUE(pump_until([&] { return !record.entries.empty() && record.entries.back() == "finished"; }));
  task->ReportProgress(5, 5, "after the end");
  ASSERT_TRUE(pump_until([&] { return no_tasks_left(); }));
  orvix1_test::pump_events();
  EXPECT_EQ(record.entries, (std::vector<std::string>{"4/4 d", "posted 7", "finished"}));
  EXPECT_FALSE(record.off_gui);
}

TEST_F(TaskProgress, EveryReportIsDeliveredWhenTheGuiKeepsUp) {
  gui_record_t record;
  std::atomic<int> delivered{0};
  reporting_ptr task(new reporting_task_t(record, [&delivered](reporting_task_t& self) {
    for (int step = 1; step <= 3; ++step) {
      self.ReportProgress(step, 3, "step");
      hold_until([&] { return delivered.load() == step; });
    }
  }));
  task->progress.connect(&record, [&](std::uint64_t done, std::uint64_t total, const std::string& text) {
    record.on_progress(done, total, text);
    ++delivered;
  });
  task->go = true;
  ASSERT_EQ(m_scheduler->AddTask(task, "progress"), 0);
  ASSERT_TRUE(pump_until([&] { return !record.entries.empty() && record.entries.back() == "finished"; }));
  EXPECT_EQ(record.entries, (std::vector<std::string>{"1/3 step", "2/3 step", "3/3 step", "finished"}));
}

}  // namespace
