#ifndef ORVIX1_SRC_TABS_TAB_ACCESSIBLE_H
#define ORVIX1_SRC_TABS_TAB_ACCESSIBLE_H

// What a screen reader learns of a strip and its tabs: a page tab list of
// page tabs, named by their whole captions however short they are drawn.

#include "accessibility/accessible.h"

namespace orvix1 {

class wxTabButton;
class wxTabPanel;

namespace detail {

class tab_accessible_t : public accessibility::window_part_t {
 public:
  explicit tab_accessible_t(wxTabButton& button);

  AtkRole role() const override { return ATK_ROLE_PAGE_TAB; }
  std::string name() const override;
  void add_states(AtkStateSet* states) const override;
  void remove_states(AtkStateSet* states) const override;
  // Both go through the signals a click raises, so the strip selects, and
  // asks its veto, exactly as for the mouse.
  std::vector<std::string> actions() const override;
  void do_action(const std::string& action) override;

  void selection_changed() const;
  void caption_changed() const;
  void disabled_changed() const;

 private:
  wxTabButton& m_button;
};

class tab_strip_accessible_t : public accessibility::window_part_t {
 public:
  explicit tab_strip_accessible_t(wxTabPanel& strip);

  AtkRole role() const override { return ATK_ROLE_PAGE_TAB_LIST; }
};

}  // namespace detail
}  // namespace orvix1

#endif
