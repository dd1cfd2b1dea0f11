#include "orvix1/wxTabButton.h"

#include <memory>

#include <wx/dcbuffer.h>
#include <wx/dcclient.h>
#include <wx/settings.h>

#include "orvix1/dpi.h"
#include "orvix1/text_utils.h"
#include "orvix1/ui_settings.h"
#include "orvix1/wxCustomTooltip.h"
#include "tabs/tab_accessible.h"
#include "tabs/tab_art.h"

namespace orvix1 {
namespace {

// Tooltips of tabs wrap at this width (at 96 dpi).
const int k_tooltip_width = 400;

const char* const k_color_keys[wxTabButton::color_types_end] = {
    "",                 "clBtnBgNormal",   "clBtnBgHover",     "clBtnBgPressed",
    "clBtnBgDisabled",  "clBorderNormal",  "clBorderHover",    "clBorderPressed",
    "clBorderDisabled", "clTextNormal",    "clTextPressed",    "clTextDisabled",
    "clBg"};

const char k_font_key[] = "fnNormalBold";

bool is_color_type(int type) { return type >= wxTabButton::bg_normal && type < wxTabButton::color_types_end; }

detail::tab_state_t state_of(const wxTabButton& button) {
  return {button.IsHovered(), button.IsLeftPressed(), button.IsSelected(), button.GetDisabled(),
          button.IsCrossHovered()};
}

int border_sides(const wxTabButton& button) {
  return (button.GetStyle() & wxTabButton::style_no_border) != 0 ? 0 : button.GetBorders();
}

// Hovering changes the background and the border, not the text.
detail::tab_look_t look_of(const wxTabButton& button) {
  const auto colour = [&button](wxTabButton::color_type_t type) { return button.GetColor(type); };
  detail::tab_look_t look;
  look.normal = {colour(wxTabButton::bg_normal), colour(wxTabButton::border_normal),
                 colour(wxTabButton::text_normal)};
  look.hovered = {colour(wxTabButton::bg_hover), colour(wxTabButton::border_hover),
                  colour(wxTabButton::text_normal)};
  look.pressed = {colour(wxTabButton::bg_pressed), colour(wxTabButton::border_pressed),
                  colour(wxTabButton::text_pressed)};
  look.disabled = {colour(wxTabButton::bg_disabled), colour(wxTabButton::border_disabled),
                   colour(wxTabButton::text_disabled)};
  look.background = button.GetBackgroundImage();
  look.border_sides = border_sides(button);
  look.centred_label = (button.GetStyle() & wxTabButton::style_centre_label) != 0;
  return look;
}

// The animation control of a tab: whatever mouse input lands on it is the
// button's. A static event table, because the button's handler may destroy
// the button and this control with it.
class tab_animation_ctrl_t : public wxAnimationCtrl {
 public:
  tab_animation_ctrl_t(wxTabButton* button, const wxAnimation& animation)
      : wxAnimationCtrl(button, wxID_ANY, animation, wxDefaultPosition, wxDefaultSize,
                        wxAC_NO_AUTORESIZE | wxBORDER_NONE),
        m_button(button) {}

 private:
  void OnMouse(wxMouseEvent& event) {
    const wxPoint at = m_button->ScreenToClient(ClientToScreen(event.GetPosition()));
    // Leaving the animation for the rest of the button is no leave of the button.
    if (event.GetEventType() == wxEVT_LEAVE_WINDOW && m_button->GetClientRect().Contains(at)) {
      event.Skip();
      return;
    }
    wxMouseEvent forwarded(event);
    forwarded.SetPosition(at);
    forwarded.SetEventObject(m_button);
    forwarded.SetId(m_button->GetId());
    // The button's handler skips when it is still alive; otherwise this
    // control is gone too and must not be touched again.
    m_button->GetEventHandler()->ProcessEvent(forwarded);
    if (forwarded.GetSkipped()) event.Skip();
  }

