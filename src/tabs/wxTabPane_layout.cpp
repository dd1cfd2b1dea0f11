// The workspace's layout as one string: the keyed tabs' strips and order,
// the selection, the splitters around; and back.

#include <unordered_map>
#include <unordered_set>

#include <wx/toplevel.h>

#include "core/log.h"
#include "orvix1/wxAdvancedSplitter.h"
#include "orvix1/wxTabPane.h"
#include "tabs/tab_layout_splitters.h"
#include "tabs/tab_layout_text.h"
#include "tabs/tab_pages.h"

namespace orvix1 {
namespace {

log4cplus::Logger tabs_logger() { return log::get_logger("orvix.tabs"); }

using button_set_t = std::unordered_set<const wxTabButton*>;

// The strip's buttons once the named ones are in: every button the layout
// does not name keeps its place (or the nearest one left), the named ones
// fill the other places in their saved order.
std::vector<wxTabButton*> merge_strip(const std::vector<wxTabButton*>& current,
                                      const std::vector<wxTabButton*>& named,
                                      const button_set_t& placed) {
  std::vector<std::pair<int, wxTabButton*>> unnamed;
  for (size_t k = 0; k < current.size(); ++k)
    if (placed.count(current[k]) == 0) unnamed.emplace_back(static_cast<int>(k), current[k]);
  std::vector<wxTabButton*> merged;
  merged.reserve(unnamed.size() + named.size());
  size_t u = 0;
  size_t n = 0;
  while (merged.size() < unnamed.size() + named.size()) {
    const bool unnamed_here = u < unnamed.size() &&
                              (unnamed[u].first == static_cast<int>(merged.size()) || n == named.size());
    merged.push_back(unnamed_here ? unnamed[u++].second : named[n++]);
  }
  return merged;
}

}  // namespace

bool wxTabPane::SetPageKey(const wxWindow* page, const std::string& key) {
  wxTabButton* button = m_pages->button_of(page);
  if (button != nullptr && m_pages->set_key(button, key)) return true;
  ORVIX_LOG_WARNING(tabs_logger(), "page key \"" << key << "\" not set: "
                                       << (button == nullptr ? "not a page of this pane" : "another page has it"));
  return false;
}

std::string wxTabPane::GetPageKey(const wxWindow* page) const {
  const detail::tab_page_t* record = m_pages->find(m_pages->button_of(page));
  return record != nullptr ? record->key : std::string();
}

wxWindow* wxTabPane::LayoutRoot() const {
  return m_layout_root != nullptr ? m_layout_root : wxGetTopLevelParent(const_cast<wxTabPane*>(this));
}

std::string wxTabPane::SaveLayout() const {
  detail::saved_tab_layout_t layout;
  for (int slot : {primary_panel, secondary_panel}) {
    const wxTabPanel* panel = m_slots[slot].panel;
    for (int k = 0; panel != nullptr && k < panel->GetButtonsCount(); ++k) {
      const detail::tab_page_t* page = m_pages->find(panel->GetButton(k));
      if (page != nullptr && !page->key.empty()) layout.tabs.push_back({slot, page->key});
    }
  }
  if (const detail::tab_page_t* selected = m_pages->find(SelectedTab())) layout.selected = selected->key;
  for (const detail::splitter_path_t& splitter : detail::find_splitters(LayoutRoot()))
    if (splitter.second->GetSplitterElement()) layout.splitters.push_back({splitter.first, splitter.second->SaveState()});
  return detail::write_tab_layout(layout);
}

bool wxTabPane::RestoreLayout(const std::string& text) {
  detail::tab_layout_reading_t reading = detail::read_tab_layout(text);
  if (reading.recognised) {
    RestoreTabs(reading);
    RestoreSplitters(reading);
  }
  if (reading.ignored > 0)
    ORVIX_LOG_WARNING(tabs_logger(), "tab layout: " << reading.ignored << " part(s) passed over, the first: "
                                                    << reading.first_problem);
  return reading.ignored == 0;
}

void wxTabPane::RestoreTabs(detail::tab_layout_reading_t& reading) {
  std::vector<wxTabButton*> named[2];
  button_set_t placed;
  for (const detail::saved_tab_t& tab : reading.layout.tabs) {
    wxTabButton* button = m_pages->button_of_key(tab.key);
    if (button == nullptr || GetPanel(tab.strip) == nullptr) {
      reading.ignore((button == nullptr ? "unknown key " : "no strip for key ") + detail::layout_token(tab.key));
      continue;
    }
    named[tab.strip - primary_panel].push_back(button);
    placed.insert(button);
  }
  std::vector<wxTabButton*> strips[2];
  bool changed = false;
  for (int slot : {primary_panel, secondary_panel}) {
    const wxTabPanel* panel = m_slots[slot].panel;
    if (panel == nullptr) continue;
    for (const wxTabButton* button : panel->m_buttons) {
      const detail::tab_page_t* page = m_pages->find(button);
      if (page != nullptr && !page->key.empty() && placed.count(button) == 0)
        reading.ignore("key " + detail::layout_token(page->key) + " is not in the layout");
    }
    strips[slot - primary_panel] = merge_strip(panel->m_buttons, named[slot - primary_panel], placed);
    changed = changed || strips[slot - primary_panel] != panel->m_buttons;
  }
  if (changed) ArrangeStrips(strips[0], strips[1]);
  RestoreSelection(reading);
}

void wxTabPane::RestoreSelection(detail::tab_layout_reading_t& reading) {
  const std::string& key = reading.layout.selected;
  if (key.empty()) return;
  wxTabButton* button = m_pages->button_of_key(key);
  if (wxTabPanel* panel = PanelOf(button))
    panel->SetCurrentSelection(button->GetId());
  else
    reading.ignore("unknown selected key " + detail::layout_token(key));
}

void wxTabPane::RestoreSplitters(detail::tab_layout_reading_t& reading) {
  if (reading.layout.splitters.empty()) return;
  std::unordered_map<std::string, wxAdvancedSplitter*> by_path;
  for (const detail::splitter_path_t& splitter : detail::find_splitters(LayoutRoot()))
    by_path.insert(splitter);
  for (const detail::saved_splitter_t& saved : reading.layout.splitters) {
    const auto found = by_path.find(saved.path);
    if (found == by_path.end() || !found->second->GetSplitterElement())
      reading.ignore("no splitter " + detail::layout_token(saved.path));
    else if (!found->second->RestoreState(saved.state))
      reading.ignore("splitter " + detail::layout_token(saved.path) + " refused its state");
  }
}

}  // namespace orvix1
