#include "orvix1/image_helpers.h"

#include <cstdlib>
#include <cstring>

#include <wx/gdicmn.h>
#include <wx/settings.h>

#include "core/log.h"
#include "core/contract_sites.h"

namespace orvix1 {

namespace {

// The RGB and alpha buffers of an image being built, malloc'd because
// wxImage takes ownership of malloc'd buffers and frees them itself.
class pixel_buffers_t {
 public:
  pixel_buffers_t(int width, int height)
      : m_width(width),
        m_height(height),
        m_count(static_cast<size_t>(width) * static_cast<size_t>(height)),
        m_rgb(static_cast<unsigned char*>(std::malloc(m_count * 3))),
        m_alpha(static_cast<unsigned char*>(std::malloc(m_count))) {}
  ~pixel_buffers_t() {
    std::free(m_rgb);
    std::free(m_alpha);
  }
  pixel_buffers_t(const pixel_buffers_t&) = delete;
  pixel_buffers_t& operator=(const pixel_buffers_t&) = delete;

  // Whether both buffers were had; logs when not.
  bool allocated() const {
    if (m_rgb != nullptr && m_alpha != nullptr) return true;
    ORVIX_LOG_ERROR(log::get_logger("orvix.images"),
                    "cannot allocate the pixels of a " << m_width << "x" << m_height << " image");
    return false;
  }

  size_t count() const { return m_count; }
  unsigned char* rgb() { return m_rgb; }
  unsigned char* alpha() { return m_alpha; }

  // Hands both buffers to a new image.
  wxImage release_into_image() {
    wxImage image(m_width, m_height, m_rgb, m_alpha);
    m_rgb = nullptr;
    m_alpha = nullptr;
    return image;
  }

 private:
  int m_width;
  int m_height;
  size_t m_count;
  unsigned char* m_rgb;
  unsigned char* m_alpha;
};

// One channel laid over another by `a` in [0, 1], truncated. Single
// precision on purpose: the results are part of what callers see.
unsigned char blend(unsigned char front, unsigned char back, float a) {
  return static_cast<unsigned char>(front * a + back * (1.0f - a));
}

constexpr size_t k_missing = static_cast<size_t>(-1);

// Calls visit(i, j) for each pixel of a width x height picture: i is its
// index there, j the index of the same pixel in `other`, or k_missing where
// `other` is smaller (callers report the mismatch; what is missing reads as
// transparent black).
template <typename Visit>
void for_each_pixel(int width, int height, const wxImage& other, Visit visit) {
  const int other_width = other.GetWidth();
  const int other_height = other.GetHeight();
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const size_t i = static_cast<size_t>(y) * width + x;
      const bool covered = x < other_width && y < other_height;
      visit(i, covered ? static_cast<size_t>(y) * other_width + x : k_missing);
    }
  }
}

}  // namespace

wxImage image_helpers_t::create_watermark_image(wxImage image, const wxColour& front,
                                                const wxColour& back) {
  if (!contract_holds(image.IsOk() && image.HasAlpha(),
                      contract::site_t::watermark_image_invalid))
    return wxImage();

  pixel_buffers_t out(image.GetWidth(), image.GetHeight());
  if (!out.allocated()) return wxImage();

  // Only the shape counts: the source's own colours are ignored.
  const unsigned char* source_alpha = image.GetAlpha();
  unsigned char* rgb = out.rgb();
  for (size_t i = 0; i < out.count(); ++i) {
    const float a = source_alpha[i] / 255.0f;
    rgb[3 * i] = blend(front.Red(), back.Red(), a);
    rgb[3 * i + 1] = blend(front.Green(), back.Green(), a);
    rgb[3 * i + 2] = blend(front.Blue(), back.Blue(), a);
  }
  std::memset(out.alpha(), 255, out.count());
  return out.release_into_image();
}

wxImage image_helpers_t::create_watermark_image(wxImage image) {
  return create_watermark_image(image, wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOWTEXT),
                                wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOW));
}

wxImage image_helpers_t::create_composite_image(const wxImage& image_front,
                                                const wxImage& image_back) {
  if (!contract_holds(image_front.IsOk() && image_front.HasAlpha() && image_back.IsOk(),
                      contract::site_t::composite_images_invalid))
    return wxImage();
  const int w = image_front.GetWidth();
  const int h = image_front.GetHeight();
  contract_holds(w == image_back.GetWidth() && h == image_back.GetHeight(),
                 contract::site_t::composite_sizes_differ);

  pixel_buffers_t out(w, h);
  if (!out.allocated()) return wxImage();

  const unsigned char* front_rgb = image_front.GetData();
  const unsigned char* front_alpha = image_front.GetAlpha();
  const unsigned char* back_rgb = image_back.GetData();
  const unsigned char* back_alpha = image_back.HasAlpha() ? image_back.GetAlpha() : nullptr;
  unsigned char* rgb = out.rgb();
  unsigned char* alpha = out.alpha();
  for_each_pixel(w, h, image_back, [&](size_t i, size_t j) {
    const bool inside = j != k_missing;
    const float a = front_alpha[i] / 255.0f;
    for (size_t channel = 0; channel < 3; ++channel)
      rgb[3 * i + channel] =
          blend(front_rgb[3 * i + channel], inside ? back_rgb[3 * j + channel] : 0, a);
    // The front's alpha weighs itself here, so it enters squared.
    alpha[i] =
        back_alpha == nullptr ? 255 : blend(front_alpha[i], inside ? back_alpha[j] : 0, a);
  });
  return out.release_into_image();
}

wxImage image_helpers_t::create_alpha_image(const wxImage& image_alpha_mask,
                                            const wxImage& image) {
  if (!contract_holds(image_alpha_mask.IsOk() && image.IsOk(),
                      contract::site_t::alpha_images_invalid))
    return image;
  const int w = image_alpha_mask.GetWidth();
  const int h = image_alpha_mask.GetHeight();
  contract_holds(w == image.GetWidth() && h == image.GetHeight(),
                 contract::site_t::alpha_sizes_differ);

  pixel_buffers_t out(w, h);
  if (!out.allocated()) return wxImage();

  const unsigned char* mask_rgb = image_alpha_mask.GetData();
  const unsigned char* image_rgb = image.GetData();
  unsigned char* rgb = out.rgb();
  unsigned char* alpha = out.alpha();
  for_each_pixel(w, h, image, [&](size_t i, size_t j) {
    if (j == k_missing) {
      std::memset(rgb + 3 * i, 0, 3);
      alpha[i] = 0;
      return;
    }
    // Any red at all makes the pixel opaque: masks are two-level.
    alpha[i] = mask_rgb[3 * i] != 0 ? 255 : 0;
    std::memcpy(rgb + 3 * i, image_rgb + 3 * j, 3);
  });
  return out.release_into_image();
}

wxImage image_helpers_t::create_paletteless_image(wxImage image) {
  if (!contract_holds(image.IsOk(), contract::site_t::paletteless_image_invalid)) return wxImage();
  // A sub-image carries the pixels, alpha and mask but not the palette.
  if (image.HasPalette())
    return image.GetSubImage(wxRect(0, 0, image.GetWidth(), image.GetHeight()));
  return image;
}

}  // namespace orvix1
