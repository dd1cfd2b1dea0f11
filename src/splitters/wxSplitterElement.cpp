#include "orvix1/wxSplitterElement.h"

#include <algorithm>

#include <wx/settings.h>

#include "core/log.h"
#include "orvix1/dpi.h"
#include "orvix1/ui_resources.h"
#include "orvix1/ui_settings.h"
#include "core/contract_sites.h"

namespace orvix1 {
namespace {

log4cplus::Logger splitter_logger() { return log::get_logger("orvix.splitters"); }

bool images_ok(const wxImage& normal, const wxImage& highlighted, const wxImage& pressed) {
  return normal.IsOk() && highlighted.IsOk() && pressed.IsOk();
}

}  // namespace

wxSplitterElement::wxSplitterElement(wxWindow* holder, bool vertical, int sash_size,
                                     int hit_tolerance)
    : m_holder_wnd(holder),
      m_vertical(vertical),
      m_sash_size(std::max(0, sash_size)),
      m_hit_tolerance(std::max(0, hit_tolerance)),
      m_button_direction(vertical ? bdRight : bdDown) {
  contract_holds(m_holder_wnd != nullptr, contract::site_t::splitter_holder_null);
  m_style = new splitter_style_t;
  m_style->updated().connect(this, &wxSplitterElement::OnStyleUpdated);
  InitializeDefaultColors();
}

splitter_style_t::splitter_style_t() { set_style_info(); }

void splitter_style_t::set_style_info() {
  const talvar2::intrusive_pointer_t<ui_settings_t>& palette = get_settings();
  internal_set_color("clSash", palette->get_color(color_face));
  internal_set_color("clSashHot", palette->get_color(color_selection_bg));
  internal_set_color("clSashPressed", palette->get_color(color_shadow_3d));
  internal_set_color("clSashArrow", palette->get_color(color_button_text));
  internal_set_color("clSashArrowDisabled", palette->get_color(color_shadow_3d));
}

// The style's colour, or the desktop's when no palette gave the style one.
wxColour wxSplitterElement::StyleColor(const char* key, wxSystemColour fallback) const {
  const wxColour colour = m_style->get_color(key);
  return colour.IsOk() ? colour : wxSystemSettings::GetColour(fallback);
}

void wxSplitterElement::OnStyleUpdated() {
  InitializeDefaultColors();
  if (m_holder_wnd != nullptr) m_holder_wnd->Refresh();
}

wxSplitterElement::~wxSplitterElement() { *m_alive = false; }

int wxSplitterElement::HolderExtent() const {
  if (m_holder_wnd == nullptr) return 0;
  const wxSize client = m_holder_wnd->GetClientSize();
  return m_vertical ? client.x : client.y;
}

int wxSplitterElement::GetMaxSashPosition() const { return HolderExtent() - m_sash_size / 2; }

int wxSplitterElement::ClampSashPosition(int position) const {
  return std::min(std::max(position, m_sash_size / 2), GetMaxSashPosition());
}

void wxSplitterElement::SetSashPosition(int position) {
  if (m_setting_position) return;
  position = ClampSashPosition(position);
  if (position == m_sash_position && position != 0) return;
  m_sash_position = position;
  m_setting_position = true;
  const std::shared_ptr<bool> alive = m_alive;
  m_position_changed(position);
  if (*alive) m_setting_position = false;
}

void wxSplitterElement::SetSashState(VisualState state) {
  if (state == m_sash_state) return;
  m_sash_state = state;
  m_state_changed(state);
}

wxRect wxSplitterElement::GetSashRect() const {
  if (m_holder_wnd == nullptr) return wxRect();
  const wxSize client = m_holder_wnd->GetClientSize();
  const int start = std::max(0, m_sash_position - m_sash_size / 2);
  if (m_vertical) return wxRect(start, 0, m_sash_size, client.y);
  return wxRect(0, start, client.x, m_sash_size);
}

wxSize wxSplitterElement::GetButtonSize() const {
  const auto images = m_images.find(m_button_direction);
  if (images != m_images.end()) return images->second.normal.GetSize();
  const int length = calculate_DPI_scaled_length(DefaultButtonLength);
  return m_vertical ? wxSize(m_sash_size, length) : wxSize(length, m_sash_size);
}

wxRect wxSplitterElement::GetButtonRect() const {
  if (!m_button_shown) return wxRect();
  const wxRect sash = GetSashRect();
  if (sash.IsEmpty() && m_sash_size > 0) return wxRect();
  const wxSize size = GetButtonSize();
  const wxPoint centre(m_vertical ? m_sash_position : sash.x + sash.width / 2,
                       m_vertical ? sash.y + sash.height / 2 : m_sash_position);
  return wxRect(centre.x - size.x / 2, centre.y - size.y / 2, size.x, size.y);
}

bool wxSplitterElement::SashHitTest(int x, int y) const {
  if (m_sash_size == 0) return false;
  return GetSashRect().Inflate(m_hit_tolerance).Contains(x, y);
}

bool wxSplitterElement::ButtonHitTest(int x, int y) const {
  wxRect button = GetButtonRect();
  if (button.IsEmpty()) return false;
  return button.Inflate(m_hit_tolerance).Contains(x, y);
}

bool wxSplitterElement::SetButtonImage(ButtonDirection direction, const wxImage& normal,
                                       const wxImage& highlighted, const wxImage& pressed) {
  if (!images_ok(normal, highlighted, pressed)) {
    ORVIX_LOG_ERROR(splitter_logger(), "splitter button images for direction "
                                           << direction << " are not valid; kept the old ones");
    return false;
  }
  m_images[direction] = button_images_t{normal, highlighted, pressed};
  return true;
}

bool wxSplitterElement::SetButtonBitmap(ButtonDirection direction, const wxBitmap& normal,
                                        const wxBitmap& highlighted, const wxBitmap& pressed) {
  const auto image = [](const wxBitmap& bitmap) {
    return bitmap.IsOk() ? bitmap.ConvertToImage() : wxImage();
  };
  return SetButtonImage(direction, image(normal), image(highlighted), image(pressed));
}

bool wxSplitterElement::LoadImage(ButtonDirection direction, const std::string& normal,
                                  const std::string& highlighted, const std::string& pressed) {
  const auto resources = ui_resources_t::get();
  return SetButtonImage(direction, resources->get_image(normal), resources->get_image(highlighted),
                        resources->get_image(pressed));
}

bool wxSplitterElement::HasButtonImages(ButtonDirection direction) const {
  return m_images.count(direction) != 0;
}

void wxSplitterElement::SetSashColor(const wxColour& normal, const wxColour& highlighted) {
  m_normal_color.lock(normal);
  m_highlighted_color.lock(highlighted);
}

void wxSplitterElement::InitializeDefaultColors() {
  m_normal_color.refresh(StyleColor("clSash", wxSYS_COLOUR_BTNFACE));
  m_highlighted_color.refresh(StyleColor("clSashHot", wxSYS_COLOUR_HIGHLIGHT));
}

void wxSplitterElement::Draw(wxDC& dc) const {
  const wxRect sash = GetSashRect();
  if (!sash.IsEmpty()) {
    const bool lit = m_sash_state == vsHighlighted || m_sash_state == vsPressed;
    const wxColour colour = lit ? m_highlighted_color.value : m_normal_color.value;
    dc.SetPen(*wxTRANSPARENT_PEN);
    dc.SetBrush(wxBrush(colour));
    dc.DrawRectangle(sash);
  }
  if (m_button_shown) DrawButton(dc);
}

wxImage wxSplitterElement::ImageForState(const button_images_t& images) const {
  switch (m_button_state) {
    case vsHighlighted:
      return images.highlighted;
    case vsPressed:
      return images.pressed;
    case vsDisabled:
      return images.normal.ConvertToGreyscale();
    case vsNormal:
      break;
  }
  return images.normal;
}

void wxSplitterElement::DrawButton(wxDC& dc) const {
  const wxRect button = GetButtonRect();
  if (button.IsEmpty()) return;
  const auto images = m_images.find(m_button_direction);
  if (images != m_images.end()) {
    dc.DrawBitmap(wxBitmap(ImageForState(images->second)), button.GetTopLeft(), true);
    return;
  }
  // Without pictures: a flat plate that lights up under the pointer, and an arrow.
  if (m_button_state == vsHighlighted || m_button_state == vsPressed) {
    dc.SetPen(*wxTRANSPARENT_PEN);
    dc.SetBrush(wxBrush(m_button_state == vsPressed
                            ? StyleColor("clSashPressed", wxSYS_COLOUR_BTNSHADOW)
                            : m_highlighted_color.value));
    dc.DrawRectangle(button);
  }
  DrawArrow(dc, button);
}

void wxSplitterElement::DrawArrow(wxDC& dc, const wxRect& rect) const {
  const wxColour colour = m_button_state == vsDisabled
                              ? StyleColor("clSashArrowDisabled", wxSYS_COLOUR_BTNSHADOW)
                              : StyleColor("clSashArrow", wxSYS_COLOUR_BTNTEXT);
  // As deep as the sash is thick less a margin, and twice as wide.
  const int margin = calculate_DPI_scaled_length(2);
  const int depth = std::max(margin, std::min(rect.width, rect.height) - margin);
  const int half_depth = depth / 2;
  const int half_width = depth;
  const int sign = m_button_direction == bdRight || m_button_direction == bdDown ? 1 : -1;
  const bool sideways = m_button_direction == bdLeft || m_button_direction == bdRight;
  const wxPoint centre(rect.x + rect.width / 2, rect.y + rect.height / 2);
  const auto at = [&](int along, int across) {
    return sideways ? centre + wxPoint(along, across) : centre + wxPoint(across, along);
  };
  wxPoint points[3] = {at(sign * half_depth, 0), at(-sign * half_depth, -half_width),
                       at(-sign * half_depth, half_width)};
  dc.SetPen(wxPen(colour));
  dc.SetBrush(wxBrush(colour));
  dc.DrawPolygon(3, points);
}

}  // namespace orvix1
