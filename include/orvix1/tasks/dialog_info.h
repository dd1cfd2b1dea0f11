#ifndef ORVIX1_TASKS_DIALOG_INFO_H
#define ORVIX1_TASKS_DIALOG_INFO_H
/// @file
/// What a please-wait dialog shows while the GUI thread waits for work.

#include <string>

#include <wx/animate.h>

#include "orvix1/export.h"

namespace orvix1 {
namespace tasks {
/// What a please-wait dialog shows while the GUI thread waits for work.
struct ORVIX1_API dialog_info_t {
  wxAnimation animation;  ///< the busy animation; empty when none
  std::string caption;    ///< window title
  std::string title;      ///< bold first line
  std::string text;       ///< the explanatory message

  /// Nothing to show: wait without a dialog.
  bool empty() const;
};

/// Whether `animation` has frames to play. The native GTK animation keeps its
/// frames to itself (it reports none), so a loaded animation counts as one
/// with frames.
ORVIX1_API bool has_frames(const wxAnimation& animation);

}  // namespace tasks
}  // namespace orvix1

#endif
