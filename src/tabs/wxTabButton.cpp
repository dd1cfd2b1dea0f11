#include "orvix1/wxTabButton.h"

#include <algorithm>

#include <wx/dcbuffer.h>
#include <wx/dcclient.h>
#include <wx/settings.h>

#include "orvix1/text_utils.h"
#include "orvix1/ui_settings.h"
#include "orvix1/wxCustomTooltip.h"
#include "look/tab_cross_images.h"

namespace orvix1 {
namespace {

// Space between the border and the content, and between image and text.
const int k_padding_x = 4;
const int k_padding_y = 3;
const int k_gap = 4;
// Tooltips of tabs wrap at this width.
const int k_tooltip_width = 400;

const char* const k_color_keys[wxTabButton::color_types_end] = {
    "",                 "clBtnBgNormal",   "clBtnBgHover",     "clBtnBgPressed",
    "clBtnBgDisabled",  "clBorderNormal",  "clBorderHover",    "clBorderPressed",
    "clBorderDisabled", "clTextNormal",    "clTextPressed",    "clTextDisabled",
    "clBg"};

const char k_font_key[] = "fnNormalBold";

bool is_color_type(int type) { return type >= wxTabButton::bg_normal && type < wxTabButton::color_types_end; }

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

wxTabButton::wxTabButton() = default;

wxTabButton::wxTabButton(wxWindow* parent, wxWindowID id, const wxString& label,
                         const wxPoint& position, const wxSize& size, long style) {
  Create(parent, id, label, position, size, style);
}

wxTabButton::wxTabButton(wxWindow* parent, wxWindowID id, const wxBitmap& bitmap,
                         const wxString& label, const wxPoint& position, const wxSize& size,
                         long style)
    : m_bitmap(bitmap) {
  Create(parent, id, label, position, size, style);
}

wxTabButton::wxTabButton(wxWindow* parent, wxWindowID id, const picture_t& picture,
                         const wxString& label, const wxPoint& position, const wxSize& size,
                         long style)
    : m_bitmap(picture.GetBitmap()) {
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
  m_created = true;
  if (size == wxDefaultSize) SetSize(CalculateSize());
  return true;
}

void wxTabButton::init(const wxString& label) {
  m_cross_images[0] = wxBitmap(detail::tab_cross_normal_xpm);
  m_cross_images[1] = wxBitmap(detail::tab_cross_hovered_xpm);
  m_cross_images[2] = wxBitmap(detail::tab_cross_pressed_xpm);
  m_caption = label;
  SetUiStyle(new default_style_t);  // applies fonts and colours
}

// --- state --------------------------------------------------------------------

void wxTabButton::Press() {
  m_selected = true;
  UpdateAnimationBg(bg_pressed);
  Refresh();
}

void wxTabButton::Restore() {
  m_selected = false;
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
  m_selected = (state & state_selected) != 0;
  m_disabled = (state & state_disabled) != 0;
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
  m_resized();
}

void wxTabButton::SetLabel(const wxString& label) {
  if (label == m_caption) return;
  m_caption = label;
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
  if (m_bitmap.IsOk()) return m_bitmap.GetSize();
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
  const wxRect content = GetContentRect();
  m_animation_ctrl->Move(content.x, (GetClientSize().y - size.y) / 2);
}

void wxTabButton::UpdateAnimationBg(color_type_t type) {
  if (m_animation_ctrl == nullptr) return;
  const wxColour colour = GetColor(type);
  if (colour.IsOk()) m_animation_ctrl->SetBackgroundColour(colour);
  m_animation_ctrl->Refresh();
}

void wxTabButton::SetTooltipText(const std::string& text) {
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
  m_tooltip->SetText(wrap_text(dc, wxString::FromUTF8(text), k_tooltip_width).utf8_string());
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

// Strips lay out all their buttons on every resize: the measured size is
// kept until the content, the font or the flags change. A check box depends
// on the current width and is measured each time.
wxSize wxTabButton::CalculateSize() const {
  if (m_checkbox_style) return DoCalculateSize(m_bitmap, m_caption);
  if (m_size_cache == wxDefaultSize) m_size_cache = DoCalculateSize(m_bitmap, m_caption);
  return m_size_cache;
}

wxSize wxTabButton::DoCalculateSize(const wxBitmap& bitmap, const wxString& text) const {
  const wxSize text_size = GetTextSize(this, text, GetFont());
  wxSize image_size = bitmap.IsOk() ? bitmap.GetSize() : wxSize(0, 0);
  if (m_checkbox_style) image_size = GetCheckboxSize();
  int height = std::max(text_size.y, image_size.y) + 2 * k_padding_y;
  if (HasAnimation()) {
    const wxSize animation = m_animation_ctrl->GetSize();
    height = std::max(height, animation.y + 2 * k_padding_y);
    if (!bitmap.IsOk() && !m_checkbox_style) image_size.x = animation.x;
  }
  int width = text_size.x;
  if (m_crossed) width += m_cross_images[0].GetWidth() + k_gap;
  if (m_checkbox_style && GetSize().x > 1) {
    width = GetSize().x;  // a check box keeps the width it was given
  } else {
    width += image_size.x + 2 * k_padding_x;
    if (text_size.x > 0) width += k_gap;
  }
  return wxSize(width, height);
}

wxSize wxTabButton::DoGetBestSize() const { return CalculateSize(); }

wxRect wxTabButton::CalculateCrossRect() const {
  const wxSize image = m_cross_images[0].GetSize();
  const wxSize client = GetClientSize();
  return wxRect(client.x - image.x - k_padding_x, (client.y - image.y) / 2, image.x, image.y);
}

wxSize wxTabButton::GetCheckboxSize() const {
  return GetNativeCheckBoxSize(const_cast<wxTabButton*>(this));
}

wxRect wxTabButton::GetContentRect() const {
  wxRect rect(GetClientSize());
  rect.Deflate(k_padding_x, k_padding_y);
  if (m_crossed) rect.width -= m_cross_images[0].GetWidth() + k_gap;
  return rect;
}

void wxTabButton::UpdateShownText(const wxSize& size) {
  if (size == m_shown_text_size) return;
  m_shown_text_size = size;
  int available = GetContentRect().width;
  const wxSize image = GetImageSize();
  if (image.x > 0) available -= image.x + k_gap;
  wxClientDC dc(this);
  dc.SetFont(GetFont());
  m_shown_text = elide_text(dc, m_caption, std::max(available, 0));
}

// --- drawing ------------------------------------------------------------------

wxColour wxTabButton::StateColor(color_type_t normal, color_type_t hover, color_type_t pressed,
                                 color_type_t disabled) const {
  if (m_disabled) return GetColor(disabled);
  if (m_selected || m_left_pressed) return GetColor(pressed);
  if (m_hovered) return GetColor(hover);
  return GetColor(normal);
}

wxBitmap wxTabButton::ImageToDraw() const {
  if (!m_bitmap.IsOk() || !m_disabled) return m_bitmap;
  if (!m_grey_bitmap.IsOk()) m_grey_bitmap = wxBitmap(m_bitmap.ConvertToImage().ConvertToGreyscale());
  return m_grey_bitmap;
}

void wxTabButton::DrawTwoColoredRect(wxDC& dc, const wxRect& rect, const wxPen& top_left,
                                     const wxPen& bottom_right) {
  const int right = rect.GetRight();
  const int bottom = rect.GetBottom();
  dc.SetPen(top_left);
  dc.DrawLine(rect.x, bottom, rect.x, rect.y);
  dc.DrawLine(rect.x, rect.y, right, rect.y);
  dc.SetPen(bottom_right);
  dc.DrawLine(right, rect.y, right, bottom);
  dc.DrawLine(right, bottom, rect.x - 1, bottom);
}

void wxTabButton::DrawButtonBorder(wxDC& dc, const wxRect& rect, const wxColour& colour) const {
  if (!colour.IsOk() || (m_style & style_no_border) != 0) return;
  dc.SetPen(wxPen(colour, 1, wxPENSTYLE_SOLID));
  const int right = rect.GetRight();
  const int bottom = rect.GetBottom();
  if (m_borders & wxLEFT) dc.DrawLine(rect.x, rect.y, rect.x, bottom + 1);
  if (m_borders & wxTOP) dc.DrawLine(rect.x, rect.y, right + 1, rect.y);
  if (m_borders & wxRIGHT) dc.DrawLine(right, rect.y, right, bottom + 1);
  if (m_borders & wxBOTTOM) dc.DrawLine(rect.x, bottom, right + 1, bottom);
}

void wxTabButton::DrawCross(wxDC& dc, const wxRect& rect) const {
  int look = 0;
  if (m_cross_hovered) look = m_left_pressed ? 2 : 1;
  dc.DrawBitmap(m_cross_images[look], rect.x, rect.y, true);
}

void wxTabButton::OnPaint(wxPaintEvent&) {
  wxBufferedPaintDC dc(this);
  DrawButton(dc);
}

void wxTabButton::DrawButton(wxDC& dc) {
  const wxRect client(GetClientSize());
  if (m_background_image.IsOk()) {
    dc.DrawBitmap(wxBitmap(m_background_image.Scale(std::max(client.width, 1),
                                                   std::max(client.height, 1))),
                  0, 0);
  } else {
    const wxColour background = StateColor(bg_normal, bg_hover, bg_pressed, bg_disabled);
    dc.SetBrush(background.IsOk() ? wxBrush(background) : *wxTRANSPARENT_BRUSH);
    dc.SetPen(*wxTRANSPARENT_PEN);
    dc.DrawRectangle(client);
  }

  wxRect label = GetContentRect();
  wxBitmap image = ImageToDraw();
  if (m_checkbox_style) {
    const wxSize box = GetCheckboxSize();
    DrawNativeCheckBox(this, dc, wxRect(label.x, label.y, box.x, label.height), m_selected,
                       m_disabled);
    label.x += box.x + k_gap;
    label.width -= box.x + k_gap;
    image = wxNullBitmap;
  } else if (HasAnimation() && !image.IsOk()) {
    const int taken = m_animation_ctrl->GetSize().x + k_gap;
    label.x += taken;
    label.width -= taken;
  }
  UpdateShownText(client.GetSize());
  const wxColour text = m_disabled ? GetColor(text_disabled)
                        : (m_selected || m_left_pressed) ? GetColor(text_pressed)
                                                         : GetColor(text_normal);
  dc.SetFont(GetFont());
  if (text.IsOk()) dc.SetTextForeground(text);
  const int alignment = ((m_style & style_centre_label) != 0 ? wxALIGN_CENTRE_HORIZONTAL : wxALIGN_LEFT) |
                        wxALIGN_CENTRE_VERTICAL;
  dc.DrawLabel(m_shown_text, image, label, alignment);

  DrawButtonBorder(dc, client, StateColor(border_normal, border_hover, border_pressed, border_disabled));
  if (m_crossed) DrawCross(dc, CalculateCrossRect());
}

void wxTabButton::OnSize(wxSizeEvent& event) {
  PlaceAnimation();
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
