#ifndef ORVIX1_WXQUADSPLITTER_H
#define ORVIX1_WXQUADSPLITTER_H
/// @file
/// Four panes in a two-by-two grid: a major splitter across the whole window
/// and a minor splitter in each of its panes. The minor sashes follow each
/// other, so the grid's cross stays straight while either is dragged.
///
///   SplitVertically(w1, w2, w3, w4)     SplitHorizontally(w1, w2, w3, w4)
///        w1 | w3                              w1 | w2
///        ---+---                              -------
///        w2 | w4                              w3 | w4
///
/// SplitVertically puts a vertical major sash between two columns (w1 over
/// w2, w3 over w4); SplitHorizontally a horizontal major sash between two
/// rows (w1 beside w2, w3 beside w4). The splitters are the windows named
/// "major_splitter", "minor_splitter1" (left column or top row) and
/// "minor_splitter2"; the four windows are moved into them.
///
/// The grid itself takes no focus: Tab goes straight on to its sashes.

#include <wx/window.h>

#include "orvix1/export.h"
#include "orvix1/wxAdvancedSplitter.h"

namespace orvix1 {
/// Four panes in a two-by-two grid whose cross stays straight.
class ORVIX1_API wxQuadSplitter : public wxWindow {
 public:
  wxQuadSplitter();
  wxQuadSplitter(wxWindow* parent, wxWindowID id = wxID_ANY, const wxPoint& pos = wxDefaultPosition,
                 const wxSize& size = wxDefaultSize, long style = 0,
                 const wxString& name = wxASCII_STR("quadSplitter"));

  bool Create(wxWindow* parent, wxWindowID id = wxID_ANY, const wxPoint& pos = wxDefaultPosition,
              const wxSize& size = wxDefaultSize, long style = 0,
              const wxString& name = wxASCII_STR("quadSplitter"));

  /// False, changing nothing, when a window is null.
  bool SplitVertically(wxWindow* w1, wxWindow* w2, wxWindow* w3, wxWindow* w4);
  bool SplitHorizontally(wxWindow* w1, wxWindow* w2, wxWindow* w3, wxWindow* w4);

  wxAdvancedSplitter* GetMajorSplitter() const { return m_major; }
  wxAdvancedSplitter* GetMinorSplitter1() const { return m_minor1; }
  wxAdvancedSplitter* GetMinorSplitter2() const { return m_minor2; }

 private:
  bool Split(wxWindow* w1, wxWindow* w2, wxWindow* w3, wxWindow* w4, bool vertical);
  void OnSize(wxSizeEvent& event);

  wxAdvancedSplitter* m_major = nullptr;
  wxAdvancedSplitter* m_minor1 = nullptr;
  wxAdvancedSplitter* m_minor2 = nullptr;

  wxDECLARE_DYNAMIC_CLASS(wxQuadSplitter);
};

}  // namespace orvix1

#endif
