#ifndef TALVAR2_THREADING_DEFAULT_TASK_H
#define TALVAR2_THREADING_DEFAULT_TASK_H
/// @file
/// The ordinary task: a list of stages built with push_stage and
/// push_finalization_stage, and a cancel flag. Subclasses that keep their
/// canceled state elsewhere override cancel() and is_canceled() together.

#include <atomic>
#include <mutex>
#include <string>

#include "talvar2/export.h"
#include "talvar2/threading/stage.h"
#include "talvar2/threading/task.h"

namespace talvar2 {
namespace threading {
/// The ordinary task: a list of stages and a cancel flag.
class TALVAR2_API default_task_t : public task_t {
 public:
  /// Reports under the name of its dynamic type.
  default_task_t() = default;
  explicit default_task_t(std::string display_name);
  ~default_task_t() override;

  /// Appends an ordinary stage: skipped once the task is canceled or an
  /// earlier stage threw. A null stage is a misuse: reported and ignored.
  void push_stage(const stage_ptr_t& stage);
  /// Appends a finalization stage: it runs in its place in the list whatever
  /// happened before it.
  void push_finalization_stage(const stage_ptr_t& stage);

  void cancel() override;
  bool is_canceled() const override;
  /// The name given at construction, or else the demangled dynamic type name.
  std::string display_name() const override;
  stage_list_t stages() const override;

 private:
  void push(const stage_ptr_t& stage, bool finalization);

  mutable std::mutex m_stages_mutex;
  stage_list_t m_stages;
  std::atomic<bool> m_canceled{false};
  std::string m_display_name;
};

}  // namespace threading
}  // namespace talvar2

#endif
