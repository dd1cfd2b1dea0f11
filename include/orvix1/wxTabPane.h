#ifndef ORVIX1_WXTABPANE_H
#define ORVIX1_WXTABPANE_H
/// @file
/// The header bar of a tabbed workspace: a primary tab strip on the left, an
/// optional secondary one (closable, equal-width, may gather at the right),
/// one selection over both, Ctrl+Tab / Ctrl+Shift+Tab and Ctrl+PgDn /
/// Ctrl+PgUp to move it, and a drop-down button listing the tabs that do not
/// fit.
///
/// With pages it is a whole workspace: the pane owns a page area under its
/// strips and shows the selected tab's page there; tabs are dragged to other
/// places and to the other strip, closed through the strips' veto from code
/// too, and their order, strips and selection are saved to one string with
/// the states of the splitters around, and restored. A pane without pages
/// stays a bare header bar.
///
/// Tab indices count the primary strip's tabs, then the secondary's. A page
/// index is its tab's index (a tab added to a strip directly has no page).
///
/// Closing and the veto: a click on a tab's close cross, a middle click on a
/// closable tab, deleting a row of the overflow menu and RequestClose ask
/// the strip's delete_requested veto first. RemovePage, DeletePage,
/// RemovePanel and wxTabPanel::RemoveButton skip it. Either way tab_closed
/// is raised before the tab (and its page) go.

#include <any>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <wx/bitmap.h>
#include <wx/image.h>
#include <wx/sizer.h>
#include <wx/window.h>

#include "orvix1/export.h"
#include "orvix1/styled.h"
#include "orvix1/wxPopupButton.h"
#include "orvix1/wxStaticPicture.h"
#include "orvix1/wxTabButtonsMenu.h"
#include "orvix1/wxTabPanel.h"
#include "talvar2/functor/signal.h"

namespace orvix1 {
namespace detail {
class tab_drag_t;
class tab_pages_t;
struct tab_layout_reading_t;
}  // namespace detail

/// The header bar of a tabbed workspace: a primary and an optional secondary tab strip.
class ORVIX1_API wxTabPane : public wxWindow, public StyledBase {
 public:
  enum panel_index_t { primary_panel = 1, secondary_panel = 2 };

  using panel_int_signal_t = talvar2::signal_t<wxTabPanel*, int>;
  using panel_signal_t = talvar2::signal_t<wxTabPanel*>;
  using void_signal_t = talvar2::signal_t<>;
  using tab_closed_signal_t = talvar2::signal_t<wxTabPane*, wxWindow*, wxTabButton*>;
  using tab_moved_signal_t = talvar2::signal_t<int, int>;

  wxTabPane();
  wxTabPane(wxWindow* parent, wxWindowID id, const wxPoint& position = wxDefaultPosition,
            const wxSize& size = wxDefaultSize, long style = 0);
  ~wxTabPane() override;
  bool create(wxWindow* parent, wxWindowID id, const wxPoint& position = wxDefaultPosition,
              const wxSize& size = wxDefaultSize, long style = 0);

  // --- signals ---
  /// The selection moved to (panel, index) or was cleared there (-1).
  panel_int_signal_t& selection_changed() { return m_selection_changed; }
  panel_signal_t& panel_added() { return m_panel_added; }
  /// The strips have been laid out again.
  void_signal_t& layout_changed() { return m_layout_changed; }
  /// (pane, page, button) of a tab about to go, while both windows still
  /// exist; page is null for a tab without one. Raised once the veto let a
  /// close through, and for the calls that skip the veto. A page closed
  /// through the veto is destroyed afterwards.
  tab_closed_signal_t& tab_closed() { return m_tab_closed; }
  /// (from, to) in tab indices: the user dragged a tab or moved it with
  /// Ctrl+Shift+PgUp / Ctrl+Shift+PgDn, or MoveTab moved it. The selection
  /// has followed the tab by then. RestoreLayout raises none.
  tab_moved_signal_t& tab_moved() { return m_tab_moved; }

