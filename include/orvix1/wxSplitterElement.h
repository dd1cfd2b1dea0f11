#ifndef ORVIX1_WXSPLITTERELEMENT_H
#define ORVIX1_WXSPLITTERELEMENT_H
/// @file
/// The sash of a splitter, drawn inside a holder window that owns it. It is
/// not a window: the holder forwards its mouse input and paints it. The sash
/// keeps its position inside the holder, answers hit tests and draws itself
/// with a small collapse button at the middle of its length.
///
/// Coordinates are the holder's client coordinates. The position is the
/// centre of the sash, measured from the holder's left edge (vertical sash:
/// panes side by side) or top edge (horizontal sash: panes stacked).

#include <map>
#include <memory>
#include <string>

#include <wx/bitmap.h>
#include <wx/colour.h>
#include <wx/dc.h>
#include <wx/image.h>
#include <wx/window.h>

#include "orvix1/export.h"
#include "orvix1/ui_style.h"
#include "talvar2/functor/signal.h"
#include "talvar2/value_locker.h"

namespace orvix1 {
/// The look of a splitter: the sash, its button and the holder around it.
/// Keys, with the palette entry behind each:
/// - "clSash": color_face (1), the resting sash and the splitter's background;
/// - "clSashHot": color_selection_bg (8), the hovered or dragged sash and button;
/// - "clSashPressed": color_shadow_3d (4), the pressed button;
/// - "clSashArrow": color_button_text (6), the button's arrow;
/// - "clSashArrowDisabled": color_shadow_3d (4), the arrow of a disabled button.
class ORVIX1_API splitter_style_t : public ui_style_t {
 public:
  splitter_style_t();
  void set_style_info() override;
};

/// The sash of a splitter, drawn inside a holder window that owns it. It
/// draws with a splitter_style_t and follows every palette change: the
/// holder repaints. Colours set with SetSashColor stay.
class ORVIX1_API wxSplitterElement : public talvar2::subscriber_base_t {
 public:
  /// Where the collapse button's arrow points: the way the sash travels when
  /// the button is clicked.
  enum ButtonDirection { bdLeft = 0, bdRight = 1, bdUp = 2, bdDown = 3 };

  /// The look of the sash and of the button. A button in vsDisabled takes no
  /// clicks and is drawn greyed.
  enum VisualState { vsNormal = 0, vsHighlighted = 1, vsPressed = 2, vsDisabled = 3 };

  using position_signal_t = talvar2::signal_t<int>;
  using state_signal_t = talvar2::signal_t<VisualState>;

  /// Thin enough to stay out of the way, wide enough to grab with the
  /// tolerance. At 96 dpi: wxAdvancedSplitter scales both by get_DPI_scale();
  /// sizes given to this constructor are taken as they are.
  static const int DefaultSashSize = 6;
  static const int DefaultHitTolerance = 3;
  /// The button's length along the sash when no images are set, before DPI scaling.
  static const int DefaultButtonLength = 36;

  /// `sash_size` is the sash's thickness in pixels, `hit_tolerance` the
  /// pixels by which hit tests widen the sash and the button on every side.
  /// The holder must not be null; it must outlive the element's use.
  wxSplitterElement(wxWindow* holder, bool vertical, int sash_size = DefaultSashSize,
                    int hit_tolerance = DefaultHitTolerance);
  ~wxSplitterElement() override;
  wxSplitterElement(const wxSplitterElement&) = delete;
  wxSplitterElement& operator=(const wxSplitterElement&) = delete;

  wxWindow* GetHolder() const { return m_holder_wnd; }
  bool IsVertical() const { return m_vertical; }
  void SetVertical(bool vertical) { m_vertical = vertical; }

  /// Clamps to [sash size / 2, GetMaxSashPosition()] and raises the position
  /// signal when the position changes, and every time it lands on 0 (a sash
  /// pushed to its edge keeps telling its listeners). A call made from a
  /// listener of this very call is ignored.
  void SetSashPosition(int position);
  int GetSashPosition() const { return m_sash_position; }
  /// The position SetSashPosition(position) would store.
  int ClampSashPosition(int position) const;
  /// The holder's width (vertical) or height (horizontal) − sash size / 2.
  int GetMaxSashPosition() const;

