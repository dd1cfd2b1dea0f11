#ifndef ORVIX1_WXTABPANEL_H
#define ORVIX1_WXTABPANEL_H
/// @file
/// A strip of tab buttons in one row: margins and optional separator images
/// ("splitters") between them, one selected button, variable or equal
/// widths, and the buttons that do not fit kept in a hidden list for the
/// overflow menu. Closing a tab passes through a veto signal.

#include <memory>
#include <string>
#include <vector>

#include <wx/animate.h>
#include <wx/bitmap.h>
#include <wx/image.h>
#include <wx/window.h>

#include "orvix1/export.h"
#include "orvix1/picture.h"
#include "orvix1/styled.h"
#include "orvix1/wxTabButton.h"
#include "talvar2/functor/signal.h"

namespace orvix1 {

class wxTabPanel;

namespace detail {
class tab_art_t;
class tab_strip_accessible_t;
struct tab_margins_t;
struct tab_strip_layout_t;
struct tab_strip_params_t;
}  // namespace detail

/// Whether `button` is one of `buttons`.
ORVIX1_API bool ButtonIsInVector(const wxTabButton* button, const std::vector<wxTabButton*>& buttons);
/// A strip of tab buttons in one row, with a hidden list for the tabs that do not fit.
class ORVIX1_API wxTabPanel : public wxWindow, public StyledBase {
 public:
  /// One gap of the strip: slot k lies just before shown button k, the slot
  /// after the last lies behind the last button.
  struct splitter_t {
    wxImage image;  ///< may be empty: the slot then only pays its margin
    int index = -1;
    int x = 0;
    int y = 0;
  };

  /// The list a button is counted in, for TranslateIndex.
  enum list_t { list_all, list_shown, list_hidden };

  using panel_int_signal_t = talvar2::signal_t<wxTabPanel*, int>;
  using veto_signal_t = talvar2::signal_t<wxTabPanel*, int, bool&>;
  using void_signal_t = talvar2::signal_t<>;
  using int_signal_t = talvar2::signal_t<int>;
  using slide_signal_t = talvar2::signal_t<wxTabPanel*, int, int>;

  /// The strip background and the colours its buttons start with.
  class ORVIX1_API default_style_t : public wxTabButton::default_style_t {
   public:
    default_style_t();
    void set_style_info() override;
  };

  wxTabPanel();
  wxTabPanel(wxWindow* parent, wxWindowID id, const wxPoint& position = wxDefaultPosition,
             const wxSize& size = wxDefaultSize, long style = 0);
  ~wxTabPanel() override;
  bool create(wxWindow* parent, wxWindowID id, const wxPoint& position = wxDefaultPosition,
              const wxSize& size = wxDefaultSize, long style = 0);

  // --- signals ---
  panel_int_signal_t& selection_changed() { return m_selection_changed; }
  /// (panel, id, allow): a handler clears allow to keep the tab.
  veto_signal_t& delete_requested() { return m_delete_requested; }
  void_signal_t& resized() { return m_resized; }
  panel_int_signal_t& splitter_changed() { return m_splitter_changed; }
  /// The index a button was added at or removed from.
  int_signal_t& button_added() { return m_button_added; }
  int_signal_t& button_removed() { return m_button_removed; }
  /// (panel, index) of a button RemoveButton is about to take out, while it
  /// is still in place: whatever removes it, the veto already passed.
  panel_int_signal_t& button_removing() { return m_button_removing; }
  /// (panel, sliding, offset), raised by SendSlideSignal.
  slide_signal_t& slid() { return m_slid; }

  // --- buttons ---
  wxTabButton* AddButton(const wxString& caption);
  wxTabButton* AddButton(const wxBitmap& bitmap, const wxString& caption);
  wxTabButton* AddButton(const wxImage& image, const wxString& caption);
  wxTabButton* AddButton(const picture_t& picture, const wxString& caption);
  wxTabButton* AddButton(const wxAnimation& animation, const wxString& caption);
  /// Loads the image file; a file that cannot be read gives a button
  /// without an image.
  wxTabButton* AddButton(const std::string& image_path, const wxString& caption);
  /// An index out of range appends.
  wxTabButton* InsertButton(int index, const wxString& caption);
  wxTabButton* InsertButton(const wxBitmap& bitmap, const wxString& caption, int index);
  wxTabButton* InsertButton(const wxAnimation& animation, const wxString& caption, int index);
  wxTabButton* CreateButton(const picture_t& picture, const wxString& caption);
  void InitializeButton(wxTabButton* button);
  /// Destroys the button (or, with keep_window, leaves the hidden window to
  /// the caller); false for an index out of range or a foreign button. No
  /// veto is asked: delete_requested belongs to the close cross.
  bool RemoveButton(int index, bool keep_window = false);
  bool RemoveButton(wxTabButton* button, bool keep_window = false);
  wxTabButton* GetButton(int index) const;
  int GetButtonsCount() const { return static_cast<int>(m_buttons.size()); }
  int GetCount() const { return GetButtonsCount(); }
  void SetDisabled(int index, bool disabled = true);
  /// Moves the button at `from` to `to`, the others closing up; ids follow
  /// the new order and the selection stays with its button. False, changing
  /// nothing, for an index out of range.
  bool MoveButton(int from, int to);
  /// Where a button dropped at `x` (client coordinates) would go: the index
  /// of the first shown button whose middle lies right of x, else the one
  /// after the last shown button.
  int InsertionIndexAt(int x) const;
  /// Whether the user may drag this strip's tabs to other places (and move
  /// them with the keys), and drop tabs of the other strip on it; both on
  /// by default, read by the tab pane.
  void EnableTabMove(bool enable) { m_tab_move = enable; }
  bool IsTabMoveEnabled() const { return m_tab_move; }
  void EnableTabDrop(bool enable) { m_tab_drop = enable; }
  bool IsTabDropEnabled() const { return m_tab_drop; }