  // --- pages ---
  /// A tab for `page` at the end of the primary strip (made when missing);
  /// the page moves into the page area. The first page is selected. Null,
  /// with a warning, for a null page or one the pane already has.
  wxTabButton* AddPage(wxWindow* page, const wxString& caption, bool closable = false,
                       const wxBitmap& image = wxNullBitmap);
  /// The same at the end of strip `panel_index` (1 primary, 2 secondary).
  wxTabButton* AddPage(int panel_index, wxWindow* page, const wxString& caption,
                       bool closable = false, const wxBitmap& image = wxNullBitmap);
  /// Before the tab at `index`, in its strip; `index` = GetPageCount(), or
  /// out of range, appends to the primary strip.
  wxTabButton* InsertPage(int index, wxWindow* page, const wxString& caption,
                          bool closable = false, const wxBitmap& image = wxNullBitmap);
  /// Skips the veto: the tab goes, its page stays hidden in the page area
  /// for the caller. False for an index out of range.
  bool RemovePage(int index);
  /// Skips the veto: the tab and its page are destroyed.
  bool DeletePage(int index);
  /// Closes the tab as its close cross would: the strip's delete_requested
  /// handlers may veto; if none does, the tab and its page are destroyed.
  /// True when the tab went.
  bool RequestClose(int index);
  /// Null for an index out of range or a tab without a page.
  wxWindow* GetPage(int index) const;
  /// The tabs of both strips.
  int GetPageCount() const;
  /// The page's index, -1 when it is not one of the pane's.
  int FindPage(const wxWindow* page) const;
  wxTabButton* GetTab(int index) const;
  int FindTab(const wxTabButton* button) const;
  /// Selects the tab at `index` and shows its page; returns the previous
  /// selection (-1 for none).
  int SetSelection(int index);
  int GetSelection() const;
  wxWindow* GetSelectedPage() const;
  /// Where the pages are shown; pages may be made with it as their parent.
  wxWindow* GetPageArea();
  /// The host's data of a page, any copyable value; false when `page` is
  /// not one of the pane's.
  bool SetPageData(const wxWindow* page, std::any data);
  /// The data as a T, or null (no data, another type, not a page).
  template <class T>
  T* GetPageData(const wxWindow* page) {
    return std::any_cast<T>(GetPageAny(page));
  }
  /// The data itself; null when `page` is not one of the pane's.
  std::any* GetPageAny(const wxWindow* page);

  // --- moving tabs ---
  /// The tab at `from` to `position` in strip `panel_index` (clamped to the
  /// strip); the selection follows it. False for an index or strip that
  /// does not exist.
  bool MoveTab(int from, int panel_index, int position);
  /// The selected tab one place left (-1) or right (+1) in its strip, as
  /// Ctrl+Shift+PgUp / Ctrl+Shift+PgDn do; false at the end or when the
  /// strip keeps its order.
  bool MoveSelectedTab(int step);
  /// Whether the user may drag tabs and move them with the keys (each strip
  /// may still refuse, wxTabPanel::EnableTabMove and EnableTabDrop). Unless
  /// set, on once the pane has a page: a bare header bar keeps its order,
  /// and there Ctrl+Shift+PgUp / PgDn move the selection as without Shift.
  void EnableTabMoves(bool enable) { m_moves = enable ? moves_on : moves_off; }
  bool AreTabMovesEnabled() const;
  /// A drag starts when the pointer, pressed on a tab, moves farther than
  /// the system's drag threshold. Esc or a lost capture cancels it, and the
  /// order it had changed comes back.
  bool IsDragging() const;
  void CancelDrag();

  // --- long captions ---
  /// Caps the width of every tab of both strips (wxTabPanel::SetMaxButtonWidth);
  /// 0 takes the cap away.
  void SetMaxTabWidth(int width);
  int GetMaxTabWidth() const { return m_max_tab_width; }

