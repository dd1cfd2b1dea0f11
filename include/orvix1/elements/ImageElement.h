#ifndef ORVIX1_ELEMENTS_IMAGEELEMENT_H
#define ORVIX1_ELEMENTS_IMAGEELEMENT_H
/// @file
/// A still picture or a looping animation, drawn at its own size in the
/// top-left corner of the element's rectangle.
///
/// Animations play frame by frame from GdkPixbuf, which hands out whole
/// frames (the partial frames of optimised GIFs come already laid over the
/// earlier ones) and each frame's delay. The element asks its host for a
/// timer only while it is shown on screen.
///
/// Where the frames come from:
/// - SetAnimationFile() reads the file through wxFileSystem (plain paths and
///   archive locations such as "res.zip#zip:busy.gif") and decodes it both
///   into the wxAnimation that GetAnimation() returns and into the frames.
/// - SetAnimation() reads the frames out of the wxAnimation itself: on this
///   desktop wx's own animations (wxAnimation::Load, LoadFile, the resource
///   loader) keep a GdkPixbufAnimation, which the element shares. A
///   wxGenericAnimationCtrl's animation has no such frames: the element then
///   shows its first frame as a still picture and logs a warning.

#include <cstdint>
#include <string>

#include <wx/animate.h>
#include <wx/bitmap.h>
#include <wx/image.h>

#include "orvix1/elements/UIElement.h"
#include "orvix1/export.h"

typedef struct _GdkPixbufAnimation GdkPixbufAnimation;
typedef struct _GdkPixbufAnimationIter GdkPixbufAnimationIter;

namespace orvix1 {
namespace elements {
/// A still picture or a looping animation, drawn at its own size.
class ORVIX1_API ImageElement : public UIElement {
 public:
  ImageElement();
  explicit ImageElement(element_ptr_t parent);
  ImageElement(element_ptr_t parent, int position_flags);
  ImageElement(element_ptr_t parent, int position_flags, const wxImage& image);
  ImageElement(element_ptr_t parent, int position_flags, const wxAnimation& animation);
  ~ImageElement() override;

  /// Shows a still picture; drops the animation.
  void SetImage(const wxImage& image);
  /// The picture, or the animation's first frame.
  const wxImage& GetImage() const { return m_image; }

  /// Starts the animation from its first frame, which also becomes the
  /// element's image. An empty animation leaves the element empty.
  void SetAnimation(const wxAnimation& animation);
  const wxAnimation& GetAnimation() const { return m_animation; }
  /// The animation in the file at `location` (any wxFileSystem location).
  /// A location that cannot be read or holds no picture changes nothing,
  /// logs an error and gives false.
  bool SetAnimationFile(const wxString& location);
  /// Whether frames are being played (a still picture has none).
  bool HasAnimation() const { return m_frames != nullptr; }

  /// What the picture shows, in words, for screen readers (they read the
  /// element's tooltip text otherwise). Announced with the next paint.
  void SetAccessibleDescription(const std::string& description) {
    m_accessible_description = description;
  }
  const std::string& GetAccessibleDescription() const { return m_accessible_description; }

  /// Frees the frame iterator: the animation starts again from its first
  /// frame the next time it is drawn or ticks.
  void ResetIter();

  /// The image's size, else the animation's, else (0, 0).
  wxSize GetSize() const override;
  wxSize GetMinSize() const override;
  void OnDraw(wxDC& dc, const wxRect& rect) override;
  /// Moves the animation on to the present time and asks for the next tick.
  void OnTimer() override;
  /// Plays only while shown on screen.
  void OnVisibilityChanged(bool visible_on_screen) override;

 protected:
  /// The present time for the animation, in microseconds of the real-time
  /// clock (g_get_real_time).
  virtual std::int64_t GetCurrentTime() const;

 private:
  void Init();
  /// Takes over `frames` (a reference of its own, may be null).
  void StartAnimation(const wxAnimation& animation, GdkPixbufAnimation* frames);
  void ReplaceFrames(GdkPixbufAnimation* frames);
  GdkPixbufAnimationIter* GetIter();
  int GetFrameDelay();
  const wxBitmap& GetBitmap();

  wxImage m_image;
  wxAnimation m_animation;
  GdkPixbufAnimation* m_frames;
  GdkPixbufAnimationIter* m_iter;
  /// What OnDraw draws (the picture or the current frame), made on first use.
  wxBitmap m_bitmap;
  std::string m_accessible_description;
};

}  // namespace elements
}  // namespace orvix1

#endif
