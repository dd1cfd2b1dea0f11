#ifndef ORVIX1_WXTABBUTTON_H
#define ORVIX1_WXTABBUTTON_H
/// @file
/// The owner-drawn button that stands for one tab: an optional image or
/// animation, a caption shortened to the width it gets, an optional close
/// cross, or a native check box in checkbox style. It reports clicks, close
/// requests and size changes through signals carrying its id, which its
/// owner sets to the tab's index.

#include <memory>
#include <string>

#include <wx/animate.h>
#include <wx/bitmap.h>
#include <wx/control.h>
#include <wx/image.h>

#include "orvix1/export.h"
#include "orvix1/picture.h"
#include "orvix1/styled.h"
#include "orvix1/ui_style.h"
#include "talvar2/functor/signal.h"

namespace orvix1 {

class wxCustomTooltip;
class wxTabPanel;

namespace detail {
class tab_accessible_t;
class tab_art_t;
class tab_measurer_t;
struct tab_face_t;
}  // namespace detail

/// Strictly inside: a point on any edge of `rect` is outside.
ORVIX1_API bool PointInRect(int x, int y, const wxRect& rect);
/// The owner-drawn button that stands for one tab.
class ORVIX1_API wxTabButton : public wxControl, public StyledBase {
 public:
  /// Colour roles; the comment names the style key each default comes from.
  /// The colour roles and the keys of the default style (the palette entry
  /// behind each in the default style); captions use "fnNormalBold",
  /// font_normal_bold (2). Buttons draw with these whatever colours or fonts
  /// a style updater sets on their windows.
  enum color_type_t {
    bg_normal = 1,         ///< "clBtnBgNormal": color_face (1)
    bg_hover = 2,          ///< "clBtnBgHover": color_face blended with color_window_bg (1, 0)
    bg_pressed = 3,        ///< "clBtnBgPressed" (also selected): color_window_bg (0)
    bg_disabled = 4,       ///< "clBtnBgDisabled": color_face (1)
    border_normal = 5,     ///< "clBorderNormal": color_shadow_3d (4)
    border_hover = 6,      ///< "clBorderHover": color_selection_bg (8)
    border_pressed = 7,    ///< "clBorderPressed": color_shadow_3d (4)
    border_disabled = 8,   ///< "clBorderDisabled": color_light_3d (3)
    text_normal = 9,       ///< "clTextNormal": color_button_text (6)
    text_pressed = 10,     ///< "clTextPressed": color_window_text (7)
    text_disabled = 11,    ///< "clTextDisabled": color_shadow_3d (4)
    panel_bg = 12,         ///< "clBg": what lies behind the button, color_face (1);
                           ///< a strip's own style gives color_strip_bg (21)
    color_types_end = 13
  };

  /// The bits of GetState()/SetState().
  enum state_t { state_hovered = 1, state_pressed = 2, state_selected = 4, state_disabled = 8 };

  /// SetStyle() bits.
  enum style_bits_t {
    style_centre_label = 1,  ///< the caption is centred rather than left-aligned
    style_no_border = 2      ///< no border at all, whatever SetBorders says
  };

  using id_signal_t = talvar2::signal_t<int>;
  using resized_signal_t = talvar2::signal_t<>;

  /// The style every tab button takes unless given another: the palette's
  /// button, border and text colours and the bold normal font.
  class ORVIX1_API default_style_t : public ui_style_t {
   public:
    default_style_t();
    void set_style_info() override;
  };

  /// The style of buttons on a navigation tape: flat, on the strip colours.
  class ORVIX1_API navtape_sys_style_t : public ui_style_t {
   public:
    navtape_sys_style_t();
    void set_style_info() override;
  };

  wxTabButton();
  wxTabButton(wxWindow* parent, wxWindowID id, const wxString& label,
              const wxPoint& position = wxDefaultPosition, const wxSize& size = wxDefaultSize,
              long style = 0);
  wxTabButton(wxWindow* parent, wxWindowID id, const wxBitmap& bitmap, const wxString& label,
              const wxPoint& position = wxDefaultPosition, const wxSize& size = wxDefaultSize,
              long style = 0);
  wxTabButton(wxWindow* parent, wxWindowID id, const picture_t& picture, const wxString& label,
              const wxPoint& position = wxDefaultPosition, const wxSize& size = wxDefaultSize,
              long style = 0);
  ~wxTabButton() override;