  // --- a saved layout ---
  /// The stable name under which the page is saved; "" takes it away. False,
  /// with a warning, when `page` is not one of the pane's or another page
  /// has the key. Pages without a key are not saved and keep their places.
  bool SetPageKey(const wxWindow* page, const std::string& key);
  std::string GetPageKey(const wxWindow* page) const;
  /// The window whose advanced and quad splitters are saved with the tabs,
  /// each by the path of window names from it; null (the default): the
  /// pane's top-level window.
  void SetLayoutRoot(wxWindow* root) { m_layout_root = root; }
  /// One line per keyed tab in order (its strip and key), the selected key,
  /// and one line per splitter with its state.
  std::string SaveLayout() const;
  /// Puts a saved layout back. Unknown keys, pages whose keys it lacks,
  /// unknown splitters and text it cannot read are passed over with one
  /// warning: no page is lost, and the pages it does not name keep their
  /// places. False when something was passed over.
  bool RestoreLayout(const std::string& layout);

  // --- panels: 1 is the primary, 2 the secondary ---
  /// The flags' border on wxLEFT / wxRIGHT is kept free beside the panel.
  wxTabPanel* AddPanel(int index, const wxSizerFlags& flags = wxSizerFlags(), long style = 0);
  wxTabPanel* GetPanel(int index) const;
  bool RemovePanel(int index);
  bool RemovePanel(wxTabPanel* panel);
  void SetSecondaryPanelRightAligned(bool right_aligned);
  bool IsSecondaryPanelRightAligned() const { return m_secondary_right_aligned; }

  // --- overflow menu ---
  void SetPopupButtonVisible(bool visible);
  bool IsPopupButtonVisible() const { return m_popup_button_visible; }
  wxPopupButton* GetPopupButton() const { return m_popup_button; }
  wxTabButtonsMenu* GetMenu() const { return m_menu; }
  /// The (panel, button) of each menu row, as last filled.
  const std::vector<std::pair<wxTabPanel*, wxTabButton*>>& GetMenuEntries() const { return m_entries; }
  void OnBeforePopup(IPopup* popup);
  void OnShowHiddenButton(int index);
  void OnDeleteButton(int index);

  // --- selection ---
  bool SelectNext();
  bool SelectPrev();
  int GetIndexOfSelectedButton(wxTabPanel* panel) const;
  wxTabButton* GetLastPressedButton() const { return m_last_pressed; }
  /// Ctrl+Tab, Ctrl+Shift+Tab, Ctrl+PgDn, Ctrl+PgUp; true when the key was one.
  bool HandleNavigationKey(const wxKeyEvent& event);

  // --- layout ---
  void OnChangeSizes();
  void UpdateButtonHeights();
  void UpdateButtonState();
  void UpdateSelectedButton();

  // --- look; `to_panels` also gives the background to the strips ---
  void SetBgImage(const wxImage& image, bool to_panels = true);
  const wxImage& GetBgImage() const { return m_bg_image; }
  void SetBgBitmap(const wxBitmap& bitmap, bool to_panels = true);
  wxBitmap GetBgBitmap() const { return m_bg_bitmap; }
  void SetBgStaticPicture(const static_picture_t& picture, bool to_panels = true);
  const static_picture_t& GetBgStaticPicture() const { return m_bg_picture; }
  bool SetBackgroundColour(const wxColour& colour) override;
  void SetNewPanelsImage(const wxImage& image) { m_new_panels_image = image; }
  void SetPanelImage(wxTabPanel* panel, const wxBitmap& bitmap);
  void SetDefaultUiSettings();
  void SetPanelDefaultUiSettings(wxTabPanel* panel);
  void on_style_updated() override;

  bool AcceptsFocus() const override { return false; }

 protected:
  wxSize DoGetBestSize() const override;
  void DoThaw() override;

 private:
  struct slot_t {
    wxTabPanel* panel = nullptr;
    int border_left = 0;
    int border_right = 0;
  };

  // The drag moves tabs through the pane's own steps.
  friend class detail::tab_drag_t;

