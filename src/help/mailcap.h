#ifndef ORVIX1_SRC_MAILCAP_H
#define ORVIX1_SRC_MAILCAP_H

// The PDF viewers a mailcap file names. The names go to the process
// launcher, so whatever the file holds is checked first: a damaged or hostile
// file can make the lookup fail but never hands odd bytes to exec.

#include <cstddef>
#include <istream>
#include <string>
#include <vector>

#include "orvix1/export.h"

namespace orvix1 {
namespace detail {

// Lines longer than this are skipped: no real entry comes near it.
constexpr std::size_t k_mailcap_longest_line = 4096;
// Reading stops here; a mailcap file is a few kilobytes.
constexpr std::size_t k_mailcap_largest_file = 1024 * 1024;
// Viewer names (a program name or a path) longer than this are skipped.
constexpr std::size_t k_mailcap_longest_viewer = 1024;

// The viewers of the lines holding "application/pdf;", in file order: the
// command after that marker, trimmed, up to its first space (the viewer gets
// the file as its only argument). A line or name that breaks the limits
// above, and a name that is not UTF-8 or holds a control character, is
// skipped with a warning naming `source` and the line; a file larger than
// the limit is read up to it, with one warning.
//
// Exported for the fuzz targets only: this header is not installed.
ORVIX1_API std::vector<std::string> mailcap_pdf_viewers(std::istream& in,
                                                        const std::string& source);

}  // namespace detail
}  // namespace orvix1

#endif
