#ifndef ORVIX1_ERROR_DIALOG_H
#define ORVIX1_ERROR_DIALOG_H
/// @file
/// The process-wide error dialog: a modeless window that collects the error
/// messages reported to the user until they close it. It opens centred over
/// its owner and follows the palette: font_normal (1) on color_face (1) in
/// color_button_text (6), the messages on color_window_bg (0) in
/// color_window_text (7).

#include <string>

#include <wx/dialog.h>

#include "orvix1/export.h"

namespace orvix1 {

/// Shows `message` in the error dialog, creating it on first use (under
/// `parent`, or without a parent) and appending to it while it is open. The
/// message is also logged at error level.
ORVIX1_API void show_error_dlg(const std::string& message, wxWindow* parent = nullptr);

/// The open error dialog, or null.
ORVIX1_API wxDialog* get_error_dlg();

/// Destroys the error dialog if it exists.
ORVIX1_API void destroy_error_dlg();

}  // namespace orvix1

#endif
