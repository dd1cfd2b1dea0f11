#include <atomic>
#include <memory>
#include <thread>

#include <gtest/gtest.h>

#include "tasks/pump_until.h"
#include "talvar2/functor/signal.h"

namespace {

using orvix1_test::pump_until;
using orvix1::tasks::Scheduler;

class receiver_t : public talvar2::subscriber_base_t {
 public:
  std::atomic<int> calls{0}, last{0};
  std::atomic<bool> off_gui{false};
  void On(int value) {
    last = value;
    ++calls;
    if (!wxThread::IsMain()) off_gui = true;
  }
};

TEST(PostSignal, WithoutSchedulerAssertsAndDoesNotEmit) {
  Scheduler::Release();
  orvix1_test::take_asserts();
  receiver_t receiver;
  talvar2::signal_t<int> signal;
  signal.connect(&receiver, &receiver_t::On);
  orvix1::tasks::PostSignal(signal, 5);
  const auto asserts = orvix1_test::take_asserts();
  ASSERT_EQ(asserts.size(), 1u);
  EXPECT_EQ(asserts[0].condition, "Scheduler::IsInitialized()");
  EXPECT_EQ(asserts[0].message,
            "Attempt to schedule a task in uninitialized Scheduler. Task will not complete.");
  EXPECT_EQ(asserts[0].function, "PostSignal");
  orvix1_test::pump_events();
  EXPECT_EQ(receiver.calls, 0);
}

using PostSignalScheduled = orvix1_test::scheduler_fixture_t;

// A receiver that is gone by the time the GUI loop delivers is skipped.
TEST_F(PostSignalScheduled, FromWorkerFiresOnceOnGuiThreadForReceiversStillThere) {
  receiver_t receiver;
  auto leaving = std::make_unique<receiver_t>();
  talvar2::signal_t<int> signal;
  signal.connect(&receiver, &receiver_t::On);
  signal.connect(leaving.get(), &receiver_t::On);
  std::thread([&] { orvix1::tasks::PostSignal(signal, 7); }).join();
  EXPECT_EQ(receiver.calls, 0);  // only the GUI loop delivers it
  leaving.reset();
  ASSERT_TRUE(pump_until([&] { return receiver.calls == 1; }));
  orvix1_test::pump_events();
  EXPECT_EQ(receiver.calls, 1);
  EXPECT_EQ(receiver.last, 7);
  EXPECT_FALSE(receiver.off_gui);
}

}  // namespace