  bool Create(wxWindow* parent, wxWindowID id, const wxString& label,
              const wxPoint& position = wxDefaultPosition, const wxSize& size = wxDefaultSize,
              long style = 0);

  // --- signals ---
  id_signal_t& clicked() { return m_clicked; }
  id_signal_t& delete_requested() { return m_delete_requested; }
  resized_signal_t& resized() { return m_resized; }

  // --- state ---
  void Press();
  void Restore();
  void Toggle();
  void SetState(int state);
  int GetState() const;
  bool IsSelected() const { return m_selected; }
  bool IsHovered() const { return m_hovered; }
  bool IsLeftPressed() const { return m_left_pressed; }
  bool IsCrossHovered() const { return m_cross_hovered; }
  void SetDisabled(bool disabled);
  bool GetDisabled() const { return m_disabled; }
  /// True once the window is on its way out; checked after raising a signal.
  bool IsDestroyed() const { return IsBeingDeleted(); }

  // --- content ---
  void SetLabel(const wxString& label) override;
  wxString GetLabel() const override { return m_caption; }
  /// What is drawn for the current width: the caption, or its shortened form.
  const wxString& GetShownText() const { return m_shown_text; }
  void SetBitmap(const wxBitmap& bitmap);
  void SetPicture(const picture_t& picture);
  const wxBitmap& GetBitmap() const { return m_bitmap; }
  wxSize GetImageSize() const;
  void SetBackgroundImage(const wxImage& image);
  const wxImage& GetBackgroundImage() const { return m_background_image; }

  /// An animation takes the place of the image; an invalid one removes it.
  /// The control that shows it exists from the first animation on.
  void SetAnimation(const wxAnimation& animation);
  wxAnimation GetAnimation() const;
  /// Null until an animation has been set.
  wxAnimationCtrl* GetAnimationCtrl() const { return m_animation_ctrl; }
  bool HasAnimation() const;
  void Play();
  void Stop();
  bool IsPlaying() const;

  /// A text shown in the library's tooltip; "" removes the tooltip. While
  /// the caption is cut to fit the tab, the tooltip shows it whole, then
  /// this text.
  void SetTooltipText(const std::string& text);
  /// What the tooltip shows, wrapped into lines.
  std::string GetTooltipText() const;
  wxCustomTooltip* GetCustomTooltip() const { return m_tooltip; }

  // --- flags ---
  void SetResizable(bool resizable) { m_resizable = resizable; }
  bool GetResizable() const { return m_resizable; }
  void SetCrossed(bool crossed);
  bool GetCrossed() const { return m_crossed; }
  void SetCheckboxStyle(bool checkbox);
  bool GetCheckboxStyle() const { return m_checkbox_style; }
  void SetUserData(void* data) { m_user_data = data; }
  void* GetUserData() const { return m_user_data; }
  void SetStyle(int style);
  int GetStyle() const { return m_style; }
  /// The sides the border is drawn on: wxLEFT, wxRIGHT, wxTOP, wxBOTTOM
  /// combined, or wxALL.
  void SetBorders(wxDirection sides);
  int GetBorders() const { return m_borders; }

  // --- colours and font ---
  void SetColor(color_type_t type, const wxColour& colour);
  wxColour GetColor(color_type_t type) const;
  bool IsColorSet(color_type_t type) const;
  void SetBackground(const wxColour& colour) { SetColor(bg_normal, colour); }
  wxColour GetBackground() const { return GetColor(bg_normal); }
  void SetSelectedBackground(const wxColour& colour) { SetColor(bg_pressed, colour); }
  wxColour GetSelectedBackground() const { return GetColor(bg_pressed); }
  void SetTextColor(const wxColour& colour) { SetColor(text_normal, colour); }
  wxColour GetTextColor() const { return GetColor(text_normal); }
  void SetHighlightColor(const wxColour& colour) { SetColor(bg_hover, colour); }
  wxColour GetHighlightColor() const { return GetColor(bg_hover); }
  /// Halfway between `a` and `b`: the hover colour when a style has none.
  static wxColour CalculateHighlightColor(const wxColour& a, const wxColour& b);
  /// The style key a role's default is read from.
  static const char* GetColorKey(color_type_t type);

