#include "resources/image_decoding.h"

#include <cstdlib>
#include <cstring>

#include <wx/mstream.h>

#include "core/wx_log_capture.h"

namespace orvix1 {
namespace detail {
namespace {

// Limits of the formats' own tables, far above anything drawn on a screen.
constexpr std::uint32_t k_most_palette_colours = 256;
constexpr std::uint32_t k_most_icon_images = 256;
constexpr std::uint32_t k_most_xpm_colours = 65536;
constexpr std::uint32_t k_most_xpm_chars_per_pixel = 4;
constexpr std::uint32_t k_most_gif_frames = 10000;

// Reads little- and big-endian numbers at offsets, each access checked.
class bytes_t {
 public:
  bytes_t(const char* data, std::size_t size)
      : m_data(reinterpret_cast<const unsigned char*>(data)), m_size(size) {}

  bool has(std::size_t at, std::size_t count) const {
    return at <= m_size && count <= m_size - at;
  }
  bool starts_with(std::size_t at, const char* magic, std::size_t count) const {
    return has(at, count) && std::memcmp(m_data + at, magic, count) == 0;
  }
  std::uint32_t u8(std::size_t at) const { return m_data[at]; }
  std::uint32_t le16(std::size_t at) const { return u8(at) | u8(at + 1) << 8; }
  std::uint32_t be16(std::size_t at) const { return u8(at) << 8 | u8(at + 1); }
  std::uint32_t le32(std::size_t at) const { return le16(at) | le16(at + 2) << 16; }
  std::uint32_t be32(std::size_t at) const { return be16(at) << 16 | be16(at + 2); }
  std::size_t size() const { return m_size; }
  const unsigned char* data() const { return m_data; }

 private:
  const unsigned char* m_data;
  std::size_t m_size;
};

std::string size_problem(std::int64_t width, std::int64_t height) {
  // Each side first: the product of two 32-bit sizes overflows.
  if (width < 0 || height < 0 || width > k_most_pixels || height > k_most_pixels ||
      width * height > k_most_pixels)
    return "it declares " + std::to_string(width) + " x " + std::to_string(height) +
           " pixels, more than the " + std::to_string(k_most_pixels) + " decoded";
  return std::string();
}

// Windows bitmaps store a signed height (negative: top-down rows).
std::int64_t signed_extent(std::uint32_t value) {
  return std::llabs(static_cast<std::int64_t>(static_cast<std::int32_t>(value)));
}

// A device-independent bitmap header at `at` (inside a BMP file or an icon);
// icons store twice the height (the mask follows the colours).
std::string dib_problem(const bytes_t& bytes, std::size_t at, bool icon) {
  if (!bytes.has(at, 4)) return "its bitmap header is cut off";
  const std::uint32_t header_size = bytes.le32(at);
  if (header_size == 12) {
    if (!bytes.has(at, 12)) return "its bitmap header is cut off";
    return size_problem(bytes.le16(at + 4), bytes.le16(at + 6) / (icon ? 2 : 1));
  }
  if (header_size < 40 || !bytes.has(at, 40)) return "its bitmap header is cut off";
  if (bytes.le32(at + 32) > k_most_palette_colours) return "its palette is larger than 256";
  return size_problem(signed_extent(bytes.le32(at + 4)),
                      signed_extent(bytes.le32(at + 8)) / (icon ? 2 : 1));
}

std::string png_problem(const bytes_t& bytes, std::size_t at) {
  if (!bytes.has(at, 24) || !bytes.starts_with(at + 12, "IHDR", 4)) return "it has no PNG header";
  return size_problem(bytes.be32(at + 16), bytes.be32(at + 20));
}

bool is_png(const bytes_t& bytes, std::size_t at) {
  return bytes.starts_with(at, "\x89PNG\r\n\x1a\n", 8);
}

std::size_t gif_colour_table_size(std::uint32_t flags) {
  return (flags & 0x80) != 0 ? 3u << ((flags & 7) + 1) : 0;
}

// Skips GIF data sub-blocks (a length byte and that many bytes) up to an
// empty one.
std::size_t skip_gif_sub_blocks(const bytes_t& bytes, std::size_t at) {
  while (bytes.has(at, 1) && bytes.u8(at) != 0) at += 1 + bytes.u8(at);
  return at + 1;
}

// The screen and every frame. wx's decoder keeps every frame at its own
// size; GdkPixbuf's (2.42) also fails on frames that a few mutated bytes
// make:
// - a frame of zero width or height: a GLib critical, then a frame made of
//   nothing;
// - a frame to be cleared afterwards (disposal 2) that starts right of the
//   screen: a memset of negative size, a crash when the next frame is
//   composed;
// - a frame to be restored afterwards (disposal 3) that crosses an edge of
//   the screen: criticals, and frames composed from nothing.
// So frames without pixels are refused, and so are frames to be cleared or
// restored that are not wholly on the screen. Frames that overhang the
// screen and stay in place are common and harmless.
// The blocks are walked as GdkPixbuf walks them: bytes that start no block
// are skipped, the trailer ends the file; whatever is cut short is left to
// the decoders, which fail cleanly on it.
// One walk through a GIF's blocks; what a block decides, the next ones see.
class gif_walk_t {
 public:
  explicit gif_walk_t(const bytes_t& bytes)
      : m_bytes(bytes), m_screen_width(bytes.le16(6)), m_screen_height(bytes.le16(8)) {}