  void ConnectPanel(wxTabPanel* panel);
  void ConnectToSlideSignal();
  bool InternalRemovePanel(wxTabPanel* panel);
  bool InternalSelectNext(wxTabPanel* panel, wxTabPanel* other);
  bool InternalSelectPrev(wxTabPanel* panel, wxTabPanel* other);
  bool OwnsButton(const wxTabButton* button) const;
  bool IsKeyScope() const;
  void ApplyBackground(bool to_panels);
  void AlignPanelBackground(wxTabPanel* panel);
  int PanelsHeight() const;
  int PlacePrimaryPanel(int available, int height);
  void PlaceSecondaryPanel(int available, int x, int height);
  void PlacePopupButton(const wxSize& popup, int height);

  void OnButtonPressed(wxTabPanel* panel, int index);
  void OnPanelSlid(wxTabPanel* panel, int sliding, int offset);
  void OnPanelChanged(int index);
  void OnPanelResized();
  void OnPaint(wxPaintEvent& event);
  void OnResize(wxSizeEvent& event);
  void OnCharHook(wxKeyEvent& event);

  // pages
  wxTabButton* InsertPageInto(int panel_index, int position, wxWindow* page,
                              const wxString& caption, bool closable, const wxBitmap& image);
  bool RemoveTab(int index, bool keep_page);
  bool LocateTab(int index, wxTabPanel*& panel, int& position) const;
  wxTabPanel* PanelOf(const wxTabButton* button) const;
  wxTabButton* SelectedTab() const;
  void ShowSelectedPage();
  void PlacePageArea(int height);
  void OnTabRemoving(wxTabPanel* panel, int index);
  void DisposePage(wxTabButton* button);
  void DropPanelPages(wxTabPanel* panel);
  void OnPageDestroyed(wxWindowDestroyEvent& event);
  // saved layouts
  wxWindow* LayoutRoot() const;
  void RestoreTabs(detail::tab_layout_reading_t& reading);
  void RestoreSelection(detail::tab_layout_reading_t& reading);
  void RestoreSplitters(detail::tab_layout_reading_t& reading);
  // moving
  void MoveTabAcross(wxTabButton* button, wxTabPanel* to, int position);
  void ArrangeStrips(const std::vector<wxTabButton*>& primary,
                     const std::vector<wxTabButton*>& secondary);
  void ReportMove(wxTabButton* button, int from);
  void OnMouseWhileDragging(wxMouseEvent& event);
  void OnCaptureLost(wxMouseCaptureLostEvent& event);

  slot_t m_slots[3];  ///< [1] primary, [2] secondary
  bool m_secondary_right_aligned = false;
  wxPopupButton* m_popup_button = nullptr;
  wxTabButtonsMenu* m_menu = nullptr;
  bool m_popup_button_visible = true;
  std::vector<std::pair<wxTabPanel*, wxTabButton*>> m_entries;
  wxTabButton* m_last_pressed = nullptr;
  wxImage m_bg_image;
  wxBitmap m_bg_bitmap;
  static_picture_t m_bg_picture;
  bool m_bg_to_panels = true;
  wxImage m_new_panels_image;
  wxWindow* m_key_scope = nullptr;
  bool m_in_change_sizes = false;
  std::unique_ptr<detail::tab_pages_t> m_pages;
  std::unique_ptr<detail::tab_drag_t> m_drag;
  wxWindow* m_page_area = nullptr;
  wxWindow* m_shown_page = nullptr;
  wxWindow* m_layout_root = nullptr;
  int m_max_tab_width = 0;
  enum { moves_with_pages, moves_on, moves_off } m_moves = moves_with_pages;
  bool m_keep_removed_page = false;
  bool m_destroying = false;

  panel_int_signal_t m_selection_changed;
  panel_signal_t m_panel_added;
  void_signal_t m_layout_changed;
  tab_closed_signal_t m_tab_closed;
  tab_moved_signal_t m_tab_moved;

  wxDECLARE_DYNAMIC_CLASS(wxTabPane);
  wxDECLARE_EVENT_TABLE();
};

}  // namespace orvix1

#endif
