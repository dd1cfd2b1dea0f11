#include "elements/pixbuf_animation.h"

#include <string>

#include "resources/image_decoding.h"

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

struct declared_size_t {
  int width = 0;
  int height = 0;
  bool refused = false;
};

void check_declared_size(GdkPixbufLoader* loader, gint width, gint height, gpointer data) {
  auto* size = static_cast<declared_size_t*>(data);
  size->width = width;
  size->height = height;
  if (static_cast<std::int64_t>(width) * height > detail::k_most_pixels) {
    size->refused = true;
    // A zero size tells the decoder to stop before it allocates anything.
    gdk_pixbuf_loader_set_size(loader, 0, 0);
  }
}

}  // namespace

GdkPixbufAnimation* load_animation(const std::string& bytes, std::string& error) {
  // GdkPixbuf allocates whatever a header declares and fails on some GIF
  // frames: the bytes are probed first (image_decoding.h); the declared size
  // is checked again as the decoder reads it.
  error = detail::probe_picture(bytes.data(), bytes.size()).problem;
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
            std::to_string(detail::k_most_pixels) + " decoded";
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
