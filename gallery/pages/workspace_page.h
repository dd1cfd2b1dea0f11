#ifndef GALLERY_PAGES_WORKSPACE_PAGE_H
#define GALLERY_PAGES_WORKSPACE_PAGE_H

#include <string>

class wxWindow;

namespace orvix1 {
class wxAdvancedSplitter;
class wxTabPane;
}  // namespace orvix1

namespace gallery {

// A log viewer's workspace: a tree of files in an advanced splitter on the
// left, a tab pane with pages in both strips on the right. Tabs are dragged
// and closed (a pinned log refuses), the layout is saved, the workspace
// built again from nothing and the layout restored, as at a program's next
// start.
wxWindow* create_workspace_page(wxWindow* parent);

// The buttons' names.
constexpr const char* k_workspace_save = "workspace_save";
constexpr const char* k_workspace_rebuild = "workspace_rebuild";
constexpr const char* k_workspace_restore = "workspace_restore";

// The workspace as it is now (a rebuild makes new windows).
orvix1::wxTabPane* workspace_pane(wxWindow* page);
orvix1::wxAdvancedSplitter* workspace_splitter(wxWindow* page);
// The pages' keys in the order of the tabs: "app.log audit.log | search".
std::string workspace_order(wxWindow* page);

}  // namespace gallery

#endif
