#include "orvix1/text_utils.h"

#include <memory>

#include <wx/dcclient.h>
#include <wx/dcscreen.h>
#include <wx/renderer.h>
#include <wx/settings.h>
#include <wx/tokenzr.h>

namespace orvix1 {
namespace {

const wxString k_dots = "...";

int width_of(wxDC& dc, const wxString& text) { return text.empty() ? 0 : dc.GetTextExtent(text).x; }

// The longest head of `word` no wider than `width`; at least one character,
// so that wrapping always makes progress.
size_t fitting_length(wxDC& dc, const wxString& word, int width) {
  size_t low = 1;
  size_t high = word.length();
  while (low < high) {
    const size_t middle = (low + high + 1) / 2;
    if (width_of(dc, word.Left(middle)) <= width)
      low = middle;
    else
      high = middle - 1;
  }
  return low;
}

void wrap_line(wxDC& dc, const wxString& line, int width, wxString& out) {
  wxString current;
  wxStringTokenizer words(line, " ", wxTOKEN_STRTOK);
  while (words.HasMoreTokens()) {
    wxString word = words.GetNextToken();
    const wxString joined = current.empty() ? word : current + " " + word;
    if (width_of(dc, joined) <= width) {
      current = joined;
      continue;
    }
    if (!current.empty()) out << current << '\n';
    while (width_of(dc, word) > width && word.length() > 1) {
      const size_t head = fitting_length(dc, word, width);
      out << word.Left(head) << '\n';
      word = word.Mid(head);
    }
    current = word;
  }
  out << current;
}

}  // namespace

wxSize GetTextSize(wxDC& dc, const wxString& text) {
  if (text.empty()) return wxSize(0, 0);
  wxCoord width = 0;
  wxCoord height = 0;
  dc.GetMultiLineTextExtent(text, &width, &height);
  return wxSize(width, height);
}

wxSize GetTextSize(const wxWindow* window, const wxString& text, const wxFont& font) {
  std::unique_ptr<wxDC> dc;
  if (window != nullptr)
    dc.reset(new wxClientDC(const_cast<wxWindow*>(window)));
  else
    dc.reset(new wxScreenDC);
  wxFont measured = font;
  if (!measured.IsOk())
    measured = window != nullptr ? window->GetFont() : wxSystemSettings::GetFont(wxSYS_DEFAULT_GUI_FONT);
  dc->SetFont(measured);
  return GetTextSize(*dc, text);
}

wxString elide_text(wxDC& dc, const wxString& text, int width) {
  if (width_of(dc, text) <= width) return text;
  if (width_of(dc, k_dots) > width) return wxString();
  // Binary search for the longest head that fits with the dots.
  size_t low = 0;
  size_t high = text.length();
  while (low < high) {
    const size_t middle = (low + high + 1) / 2;
    if (width_of(dc, text.Mid(0, middle) + k_dots) <= width)
      low = middle;
    else
      high = middle - 1;
  }
  return text.Mid(0, low) + k_dots;
}

wxString wrap_text(wxDC& dc, const wxString& text, int width) {
  wxString out;
  wxStringTokenizer lines(text, "\n", wxTOKEN_RET_EMPTY_ALL);
  bool first = true;
  while (lines.HasMoreTokens()) {
    if (!first) out << '\n';
    first = false;
    wrap_line(dc, lines.GetNextToken(), width, out);
  }
  return out;
}

wxSize GetNativeCheckBoxSize(wxWindow* window) {
  return wxRendererNative::Get().GetCheckBoxSize(window);
}

void DrawNativeCheckBox(wxWindow* window, wxDC& dc, const wxRect& rect, bool checked,
                        bool disabled) {
  const wxSize size = GetNativeCheckBoxSize(window);
  const wxRect box(rect.x + (rect.width - size.x) / 2, rect.y + (rect.height - size.y) / 2, size.x,
                   size.y);
  int flags = 0;
  if (checked) flags |= wxCONTROL_CHECKED;
  if (disabled) flags |= wxCONTROL_DISABLED;
  wxRendererNative::Get().DrawCheckBox(window, dc, box, flags);
}

}  // namespace orvix1
