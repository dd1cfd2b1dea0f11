#ifndef ORVIX1_WXPOPUPMENU_H
#define ORVIX1_WXPOPUPMENU_H
/// @file
/// An owner-drawn popup menu: rows with an optional image, separators, and
/// rows that carry a close cross of their own. Rows are counted without the
/// separators. It draws with a popup_style_t (keys in wxPopupWnd.h):
/// "clPopupBg" behind the rows, "clPopupText" for them, "clPopupDisabled"
/// for disabled ones, "clPopupSelBg" and "clPopupSelText" for the hot row,
/// "clPopupBorder" for separators, and measures and writes in "fnPopup".

#include <memory>
#include <vector>

#include <wx/bitmap.h>
#include <wx/string.h>

#include "orvix1/export.h"
#include "orvix1/styled.h"
#include "orvix1/wxPopupWnd.h"
#include "talvar2/functor/signal.h"

namespace orvix1 {

namespace detail {
class popup_menu_accessible_t;
}  // namespace detail

/// An owner-drawn popup menu with images, separators and closable rows.
class ORVIX1_API wxPopupMenu : public wxPopupWnd, public StyledBase {
 public:
  using row_signal_t = talvar2::signal_t<int>;

  explicit wxPopupMenu(wxWindow* parent);
  ~wxPopupMenu() override;

  /// The new row's index.
  int Append(const wxString& text, const wxBitmap& bitmap = wxNullBitmap, bool closable = false,
             bool disabled = false);
  void AppendSeparator();
  void Clear();
  int GetRowCount() const { return m_row_count; }
  wxString GetRowText(int row) const;
  /// False for a row out of range.
  bool IsRowEnabled(int row) const;
  bool IsRowClosable(int row) const;
  bool HasContent() const override { return m_row_count > 0; }

  /// The row under a client position and whether the position is on its
  /// close cross; -1 for none.
  int HitTest(const wxPoint& position, bool* on_cross = nullptr) const;
  wxRect GetRowRect(int row) const;
  wxRect GetCrossRect(int row) const;
  int GetHotRow() const { return m_hot_row; }
  void SetHotRow(int row);

  /// A row was chosen: the menu has closed.
  row_signal_t& chosen() { return m_chosen; }
  /// A row's close cross was clicked, or Delete pressed on it; the menu
  /// stays open and its owner refills it.
  row_signal_t& delete_requested() { return m_delete_requested; }

  /// Chooses a row as a click would; false for a row out of range or disabled.
  bool Choose(int row);
  bool RequestDelete(int row);

  /// Paints the rows on `dc` at the client size, as the window does.
  void DrawRows(wxDC& dc) const;
  void on_style_updated() override;

 protected:
  wxSize DoGetBestSize() const override;

 private:
  struct item_t {
    wxString text;
    wxBitmap bitmap;
    bool separator = false;
    bool closable = false;
    bool disabled = false;
    int row = -1;
  };

  const item_t* FindRow(int row) const;
  int ItemHeight(const item_t& item) const;
  int RowHeight() const;
  /// The normal (0) or hovered (1) cross, made for the current scale.
  const wxBitmap& CrossBitmap(int look) const;
  void ChangeHotRow(int row, bool on_cross);

  void OnPaint(wxPaintEvent& event);
  void OnMotion(wxMouseEvent& event);
  void OnLeave(wxMouseEvent& event);
  void OnLeftUp(wxMouseEvent& event);
  void OnKey(wxKeyEvent& event);

  std::vector<item_t> m_items;
  int m_row_count = 0;
  int m_hot_row = -1;
  bool m_hot_cross = false;
  mutable wxBitmap m_cross[2];  ///< normal, hovered; made when first drawn
  mutable double m_cross_scale = 0.0;
  mutable double m_cross_content_scale = 0.0;
  std::unique_ptr<detail::popup_menu_accessible_t> m_accessible;
  row_signal_t m_chosen;
  row_signal_t m_delete_requested;

  wxDECLARE_EVENT_TABLE();
};

}  // namespace orvix1

#endif
