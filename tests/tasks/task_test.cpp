#include <typeinfo>

#include <gtest/gtest.h>

#include "orvix1/tasks/ITask.h"

namespace {

using orvix1::tasks::DefaultTaskImpl;
using orvix1::tasks::WaitableTask;

TEST(TaskTest, EachKindChoosesItsThreadAndIsNamedAfterItsType) {
  struct gui_task_t : orvix1::tasks::GUITask {
    void DoGUITask() override {}
  };
  orvix1::tasks::ITaskPtr plain(new DefaultTaskImpl), gui(new gui_task_t), waitable(new WaitableTask);
  EXPECT_TRUE(plain->IsServiceThreadNeeded() && !plain->IsLongTask());
  EXPECT_TRUE(!gui->IsServiceThreadNeeded() && !gui->IsLongTask());
  EXPECT_TRUE(waitable->IsServiceThreadNeeded() && waitable->IsLongTask());
  EXPECT_EQ(plain->GetDisplayName(), typeid(DefaultTaskImpl).name());
}

}  // namespace
