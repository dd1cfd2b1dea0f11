#ifndef ORVIX1_WXPOPUPBUTTON_H
#define ORVIX1_WXPOPUPBUTTON_H
/// @file
/// A small drop-down button that opens a popup below itself. In its active
/// state it stands out and shows a count beside its arrow (the tab pane
/// shows how many tabs are hidden). It draws with a popup_style_t (keys in
/// wxPopupWnd.h): "clPopupBg" at rest, "clPopupHover" with "clPopupBorder"
/// under the pointer, "clPopupSelBg" when active; the count and the arrow in
/// "clPopupText" or, when active, "clPopupSelText"; the count in "fnPopup".

#include <memory>

#include <wx/control.h>

#include "orvix1/export.h"
#include "orvix1/styled.h"
#include "orvix1/wxPopupWnd.h"

namespace orvix1 {

namespace detail {
class popup_button_accessible_t;
}  // namespace detail

/// A small drop-down button that opens a popup below itself.
class ORVIX1_API wxPopupButton : public wxControl, public StyledBase {
 public:
  wxPopupButton();
  wxPopupButton(wxWindow* parent, wxWindowID id, const wxPoint& position = wxDefaultPosition,
                const wxSize& size = wxDefaultSize, long style = 0);
  ~wxPopupButton() override;
  bool Create(wxWindow* parent, wxWindowID id, const wxPoint& position = wxDefaultPosition,
              const wxSize& size = wxDefaultSize, long style = 0);

  /// The popup becomes the button's: it is destroyed with it. Null removes it.
  void SetPopup(wxPopupWnd* popup);
  wxPopupWnd* GetPopup() const { return m_popup; }
  /// Opens the popup below the button, as a click does.
  void OpenPopup();

  void SetActive(bool active, int count = 0);
  bool IsActive() const { return m_active; }
  int GetCount() const { return m_count; }

  /// What screen readers call the button, which draws only an arrow and a
  /// count; empty by default.
  void SetAccessibleName(const wxString& name);
  const wxString& GetAccessibleName() const { return m_accessible_name; }

  bool AcceptsFocus() const override { return false; }

  /// Paints the button on `dc` at the client size, as the window does.
  void DrawButton(wxDC& dc) const;
  void on_style_updated() override;

 protected:
  wxSize DoGetBestSize() const override;
  wxBorder GetDefaultBorder() const override { return wxBORDER_NONE; }

 private:
  wxString CountText() const;
  void OnPaint(wxPaintEvent& event);
  void OnLeftDown(wxMouseEvent& event);
  void OnEnterOrLeave(wxMouseEvent& event);

  wxPopupWnd* m_popup = nullptr;
  bool m_active = false;
  bool m_hovered = false;
  int m_count = 0;
  wxString m_accessible_name;
  std::unique_ptr<detail::popup_button_accessible_t> m_accessible;

  wxDECLARE_DYNAMIC_CLASS(wxPopupButton);
  wxDECLARE_EVENT_TABLE();
};

}  // namespace orvix1

#endif
