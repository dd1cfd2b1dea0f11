#ifndef ORVIX1_SRC_READ_TO_END_H
#define ORVIX1_SRC_READ_TO_END_H

#include <cstddef>
#include <limits>

#include <wx/stream.h>

namespace orvix1 {
namespace detail {

// Reads `stream` to its end into `bytes` (a byte container: std::string or a
// vector of char-sized elements). False, leaving `bytes` as it was, when the
// stream holds more than `most` bytes or fails before its end: decoders
// given a cut file fail in ways wx does not always survive, so a file is
// read whole before it is decoded.
template <class Bytes>
bool read_to_end(wxInputStream& stream, Bytes& bytes,
                 std::size_t most = std::numeric_limits<std::size_t>::max()) {
  Bytes content;
  char buffer[16384];
  do {
    stream.Read(buffer, sizeof buffer);
    content.insert(content.end(), buffer, buffer + stream.LastRead());
    if (content.size() > most) return false;
  } while (stream.IsOk() && stream.LastRead() > 0);
  if (stream.GetLastError() != wxSTREAM_EOF) return false;
  bytes.swap(content);
  return true;
}

}  // namespace detail
}  // namespace orvix1

#endif
