#include "orvix1/wxStaticPicture.h"

#include <wx/dcbuffer.h>

namespace orvix1 {

wxIMPLEMENT_DYNAMIC_CLASS(wxStaticPicture, wxControl);

wxBEGIN_EVENT_TABLE(wxStaticPicture, wxControl)
  EVT_PAINT(wxStaticPicture::OnPaint)
wxEND_EVENT_TABLE()

wxStaticPicture::wxStaticPicture() = default;

wxStaticPicture::wxStaticPicture(wxWindow* parent, wxWindowID id, const wxBitmap& bitmap,
                                 const wxPoint& position, const wxSize& size, long style,
                                 const wxString& name) {
  Create(parent, id, bitmap, position, size, style, name);
}

bool wxStaticPicture::Create(wxWindow* parent, wxWindowID id, const wxBitmap& bitmap,
                             const wxPoint& position, const wxSize& size, long style,
                             const wxString& name) {
  m_picture.SetBitmap(bitmap);
  // The paint handler covers every pixel; a buffered paint needs this
  // before the window exists.
  SetBackgroundStyle(wxBG_STYLE_PAINT);
  if (!wxControl::Create(parent, id, position, size, style, wxDefaultValidator, name))
    return false;
  SetInitialSize(size);
  return true;
}

void wxStaticPicture::SetPicture(const static_picture_t& picture) {
  m_picture = picture;
  PictureChanged();
}

void wxStaticPicture::SetBitmap(const wxBitmap& bitmap) {
  m_picture.SetBitmap(bitmap);
  PictureChanged();
}

void wxStaticPicture::SetImage(const wxImage& image) {
  m_picture.SetImage(image);
  PictureChanged();
}

void wxStaticPicture::PictureChanged() {
  InvalidateBestSize();
  if (GetHandle() != nullptr) Refresh();
}

wxSize wxStaticPicture::DoGetBestSize() const { return m_picture.GetSize(); }

wxPoint wxStaticPicture::GetPicturePosition() const {
  const wxSize client = GetClientSize();
  const wxSize picture = m_picture.GetSize();
  const long style = GetWindowStyleFlag();
  wxPoint position(0, 0);
  if (style & wxALIGN_CENTRE_HORIZONTAL)
    position.x = (client.x - picture.x) / 2;
  else if (style & wxALIGN_RIGHT)
    position.x = client.x - picture.x;
  if (style & wxALIGN_CENTRE_VERTICAL)
    position.y = (client.y - picture.y) / 2;
  else if (style & wxALIGN_BOTTOM)
    position.y = client.y - picture.y;
  return position;
}

void wxStaticPicture::DrawPicture(wxDC& dc) const {
  dc.SetBackground(wxBrush(GetBackgroundColour()));
  dc.Clear();
  const wxBitmap bitmap = m_picture.getBitmap(true);
  if (bitmap.IsOk()) dc.DrawBitmap(bitmap, GetPicturePosition(), true);
}

void wxStaticPicture::OnPaint(wxPaintEvent&) {
  wxAutoBufferedPaintDC dc(this);
  DrawPicture(dc);
}

}  // namespace orvix1
