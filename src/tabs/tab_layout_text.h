#ifndef ORVIX1_SRC_TAB_LAYOUT_TEXT_H
#define ORVIX1_SRC_TAB_LAYOUT_TEXT_H

// A tab pane's saved layout as text, without windows: which keyed tab is in
// which strip and in what order, the selected key, and the state of each
// splitter by its path. One line each, after a header line:
//
//   orvix1-tab-layout 1
//   tab 1 notes.txt
//   tab 2 search
//   selected notes.txt
//   splitter panel/advancedSplitter position=0.2500;closed=0
//
// Keys and paths are written with every byte outside '!'..'~', and '%', as
// %XX. Reading keeps what it can use and counts what it passes over: a
// damaged line costs that line only.

#include <string>
#include <vector>

namespace orvix1 {
namespace detail {

struct saved_tab_t {
  int strip = 1;  // 1 primary, 2 secondary
  std::string key;
};

struct saved_splitter_t {
  std::string path;
  std::string state;  // as wxAdvancedSplitter::SaveState writes it
};

struct saved_tab_layout_t {
  std::vector<saved_tab_t> tabs;  // in order, primary and secondary mixed
  std::string selected;           // empty: none saved
  std::vector<saved_splitter_t> splitters;
};

struct tab_layout_reading_t {
  bool recognised = false;  // the header was there
  saved_tab_layout_t layout;
  int ignored = 0;            // lines passed over
  std::string first_problem;  // what was wrong with the first of them

  void ignore(const std::string& problem);
};

std::string write_tab_layout(const saved_tab_layout_t& layout);
// A key or path as a layout writes it.
std::string layout_token(const std::string& text);
tab_layout_reading_t read_tab_layout(const std::string& text);

// "position=<digits>[.<digits>];closed=<0|1>" with the position in [0, 1].
bool is_splitter_state(const std::string& state);

}  // namespace detail
}  // namespace orvix1

#endif
