#include "tabs/tab_layout_splitters.h"

#include <unordered_map>

#include "orvix1/wxAdvancedSplitter.h"
#include "orvix1/wxTabPanel.h"

namespace orvix1 {
namespace detail {
namespace {

std::string path_part(const wxString& name) {
  std::string part;
  for (const char c : name.utf8_string()) {
    if (c == '/')
      part += "%2F";
    else if (c == '#')
      part += "%23";
    else if (c == '%')
      part += "%25";
    else
      part += c;
  }
  return part;
}

// Thousands of tabs may lie under the root: the strips are passed over.
void collect(wxWindow* window, const std::string& path, std::vector<splitter_path_t>& found) {
  std::unordered_map<std::string, int> seen;
  for (wxWindow* child : window->GetChildren()) {
    if (child->IsTopLevel() || dynamic_cast<wxTabPanel*>(child) != nullptr) continue;
    std::string name = path_part(child->GetName());
    const int elder = seen[name]++;
    if (elder > 0) name += "#" + std::to_string(elder);
    const std::string child_path = path.empty() ? name : path + "/" + name;
    if (auto* splitter = dynamic_cast<wxAdvancedSplitter*>(child)) found.emplace_back(child_path, splitter);
    collect(child, child_path, found);
  }
}

}  // namespace

std::vector<splitter_path_t> find_splitters(wxWindow* root) {
  std::vector<splitter_path_t> found;
  if (root != nullptr) collect(root, std::string(), found);
  return found;
}

}  // namespace detail
}  // namespace orvix1
