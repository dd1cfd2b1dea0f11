// The task classes on their own.

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
  struct kind_t {
    orvix1::tasks::ITaskPtr task;
    bool service, long_task;
  };
  kind_t kinds[] = {{new DefaultTaskImpl, true, false}, {new gui_task_t, false, false}, {new WaitableTask, true, true}};
  for (kind_t& kind : kinds) {
    EXPECT_EQ(kind.service, kind.task->IsServiceThreadNeeded()) << kind.task->GetDisplayName();
    EXPECT_EQ(kind.long_task, kind.task->IsLongTask()) << kind.task->GetDisplayName();
  }
  EXPECT_EQ(kinds[0].task->GetDisplayName(), typeid(DefaultTaskImpl).name());
}

}  // namespace
