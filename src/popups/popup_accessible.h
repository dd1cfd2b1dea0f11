#ifndef ORVIX1_SRC_POPUPS_POPUP_ACCESSIBLE_H
#define ORVIX1_SRC_POPUPS_POPUP_ACCESSIBLE_H

// What a screen reader learns of the drop-down button and of the popup menu
// it opens: a push button, and a menu whose drawn rows are menu items.

#include <memory>
#include <vector>

#include "accessibility/accessible.h"

namespace orvix1 {

class wxPopupButton;
class wxPopupMenu;

namespace detail {

class popup_button_accessible_t : public accessibility::window_part_t {
 public:
  explicit popup_button_accessible_t(wxPopupButton& button);

  AtkRole role() const override { return ATK_ROLE_PUSH_BUTTON; }
  std::string name() const override;
  void add_states(AtkStateSet* states) const override;
  std::vector<std::string> actions() const override;
  void do_action(const std::string& action) override;

 private:
  wxPopupButton& m_button;
};

class popup_menu_accessible_t : public accessibility::window_part_t {
 public:
  explicit popup_menu_accessible_t(wxPopupMenu& menu);
  ~popup_menu_accessible_t() override;

  AtkRole role() const override { return ATK_ROLE_MENU; }
  int drawn_child_count() const override { return static_cast<int>(m_rows.size()); }
  AtkObject* drawn_child(int index) const override;

  // Rows are only ever appended or all cleared: the row objects follow the
  // menu's row count.
  void rows_changed();
  void hot_row_changed(int previous);

 private:
  class row_t;

  AtkObject* row_object(int row) const;

  wxPopupMenu& m_menu;
  std::vector<std::unique_ptr<row_t>> m_rows;
};

}  // namespace detail
}  // namespace orvix1

#endif