  // --- selection ---
  void SetCurrentSelection(int index);
  int GetCurrentSelection() const { return m_selection; }

  // --- shown and hidden buttons ---
  const std::vector<wxTabButton*>& GetShownButtons() const { return m_shown; }
  const std::vector<wxTabButton*>& GetHiddenButtons() const { return m_hidden; }
  int GetShownCount() const { return static_cast<int>(m_shown.size()); }
  int GetHiddenCount() const { return static_cast<int>(m_hidden.size()); }
  wxTabButton* GetShownButton(int k) const;
  void HideButton(int index);
  bool ShowHiddenButton(int hidden_index);
  bool ShowAndSelectHiddenButton(int hidden_index);
  bool DoShowHiddenButton(int hidden_index);
  bool FindButtonByHiddenIndex(int hidden_index, int& index) const;
  /// The position in `to` of the button at `index` in `from`; -1 if absent.
  int TranslateIndex(int index, list_t from, list_t to) const;
  void UpdateShowedLists();
  void PutButtonsToShown(int count);
  void PutButtonsToHidden(int count);

  // --- splitters ---
  bool AddSplitter(const wxImage& image, int slot);
  bool AddSplitter(wxBitmap* bitmap, int slot);
  bool AddSplitter(const splitter_t& splitter);
  bool ChangeSplitter(int slot, const wxImage& image);
  bool RemoveSplitter(int slot);
  /// Makes `count` empty slots (each still pays its margin).
  void SetSplittersCount(int count);
  const splitter_t* GetSplitter(int slot) const;
  int GetSplittersCount() const { return static_cast<int>(m_splitters.size()); }
  wxSize GetSplittersSize() const;

  // --- layout ---
  wxSize CalculatePositions(bool apply);
  /// The strip's size for `size`; only with apply are the buttons shown,
  /// hidden and moved.
  wxSize CalculatePositions(const wxSize& size, bool apply);
  wxSize GetOptimalSize() const;
  void SetMinSize(const wxSize& size) override;
  void FullRefresh(bool relayout);
  int GetMargin() const { return m_margin; }
  int GetMargin(int k) const;
  void SetMargin(int margin);
  void EnableFrontMargin(bool enable);
  bool IsFrontMarginEnabled() const { return m_front_margin; }
  void SetDesiredButtonHeight(int height);
  int GetDesiredButtonHeight() const { return m_desired_height; }
  int GetMinButtonWidth() const { return m_min_button_width; }
  /// The largest preferred height among all buttons, shown or hidden; -1
  /// without buttons.
  int GetTallestButtonHeight() const;
  int GetEqualWidthCap() const { return m_equal_width_cap; }
  /// No button is laid out wider, in either width mode; a caption that no
  /// longer fits is shortened and shown whole in the tab's tooltip. 0 (the
  /// default) or less: no cap.
  void SetMaxButtonWidth(int width);
  int GetMaxButtonWidth() const { return m_max_button_width; }

  // --- flags ---
  void SetResizable(bool resizable);
  bool GetResizable() const { return m_resizable; }
  void SetEqualWidth(bool equal);
  bool GetEqualWidth() const { return m_equal_width; }
  void SetToggleMode(bool toggle) { m_toggle_mode = toggle; }
  bool GetToggleMode() const { return m_toggle_mode; }
  void SetCrossed(bool crossed);
  bool GetCrossed() const { return m_crossed; }
  /// Buttons gather at the right end of a strip wider than they need.
  void SetRightAligned(bool right_aligned);
  bool IsRightAligned() const { return m_right_aligned; }