  std::string problem() {
    std::string problem = size_problem(m_screen_width, m_screen_height);
    std::size_t at = 13 + gif_colour_table_size(m_bytes.u8(10));
    while (problem.empty() && m_bytes.has(at, 1)) {
      const std::uint32_t introducer = m_bytes.u8(at++);
      if (introducer == 0x3b) break;  // the trailer
      if (introducer == 0x21) {       // an extension: its label, then sub-blocks
        if (!m_bytes.has(at, 1)) break;
        at = skip_extension(at);
      } else if (introducer == 0x2c) {  // a frame: position, size, flags
        if (!m_bytes.has(at, 9)) break;
        problem = frame_problem(at);
        at = skip_gif_sub_blocks(m_bytes, at + 9 + gif_colour_table_size(m_bytes.u8(at + 8)) + 1);
      }
      // Any other byte starts nothing: the decoder reads on past it.
    }
    return problem;
  }

 private:
  // `at` is the extension's label; returns where the next block starts.
  std::size_t skip_extension(std::size_t at) {
    const std::uint32_t label = m_bytes.u8(at++);
    const bool empty_first = !m_bytes.has(at, 1) || m_bytes.u8(at) == 0;
    // A control block's disposal comes from its first sub-block; from an
    // empty one GdkPixbuf takes a stale byte, so any disposal may follow.
    if (label == 0xf9)
      m_disposal = empty_first || !m_bytes.has(at + 1, 1) ? 7 : (m_bytes.u8(at + 1) >> 2) & 7;
    // The first sub-block of a control or application extension is read on
    // its own, then sub-blocks up to an empty one: after an empty first one
    // the decoder reads on past it.
    if ((label == 0xf9 || label == 0xff) && empty_first) ++at;
    return skip_gif_sub_blocks(m_bytes, at);
  }

  std::string frame_problem(std::size_t at) {
    const std::int64_t left = m_bytes.le16(at), top = m_bytes.le16(at + 2);
    const std::int64_t width = m_bytes.le16(at + 4), height = m_bytes.le16(at + 6);
    ++m_frames;
    m_pixels += width * height;
    const std::string which = "frame " + std::to_string(m_frames) + " of the GIF (" +
                              std::to_string(width) + " x " + std::to_string(height) + " at " +
                              std::to_string(left) + ", " + std::to_string(top) + ")";
    std::string problem = size_problem(width, height);
    if (problem.empty() && (width == 0 || height == 0)) return which + " has no pixels";
    if (problem.empty() && m_disposal >= 2 &&
        (left + width > m_screen_width || top + height > m_screen_height))
      return which + " is to be cleared or restored but is not wholly on the " +
             std::to_string(m_screen_width) + " x " + std::to_string(m_screen_height) + " screen";
    if (problem.empty() && m_frames > k_most_gif_frames)
      return "it has more than " + std::to_string(k_most_gif_frames) + " frames";
    if (problem.empty() && m_pixels > k_most_animation_pixels)
      return "its frames together declare more than " + std::to_string(k_most_animation_pixels) +
             " pixels";
    return problem;
  }

