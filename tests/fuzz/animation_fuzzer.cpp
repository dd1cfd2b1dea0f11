// Any bytes as an animation: decoding must give frames or a reason, and
// stepping through the frames, by hand and in an image element, must give
// whole pictures of the animation's size, never crash or assert. Time is a
// virtual clock; each input gets a bounded number of frames and pixels.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <wx/bitmap.h>
#include <wx/dcmemory.h>

#include "../support/fake_element_host.h"
#include "elements/pixbuf_animation.h"
#include "fuzz_environment.h"
#include "orvix1/elements/ImageElement.h"

namespace {

namespace pixbuf = orvix1::elements::pixbuf;

constexpr int k_frames = 24;
// Larger animations are only decoded: frames are copied and composed pixel
// by pixel, and the fuzzer learns nothing from more of the same pixels.
constexpr std::int64_t k_largest_played = 256 * 256;
// Pixels copied out per input and way of playing.
constexpr std::int64_t k_pixel_budget = 8 * k_largest_played;
// Any start will do; a fixed one keeps runs repeatable.
constexpr std::int64_t k_start_us = 1700000000LL * 1000000;

[[noreturn]] void fail(const char* what) {
  std::fprintf(stderr, "%s\n", what);
  std::abort();
}

void check_frame(GdkPixbuf* frame, std::int64_t& budget) {
  if (frame == nullptr) fail("an iterator gave no frame");
  const wxImage image = pixbuf::to_image(frame);
  if (!image.IsOk() || image.GetWidth() != gdk_pixbuf_get_width(frame) ||
      image.GetHeight() != gdk_pixbuf_get_height(frame))
    fail("a frame did not become an image of its size");
  budget -= static_cast<std::int64_t>(image.GetWidth()) * image.GetHeight();
}

// The frames one after the other, each at the end of its delay.
void step_frames(GdkPixbufAnimation* animation, std::int64_t& budget) {
  std::int64_t now = k_start_us;
  GdkPixbufAnimationIter* iter = pixbuf::start_iter(animation, now);
  for (int frame = 0; frame < k_frames && budget > 0; ++frame) {
    check_frame(gdk_pixbuf_animation_iter_get_pixbuf(iter), budget);
    const int delay = gdk_pixbuf_animation_iter_get_delay_time(iter);
    if (delay < 0) break;  // shown for ever
    now += std::max(delay, 1) * std::int64_t{1000};
    pixbuf::advance_iter(iter, now);
  }
  g_object_unref(iter);
}

class clocked_image_t : public orvix1::elements::ImageElement {
 public:
  explicit clocked_image_t(orvix1::elements::element_ptr_t parent) : ImageElement(parent) {
    SetTestID("image");
  }
  std::int64_t now = k_start_us;

 protected:
  std::int64_t GetCurrentTime() const override { return now; }
};

// The delay of the last timer the element asked for, or -1.
int requested_delay(orvix1_test::fake_element_host_t& host) {
  int delay = -1;
  for (const std::string& request : host.requests)
    if (request.rfind("timer ", 0) == 0) delay = std::atoi(request.c_str() + request.rfind(' '));
  host.requests.clear();
  return delay;
}

// The element plays the file as a host would run it: a tick whenever the
// timer it asked for is due, and a paint now and then.
void play_in_element(const std::string& path, std::int64_t& budget) {
  orvix1::elements::element_ptr_t root(new orvix1::elements::UIElement());
  orvix1_test::fake_element_host_t host(root);
  talvar2::intrusive_pointer_t<clocked_image_t> image(new clocked_image_t(root));
  if (!image->SetAnimationFile(wxString::FromUTF8(path))) return;
  const wxSize size = image->GetSize();
  const std::int64_t pixels = static_cast<std::int64_t>(size.x) * size.y;
  // The element draws its top-left part into a small window, as into a host's.
  wxBitmap canvas(32, 32, 24);
  for (int tick = 0; tick < k_frames && budget > 0; ++tick) {
    const int delay = requested_delay(host);
    if (delay < 0) break;
    image->now += std::int64_t{delay} * 1000;
    image->ProcessTimer();
    if (tick % 4 == 0) {
      wxMemoryDC dc(canvas);
      image->OnDraw(dc, wxRect(canvas.GetSize()));
      budget -= pixels;
    }
    if (tick == k_frames / 2) {
      image->SetVisible(false);
      image->SetVisible(true);
      image->ResetIter();
    }
    budget -= pixels;
  }
  if (image->GetSize() != size) fail("the element's size changed while it played");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  orvix1_fuzz::start_environment(argc, argv);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  std::string error;
  GdkPixbufAnimation* animation = pixbuf::load_animation(bytes, error);
  if (animation == nullptr) {
    if (error.empty()) fail("a refused animation came without a reason");
    return 0;
  }
  const std::int64_t pixels = std::int64_t{gdk_pixbuf_animation_get_width(animation)} *
                              gdk_pixbuf_animation_get_height(animation);
  if (pixels <= k_largest_played) {
    std::int64_t budget = k_pixel_budget;
    step_frames(animation, budget);
    budget = k_pixel_budget;
    play_in_element(orvix1_fuzz::write_input("animation", data, size), budget);
  }
  g_object_unref(animation);
  return 0;
}
