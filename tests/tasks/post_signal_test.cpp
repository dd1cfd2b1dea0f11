// Making a signal fire on the GUI thread from any thread.

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>

#include <gtest/gtest.h>

#include "orvix1/tasks/Scheduler.h"
#include "support/wx_test_environment.h"
#include "tasks/pump_until.h"
#include "talvar2/functor/signal.h"

namespace {

using orvix1_test::pump_until;
using orvix1::tasks::Scheduler;

class receiver_t : public talvar2::subscriber_base_t {
 public:
  std::atomic<int> calls{0};
  std::atomic<int> last{0};
  std::atomic<bool> off_gui{false};
  void On(int value) {
    last = value;
    ++calls;
    if (!wxThread::IsMain()) off_gui = true;
  }
};

class PostSignalTest : public ::testing::Test {
 protected:
  void SetUp() override {
    Scheduler::Release();
    orvix1_test::take_asserts();
    m_signal.connect(&m_receiver, &receiver_t::On);
  }
  void TearDown() override {
    if (Scheduler::IsInitialized())
      Scheduler::Get(orvix1::tasks::ISchedulerStatusCallbackPtr())
          ->CancelAndWait(orvix1::tasks::dialog_info_t(), false);
    Scheduler::Release();
  }

  receiver_t m_receiver;
  talvar2::signal_t<int> m_signal;
};

TEST_F(PostSignalTest, WithoutSchedulerAssertsAndDoesNotEmit) {
  ASSERT_FALSE(Scheduler::IsInitialized());
  orvix1::tasks::PostSignal(m_signal, 5);
  const auto asserts = orvix1_test::take_asserts();
  ASSERT_EQ(asserts.size(), 1u);
  EXPECT_EQ(asserts[0].condition, "Scheduler::IsInitialized()");
  EXPECT_EQ(asserts[0].message,
            "Attempt to schedule a task in uninitialized Scheduler. Task will not complete.");
  EXPECT_EQ(asserts[0].function, "PostSignal");
  orvix1_test::pump_events();
  EXPECT_EQ(m_receiver.calls, 0);
  EXPECT_FALSE(Scheduler::IsInitialized());  // no scheduler was made on the way
}

TEST_F(PostSignalTest, FromWorkerFiresOnceOnGuiThread) {
  ASSERT_TRUE(Scheduler::Get(orvix1::tasks::ISchedulerStatusCallbackPtr()));
  std::thread worker([this] { orvix1::tasks::PostSignal(m_signal, 7); });
  worker.join();
  EXPECT_EQ(m_receiver.calls, 0);  // only the GUI loop delivers it
  ASSERT_TRUE(pump_until([this] { return m_receiver.calls == 1; }));
  EXPECT_EQ(m_receiver.last, 7);
  EXPECT_FALSE(m_receiver.off_gui);
  EXPECT_TRUE(orvix1_test::take_asserts().empty());
}

TEST_F(PostSignalTest, ReceiverGoneBeforeDeliveryIsSkipped) {
  ASSERT_TRUE(Scheduler::Get(orvix1::tasks::ISchedulerStatusCallbackPtr()));
  auto leaving = std::make_unique<receiver_t>();
  m_signal.connect(leaving.get(), &receiver_t::On);
  orvix1::tasks::PostSignal(m_signal, 9);
  leaving.reset();
  ASSERT_TRUE(pump_until([this] { return m_receiver.calls == 1; }));
  EXPECT_EQ(m_receiver.last, 9);
}

}  // namespace
