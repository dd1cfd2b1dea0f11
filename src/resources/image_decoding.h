#ifndef ORVIX1_SRC_IMAGE_DECODING_H
#define ORVIX1_SRC_IMAGE_DECODING_H

// Pictures and animations from bytes the program does not control. wx's
// decoders allocate whatever a header declares (a 60-byte PNM asking for
// 30000 x 30000 pixels fails the allocation and then asserts on the invalid
// image; one asking for less just takes gigabytes), and wx picks a decoder
// by trying each in turn. Here the format is recognised first, its declared
// sizes are read and bounded, and only then does that one decoder run.

#include <cstddef>
#include <cstdint>
#include <string>

#include <wx/animate.h>
#include <wx/image.h>

namespace orvix1 {
namespace detail {

// Largest picture decoded: 8192 x 4096 pixels (a 128 MiB frame), room for
// 8K screens. An animation's frames together may hold four times as much.
constexpr std::int64_t k_most_pixels = 8192LL * 4096;
constexpr std::int64_t k_most_animation_pixels = 4 * k_most_pixels;
// Largest picture file read.
constexpr std::size_t k_most_picture_bytes = 64u << 20;

struct picture_probe_t {
  wxBitmapType type = wxBITMAP_TYPE_INVALID;  // the one decoder to use
  std::string problem;                        // empty when the bytes may be decoded
};

// The format of the bytes (PNG, JPEG, GIF, BMP, ICO, CUR, PNM or XPM) and
// whether every size it declares is within the bounds above.
picture_probe_t probe_picture(const char* data, std::size_t size);

// Decodes with the probed format's decoder; false with the reason when the
// probe refuses the bytes or the decoder fails.
bool decode_image(const char* data, std::size_t size, wxImage& image, std::string& reason);
bool decode_animation(const char* data, std::size_t size, wxAnimation& animation,
                      std::string& reason);

}  // namespace detail
}  // namespace orvix1

#endif
