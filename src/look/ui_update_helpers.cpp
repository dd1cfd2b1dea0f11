#include "orvix1/ui_update_helpers.h"

#include "orvix1/styled.h"

#include "core/contract_sites.h"

namespace orvix1 {
style_t style_t::create_dialog_style() { return style_t(font_normal, color_face, -1); }

style_t style_t::create_inplace_style() { return style_t(font_normal, color_window_bg, -1); }

void set_font_and_colors(wxWindow* wnd, const style_t& style, const ui_settings_t& settings) {
  if (!contract_holds(wnd != nullptr, contract::site_t::style_window_null)) return;
  if (style.font != -1) wnd->SetFont(settings.get_font(static_cast<default_fonts_t>(style.font)));
  if (style.background != -1)
    wnd->SetBackgroundColour(settings.get_color(static_cast<default_colors_t>(style.background)));
  if (style.foreground != -1)
    wnd->SetForegroundColour(settings.get_color(static_cast<default_colors_t>(style.foreground)));
}

style_updater_t::style_updater_t() : m_settings(ui_settings_t::get()) {
  m_settings->changed().connect(this, &style_updater_t::on_ui_changed);
}

style_updater_t::style_updater_t(wxWindow* root, const style_t& style, int depth)
    : style_updater_t() {
  create(root, style, depth);
  propagate_style();
}

style_updater_t::~style_updater_t() {
  disconnect_and_remove_all_children();
  watch_root(nullptr);
}

void style_updater_t::create(wxWindow* root, const style_t& style, int depth) {
  disconnect_and_remove_all_children();
  watch_root(root);
  m_style = style;
  m_depth = depth;
}

void style_updater_t::add(wxWindow* window, style_t style) {
  if (window == nullptr) return;
  if (!is_wnd_registred(window))
    window->Bind(wxEVT_DESTROY, &style_updater_t::on_destroy_child, this);
  m_exceptions[window] = style;
}

bool style_updater_t::is_wnd_registred(wxWindow* window) const {
  return m_exceptions.count(window) != 0;
}

void style_updater_t::disconnect_child(wxWindow* window) {
  if (m_exceptions.erase(window) == 0) return;
  window->Unbind(wxEVT_DESTROY, &style_updater_t::on_destroy_child, this);
}

void style_updater_t::disconnect_and_remove_all_children() {
  for (const auto& exception : m_exceptions)
    exception.first->Unbind(wxEVT_DESTROY, &style_updater_t::on_destroy_child, this);
  m_exceptions.clear();
}

namespace {

// Widgets that draw from a named style; the updater's fonts and colours
// would only fight it.
bool takes_named_style(wxWindow* window) { return dynamic_cast<IStyled*>(window) != nullptr; }

}  // namespace

void style_updater_t::propagate_style() {
  if (!takes_named_style(m_root)) set_font_and_colors(m_root, m_style, *m_settings);
  set_parent_style(m_root, static_cast<unsigned>(m_depth));
  // Exceptions end with their own style, also below the depth.
  for (const auto& exception : m_exceptions)
    set_font_and_colors(exception.first, exception.second, *m_settings);
}

// An updater without a window tree has nothing to restyle.
void style_updater_t::on_ui_changed() {
  if (m_root != nullptr) propagate_style();
}

void style_updater_t::on_destroy_child(wxWindowDestroyEvent& event) {
  event.Skip();
  if (auto* window = dynamic_cast<wxWindow*>(event.GetEventObject())) disconnect_child(window);
}

// `depth` is unsigned on purpose: -1 reaches every level.
void style_updater_t::set_parent_style(wxWindow* window, unsigned depth) {
  if (window == nullptr || depth == 0) return;
  for (wxWindow* child : window->GetChildren()) {
    if (!is_wnd_registred(child) && !takes_named_style(child))
      set_font_and_colors(child, m_style, *m_settings);
    set_parent_style(child, depth - 1);
  }
}

// The root is watched too: a destroyed root is never touched again.
void style_updater_t::watch_root(wxWindow* root) {
  if (m_root == root) return;
  if (m_root != nullptr) m_root->Unbind(wxEVT_DESTROY, &style_updater_t::on_destroy_root, this);
  m_root = root;
  if (m_root != nullptr) m_root->Bind(wxEVT_DESTROY, &style_updater_t::on_destroy_root, this);
}

void style_updater_t::on_destroy_root(wxWindowDestroyEvent& event) {
  event.Skip();
  if (event.GetEventObject() == m_root) watch_root(nullptr);
}

}  // namespace orvix1
