#ifndef ORVIX1_TEXT_UTILS_H
#define ORVIX1_TEXT_UTILS_H
/// @file
/// Measuring, shortening and wrapping text, and drawing the native check box
/// in owner-drawn widgets.

#include <wx/dc.h>
#include <wx/font.h>
#include <wx/gdicmn.h>
#include <wx/string.h>
#include <wx/window.h>

#include "orvix1/export.h"

namespace orvix1 {

/// The extent of `text` in the DC's current font; several lines are measured
/// as a block. An empty text is (0, 0).
ORVIX1_API wxSize GetTextSize(wxDC& dc, const wxString& text);
/// The same in `font` (the window's font when `font` is null) on a client DC
/// of `window`, or on the screen when `window` is null.
ORVIX1_API wxSize GetTextSize(const wxWindow* window, const wxString& text,
                              const wxFont& font = wxNullFont);

/// `text` when it fits `width` in the DC's font; otherwise its longest head
/// that fits with "..." appended, or "" when not even the dots fit.
///
/// This and wrap_text cut between characters, never inside one: a wxString
/// is cut by code points, so its UTF-8 form stays valid (the library's rule,
/// as in elements::TextElement::AddEllipsis).
ORVIX1_API wxString elide_text(wxDC& dc, const wxString& text, int width);

/// `text` broken into lines no wider than `width` in the DC's font, joined
/// with '\n'. Lines break at spaces; a word wider than `width` is cut where it
/// overflows. Line breaks already in the text are kept.
ORVIX1_API wxString wrap_text(wxDC& dc, const wxString& text, int width);

/// The native check box's size for `window`.
ORVIX1_API wxSize GetNativeCheckBoxSize(wxWindow* window);
/// Draws the native check box centred in `rect`.
ORVIX1_API void DrawNativeCheckBox(wxWindow* window, wxDC& dc, const wxRect& rect, bool checked,
                                   bool disabled);

}  // namespace orvix1

#endif
