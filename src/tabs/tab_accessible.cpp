#include "tabs/tab_accessible.h"

#include "orvix1/wxTabButton.h"
#include "orvix1/wxTabPanel.h"

namespace orvix1 {
namespace detail {
namespace {

const char k_activate[] = "activate";
const char k_close[] = "close";

}  // namespace

tab_accessible_t::tab_accessible_t(wxTabButton& button)
    : window_part_t(button), m_button(button) {}

std::string tab_accessible_t::name() const { return m_button.GetLabel().utf8_string(); }

void tab_accessible_t::add_states(AtkStateSet* states) const {
  atk_state_set_add_state(states, ATK_STATE_SELECTABLE);
  atk_state_set_add_state(states, ATK_STATE_FOCUSABLE);
  if (m_button.IsSelected()) atk_state_set_add_state(states, ATK_STATE_SELECTED);
}

// A tab switched off by its strip is still a sensitive window to GTK.
void tab_accessible_t::remove_states(AtkStateSet* states) const {
  atk_state_set_remove_state(states, ATK_STATE_SELECTED);
  if (!m_button.GetDisabled()) return;
  atk_state_set_remove_state(states, ATK_STATE_ENABLED);
  atk_state_set_remove_state(states, ATK_STATE_SENSITIVE);
}

std::vector<std::string> tab_accessible_t::actions() const {
  if (m_button.GetCrossed()) return {k_activate, k_close};
  return {k_activate};
}

// The button may be gone when a signal returns: nothing is touched after.
void tab_accessible_t::do_action(const std::string& action) {
  if (m_button.GetDisabled()) return;
  if (action == k_activate)
    m_button.clicked()(m_button.GetId());
  else if (action == k_close && m_button.GetCrossed())
    m_button.delete_requested()(m_button.GetId());
}

void tab_accessible_t::selection_changed() const {
  accessibility::notify_state(accessibility::accessible_of(&m_button), ATK_STATE_SELECTED,
                              m_button.IsSelected());
}

void tab_accessible_t::caption_changed() const {
  accessibility::notify_name(accessibility::accessible_of(&m_button));
}

void tab_accessible_t::disabled_changed() const {
  AtkObject* object = accessibility::accessible_of(&m_button);
  accessibility::notify_state(object, ATK_STATE_ENABLED, !m_button.GetDisabled());
  accessibility::notify_state(object, ATK_STATE_SENSITIVE, !m_button.GetDisabled());
}

tab_strip_accessible_t::tab_strip_accessible_t(wxTabPanel& strip) : window_part_t(strip) {}

}  // namespace detail
}  // namespace orvix1