  void SetSashSize(int size) { m_sash_size = size < 0 ? 0 : size; }
  int GetSashSize() const { return m_sash_size; }
  void SetHitTolerance(int tolerance) { m_hit_tolerance = tolerance < 0 ? 0 : tolerance; }
  int GetHitTolerance() const { return m_hit_tolerance; }

  wxRect GetSashRect() const;
  /// Centred on the sash and on its length; as large as the current
  /// direction's images, or sash size × DefaultButtonLength without them.
  /// Empty while the button is hidden.
  wxRect GetButtonRect() const;
  /// A sash of size 0 is never hit.
  bool SashHitTest(int x, int y) const;
  bool ButtonHitTest(int x, int y) const;

  void SetButtonDirection(ButtonDirection direction) { m_button_direction = direction; }
  ButtonDirection GetButtonDirection() const { return m_button_direction; }
  void SetButtonState(VisualState state) { m_button_state = state; }
  VisualState GetButtonState() const { return m_button_state; }
  /// Raises the state signal when the state changes.
  void SetSashState(VisualState state);
  VisualState GetSashState() const { return m_sash_state; }
  void ShowButton(bool show) { m_button_shown = show; }
  bool IsButtonShown() const { return m_button_shown; }

  /// Pictures of the button for one direction: normal, highlighted, pressed
  /// (a disabled button is the normal picture in grey). Without pictures
  /// the button is drawn as an arrow. Invalid pictures are refused (false,
  /// with an error logged) and the direction keeps what it had.
  bool SetButtonImage(ButtonDirection direction, const wxImage& normal, const wxImage& highlighted,
                      const wxImage& pressed);
  bool SetButtonBitmap(ButtonDirection direction, const wxBitmap& normal,
                       const wxBitmap& highlighted, const wxBitmap& pressed);
  /// The same from the resource registry's images of those names.
  bool LoadImage(ButtonDirection direction, const std::string& normal,
                 const std::string& highlighted, const std::string& pressed);
  bool HasButtonImages(ButtonDirection direction) const;

  /// Explicit colours stay through system colour changes.
  void SetSashColor(const wxColour& normal, const wxColour& highlighted);
  wxColour GetSashNormalColor() const { return m_normal_color.value; }
  wxColour GetSashHighlightedColor() const { return m_highlighted_color.value; }
  /// The palette's button face and selection colours, for colours not set
  /// explicitly; the holder calls it again when the desktop's colours change.
  void InitializeDefaultColors();
  /// The splitter's look; holders paint their background with its "clSash".
  const talvar2::intrusive_pointer_t<ui_style_t>& GetUiStyle() const { return m_style; }

  /// Paints the sash flat in the normal colour, or the highlighted one while
  /// it is highlighted or pressed, and then the button when shown: the
  /// picture for its state, or without pictures an arrow in the palette's
  /// button text colour (its shadow colour when disabled) on a plate in the
  /// highlighted colour under the pointer and the shadow colour when pressed.
  void Draw(wxDC& dc) const;

  position_signal_t& SashPositionChanged() { return m_position_changed; }
  state_signal_t& SashStateChanged() { return m_state_changed; }

 private:
  struct button_images_t {
    wxImage normal, highlighted, pressed;
  };

  wxSize GetButtonSize() const;
  int HolderExtent() const;
  void DrawButton(wxDC& dc) const;
  void DrawArrow(wxDC& dc, const wxRect& rect) const;
  wxImage ImageForState(const button_images_t& images) const;
  wxColour StyleColor(const char* key, wxSystemColour fallback) const;
  void OnStyleUpdated();

  wxWindow* m_holder_wnd;
  bool m_vertical;
  int m_sash_position = 0;
  int m_sash_size;
  int m_hit_tolerance;
  ButtonDirection m_button_direction;
  VisualState m_button_state = vsNormal;
  VisualState m_sash_state = vsNormal;
  bool m_button_shown = true;
  std::map<ButtonDirection, button_images_t> m_images;
  talvar2::value_locker_t<wxColour> m_normal_color;
  talvar2::value_locker_t<wxColour> m_highlighted_color;
  talvar2::intrusive_pointer_t<ui_style_t> m_style;
  bool m_setting_position = false;
  /// Cleared by the destructor: an emission checks it before touching the
  /// element again, since a listener may destroy it.
  std::shared_ptr<bool> m_alive = std::make_shared<bool>(true);
  position_signal_t m_position_changed;
  state_signal_t m_state_changed;
};

}  // namespace orvix1

#endif
