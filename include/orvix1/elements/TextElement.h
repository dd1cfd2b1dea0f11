#ifndef ORVIX1_ELEMENTS_TEXTELEMENT_H
#define ORVIX1_ELEMENTS_TEXTELEMENT_H
/// @file
/// The leaf element that shows one string: a label, a caption, a line of a
/// tooltip. It measures itself with its own font, and draws its text as it
/// stands, cut with a trailing "..." when it does not fit its width, or as
/// several lines. Colour and font come from its style unless the caller set
/// them; a value set by the caller survives every style change.
///
/// Text elements that nobody gave a style share one default style: a
/// thousand labels hold one style and one palette subscription. The first
/// GetUiStyle() of such an element gives it a copy of its own, so that what
/// the caller changes on the style changes that element only.
///
/// Text is UTF-8 in the interface and is converted for measuring and drawing
/// with the C library's locale conversion (wxConvLibc): the process locale
/// must be a UTF-8 one for non-ASCII text to show.

#include <string>

#include <wx/colour.h>
#include <wx/dc.h>
#include <wx/font.h>
#include <wx/gdicmn.h>

#include "orvix1/elements/UIElement.h"
#include "orvix1/export.h"
#include "orvix1/ui_style.h"
#include "talvar2/functor/signal.h"
#include "talvar2/value_locker.h"

namespace orvix1 {
namespace elements {
/// The leaf element that shows one string, cut with "..." when it does not fit.
class ORVIX1_API TextElement : public UIElement {
 public:
  /// The style a text element takes when it has none: the palette's window
  /// text colour as "clTextNormal" and its bold normal font as "fnNormalBold".
  class ORVIX1_API default_style_t : public ui_style_t {
   public:
    default_style_t();
    void set_style_info() override;
  };

  /// Emitted with the natural size each time it is recomputed (text, font,
  /// mode or style changed), also when the size came out the same.
  talvar2::signal_t<wxSize> SizeChanged;
  /// Emitted with the new cut state when a draw (or AddEllipsis) changes it.
  talvar2::signal_t<bool> TruncationChanged;

  /// A root element; measuring needs a host that answers its holder request.
  TextElement();
  explicit TextElement(element_ptr_t parent);
  TextElement(element_ptr_t parent, int position_flags);
  TextElement(element_ptr_t parent, int position_flags, const std::string& text);
  ~TextElement() override;

  /// The element's own style: one that shared the default style gets a copy
  /// of it first, so that the caller may change it.
  talvar2::intrusive_pointer_t<ui_style_t> GetUiStyle() override;
  void SetUiStyle(talvar2::intrusive_pointer_t<ui_style_t> style) override;

  /// A text that differs byte for byte is stored, measured and repainted; an
  /// equal one changes nothing.
  void SetText(const std::string& text);
  const std::string& GetText() const { return m_text; }

  /// An explicit font or colour is locked: style changes leave it alone.
  /// A font equal to the current one changes nothing.
  void SetFont(const wxFont& font);
  const wxFont& GetFont() const { return m_font.value; }
  void SetColor(const wxColour& colour);
  const wxColour& GetColor() const { return m_color.value; }

  /// Whether a single line that does not fit gets cut with "..." (default)
  /// or drawn whole and left to the clipping.
  void SetTextTruncation(bool enabled);
  bool GetTextTruncation() const { return m_truncation_enabled; }

  /// Several lines separated by "\n", drawn left and top aligned, never cut.
  void SetMultilineMode(bool multiline);
  bool GetMultilineMode() const { return m_multiline; }

  /// Whether the last draw had to cut the text.
  bool IsTruncated() const { return m_truncated; }

  /// The text's extent in the element's font: the widest line and the height
  /// of all lines in multi-line mode; (0, 0) for an empty text.
  wxSize GetSize() const override;
  /// Nothing while resizable (the default: a layout may squeeze the text and
  /// the ellipsis takes over), else the natural size.
  wxSize GetMinSize() const override;

  void OnDraw(wxDC& dc, const wxRect& rect) override;
  /// Takes the style's font and colour where the caller has not set them,
  /// then measures again.
  void InvalidateColors() override;

  /// The measuring context with the element's font selected: the running
  /// paint pass's context if there is one, else a client context on the
  /// holder window that text elements share until the event loop next
  /// handles pending events. Give it back with ReleaseDC.
  wxDC* GetDC();
  void ReleaseDC(wxDC* dc);

  /// The text to draw in `max_width` pixels: `text` itself when it fits (and
  /// `force` is false), else its longest prefix followed by "..." that fits,
  /// else "". Updates the cut state and signals a change of it.
  ///
  /// The library's rule for cutting text: a cut never splits a character.
  /// Bytes are removed from the end one at a time, and when a cut lands
  /// inside a multi-byte UTF-8 character the rest of that character goes
  /// too, so the result of valid UTF-8 is valid UTF-8. ASCII text is cut
  /// byte by byte as before. elide_text and wrap_text (text_utils.h) and
  /// tab captions follow the same rule.
  std::string AddEllipsis(const std::string& text, int max_width, bool force);

 private:
  class shared_default_style_t;

  void Init();
  void ShareDefaultStyle();
  void StopSharingDefaultStyle();
  wxFont font_to_use() const;
  void UpdateSizeInternal();
  wxSize MeasureText(const wxString& shown);
  void SetTruncated(bool truncated);

  std::string m_text;
  talvar2::value_locker_t<wxFont> m_font;
  talvar2::value_locker_t<wxColour> m_color;
  bool m_truncation_enabled = true;
  bool m_multiline = false;
  wxSize m_natural_size{0, 0};
  bool m_truncated = false;
  /// Whether the style held is the shared default style; such an element is
  /// told of the style's updates through the links below, not a connection.
  bool m_shares_default_style = false;
  TextElement* m_previous_sharing = nullptr;
  TextElement* m_next_sharing = nullptr;
};

}  // namespace elements
}  // namespace orvix1

#endif
