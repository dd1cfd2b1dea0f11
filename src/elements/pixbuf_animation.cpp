#include "elements/pixbuf_animation.h"

#include <string>

namespace orvix1 {
namespace elements {
namespace pixbuf {
namespace {

// wx's GTK animation control is the one class that may read the
// GdkPixbufAnimation inside a wx animation. This reader is such a control
// that never becomes a window: it only holds the animation to read it.
class native_animation_reader_t : public wxAnimationCtrl {
 public:
  explicit native_animation_reader_t(const wxAnimation& animation) { m_animation = animation; }
  GdkPixbufAnimation* animation() const { return AnimationImplGetPixbuf(); }
};

// GdkPixbuf allocates whatever size a header declares: a GIF of a few dozen
// bytes that declares 60000 x 60000 pixels takes 14 GB and half a minute.
// 8192 x 4096 pixels (a 128 MiB frame) leaves room for 8K screens.
constexpr std::int64_t k_most_pixels = 8192LL * 4096;

// Why GdkPixbuf must not see these GIF bytes, or empty. Its GIF decoder
// (2.42) fails on frames that a few mutated bytes make:
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
// The blocks are walked as the decoder walks them: bytes that start no
// block are skipped, the trailer ends the file; whatever is cut short is
// left to the decoder, which fails cleanly on it.
std::string gif_refusal(const std::string& bytes) {
  if (bytes.compare(0, 4, "GIF8") != 0 || bytes.size() < 13) return std::string();
  const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(bytes[at]); };
  const auto number = [&](std::size_t at) { return byte(at) | byte(at + 1) << 8; };
  const auto colour_table = [&](unsigned char flags) -> std::size_t {
    return (flags & 0x80) != 0 ? 3u * (2u << (flags & 7)) : 0u;
  };
  const unsigned screen_width = number(6);
  const unsigned screen_height = number(8);
  std::size_t at = 13 + colour_table(byte(10));
  // Sub-blocks: a length byte and that many bytes, up to a length of zero.
  const auto skip_sub_blocks = [&]() {
    while (at < bytes.size() && byte(at) != 0) at += 1 + byte(at);
    ++at;
  };
  // Kept from one control block to the next, as the decoder keeps it.
  unsigned disposal = 0;
  for (int frame = 1; at < bytes.size();) {
    const unsigned char introducer = byte(at++);
    if (introducer == 0x3b) break;  // the trailer
    if (introducer == 0x21) {       // an extension: its label, then sub-blocks
      if (at == bytes.size()) break;
      const unsigned char label = byte(at++);
      const bool empty_first = at >= bytes.size() || byte(at) == 0;
      // The decoder takes a control block's disposal from the first sub-block;
      // from an empty one it takes a stale byte, so any disposal may follow.
      if (label == 0xf9)
        disposal = empty_first || at + 1 >= bytes.size() ? 7u : (byte(at + 1) >> 2) & 7u;
      // It reads the first sub-block of a control or application extension
      // on its own and then sub-blocks up to an empty one: after an empty
      // first one it reads on past it.
      if ((label == 0xf9 || label == 0xff) && empty_first) ++at;
      skip_sub_blocks();
    } else if (introducer == 0x2c) {  // a frame: position, size, flags
      if (bytes.size() - at < 9) break;
      const unsigned left = number(at);
      const unsigned top = number(at + 2);
      const unsigned width = number(at + 4);
      const unsigned height = number(at + 6);
      const std::string which = "frame " + std::to_string(frame) + " of the GIF (" +
                                std::to_string(width) + " x " + std::to_string(height) +
                                " at " + std::to_string(left) + ", " + std::to_string(top) + ")";
      if (width == 0 || height == 0) return which + " has no pixels";
      const bool inside = left + width <= screen_width && top + height <= screen_height;
      if (disposal >= 2 && !inside)
        return which + " is to be cleared or restored but is not wholly on the " +
               std::to_string(screen_width) + " x " + std::to_string(screen_height) + " screen";
      at += 9 + colour_table(byte(at + 8)) + 1;  // and the LZW code size
      skip_sub_blocks();
      ++frame;
    }
    // Any other byte starts nothing: the decoder reads on past it.
  }
  return std::string();
}

struct declared_size_t {
  int width = 0;
  int height = 0;
  bool refused = false;
};

void check_declared_size(GdkPixbufLoader* loader, gint width, gint height, gpointer data) {
  auto* size = static_cast<declared_size_t*>(data);
  size->width = width;
  size->height = height;
  if (static_cast<std::int64_t>(width) * height > k_most_pixels) {
    size->refused = true;
    // A zero size tells the decoder to stop before it allocates anything.
    gdk_pixbuf_loader_set_size(loader, 0, 0);
  }
}

}  // namespace

GdkPixbufAnimation* load_animation(const std::string& bytes, std::string& error) {
  error = gif_refusal(bytes);
  if (!error.empty()) return nullptr;
  GdkPixbufLoader* loader = gdk_pixbuf_loader_new();
  declared_size_t size;
  g_signal_connect(loader, "size-prepared", G_CALLBACK(check_declared_size), &size);
  GError* failure = nullptr;
  const bool written = gdk_pixbuf_loader_write(
      loader, reinterpret_cast<const guchar*>(bytes.data()), bytes.size(), &failure);
  // A loader is always closed; after a failed write its complaint adds nothing.
  const bool closed = gdk_pixbuf_loader_close(loader, written ? &failure : nullptr);
  GdkPixbufAnimation* animation = nullptr;
  if (written && closed && !size.refused) {
    animation = gdk_pixbuf_loader_get_animation(loader);
    if (animation != nullptr) g_object_ref(animation);
  }
  if (size.refused) {
    error = "the picture declares " + std::to_string(size.width) + " x " +
            std::to_string(size.height) + " pixels, more than the " +
            std::to_string(k_most_pixels) + " decoded";
  } else if (animation == nullptr) {
    error = failure != nullptr ? failure->message : "the data holds no picture";
  }
  if (failure != nullptr) g_error_free(failure);
  g_object_unref(loader);
  return animation;
}

GdkPixbufAnimation* animation_of(const wxAnimation& animation) {
  // A generic animation has no GdkPixbufAnimation behind it.
  if (!animation.IsOk() || !animation.IsCompatibleWith(wxCLASSINFO(wxAnimationCtrl)))
    return nullptr;
  const native_animation_reader_t reader(animation);
  GdkPixbufAnimation* pixbufs = reader.animation();
  if (pixbufs != nullptr) g_object_ref(pixbufs);
  return pixbufs;
}

// The iterator's interface takes the old GLib time value.
G_GNUC_BEGIN_IGNORE_DEPRECATIONS

namespace {

GTimeVal to_time_val(std::int64_t microseconds) {
  GTimeVal time;
  time.tv_sec = static_cast<glong>(microseconds / G_USEC_PER_SEC);
  time.tv_usec = static_cast<glong>(microseconds % G_USEC_PER_SEC);
  return time;
}

}  // namespace

GdkPixbufAnimationIter* start_iter(GdkPixbufAnimation* animation, std::int64_t start_us) {
  const GTimeVal start = to_time_val(start_us);
  return gdk_pixbuf_animation_get_iter(animation, &start);
}

bool advance_iter(GdkPixbufAnimationIter* iter, std::int64_t now_us) {
  const GTimeVal now = to_time_val(now_us);
  return gdk_pixbuf_animation_iter_advance(iter, &now);
}

G_GNUC_END_IGNORE_DEPRECATIONS

wxImage to_image(GdkPixbuf* frame) {
  if (frame == nullptr || gdk_pixbuf_get_bits_per_sample(frame) != 8 ||
      gdk_pixbuf_get_colorspace(frame) != GDK_COLORSPACE_RGB)
    return wxImage();
  const int width = gdk_pixbuf_get_width(frame);
  const int height = gdk_pixbuf_get_height(frame);
  const int stride = gdk_pixbuf_get_rowstride(frame);
  const int channels = gdk_pixbuf_get_n_channels(frame);
  const bool has_alpha = gdk_pixbuf_get_has_alpha(frame);
  const guchar* pixels = gdk_pixbuf_read_pixels(frame);

  wxImage image(width, height, false);
  if (has_alpha) image.InitAlpha();
  unsigned char* rgb = image.GetData();
  unsigned char* alpha = image.GetAlpha();
  for (int y = 0; y < height; ++y) {
    const guchar* source = pixels + static_cast<std::ptrdiff_t>(y) * stride;
    for (int x = 0; x < width; ++x, source += channels) {
      *rgb++ = source[0];
      *rgb++ = source[1];
      *rgb++ = source[2];
      if (has_alpha) *alpha++ = source[3];
    }
  }
  return image;
}

}  // namespace pixbuf
}  // namespace elements
}  // namespace orvix1
