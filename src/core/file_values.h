#ifndef ORVIX1_SRC_FILE_VALUES_H
#define ORVIX1_SRC_FILE_VALUES_H

// Rules for values that come from files the program does not control
// (resource archives, palette files). wx takes any text and asserts on some
// of it, or builds absurd objects from it: a value is checked here first,
// and wx only ever sees text of the forms it handles.

#include <wx/colour.h>
#include <wx/string.h>

namespace orvix1 {
namespace detail {

// Longest text value taken from a file (captions, tooltips, face lists).
constexpr std::size_t k_max_text_length = 4096;

// Text without control characters other than tab and newline, at most
// `max_length` characters.
bool is_plain_text(const wxString& text, std::size_t max_length = k_max_text_length);

// An identifier-like name: a letter or '_' first, then letters, digits and
// "_-.:/@" ("@" for the "@2x" twins of pictures); at most 128 characters.
// Excludes everything wx reads as syntax in names ("[", "]", ",") and
// numbers, which wx takes as window ids.
bool is_safe_name(const wxString& name);

// A colour as files write it: "#RRGGBB", "#RRGGBBAA", "rgb(r, g, b)",
// "rgba(r, g, b, a)" (a from 0 to 1) or a name the colour database knows.
// False, leaving `colour` alone, for anything else.
bool parse_colour_text(const wxString& text, wxColour& colour);

// A decimal number ("12", "10.5") from `low` to `high`, without exponent.
bool parse_bounded_number(const wxString& text, double low, double high, double& number);

// Font sizes a file may ask for, in points.
constexpr double k_min_font_points = 1;
constexpr double k_max_font_points = 400;

// A font description as the palette file writes it ("Sans Bold 10"):
// plain text of reasonable length with a family and a size in range.
bool is_sane_font_description(const wxString& text);

}  // namespace detail
}  // namespace orvix1

#endif