  const bytes_t& m_bytes;
  const std::int64_t m_screen_width;
  const std::int64_t m_screen_height;
  std::int64_t m_pixels = 0;
  std::uint32_t m_frames = 0;
  // Kept from one control block to the next, as the decoder keeps it.
  std::uint32_t m_disposal = 0;
};

std::string gif_problem(const bytes_t& bytes) {
  if (!bytes.has(0, 13)) return "its GIF header is cut off";
  return gif_walk_t(bytes).problem();
}

// The first frame header, as the decoder takes it.
std::string jpeg_problem(const bytes_t& bytes) {
  std::size_t at = 2;
  while (bytes.has(at, 4)) {
    if (bytes.u8(at) != 0xff) return "its JPEG markers are damaged";
    const std::uint32_t marker = bytes.u8(at + 1);
    if (marker == 0xff) {
      ++at;  // fill byte
      continue;
    }
    if (marker == 0x01 || (marker >= 0xd0 && marker <= 0xd8)) {
      at += 2;  // markers without a length
      continue;
    }
    const bool frame_header = marker >= 0xc0 && marker <= 0xcf && marker != 0xc4 &&
                              marker != 0xc8 && marker != 0xcc;
    if (frame_header) {
      if (!bytes.has(at, 9)) break;
      return size_problem(bytes.be16(at + 7), bytes.be16(at + 5));
    }
    if (marker == 0xda || marker == 0xd9) break;
    at += 2 + bytes.be16(at + 2);
  }
  return "it has no JPEG frame header";
}

std::string icon_problem(const bytes_t& bytes) {
  const std::uint32_t count = bytes.le16(4);
  if (count == 0 || count > k_most_icon_images) return "its image count is out of range";
  for (std::uint32_t i = 0; i < count; ++i) {
    const std::size_t entry = 6 + 16 * static_cast<std::size_t>(i);
    if (!bytes.has(entry, 16)) return "its directory is cut off";
    const std::size_t offset = bytes.le32(entry + 12);
    const std::string problem =
        is_png(bytes, offset) ? png_problem(bytes, offset) : dib_problem(bytes, offset, true);
    if (!problem.empty()) return problem;
  }
  return std::string();
}

// Whitespace and "#" comments between the numbers of a PNM header.
bool read_pnm_number(const bytes_t& bytes, std::size_t& at, std::int64_t& number) {
  while (bytes.has(at, 1)) {
    const char c = static_cast<char>(bytes.u8(at));
    if (c == '#') {
      while (bytes.has(at, 1) && bytes.u8(at) != '\n') ++at;
    } else if (c == ' ' || c == '\t' || c == '\r' || c == '\n') {
      ++at;
    } else {
      break;
    }
  }
  number = 0;
  std::size_t digits = 0;
  for (; bytes.has(at, 1) && bytes.u8(at) >= '0' && bytes.u8(at) <= '9'; ++at, ++digits) {
    if (digits == 9) return false;
    number = number * 10 + (bytes.u8(at) - '0');
  }
  return digits > 0;
}

std::string pnm_problem(const bytes_t& bytes) {
  std::size_t at = 2;
  std::int64_t width = 0;
  std::int64_t height = 0;
  if (!read_pnm_number(bytes, at, width) || !read_pnm_number(bytes, at, height))
    return "its PNM header is damaged";
  return size_problem(width, height);
}

// The values line of an XPM file: "width height colours chars-per-pixel".
std::string xpm_problem(const bytes_t& bytes) {
  const void* quote = std::memchr(bytes.data(), '"', bytes.size());
  if (quote == nullptr) return "it has no XPM values";
  std::size_t at = static_cast<const unsigned char*>(quote) - bytes.data() + 1;
  std::int64_t values[4] = {};
  for (std::int64_t& value : values)
    if (!read_pnm_number(bytes, at, value)) return "its XPM values are damaged";
  if (values[2] > k_most_xpm_colours || values[3] < 1 || values[3] > k_most_xpm_chars_per_pixel)
    return "its XPM colour table is out of range";
  return size_problem(values[0], values[1]);
}

// Probes, then runs `load(value, stream, type)` over the bytes; wx's
// complaints become the reason.
template <class T, class Load>
bool decode_probed(const char* data, std::size_t size, T& value, std::string& reason, Load load) {
  const picture_probe_t probe = probe_picture(data, size);
  if (!probe.problem.empty()) {
    reason = probe.problem;
    return false;
  }
  wxMemoryInputStream stream(data, size);
  const wx_log_capture_t capture;
  T decoded;
  if (!load(decoded, stream, probe.type) || !decoded.IsOk()) {
    reason = capture.text().empty() ? "the decoder failed" : capture.text().utf8_string();
    return false;
  }
  value = decoded;
  return true;
}

}  // namespace

picture_probe_t probe_picture(const char* data, std::size_t size) {
  const bytes_t bytes(data, size);
  picture_probe_t probe;
  if (size > k_most_picture_bytes) {
    probe.problem = "the file is larger than " + std::to_string(k_most_picture_bytes) + " bytes";
  } else if (is_png(bytes, 0)) {
    probe = {wxBITMAP_TYPE_PNG, png_problem(bytes, 0)};
  } else if (bytes.starts_with(0, "GIF87a", 6) || bytes.starts_with(0, "GIF89a", 6)) {
    probe = {wxBITMAP_TYPE_GIF, gif_problem(bytes)};
  } else if (bytes.starts_with(0, "\xff\xd8", 2)) {
    probe = {wxBITMAP_TYPE_JPEG, jpeg_problem(bytes)};
  } else if (bytes.starts_with(0, "BM", 2)) {
    probe = {wxBITMAP_TYPE_BMP, dib_problem(bytes, 14, false)};
  } else if (bytes.starts_with(0, "\0\0\1\0", 4) || bytes.starts_with(0, "\0\0\2\0", 4)) {
    probe = {bytes.u8(2) == 1 ? wxBITMAP_TYPE_ICO : wxBITMAP_TYPE_CUR, icon_problem(bytes)};
  } else if (bytes.has(0, 2) && bytes.u8(0) == 'P' && bytes.u8(1) >= '1' && bytes.u8(1) <= '6') {
    probe = {wxBITMAP_TYPE_PNM, pnm_problem(bytes)};
  } else if (bytes.starts_with(0, "/* XPM */", 9)) {
    probe = {wxBITMAP_TYPE_XPM, xpm_problem(bytes)};
  } else {
    probe.problem = "it is not a PNG, JPEG, GIF, BMP, ICO, CUR, PNM or XPM picture";
  }
  return probe;
}

bool decode_image(const char* data, std::size_t size, wxImage& image, std::string& reason) {
  return decode_probed(data, size, image, reason, [](wxImage& value, wxInputStream& stream,
                                                     wxBitmapType type) {
    return value.LoadFile(stream, type);
  });
}

bool decode_animation(const char* data, std::size_t size, wxAnimation& animation,
                      std::string& reason) {
  // wx hands animations to GdkPixbuf, which recognises the format itself.
  return decode_probed(data, size, animation, reason,
                       [](wxAnimation& value, wxInputStream& stream, wxBitmapType) {
                         return value.Load(stream, wxANIMATION_TYPE_ANY);
                       });
}

}  // namespace detail
}  // namespace orvix1
