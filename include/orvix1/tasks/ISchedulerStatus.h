#ifndef ORVIX1_TASKS_ISCHEDULERSTATUS_H
#define ORVIX1_TASKS_ISCHEDULERSTATUS_H
/// @file
/// The progress of an application-side operation that a WaitDialog can watch
/// instead of a scheduler's own operation status.

#include "orvix1/export.h"

namespace orvix1 {
namespace tasks {
/// The progress of an application-side operation that a WaitDialog can watch.
class ORVIX1_API ISchedulerStatus {
 public:
  virtual ~ISchedulerStatus();
  virtual bool IsFinished() = 0;
};

}  // namespace tasks
}  // namespace orvix1

#endif
