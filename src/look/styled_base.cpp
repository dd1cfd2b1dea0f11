#include "orvix1/styled.h"

namespace orvix1 {

IStyled::~IStyled() = default;

StyledBase::~StyledBase() = default;

void StyledBase::SetUiStyle(talvar2::intrusive_pointer_t<ui_style_t> style) {
  if (style == m_style) return;
  HoldUiStyle(style, true);
  on_style_updated();
}

void StyledBase::HoldUiStyle(talvar2::intrusive_pointer_t<ui_style_t> style, bool follow_updates) {
  if (m_style && m_follows_updates) m_style->updated().disconnect(this, &StyledBase::on_style_updated);
  m_style = style;
  m_follows_updates = m_style && follow_updates;
  if (m_follows_updates) m_style->updated().connect(this, &StyledBase::on_style_updated);
}

talvar2::intrusive_pointer_t<ui_style_t> StyledBase::GetUiStyle() { return m_style; }

void StyledBase::SetStyleInherited(bool inherited) { m_inherited = inherited; }

bool StyledBase::IsStyleInherited() const { return m_inherited; }

void StyledBase::on_style_updated() {}

wxColour StyledBase::StyleColor(const std::string& key) const {
  return m_style ? m_style->get_color(key) : wxColour();
}

wxFont StyledBase::StyleFont(const std::string& key) const {
  return m_style ? m_style->get_font(key) : wxNullFont;
}

}  // namespace orvix1