  /// Replaces the font without telling the owner.
  void ChangeFont(const wxFont& font);
  /// Replaces the font, then raises resized().
  bool SetFont(const wxFont& font) override;

  void SetDefaultUISettings();
  void SetDefaultColors();
  void on_style_updated() override;

  // --- size ---
  wxSize CalculateSize() const;
  wxSize DoCalculateSize(const wxBitmap& bitmap, const wxString& text) const;
  wxRect CalculateCrossRect() const;
  wxSize GetCheckboxSize() const;

  // --- drawing helpers ---
  void DrawButtonBorder(wxDC& dc, const wxRect& rect, const wxColour& colour) const;
  static void DrawTwoColoredRect(wxDC& dc, const wxRect& rect, const wxPen& top_left,
                                 const wxPen& bottom_right);
  void DrawCross(wxDC& dc, const wxRect& rect) const;
  /// Paints the whole button for its current state, as the window does.
  void DrawButton(wxDC& dc);

  bool AcceptsFocus() const override { return false; }

 protected:
  wxSize DoGetBestSize() const override;
  wxBorder GetDefaultBorder() const override { return wxBORDER_NONE; }

 private:
  // A strip measures all its buttons with one measurer.
  friend class wxTabPanel;

  void init(const wxString& label);
  void SetSelectedFlag(bool selected);
  void ContentChanged();
  wxSize CalculateSize(detail::tab_measurer_t& measurer) const;
  detail::tab_face_t Face(const wxBitmap& image, const wxString& caption) const;
  void UpdateShownText(const wxSize& size);
  void UpdateCaptionCut();
  std::string TooltipTextToShow() const;
  void ShowTooltipText(const std::string& text);
  void UpdateAnimationBg(color_type_t type);
  void PlaceAnimation();
  bool RaiseSignal(id_signal_t& signal);
  wxBitmap ImageToDraw() const;

  void OnPaint(wxPaintEvent& event);
  void OnSize(wxSizeEvent& event);
  void OnEnter(wxMouseEvent& event);
  void OnLeave(wxMouseEvent& event);
  void OnMotion(wxMouseEvent& event);
  void OnLeftDown(wxMouseEvent& event);
  void OnLeftUp(wxMouseEvent& event);
  void OnMiddleDown(wxMouseEvent& event);
  void OnMiddleUp(wxMouseEvent& event);

  struct color_slot_t {
    wxColour colour;
    bool set_by_caller = false;
  };

  wxString m_caption;
  wxString m_shown_text;
  wxSize m_shown_text_size;  ///< the client size m_shown_text was made for
  mutable wxSize m_size_cache = wxDefaultSize;
  wxBitmap m_bitmap;
  mutable wxBitmap m_grey_bitmap;
  wxImage m_background_image;
  wxAnimationCtrl* m_animation_ctrl = nullptr;
  std::unique_ptr<detail::tab_art_t> m_art;
  std::unique_ptr<detail::tab_accessible_t> m_accessible;
  color_slot_t m_colors[color_types_end];

  bool m_hovered = false;
  bool m_left_pressed = false;
  bool m_selected = false;
  bool m_disabled = false;
  bool m_cross_hovered = false;
  bool m_resizable = true;
  bool m_crossed = false;
  bool m_checkbox_style = false;
  bool m_middle_pressed = false;
  bool m_created = false;

  void* m_user_data = nullptr;
  int m_style = 0;
  int m_borders = wxALL;
  wxCustomTooltip* m_tooltip = nullptr;
  std::string m_tooltip_text;  ///< as the owner set it
  wxString m_tooltip_caption;  ///< the caption the tooltip shows because it is cut
  /// Cleared by the destructor: a signal handler may delete the button.
  std::shared_ptr<bool> m_alive = std::make_shared<bool>(true);

  id_signal_t m_clicked;
  id_signal_t m_delete_requested;
  resized_signal_t m_resized;

  wxDECLARE_DYNAMIC_CLASS(wxTabButton);
  wxDECLARE_EVENT_TABLE();
};

}  // namespace orvix1

#endif