  wxTabButton* m_button;
  wxDECLARE_EVENT_TABLE();
};

wxBEGIN_EVENT_TABLE(tab_animation_ctrl_t, wxAnimationCtrl)
  EVT_LEFT_DOWN(tab_animation_ctrl_t::OnMouse)
  EVT_LEFT_UP(tab_animation_ctrl_t::OnMouse)
  EVT_MIDDLE_DOWN(tab_animation_ctrl_t::OnMouse)
  EVT_MIDDLE_UP(tab_animation_ctrl_t::OnMouse)
  EVT_MOTION(tab_animation_ctrl_t::OnMouse)
  EVT_ENTER_WINDOW(tab_animation_ctrl_t::OnMouse)
  EVT_LEAVE_WINDOW(tab_animation_ctrl_t::OnMouse)
wxEND_EVENT_TABLE()

// --- styles -------------------------------------------------------------------

// Where each colour role of a style comes from, in the order of
// color_type_t; the hover background is the normal one blended towards
// `hover_towards`.
struct style_sources_t {
  default_colors_t roles[wxTabButton::color_types_end];
  default_colors_t hover_towards;
  default_fonts_t font;
};

const style_sources_t k_default_sources = {
    {color_face, color_face, color_face, color_window_bg, color_face, color_shadow_3d,
     color_selection_bg, color_shadow_3d, color_light_3d, color_button_text, color_window_text,
     color_shadow_3d, color_face},
    color_window_bg,
    font_normal_bold};

const style_sources_t k_navtape_sources = {
    {color_strip_bg, color_strip_bg, color_strip_bg, color_active_bg, color_strip_bg,
     color_strip_bg, color_strip_border, color_strip_border, color_strip_bg, color_strip_text,
     color_active_text, color_shadow_3d, color_strip_bg},
    color_white,
    font_normal};

void fill_style(ui_style_t& style, const style_sources_t& sources) {
  const talvar2::intrusive_pointer_t<ui_settings_t>& settings = style.get_settings();
  for (int type = wxTabButton::bg_normal; type < wxTabButton::color_types_end; ++type)
    style.internal_set_color(k_color_keys[type], settings->get_color(sources.roles[type]));
  style.internal_set_color(
      k_color_keys[wxTabButton::bg_hover],
      wxTabButton::CalculateHighlightColor(settings->get_color(sources.roles[wxTabButton::bg_normal]),
                                           settings->get_color(sources.hover_towards)));
  style.internal_set_font(k_font_key, settings->get_font(sources.font));
}

}  // namespace

wxTabButton::default_style_t::default_style_t() { set_style_info(); }

void wxTabButton::default_style_t::set_style_info() { fill_style(*this, k_default_sources); }

wxTabButton::navtape_sys_style_t::navtape_sys_style_t() { set_style_info(); }

void wxTabButton::navtape_sys_style_t::set_style_info() { fill_style(*this, k_navtape_sources); }

bool PointInRect(int x, int y, const wxRect& rect) {
  return x > rect.x && x < rect.x + rect.width && y > rect.y && y < rect.y + rect.height;
}

// --- construction -------------------------------------------------------------

wxIMPLEMENT_DYNAMIC_CLASS(wxTabButton, wxControl);

wxBEGIN_EVENT_TABLE(wxTabButton, wxControl)
  EVT_PAINT(wxTabButton::OnPaint)
  EVT_SIZE(wxTabButton::OnSize)
  EVT_ENTER_WINDOW(wxTabButton::OnEnter)
  EVT_LEAVE_WINDOW(wxTabButton::OnLeave)
  EVT_MOTION(wxTabButton::OnMotion)
  EVT_LEFT_DOWN(wxTabButton::OnLeftDown)
  EVT_LEFT_DCLICK(wxTabButton::OnLeftDown)
  EVT_LEFT_UP(wxTabButton::OnLeftUp)
  EVT_MIDDLE_DOWN(wxTabButton::OnMiddleDown)
  EVT_MIDDLE_UP(wxTabButton::OnMiddleUp)
wxEND_EVENT_TABLE()

wxTabButton::wxTabButton() : m_art(std::make_unique<detail::tab_art_t>(this)) {}

wxTabButton::wxTabButton(wxWindow* parent, wxWindowID id, const wxString& label,
                         const wxPoint& position, const wxSize& size, long style)
    : m_art(std::make_unique<detail::tab_art_t>(this)) {
  Create(parent, id, label, position, size, style);
}

wxTabButton::wxTabButton(wxWindow* parent, wxWindowID id, const wxBitmap& bitmap,
                         const wxString& label, const wxPoint& position, const wxSize& size,
                         long style)
    : m_bitmap(bitmap), m_art(std::make_unique<detail::tab_art_t>(this)) {
  Create(parent, id, label, position, size, style);
}

wxTabButton::wxTabButton(wxWindow* parent, wxWindowID id, const picture_t& picture,
                         const wxString& label, const wxPoint& position, const wxSize& size,
                         long style)
    : m_bitmap(picture.GetBitmap()), m_art(std::make_unique<detail::tab_art_t>(this)) {
  Create(parent, id, label, position, size, style);
}

wxTabButton::~wxTabButton() {
  *m_alive = false;
  if (m_tooltip != nullptr) m_tooltip->Destroy();
}

bool wxTabButton::Create(wxWindow* parent, wxWindowID id, const wxString& label,
                         const wxPoint& position, const wxSize& size, long style) {
  // Painted whole by OnPaint; set before the window exists, as GTK wants.
  SetBackgroundStyle(wxBG_STYLE_PAINT);
  if (!wxControl::Create(parent, id, position, size, style | wxBORDER_NONE, wxDefaultValidator,
                         "wxTabButton"))
    return false;
  init(label);
  m_accessible = std::make_unique<detail::tab_accessible_t>(*this);
  m_created = true;
  if (size == wxDefaultSize) SetSize(CalculateSize());
  return true;
}

void wxTabButton::init(const wxString& label) {
  m_caption = label;
  SetUiStyle(new default_style_t);  // applies fonts and colours
}

// --- state --------------------------------------------------------------------

// Whatever moves the selection, a mouse click, a key or the host's code,
// ends here: screen readers hear of it from one place.
void wxTabButton::SetSelectedFlag(bool selected) {
  if (m_selected == selected) return;
  m_selected = selected;
  if (m_accessible) m_accessible->selection_changed();
}

void wxTabButton::Press() {
  SetSelectedFlag(true);
  UpdateAnimationBg(bg_pressed);
  Refresh();
}

void wxTabButton::Restore() {
  SetSelectedFlag(false);
  UpdateAnimationBg(m_hovered ? bg_hover : bg_normal);
  Refresh();
}

void wxTabButton::Toggle() {
  if (m_selected)
    Restore();
  else
    Press();
}

void wxTabButton::SetState(int state) {
  m_hovered = (state & state_hovered) != 0;
  m_left_pressed = (state & state_pressed) != 0;
  const bool was_disabled = m_disabled;
  m_disabled = (state & state_disabled) != 0;
  SetSelectedFlag((state & state_selected) != 0);
  if (m_accessible && was_disabled != m_disabled) m_accessible->disabled_changed();
  Refresh();
}

int wxTabButton::GetState() const {
  return (m_hovered ? state_hovered : 0) | (m_left_pressed ? state_pressed : 0) |
         (m_selected ? state_selected : 0) | (m_disabled ? state_disabled : 0);
}

void wxTabButton::SetDisabled(bool disabled) {
  if (m_disabled == disabled) return;
  m_disabled = disabled;
  m_grey_bitmap = wxNullBitmap;
  if (m_accessible) m_accessible->disabled_changed();
  Refresh();
}

// --- content ------------------------------------------------------------------

void wxTabButton::ContentChanged() {
  m_shown_text_size = wxDefaultSize;
  m_size_cache = wxDefaultSize;
  InvalidateBestSize();
  // While being made the button keeps the size it was created with.
  if (!m_created) return;
  SetSize(CalculateSize());
  PlaceAnimation();
  UpdateShownText(GetClientSize());
  m_resized();
}

void wxTabButton::SetLabel(const wxString& label) {
  if (label == m_caption) return;
  m_caption = label;
  if (m_accessible) m_accessible->caption_changed();
  ContentChanged();
}

void wxTabButton::SetBitmap(const wxBitmap& bitmap) {
  Stop();
  m_bitmap = bitmap;
  m_grey_bitmap = wxNullBitmap;
  ContentChanged();
  Refresh();
}

void wxTabButton::SetPicture(const picture_t& picture) { SetBitmap(picture.GetBitmap()); }

wxSize wxTabButton::GetImageSize() const {
  if (m_checkbox_style) return GetCheckboxSize();
  if (m_bitmap.IsOk()) return m_bitmap.GetLogicalSize();
  if (HasAnimation()) return m_animation_ctrl->GetAnimation().GetSize();
  return wxSize(0, 0);
}

void wxTabButton::SetBackgroundImage(const wxImage& image) {
  m_background_image = image;
  Refresh();
}

// The control is made with the first animation: a strip may hold thousands
// of tabs, and every child window costs the toolkit.
void wxTabButton::SetAnimation(const wxAnimation& animation) {
  if (m_animation_ctrl == nullptr) {
    if (!animation.IsOk()) return;
    m_animation_ctrl = new tab_animation_ctrl_t(this, wxNullAnimation);
  }
  m_animation_ctrl->Stop();
  if (animation.IsOk()) {
    m_animation_ctrl->SetAnimation(animation);
    m_animation_ctrl->SetSize(animation.GetSize());
    m_animation_ctrl->Show();
  } else {
    m_animation_ctrl->SetAnimation(wxNullAnimation);
    m_animation_ctrl->Hide();
  }
  UpdateAnimationBg(m_selected ? bg_pressed : bg_normal);
  ContentChanged();
  Refresh();
}

wxAnimation wxTabButton::GetAnimation() const {
  return m_animation_ctrl != nullptr ? m_animation_ctrl->GetAnimation() : wxAnimation();
}

bool wxTabButton::HasAnimation() const {
  return m_animation_ctrl != nullptr && m_animation_ctrl->GetAnimation().IsOk();
}

void wxTabButton::Play() {
  if (HasAnimation()) m_animation_ctrl->Play();
}

void wxTabButton::Stop() {
  if (m_animation_ctrl != nullptr) m_animation_ctrl->Stop();
}

bool wxTabButton::IsPlaying() const { return HasAnimation() && m_animation_ctrl->IsPlaying(); }

void wxTabButton::PlaceAnimation() {
  if (!HasAnimation()) return;
  const wxSize size = m_animation_ctrl->GetSize();
  const wxRect content = detail::tab_art_t::content_rect(GetClientSize(), m_crossed);
  m_animation_ctrl->Move(content.x, (GetClientSize().y - size.y) / 2);
}

void wxTabButton::UpdateAnimationBg(color_type_t type) {
  if (m_animation_ctrl == nullptr) return;
  const wxColour colour = GetColor(type);
  if (colour.IsOk()) m_animation_ctrl->SetBackgroundColour(colour);
  m_animation_ctrl->Refresh();
}

void wxTabButton::ShowTooltipText(const std::string& text) {
  if (text.empty()) {
    if (m_tooltip != nullptr) m_tooltip->Destroy();
    m_tooltip = nullptr;
    return;
  }
  if (m_tooltip == nullptr) {
    m_tooltip = new wxCustomTooltip;
    m_tooltip->Attach(this);
  }
  wxClientDC dc(this);
  dc.SetFont(GetFont());
  const int width = calculate_DPI_scaled_length(k_tooltip_width);
  m_tooltip->SetText(wrap_text(dc, wxString::FromUTF8(text), width).utf8_string());
}

std::string wxTabButton::GetTooltipText() const {
  return m_tooltip != nullptr ? m_tooltip->GetText() : std::string();
}

// --- flags --------------------------------------------------------------------

void wxTabButton::SetCrossed(bool crossed) {
  if (m_crossed == crossed) return;
  m_crossed = crossed;
  m_cross_hovered = false;
  ContentChanged();
  Refresh();
}

void wxTabButton::SetCheckboxStyle(bool checkbox) {
  if (m_checkbox_style == checkbox) return;
  m_checkbox_style = checkbox;
  ContentChanged();
  Refresh();
}

void wxTabButton::SetStyle(int style) {
  m_style = style;
  Refresh();
}

void wxTabButton::SetBorders(wxDirection sides) {
  m_borders = sides & wxALL;
  Refresh();
}

// --- colours and font ---------------------------------------------------------

const char* wxTabButton::GetColorKey(color_type_t type) {
  return is_color_type(type) ? k_color_keys[type] : "";
}

void wxTabButton::SetColor(color_type_t type, const wxColour& colour) {
  if (!is_color_type(type)) return;
  m_colors[type].colour = colour;
  m_colors[type].set_by_caller = true;
  if (type == bg_normal || type == bg_pressed || type == bg_hover)
    UpdateAnimationBg(m_selected ? bg_pressed : bg_normal);
  Refresh();
}

wxColour wxTabButton::GetColor(color_type_t type) const {
  if (!is_color_type(type)) return wxColour();
  if (type == bg_hover && !m_colors[type].colour.IsOk())
    return CalculateHighlightColor(m_colors[bg_normal].colour, m_colors[bg_pressed].colour);
  return m_colors[type].colour;
}

bool wxTabButton::IsColorSet(color_type_t type) const {
  return is_color_type(type) && m_colors[type].set_by_caller;
}

wxColour wxTabButton::CalculateHighlightColor(const wxColour& a, const wxColour& b) {
  if (!a.IsOk()) return b;
  if (!b.IsOk()) return a;
  return wxColour((a.Red() + b.Red()) / 2, (a.Green() + b.Green()) / 2, (a.Blue() + b.Blue()) / 2);
}

void wxTabButton::ChangeFont(const wxFont& font) {
  wxControl::SetFont(font);
  m_shown_text_size = wxDefaultSize;
  m_size_cache = wxDefaultSize;
  InvalidateBestSize();
}

bool wxTabButton::SetFont(const wxFont& font) {
  ChangeFont(font);
  ContentChanged();
  Refresh();
  return true;
}

void wxTabButton::SetDefaultUISettings() {
  const wxFont font = GetUiStyle()->get_font(k_font_key);
  ChangeFont(font.IsOk() ? font : wxSystemSettings::GetFont(wxSYS_DEFAULT_GUI_FONT));
}

void wxTabButton::SetDefaultColors() {
  const talvar2::intrusive_pointer_t<ui_style_t> style = GetUiStyle();
  for (int type = bg_normal; type < color_types_end; ++type)
    if (!m_colors[type].set_by_caller) m_colors[type].colour = style->get_color(k_color_keys[type]);
}

void wxTabButton::on_style_updated() {
  if (!GetUiStyle()) return;
  SetDefaultUISettings();
  SetDefaultColors();
  UpdateAnimationBg(m_selected ? bg_pressed : bg_normal);
  if (m_caption.empty() && !m_bitmap.IsOk()) {
    Refresh();
    return;
  }
  ContentChanged();
  Refresh();
}

// --- size ---------------------------------------------------------------------

wxSize wxTabButton::CalculateSize() const {
  detail::tab_measurer_t measurer(*m_art);
  return CalculateSize(measurer);
}

// Strips lay out all their buttons on every resize: the measured size is
// kept until the content, the font or the flags change. A check box depends
// on the current width and is measured each time.
wxSize wxTabButton::CalculateSize(detail::tab_measurer_t& measurer) const {
  if (!m_checkbox_style && m_size_cache != wxDefaultSize) return m_size_cache;
  const wxSize size = measurer.measure(Face(m_bitmap, m_caption), GetFont());
  if (!m_checkbox_style) m_size_cache = size;
  return size;
}

wxSize wxTabButton::DoCalculateSize(const wxBitmap& bitmap, const wxString& text) const {
  detail::tab_measurer_t measurer(*m_art);
  return measurer.measure(Face(bitmap, text), GetFont());
}

detail::tab_face_t wxTabButton::Face(const wxBitmap& image, const wxString& caption) const {
  const bool animated = HasAnimation();
  const wxSize animation = animated ? m_animation_ctrl->GetSize() : wxSize(0, 0);
  return {caption, image, animated, animation, m_crossed, m_checkbox_style, GetSize().x};
}

wxSize wxTabButton::DoGetBestSize() const { return CalculateSize(); }

wxRect wxTabButton::CalculateCrossRect() const {
  return detail::tab_art_t::cross_rect(GetClientSize());
}

wxSize wxTabButton::GetCheckboxSize() const { return m_art->checkbox_size(); }

void wxTabButton::UpdateShownText(const wxSize& size) {
  if (size == m_shown_text_size) return;
  m_shown_text_size = size;
  const int width = detail::tab_art_t::caption_width(GetClientSize(), m_crossed, GetImageSize());
  m_shown_text = detail::tab_measurer_t(*m_art).shown_text(m_caption, width, GetFont());
  UpdateCaptionCut();
}

// --- drawing ------------------------------------------------------------------

wxBitmap wxTabButton::ImageToDraw() const {
  if (!m_bitmap.IsOk() || !m_disabled) return m_bitmap;
  if (!m_grey_bitmap.IsOk())
    m_grey_bitmap = wxBitmap(m_bitmap.ConvertToImage().ConvertToGreyscale(), wxBITMAP_SCREEN_DEPTH,
                             m_bitmap.GetScaleFactor());
  return m_grey_bitmap;
}

void wxTabButton::DrawTwoColoredRect(wxDC& dc, const wxRect& rect, const wxPen& top_left,
                                     const wxPen& bottom_right) {
  detail::tab_art_t::draw_two_coloured_rect(dc, rect, top_left, bottom_right);
}

void wxTabButton::DrawButtonBorder(wxDC& dc, const wxRect& rect, const wxColour& colour) const {
  detail::tab_art_t::draw_border(dc, rect, colour, border_sides(*this));
}

void wxTabButton::DrawCross(wxDC& dc, const wxRect& rect) const {
  const detail::tab_state_t state = state_of(*this);
  m_art->draw_cross(dc, rect, state, detail::tab_art_t::colours(look_of(*this), state).background);
}

void wxTabButton::OnPaint(wxPaintEvent&) {
  wxBufferedPaintDC dc(this);
  DrawButton(dc);
}

void wxTabButton::DrawButton(wxDC& dc) {
  const wxSize client = GetClientSize();
  UpdateShownText(client);
  const wxBitmap image = ImageToDraw();
  m_art->draw_tab(dc, client, Face(image, m_caption), m_shown_text, state_of(*this), look_of(*this),
                  GetFont());
}

void wxTabButton::OnSize(wxSizeEvent& event) {
  PlaceAnimation();
  UpdateShownText(GetClientSize());
  Refresh();
  event.Skip();
}

// --- mouse --------------------------------------------------------------------

// Raises `signal` with the id; false when a handler destroyed the button,
// which must then not be touched again.
bool wxTabButton::RaiseSignal(id_signal_t& signal) {
  const std::shared_ptr<bool> alive = m_alive;
  signal(GetId());
  return *alive && !IsDestroyed();
}

void wxTabButton::OnEnter(wxMouseEvent& event) {
  m_hovered = true;
  if (!m_left_pressed && !m_selected && !m_disabled) UpdateAnimationBg(bg_hover);
  Refresh();
  event.Skip();
}

void wxTabButton::OnLeave(wxMouseEvent& event) {
  m_hovered = false;
  m_cross_hovered = false;
  m_left_pressed = false;
  if (!m_selected) UpdateAnimationBg(bg_normal);
  Refresh();
  event.Skip();
}

void wxTabButton::OnMotion(wxMouseEvent& event) {
  const bool inside = m_crossed && PointInRect(event.GetX(), event.GetY(), CalculateCrossRect());
  if (inside != m_cross_hovered) {
    m_cross_hovered = inside;
    Refresh();
  }
  event.Skip();
}

void wxTabButton::OnLeftDown(wxMouseEvent& event) {
  m_left_pressed = true;
  UpdateAnimationBg(bg_pressed);
  Refresh();
  event.Skip();
}

void wxTabButton::OnLeftUp(wxMouseEvent& event) {
  if (!m_left_pressed || m_disabled) {
    event.Skip();
    return;
  }
  m_left_pressed = false;
  const bool on_cross = m_crossed && PointInRect(event.GetX(), event.GetY(), CalculateCrossRect());
  if (!RaiseSignal(on_cross ? m_delete_requested : m_clicked)) return;
  if (!m_selected) UpdateAnimationBg(m_hovered ? bg_hover : bg_normal);
  Refresh();
  event.Skip();
}

void wxTabButton::OnMiddleDown(wxMouseEvent& event) {
  m_middle_pressed = true;
  event.Skip();
}

void wxTabButton::OnMiddleUp(wxMouseEvent& event) {
  if (!m_crossed || !m_middle_pressed || m_disabled) {
    event.Skip();
    return;
  }
  m_middle_pressed = false;
  if (!RaiseSignal(m_delete_requested)) return;
  event.Skip();
}

}  // namespace orvix1
