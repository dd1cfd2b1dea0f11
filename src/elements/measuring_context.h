#ifndef ORVIX1_SRC_ELEMENTS_MEASURING_CONTEXT_H
#define ORVIX1_SRC_ELEMENTS_MEASURING_CONTEXT_H
// The context text elements measure with outside a paint pass. Making a
// client context costs half as much as measuring a short label, so one
// context per window is kept and shared until the event loop next handles
// pending events, or the window dies. It measures exactly as a new context
// on the same window would: it is one.

#include <wx/dc.h>
#include <wx/font.h>
#include <wx/gdicmn.h>
#include <wx/string.h>
#include <wx/window.h>

namespace orvix1 {
namespace elements {
namespace detail {

/// The shared context of `window` (the screen's for null). Set the font
/// before measuring: other elements leave theirs.
wxDC& measuring_context(wxWindow* window);
/// Whether `dc` is one of the shared contexts (which nobody deletes).
bool is_measuring_context(const wxDC* dc);
/// The extent of one line of `text` in `font`, exactly as the shared context
/// of `window` gives it: (0, 0) for an empty text.
wxSize measure_line(wxWindow* window, const wxFont& font, const wxString& text);

}  // namespace detail
}  // namespace elements
}  // namespace orvix1

#endif