  // --- look ---
  void SetColor(wxTabButton::color_type_t type, const wxColour& colour);
  wxColour GetColor(wxTabButton::color_type_t type) const;
  void SetButtonBackground(const wxColour& colour) { SetColor(wxTabButton::bg_normal, colour); }
  void SetSelectedButtonBackground(const wxColour& colour) { SetColor(wxTabButton::bg_pressed, colour); }
  void SetHighlightColor(const wxColour& colour) { SetColor(wxTabButton::bg_hover, colour); }
  void SetTextColor(const wxColour& colour) { SetColor(wxTabButton::text_normal, colour); }
  bool SetFont(const wxFont& font) override;
  void ChangeFont(const wxFont& font);
  bool SetBackgroundColour(const wxColour& colour) override;
  void SetBgImage(const wxImage& image, bool refresh = true);
  const wxImage& GetBgImage() const { return m_bg_image; }
  void OnHorzImageSlide(bool sliding, int offset);
  bool IsSliding() const { return m_sliding; }
  int GetSlideOffset() const { return m_slide_offset; }
  /// Slides this strip's background image and tells the slid() listeners.
  void SendSlideSignal(bool sliding, int offset);
  void SetDefaultUISettings();
  void on_style_updated() override;

  bool AcceptsFocus() const override { return false; }

 protected:
  wxSize DoGetBestSize() const override;
  void DoThaw() override;

 private:
  // The tab pane moves buttons between its two strips.
  friend class wxTabPane;

  void init();
  /// The strip's buttons become `buttons`, in that order: buttons of another
  /// strip come over with everything they show, buttons left out are given
  /// up (the other strip has taken them). The selection stays with its
  /// button if it stays. Lays out once and raises no signal.
  void ArrangeButtons(const std::vector<wxTabButton*>& buttons);
  void AdoptButton(wxTabButton* button);
  void ConnectButton(wxTabButton* button);
  void DisconnectButton(wxTabButton* button);
  void ApplyLookTo(wxTabButton* button) const;
  void MeasureWidths();
  detail::tab_margins_t Margins() const;
  detail::tab_strip_params_t LayoutParams(const wxSize& room) const;
  std::vector<wxSize> SlotSizes() const;
  int AnchorIndex() const;
  const detail::tab_strip_layout_t& ComputeLayout(const wxSize& room) const;
  wxSize MeasureFor(const wxSize& room) const;
  void ApplyLayout(const detail::tab_strip_layout_t& layout);
  void PlaceSlots(const detail::tab_strip_layout_t& layout);
  void ShowOnly(int first, int count);
  void Renumber(int from);
  void UpdateBestSizes() const;
  void InvalidateBestSizes();
  void SelectAfterRemoval(int removed);

  void on_button_clicked(int id);
  void on_button_delete(int id);
  void on_button_resized();

  void OnPaint(wxPaintEvent& event);
  void DrawBgImage(wxDC& dc) const;
  void DrawSplitters(wxDC& dc) const;
  void OnResize(wxSizeEvent& event);

  std::vector<wxTabButton*> m_buttons;
  std::vector<wxTabButton*> m_shown;
  std::vector<wxTabButton*> m_hidden;
  std::vector<splitter_t> m_splitters;
  int m_selection = -1;
  bool m_resizable = true;
  bool m_equal_width = false;
  bool m_toggle_mode = false;
  bool m_crossed = false;
  bool m_front_margin = true;
  bool m_right_aligned = false;
  int m_min_button_width = 0;
  int m_equal_width_cap = 0;
  int m_margin = 2;
  int m_desired_height = -1;
  int m_max_button_width = 0;
  bool m_tab_move = true;
  bool m_tab_drop = true;
  wxImage m_bg_image;
  bool m_sliding = false;
  int m_slide_offset = 0;
  wxColour m_colors[wxTabButton::color_types_end];
  bool m_colors_set[wxTabButton::color_types_end] = {};
  bool m_in_layout = false;
  /// Kept in the shown run by the next layouts, until the selection changes.
  wxTabButton* m_brought_into_view = nullptr;
  /// Measures the buttons for the layout.
  std::unique_ptr<detail::tab_art_t> m_art;
  std::unique_ptr<detail::tab_strip_accessible_t> m_accessible;
  /// The last layout made; its buffers serve the next one.
  std::unique_ptr<detail::tab_strip_layout_t> m_layout;
  mutable std::vector<wxSize> m_best_sizes;  // by button index
  mutable bool m_best_sizes_valid = false;
  mutable wxSize m_cached_for = wxDefaultSize;
  mutable wxSize m_cached_result;

  panel_int_signal_t m_selection_changed;
  veto_signal_t m_delete_requested;
  void_signal_t m_resized;
  panel_int_signal_t m_splitter_changed;
  int_signal_t m_button_added;
  int_signal_t m_button_removed;
  panel_int_signal_t m_button_removing;
  slide_signal_t m_slid;

  wxDECLARE_DYNAMIC_CLASS(wxTabPanel);
  wxDECLARE_EVENT_TABLE();
};

}  // namespace orvix1

#endif
