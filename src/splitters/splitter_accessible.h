#ifndef ORVIX1_SRC_SPLITTERS_SPLITTER_ACCESSIBLE_H
#define ORVIX1_SRC_SPLITTERS_SPLITTER_ACCESSIBLE_H

// What a screen reader sees of a wxAdvancedSplitter: a split pane whose one
// drawn child is the sash, a separator whose value is its position in
// percent and whose actions collapse and expand the pane the splitter
// closes (SetPaneToClose). The sash's object is made when assistive
// technology first asks for it; until then the events below cost nothing.

#include <memory>

#include "accessibility/accessible.h"

namespace orvix1 {
class wxAdvancedSplitter;

namespace detail {

class splitter_accessible_t : public accessibility::window_part_t {
 public:
  explicit splitter_accessible_t(wxAdvancedSplitter& splitter);
  ~splitter_accessible_t() override;

  AtkRole role() const override { return ATK_ROLE_SPLIT_PANE; }
  /// The window's keyboard focus is the sash's.
  void remove_states(AtkStateSet* states) const override {
    atk_state_set_remove_state(states, ATK_STATE_FOCUSED);
  }
  int drawn_child_count() const override { return 1; }
  AtkObject* drawn_child(int index) const override;

  void sash_moved();
  /// Announces collapsed or expanded when the pane came to rest the other way.
  void pane_settled();
  void focus_changed(bool focused);

 private:
  class sash_part_t;

  /// The sash position in percent of its track; 0 with the first pane
  /// closed, 100 with the second.
  static double percent_of(const wxAdvancedSplitter& splitter);
  /// The sash position that shows `percent`.
  static int position_for(const wxAdvancedSplitter& splitter, double percent);

  wxAdvancedSplitter& m_splitter;
  mutable std::unique_ptr<sash_part_t> m_sash;
  bool m_reported_closed = false;
};

}  // namespace detail
}  // namespace orvix1

#endif
