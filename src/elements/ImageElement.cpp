#include "orvix1/elements/ImageElement.h"

#include <memory>
#include <string>

#include <wx/filesys.h>
#include <wx/mstream.h>

#include "elements/pixbuf_animation.h"
#include "core/log.h"
#include "core/read_to_end.h"

namespace orvix1 {
namespace elements {
namespace {

// The frame did not change on a tick: look again this soon.
constexpr int k_poll_ms = 10;

log4cplus::Logger logger() { return log::get_logger("orvix.elements"); }

// The whole file at a wxFileSystem location; false when it cannot be
// opened or read to its end.
bool read_location(const wxString& location, std::string& bytes) {
  wxFileSystem files;
  const std::unique_ptr<wxFSFile> file(files.OpenFile(location));
  wxInputStream* stream = file ? file->GetStream() : nullptr;
  return stream != nullptr && orvix1::detail::read_to_end(*stream, bytes);
}

}  // namespace

// --- construction -------------------------------------------------------------

ImageElement::ImageElement() { Init(); }

ImageElement::ImageElement(element_ptr_t parent) : UIElement(parent) { Init(); }

ImageElement::ImageElement(element_ptr_t parent, int position_flags)
    : UIElement(parent, position_flags) {
  Init();
}

ImageElement::ImageElement(element_ptr_t parent, int position_flags, const wxImage& image)
    : UIElement(parent, position_flags) {
  Init();
  SetImage(image);
}

ImageElement::ImageElement(element_ptr_t parent, int position_flags,
                           const wxAnimation& animation)
    : UIElement(parent, position_flags) {
  Init();
  SetAnimation(animation);
}

ImageElement::~ImageElement() {
  ResetIter();
  ReplaceFrames(nullptr);
}

void ImageElement::Init() {
  m_frames = nullptr;
  m_iter = nullptr;
}

// --- picture and animation ----------------------------------------------------

void ImageElement::SetImage(const wxImage& image) {
  // The timer of a previous animation has nothing left to move.
  if (IsTimerRunning()) KillTimer();
  m_image = image;
  m_animation = wxAnimation();
  ResetIter();
  ReplaceFrames(nullptr);
  Invalidate(true);
}

void ImageElement::SetAnimation(const wxAnimation& animation) {
  GdkPixbufAnimation* frames = pixbuf::animation_of(animation);
  if (animation.IsOk() && frames == nullptr)
    ORVIX_LOG_WARNING(logger(), "the animation keeps its frames to itself (made by the generic "
                                "animation control?): shown as a still picture");
  StartAnimation(animation, frames);
}

bool ImageElement::SetAnimationFile(const wxString& location) {
  std::string bytes;
  if (!read_location(location, bytes)) {
    ORVIX_LOG_ERROR(logger(), "cannot open the animation \"" << location.utf8_string() << "\"");
    return false;
  }
  std::string error;
  GdkPixbufAnimation* frames = pixbuf::load_animation(bytes, error);
  if (frames == nullptr) {
    ORVIX_LOG_ERROR(logger(), "cannot read the animation \"" << location.utf8_string()
                                                             << "\": " << error);
    return false;
  }
  wxAnimation animation;
  wxMemoryInputStream stream(bytes.data(), bytes.size());
  if (!animation.Load(stream)) {
    g_object_unref(frames);
    ORVIX_LOG_ERROR(logger(), "wx cannot read the animation \"" << location.utf8_string()
                                                                << "\"");
    return false;
  }
  StartAnimation(animation, frames);
  return true;
}

void ImageElement::StartAnimation(const wxAnimation& animation, GdkPixbufAnimation* frames) {
  KillTimer();
  m_animation = animation;
  ResetIter();
  ReplaceFrames(frames);
  if (m_frames != nullptr) {
    m_image = pixbuf::to_image(gdk_pixbuf_animation_iter_get_pixbuf(GetIter()));
    const int delay = GetFrameDelay();
    // A first frame shown for ever needs no timer, nor does a hidden
    // element. The holder's own state does not count: a window built and
    // shown afterwards tells its children nothing that would start it.
    if (delay >= 0 && IsVisible()) SetTimer(delay);
  } else if (animation.IsOk() && animation.GetFrameCount() > 0) {
    m_image = animation.GetFrame(0);
  } else {
    m_image = wxImage();
  }
  Invalidate(true);
}

void ImageElement::ReplaceFrames(GdkPixbufAnimation* frames) {
  if (m_frames != nullptr) g_object_unref(m_frames);
  m_frames = frames;
  m_bitmap = wxBitmap();
}

void ImageElement::ResetIter() {
  if (m_iter != nullptr) g_object_unref(m_iter);
  m_iter = nullptr;
  m_bitmap = wxBitmap();
}

GdkPixbufAnimationIter* ImageElement::GetIter() {
  if (m_iter == nullptr && m_frames != nullptr)
    m_iter = pixbuf::start_iter(m_frames, GetCurrentTime());
  return m_iter;
}

int ImageElement::GetFrameDelay() { return gdk_pixbuf_animation_iter_get_delay_time(GetIter()); }

std::int64_t ImageElement::GetCurrentTime() const { return g_get_real_time(); }

// --- size and painting --------------------------------------------------------

wxSize ImageElement::GetMinSize() const {
  if (m_image.IsOk()) return LimitSize(m_image.GetSize());
  if (m_animation.IsOk()) return LimitSize(m_animation.GetSize());
  return LimitSize(wxSize(0, 0));
}

wxSize ImageElement::GetSize() const { return GetMinSize(); }

const wxBitmap& ImageElement::GetBitmap() {
  if (!m_bitmap.IsOk()) {
    const wxImage picture = m_frames != nullptr
                                ? pixbuf::to_image(gdk_pixbuf_animation_iter_get_pixbuf(GetIter()))
                                : m_image;
    if (picture.IsOk()) m_bitmap = wxBitmap(picture);
  }
  return m_bitmap;
}

void ImageElement::OnDraw(wxDC& dc, const wxRect& rect) {
  const wxBitmap& bitmap = GetBitmap();
  if (bitmap.IsOk()) dc.DrawBitmap(bitmap, rect.GetTopLeft(), true);
}

// --- playing ------------------------------------------------------------------

void ImageElement::OnTimer() {
  KillTimer();
  if (m_frames != nullptr) {
    if (!pixbuf::advance_iter(GetIter(), GetCurrentTime())) {
      SetTimer(k_poll_ms);
    } else {
      m_bitmap = wxBitmap();
      // A negative delay: the new frame stays for ever.
      const int delay = GetFrameDelay();
      if (delay >= 0) SetTimer(delay);
    }
  }
  Invalidate(false);
}

void ImageElement::OnVisibilityChanged(bool visible_on_screen) {
  if (m_frames == nullptr) return;
  if (visible_on_screen && !IsTimerRunning()) {
    const int delay = GetFrameDelay();
    if (delay >= 1) SetTimer(delay);
  } else if (!visible_on_screen && IsTimerRunning()) {
    KillTimer();
  }
}

}  // namespace elements
}  // namespace orvix1
