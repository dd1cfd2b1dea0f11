// The task classes on their own.

#include <gtest/gtest.h>

#include "orvix1/tasks/ITask.h"
#include "support/wx_test_environment.h"

namespace {

class counting_gui_task_t : public orvix1::tasks::GUITask {
 public:
  int runs = 0;
  void DoGUITask() override { ++runs; }
};

TEST(TaskTest, EachKindChoosesItsThreadAndCancels) {
  talvar2::intrusive_pointer_t<orvix1::tasks::DefaultTaskImpl> plain(new orvix1::tasks::DefaultTaskImpl);
  talvar2::intrusive_pointer_t<counting_gui_task_t> gui(new counting_gui_task_t);
  talvar2::intrusive_pointer_t<orvix1::tasks::WaitableTask> waitable(new orvix1::tasks::WaitableTask);
  EXPECT_TRUE(plain->IsServiceThreadNeeded());
  EXPECT_FALSE(plain->IsLongTask());
  EXPECT_FALSE(gui->IsServiceThreadNeeded());
  EXPECT_FALSE(gui->IsLongTask());
  EXPECT_TRUE(waitable->IsServiceThreadNeeded());
  EXPECT_TRUE(waitable->IsLongTask());

  EXPECT_FALSE(plain->IsCanceled());
  plain->Cancel();
  EXPECT_TRUE(plain->IsCanceled());
  EXPECT_EQ(plain->GetDisplayName(), typeid(orvix1::tasks::DefaultTaskImpl).name());

  // A GUI task's start does the whole job and cancels the rest.
  EXPECT_FALSE(gui->IsCanceled());
  gui->TaskStarted();
  EXPECT_EQ(gui->runs, 1);
  EXPECT_TRUE(gui->IsCanceled());
}

TEST(TaskTest, WaitOnTheGuiThreadAssertsAndReturns) {
  orvix1_test::take_asserts();
  talvar2::intrusive_pointer_t<orvix1::tasks::WaitableTask> task(new orvix1::tasks::WaitableTask);
  task->Wait();  // unfinished: it would block for ever without the check
  const auto asserts = orvix1_test::take_asserts();
  ASSERT_EQ(asserts.size(), 1u);
  EXPECT_EQ(asserts[0].condition, "wxThread::IsMain() == false");
  EXPECT_EQ(asserts[0].function, "Wait");
  EXPECT_FALSE(task->IsFinished());
}

}  // namespace
