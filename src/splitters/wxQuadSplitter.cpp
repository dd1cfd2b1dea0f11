#include "orvix1/wxQuadSplitter.h"

#include "core/log.h"

namespace orvix1 {

wxIMPLEMENT_DYNAMIC_CLASS(wxQuadSplitter, wxWindow);

wxQuadSplitter::wxQuadSplitter() = default;

wxQuadSplitter::wxQuadSplitter(wxWindow* parent, wxWindowID id, const wxPoint& pos,
                               const wxSize& size, long style, const wxString& name) {
  Create(parent, id, pos, size, style, name);
}

bool wxQuadSplitter::Create(wxWindow* parent, wxWindowID id, const wxPoint& pos,
                            const wxSize& size, long style, const wxString& name) {
  if (!wxWindow::Create(parent, id, pos, size, style, name)) return false;
  // The grid is no stop for Tab: the toolkit would never enter a window
  // that takes the focus, and the sashes inside could not be reached.
  SetCanFocus(false);
  m_major = new wxAdvancedSplitter(this, wxID_ANY, wxPoint(0, 0), GetClientSize(), 0,
                                   "major_splitter");
  m_minor1 = new wxAdvancedSplitter(m_major, wxID_ANY, wxDefaultPosition, wxDefaultSize, 0,
                                    "minor_splitter1");
  m_minor2 = new wxAdvancedSplitter(m_major, wxID_ANY, wxDefaultPosition, wxDefaultSize, 0,
                                    "minor_splitter2");
  // Each minor sash follows the other: the cross stays straight.
  m_minor1->SynchronizeWith(m_minor2->GetSplitterElement());
  m_minor2->SynchronizeWith(m_minor1->GetSplitterElement());
  Bind(wxEVT_SIZE, &wxQuadSplitter::OnSize, this);
  return true;
}

bool wxQuadSplitter::SplitVertically(wxWindow* w1, wxWindow* w2, wxWindow* w3, wxWindow* w4) {
  return Split(w1, w2, w3, w4, true);
}

bool wxQuadSplitter::SplitHorizontally(wxWindow* w1, wxWindow* w2, wxWindow* w3, wxWindow* w4) {
  return Split(w1, w2, w3, w4, false);
}

bool wxQuadSplitter::Split(wxWindow* w1, wxWindow* w2, wxWindow* w3, wxWindow* w4, bool vertical) {
  if (w1 == nullptr || w2 == nullptr || w3 == nullptr || w4 == nullptr || m_major == nullptr) {
    ORVIX_LOG_ERROR(log::get_logger("orvix.splitters"),
                    "a quad splitter needs four windows; nothing was split");
    return false;
  }
  if (vertical) {
    m_major->SplitVertically(m_minor1, m_minor2);
    m_minor1->SplitHorizontally(w1, w2);
    m_minor2->SplitHorizontally(w3, w4);
  } else {
    m_major->SplitHorizontally(m_minor1, m_minor2);
    m_minor1->SplitVertically(w1, w2);
    m_minor2->SplitVertically(w3, w4);
  }
  return true;
}

void wxQuadSplitter::OnSize(wxSizeEvent& event) {
  if (m_major != nullptr) m_major->SetSize(GetClientSize());
  event.Skip();
}

}  // namespace orvix1
