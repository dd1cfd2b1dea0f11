#include "popups/popup_accessible.h"

#include "orvix1/wxPopupButton.h"
#include "orvix1/wxPopupMenu.h"

namespace orvix1 {
namespace detail {
namespace {

// GTK's own buttons and menu items call their action "click".
const char k_click[] = "click";
const char k_close[] = "close";

}  // namespace

// --- the button ---------------------------------------------------------------

popup_button_accessible_t::popup_button_accessible_t(wxPopupButton& button)
    : window_part_t(button), m_button(button) {}

std::string popup_button_accessible_t::name() const {
  return m_button.GetAccessibleName().utf8_string();
}

void popup_button_accessible_t::add_states(AtkStateSet* states) const {
  atk_state_set_add_state(states, ATK_STATE_HAS_POPUP);
}

std::vector<std::string> popup_button_accessible_t::actions() const { return {k_click}; }

void popup_button_accessible_t::do_action(const std::string& action) {
  if (action == k_click) m_button.OpenPopup();
}

// --- a row of the menu ------------------------------------------------------

class popup_menu_accessible_t::row_t : public accessibility::part_t {
 public:
  row_t(wxPopupMenu& menu, int row, AtkObject* parent)
      : m_menu(menu), m_row(row), m_node(*this, &menu, parent) {}

  AtkObject* object() const { return m_node.object(); }

  AtkRole role() const override { return ATK_ROLE_MENU_ITEM; }
  std::string name() const override { return m_menu.GetRowText(m_row).utf8_string(); }

  void add_states(AtkStateSet* states) const override {
    atk_state_set_add_state(states, ATK_STATE_SELECTABLE);
    atk_state_set_add_state(states, ATK_STATE_FOCUSABLE);
    if (!hot()) return;
    atk_state_set_add_state(states, ATK_STATE_SELECTED);
    atk_state_set_add_state(states, ATK_STATE_FOCUSED);
  }

  void remove_states(AtkStateSet* states) const override {
    if (m_menu.IsRowEnabled(m_row)) return;
    atk_state_set_remove_state(states, ATK_STATE_ENABLED);
    atk_state_set_remove_state(states, ATK_STATE_SENSITIVE);
  }

  std::vector<std::string> actions() const override {
    if (m_menu.IsRowClosable(m_row)) return {k_click, k_close};
    return {k_click};
  }

  // The menu's handlers may refill it and so destroy this row.
  void do_action(const std::string& action) override {
    if (action == k_click)
      m_menu.Choose(m_row);
    else if (action == k_close)
      m_menu.RequestDelete(m_row);
  }

  wxRect bounds() const override { return m_menu.GetRowRect(m_row); }

 private:
  // A disabled row is not highlighted, whatever the pointer is over.
  bool hot() const { return m_menu.GetHotRow() == m_row && m_menu.IsRowEnabled(m_row); }

  wxPopupMenu& m_menu;
  int m_row;
  accessibility::node_t m_node;  // last: it is made from the row
};

// --- the menu -----------------------------------------------------------------

popup_menu_accessible_t::popup_menu_accessible_t(wxPopupMenu& menu)
    : window_part_t(menu), m_menu(menu) {}

// Out of line: a row is complete only here.
popup_menu_accessible_t::~popup_menu_accessible_t() = default;

AtkObject* popup_menu_accessible_t::drawn_child(int index) const { return row_object(index); }

AtkObject* popup_menu_accessible_t::row_object(int row) const {
  return row >= 0 && row < static_cast<int>(m_rows.size()) ? m_rows[row]->object() : nullptr;
}

void popup_menu_accessible_t::rows_changed() {
  AtkObject* menu = accessibility::accessible_of(&m_menu);
  // The rows follow the window's own children, if any.
  const int first = atk_object_get_n_accessible_children(menu) - static_cast<int>(m_rows.size());
  while (static_cast<int>(m_rows.size()) > m_menu.GetRowCount()) {
    std::unique_ptr<row_t> gone = std::move(m_rows.back());
    m_rows.pop_back();
    accessibility::notify_child_removed(menu, first + static_cast<int>(m_rows.size()), gone->object());
  }
  while (static_cast<int>(m_rows.size()) < m_menu.GetRowCount()) {
    const int row = static_cast<int>(m_rows.size());
    m_rows.push_back(std::make_unique<row_t>(m_menu, row, menu));
    accessibility::notify_child_added(menu, first + row, m_rows.back()->object());
  }
}

// A disabled row is never highlighted, so it has nothing to say.
void popup_menu_accessible_t::hot_row_changed(int previous) {
  for (const auto& [row, hot] : {std::pair<int, bool>{previous, false}, {m_menu.GetHotRow(), true}}) {
    if (!m_menu.IsRowEnabled(row)) continue;
    accessibility::notify_state(row_object(row), ATK_STATE_SELECTED, hot);
    accessibility::notify_state(row_object(row), ATK_STATE_FOCUSED, hot);
  }
}

}  // namespace detail
}  // namespace orvix1
