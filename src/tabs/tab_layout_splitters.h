#ifndef ORVIX1_SRC_TAB_LAYOUT_SPLITTERS_H
#define ORVIX1_SRC_TAB_LAYOUT_SPLITTERS_H

// The splitters a saved tab layout holds the states of: every advanced
// splitter under a window (a quad splitter is three of them), named by the
// path of window names that leads to it. The path stays the same when the
// host builds the same windows again.

#include <string>
#include <utility>
#include <vector>

class wxWindow;

namespace orvix1 {

class wxAdvancedSplitter;

namespace detail {

using splitter_path_t = std::pair<std::string, wxAdvancedSplitter*>;

// In the order of the window tree. A path joins the names from `root`'s
// child down to the splitter with '/'; the k-th sibling (k > 0) with a name
// its elder siblings have is named "name#k"; '/', '#' and '%' in names are
// written %2F, %23 and %25. Tab strips and top-level children are not
// searched.
std::vector<splitter_path_t> find_splitters(wxWindow* root);

}  // namespace detail
}  // namespace orvix1

#endif
