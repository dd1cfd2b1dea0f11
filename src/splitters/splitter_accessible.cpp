#include "splitters/splitter_accessible.h"

#include <algorithm>
#include <cmath>

#include "orvix1/wxAdvancedSplitter.h"

namespace orvix1 {
namespace detail {
namespace {

const char* const collapse_action = "collapse";
const char* const expand_action = "expand";

// The sash's track: from the first pane closed to the second pane closed.
struct track_t {
  int first;
  int last;
};

track_t track_of(const wxAdvancedSplitter& splitter) {
  const wxAdvancedSplitter::element_ptr_t sash = splitter.GetSplitterElement();
  return {sash->ClampSashPosition(0), sash->GetMaxSashPosition()};
}

}  // namespace

// The sash: its states and value are read from the splitter each time.
class splitter_accessible_t::sash_part_t : public accessibility::part_t {
 public:
  sash_part_t(wxAdvancedSplitter& splitter, AtkObject* parent)
      : m_splitter(splitter),
        m_node(*this, &splitter, parent, accessibility::node_t::kind_t::ranged) {}

  AtkObject* object() const { return m_node.object(); }

  AtkRole role() const override { return ATK_ROLE_SEPARATOR; }

  void add_states(AtkStateSet* states) const override {
    const bool vertical = m_splitter.GetSplitterElement()->IsVertical();
    atk_state_set_add_state(states, vertical ? ATK_STATE_VERTICAL : ATK_STATE_HORIZONTAL);
    atk_state_set_add_state(states, ATK_STATE_FOCUSABLE);
    if (wxWindow::FindFocus() == &m_splitter) atk_state_set_add_state(states, ATK_STATE_FOCUSED);
    if (!m_splitter.ButtonTakesClicks()) return;
    atk_state_set_add_state(states, ATK_STATE_EXPANDABLE);
    atk_state_set_add_state(
        states, m_splitter.IsSecondPaneClosed() ? ATK_STATE_COLLAPSED : ATK_STATE_EXPANDED);
  }

  // Only while the sash's button would toggle the pane: a disabled button
  // refuses clicks, and assistive technology gets no way around it.
  std::vector<std::string> actions() const override {
    if (!m_splitter.ButtonTakesClicks()) return {};
    return {collapse_action, expand_action};
  }

  void do_action(const std::string& action) override {
    if (action == collapse_action) m_splitter.SetPaneOpenByUser(false);
    if (action == expand_action) m_splitter.SetPaneOpenByUser(true);
  }

  wxRect bounds() const override { return m_splitter.GetSplitterElement()->GetSashRect(); }

  bool grab_focus() override {
    m_splitter.SetFocus();
    return wxWindow::FindFocus() == &m_splitter;
  }

  double value() const override { return percent_of(m_splitter); }

  bool set_value(double percent) override {
    return m_splitter.MoveSashByUser(position_for(m_splitter, percent));
  }

 private:
  wxAdvancedSplitter& m_splitter;
  accessibility::node_t m_node;
};

splitter_accessible_t::splitter_accessible_t(wxAdvancedSplitter& splitter)
    : window_part_t(splitter), m_splitter(splitter), m_reported_closed(splitter.IsSecondPaneClosed()) {}

// Out of line: the sash's part is complete only here.
splitter_accessible_t::~splitter_accessible_t() = default;

AtkObject* splitter_accessible_t::drawn_child(int index) const {
  if (index != 0) return nullptr;
  if (!m_sash)
    m_sash = std::make_unique<sash_part_t>(m_splitter, accessibility::accessible_of(&m_splitter));
  return m_sash->object();
}

void splitter_accessible_t::sash_moved() {
  if (m_sash) accessibility::notify_value(m_sash->object());
}

void splitter_accessible_t::pane_settled() {
  const bool closed = m_splitter.IsSecondPaneClosed();
  if (closed == m_reported_closed) return;
  m_reported_closed = closed;
  if (!m_sash) return;
  accessibility::notify_state(m_sash->object(), ATK_STATE_COLLAPSED, closed);
  accessibility::notify_state(m_sash->object(), ATK_STATE_EXPANDED, !closed);
}

void splitter_accessible_t::focus_changed(bool focused) {
  if (m_sash) accessibility::notify_state(m_sash->object(), ATK_STATE_FOCUSED, focused);
}

// One decimal: the pixel the sash stands on, not the rounding noise of
// dividing by the track.
double splitter_accessible_t::percent_of(const wxAdvancedSplitter& splitter) {
  if (splitter.IsSecondPaneClosed())
    return splitter.GetPaneToClose() == wxAdvancedSplitter::ptcFirst ? 0 : 100;
  const track_t track = track_of(splitter);
  if (track.last <= track.first) return 0;
  const int position = splitter.GetSplitterElement()->GetSashPosition();
  const double percent = 100.0 * (position - track.first) / (track.last - track.first);
  return std::round(std::min(100.0, std::max(0.0, percent)) * 10) / 10;
}

int splitter_accessible_t::position_for(const wxAdvancedSplitter& splitter, double percent) {
  const track_t track = track_of(splitter);
  const double clamped = std::min(100.0, std::max(0.0, percent));
  return track.first + static_cast<int>(std::lround(clamped / 100 * (track.last - track.first)));
}

}  // namespace detail
}  // namespace orvix1
