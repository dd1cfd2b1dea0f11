#ifndef ORVIX1_WXSTATICPICTURE_H
#define ORVIX1_WXSTATICPICTURE_H
/// @file
/// The small control that shows a picture (static_picture_t, picture.h):
/// windowless holders such as elements keep the same value, so a picture
/// moves between the two without conversion.

#include <wx/bitmap.h>
#include <wx/control.h>
#include <wx/image.h>

#include "orvix1/export.h"
#include "orvix1/picture.h"

namespace orvix1 {
/// Shows a picture at its own size, by default in the top-left corner; the
/// styles wxALIGN_CENTRE_HORIZONTAL or wxALIGN_RIGHT and
/// wxALIGN_CENTRE_VERTICAL or wxALIGN_BOTTOM place it otherwise. The rest of
/// the window is filled with its background colour; the picture's mask lets
/// that colour show through. Its best size is the picture's size.
class ORVIX1_API wxStaticPicture : public wxControl {
 public:
  wxStaticPicture();
  wxStaticPicture(wxWindow* parent, wxWindowID id, const wxBitmap& bitmap,
                  const wxPoint& position = wxDefaultPosition, const wxSize& size = wxDefaultSize,
                  long style = 0, const wxString& name = wxASCII_STR("staticPicture"));

  bool Create(wxWindow* parent, wxWindowID id, const wxBitmap& bitmap,
              const wxPoint& position = wxDefaultPosition, const wxSize& size = wxDefaultSize,
              long style = 0, const wxString& name = wxASCII_STR("staticPicture"));

  /// Each setter repaints and lets sizers ask for the new best size.
  void SetPicture(const static_picture_t& picture);
  void SetBitmap(const wxBitmap& bitmap);
  void SetImage(const wxImage& image);

  const static_picture_t& GetPicture() const { return m_picture; }
  wxBitmap getBitmap(bool with_mask) const { return m_picture.getBitmap(with_mask); }
  wxImage GetImage() const { return m_picture.GetImage(); }

  /// Where the picture's top-left corner lands for the current client size.
  wxPoint GetPicturePosition() const;
  /// Paints the background and the picture on `dc`, as the window does
  /// (printing, or a picture of the window).
  void DrawPicture(wxDC& dc) const;

  bool AcceptsFocus() const override { return false; }
  bool ShouldInheritColours() const override { return true; }

 protected:
  wxSize DoGetBestSize() const override;
  wxBorder GetDefaultBorder() const override { return wxBORDER_NONE; }

 private:
  void OnPaint(wxPaintEvent& event);
  void PictureChanged();

  static_picture_t m_picture;

  wxDECLARE_DYNAMIC_CLASS(wxStaticPicture);
  wxDECLARE_EVENT_TABLE();
};

}  // namespace orvix1

#endif
