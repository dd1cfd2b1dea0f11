#ifndef ORVIX1_WXTABPANE_H
#define ORVIX1_WXTABPANE_H
/// @file
/// The header bar of a tabbed workspace: a primary tab strip on the left, an
/// optional secondary one (closable, equal-width, may gather at the right),
/// one selection over both, Ctrl+Tab / Ctrl+Shift+Tab and Ctrl+PgDn /
/// Ctrl+PgUp to move it, and a drop-down button listing the tabs that do not
/// fit.

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
/// The header bar of a tabbed workspace: a primary and an optional secondary tab strip.
class ORVIX1_API wxTabPane : public wxWindow, public StyledBase {
 public:
  enum panel_index_t { primary_panel = 1, secondary_panel = 2 };

  using panel_int_signal_t = talvar2::signal_t<wxTabPanel*, int>;
  using panel_signal_t = talvar2::signal_t<wxTabPanel*>;
  using void_signal_t = talvar2::signal_t<>;

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

 private:
  struct slot_t {
    wxTabPanel* panel = nullptr;
    int border_left = 0;
    int border_right = 0;
  };

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

  panel_int_signal_t m_selection_changed;
  panel_signal_t m_panel_added;
  void_signal_t m_layout_changed;

  wxDECLARE_DYNAMIC_CLASS(wxTabPane);
  wxDECLARE_EVENT_TABLE();
};

}  // namespace orvix1

#endif
