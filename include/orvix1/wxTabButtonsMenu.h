#ifndef ORVIX1_WXTABBUTTONSMENU_H
#define ORVIX1_WXTABBUTTONSMENU_H
/// @file
/// The overflow menu of a tab pane: one row per hidden tab, with the tab's
/// image and caption, and the tab's close cross when it can be closed.

#include <vector>

#include "orvix1/export.h"
#include "orvix1/wxPopupMenu.h"

namespace orvix1 {

class wxTabButton;
/// The overflow menu of a tab pane: one row per hidden tab.
class ORVIX1_API wxTabButtonsMenu : public wxPopupMenu {
 public:
  explicit wxTabButtonsMenu(wxWindow* parent);

  /// A row standing for `button`; its index.
  int AddTabButton(wxTabButton* button);
  void ClearButtons();
  /// The button behind a row; null for a row out of range.
  wxTabButton* GetTabButton(int row) const;

 private:
  std::vector<wxTabButton*> m_buttons;
};

}  // namespace orvix1

#endif
