#include "orvix1/tasks/dialog_info.h"

namespace orvix1 {
namespace tasks {

bool has_frames(const wxAnimation& animation) {
  return animation.IsOk() && (animation.GetFrameCount() > 0 || animation.GetSize() != wxSize(0, 0));
}

bool dialog_info_t::empty() const {
  return !has_frames(animation) && caption.empty() && title.empty() && text.empty();
}

}  // namespace tasks
}  // namespace orvix1
