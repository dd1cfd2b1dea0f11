#ifndef ORVIX1_SRC_TAB_PAGES_H
#define ORVIX1_SRC_TAB_PAGES_H

// What a tab pane knows of its pages: for each tab that has one, the page
// window, the key the host gave it for saved layouts, and the host's data.
// Tabs are found by their button, pages by their window, keys by their
// text, each in constant time: a workspace may hold thousands of tabs.

#include <any>
#include <string>
#include <unordered_map>

class wxWindow;

namespace orvix1 {

class wxTabButton;

namespace detail {

struct tab_page_t {
  wxWindow* window = nullptr;
  std::string key;  // empty: not in saved layouts
  std::any data;
};

class tab_pages_t {
 public:
  tab_page_t* find(const wxTabButton* button) {
    const auto found = m_by_button.find(button);
    return found == m_by_button.end() ? nullptr : &found->second;
  }
  wxTabButton* button_of(const wxWindow* window) const { return lookup(m_by_window, window); }
  wxTabButton* button_of_key(const std::string& key) const { return lookup(m_by_key, key); }
  bool empty() const { return m_by_button.empty(); }

  void add(wxTabButton* button, wxWindow* window) {
    m_by_button[button].window = window;
    m_by_window[window] = button;
  }
  void erase(const wxTabButton* button) {
    const auto found = m_by_button.find(button);
    if (found == m_by_button.end()) return;
    m_by_window.erase(found->second.window);
    if (!found->second.key.empty()) m_by_key.erase(found->second.key);
    m_by_button.erase(found);
  }
  // False when another page holds the key; "" takes the page's key away.
  bool set_key(wxTabButton* button, const std::string& key) {
    tab_page_t* page = find(button);
    if (page == nullptr) return false;
    wxTabButton* holder = button_of_key(key);
    if (!key.empty() && holder != nullptr && holder != button) return false;
    if (!page->key.empty()) m_by_key.erase(page->key);
    page->key = key;
    if (!key.empty()) m_by_key[key] = button;
    return true;
  }

 private:
  template <class Map, class Key>
  static wxTabButton* lookup(const Map& map, const Key& key) {
    const auto found = map.find(key);
    return found == map.end() ? nullptr : found->second;
  }

  std::unordered_map<const wxTabButton*, tab_page_t> m_by_button;
  std::unordered_map<const wxWindow*, wxTabButton*> m_by_window;
  std::unordered_map<std::string, wxTabButton*> m_by_key;
};

}  // namespace detail
}  // namespace orvix1

#endif
