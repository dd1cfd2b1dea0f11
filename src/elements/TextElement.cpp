#include "orvix1/elements/TextElement.h"

#include <wx/bitmap.h>
#include <wx/dcclient.h>
#include <wx/dcscreen.h>
#include <wx/strconv.h>

#include "orvix1/ui_settings.h"
#include "elements/measuring_context.h"

namespace orvix1 {
namespace elements {
namespace {

const char k_text_colour_key[] = "clTextNormal";
const char k_text_font_key[] = "fnNormalBold";
const char k_ellipsis[] = "...";

// Text is measured and drawn through the C library's locale conversion.
wxString to_display(const std::string& text) { return wxString(text.c_str(), wxConvLibc); }

// The byte length a UTF-8 lead byte announces; 1 for anything else, so a
// stray byte counts as a character of its own.
std::size_t announced_length(unsigned char lead) {
  if ((lead & 0xE0) == 0xC0) return 2;
  if ((lead & 0xF0) == 0xE0) return 3;
  if ((lead & 0xF8) == 0xF0) return 4;
  return 1;
}

// Drops the head of a character the text ends inside of: half a UTF-8
// sequence makes the whole line unreadable to the locale conversion, so it
// would draw nothing at all.
void drop_partial_character(std::string& text) {
  std::size_t lead = text.size();
  while (lead > 0 && text.size() - lead < 3 && (static_cast<unsigned char>(text[lead - 1]) & 0xC0) == 0x80)
    --lead;
  if (lead == 0) return;
  const std::size_t present = text.size() - lead + 1;
  if (present < announced_length(static_cast<unsigned char>(text[lead - 1]))) text.erase(lead - 1);
}

int width_of(wxDC& dc, const std::string& text) {
  const wxString shown = to_display(text);
  return shown.empty() ? 0 : dc.GetTextExtent(shown).x;
}

}  // namespace

// --- default style ------------------------------------------------------------

TextElement::default_style_t::default_style_t() { set_style_info(); }

void TextElement::default_style_t::set_style_info() {
  internal_set_color(k_text_colour_key, m_settings->get_color(color_window_text));
  internal_set_font(k_text_font_key, m_settings->get_font(font_normal_bold));
}

// --- the shared default style ---------------------------------------------------

// The default style of the live palette, held by the text elements that
// share it. They are linked into a list rather than connected to the update
// signal: a connection costs each element two allocations.
class TextElement::shared_default_style_t final : public default_style_t {
 public:
  /// The instance of the live palette: the one in use, or a new one when
  /// none is or the palette was replaced.
  static talvar2::intrusive_pointer_t<shared_default_style_t> current() {
    if (s_current != nullptr && s_current->get_settings().get() == ui_settings_t::get().get())
      return s_current;
    return new shared_default_style_t;
  }

  ~shared_default_style_t() override {
    updated().disconnect(this, &shared_default_style_t::update_sharers);
    if (s_current == this) s_current = nullptr;
  }

  void join(TextElement& element) {
    element.m_previous_sharing = m_last;
    element.m_next_sharing = nullptr;
    (m_last != nullptr ? m_last->m_next_sharing : m_first) = &element;
    m_last = &element;
  }

  void leave(TextElement& element) {
    // A running update skips an element that leaves before its turn.
    for (walk_t* walk = m_walks; walk != nullptr; walk = walk->outer)
      if (walk->next == &element) walk->next = element.m_next_sharing;
    (element.m_previous_sharing != nullptr ? element.m_previous_sharing->m_next_sharing : m_first) =
        element.m_next_sharing;
    (element.m_next_sharing != nullptr ? element.m_next_sharing->m_previous_sharing : m_last) =
        element.m_previous_sharing;
    element.m_previous_sharing = element.m_next_sharing = nullptr;
  }

 private:
  /// One update going through the list; an element's handlers may start
  /// another, or make elements leave or join.
  struct walk_t {
    TextElement* next;
    walk_t* outer;
  };

  shared_default_style_t() {
    s_current = this;
    updated().connect(this, &shared_default_style_t::update_sharers);
  }

  void update_sharers() {
    if (m_first == nullptr) return;
    // The last sharer may leave meanwhile: the style lives until the walk ends.
    const talvar2::intrusive_pointer_t<shared_default_style_t> alive(this);
    walk_t walk{m_first, m_walks};
    m_walks = &walk;
    while (walk.next != nullptr) {
      TextElement* element = walk.next;
      walk.next = element->m_next_sharing;
      element->on_style_updated();
    }
    m_walks = walk.outer;
  }

  static shared_default_style_t* s_current;
  TextElement* m_first = nullptr;
  TextElement* m_last = nullptr;
  walk_t* m_walks = nullptr;
};

TextElement::shared_default_style_t* TextElement::shared_default_style_t::s_current = nullptr;

// --- construction -------------------------------------------------------------

TextElement::TextElement() { Init(); }

TextElement::TextElement(element_ptr_t parent) : UIElement(parent) { Init(); }

TextElement::TextElement(element_ptr_t parent, int position_flags)
    : UIElement(parent, position_flags) {
  Init();
}

TextElement::TextElement(element_ptr_t parent, int position_flags, const std::string& text)
    : UIElement(parent, position_flags), m_text(text) {
  Init();
}

TextElement::~TextElement() {
  if (m_shares_default_style) StopSharingDefaultStyle();
}

void TextElement::Init() {
  m_multiline = false;
  m_truncation_enabled = true;
  m_truncated = false;
  SetResizable(true);
  // A style pushed down by the parent arrived while the base was being
  // built, before this class could take its values.
  if (PeekUiStyle() != nullptr)
    InvalidateColors();
  else
    ShareDefaultStyle();
}

// --- style ----------------------------------------------------------------------

void TextElement::ShareDefaultStyle() {
  talvar2::intrusive_pointer_t<shared_default_style_t> shared = shared_default_style_t::current();
  HoldUiStyle(shared, false);
  shared->join(*this);
  m_shares_default_style = true;
  on_style_updated();
}

void TextElement::StopSharingDefaultStyle() {
  static_cast<shared_default_style_t*>(PeekUiStyle())->leave(*this);
  m_shares_default_style = false;
}

// The copy has the values the element shows: nothing to redraw.
talvar2::intrusive_pointer_t<ui_style_t> TextElement::GetUiStyle() {
  if (m_shares_default_style) {
    StopSharingDefaultStyle();
    HoldUiStyle(new default_style_t, true);
  }
  return UIElement::GetUiStyle();
}

void TextElement::SetUiStyle(talvar2::intrusive_pointer_t<ui_style_t> style) {
  if (m_shares_default_style) {
    StopSharingDefaultStyle();
    if (!style) {
      // Taking no style is a change too: the element follows the palette now.
      HoldUiStyle(nullptr, false);
      on_style_updated();
      return;
    }
  }
  UIElement::SetUiStyle(style);
}

// --- properties ---------------------------------------------------------------

void TextElement::SetText(const std::string& text) {
  if (text == m_text) return;
  m_text = text;
  UpdateSizeInternal();
  Invalidate(false);
}

void TextElement::SetFont(const wxFont& font) {
  if (font == m_font.value) return;
  m_font.lock(font);
  UpdateSizeInternal();
  Invalidate(false);
}

void TextElement::SetColor(const wxColour& colour) {
  m_color.lock(colour);
  Invalidate(false);
}

void TextElement::SetTextTruncation(bool enabled) {
  m_truncation_enabled = enabled;
  Invalidate(false);
}

void TextElement::SetMultilineMode(bool multiline) {
  m_multiline = multiline;
  UpdateSizeInternal();
  Invalidate(false);
}

wxSize TextElement::GetSize() const { return LimitSize(m_natural_size); }

wxSize TextElement::GetMinSize() const {
  return LimitSize(IsResizable() ? wxSize(0, 0) : m_natural_size);
}

void TextElement::InvalidateColors() {
  talvar2::intrusive_pointer_t<ui_style_t> style = PeekUiStyle();
  // Without a style of its own the element follows the palette directly.
  if (!style) style = shared_default_style_t::current();
  m_font.refresh(style->get_font(k_text_font_key));
  m_color.refresh(style->get_color(k_text_colour_key));
  UpdateSizeInternal();
}

// --- measuring ----------------------------------------------------------------

wxDC* TextElement::GetDC() {
  wxDC* dc = GetCurrentDC();
  // Without a holder window the screen's context still measures the font.
  if (dc == nullptr) dc = &detail::measuring_context(GetHolder());
  // Selecting a font makes the context build a font object of its own;
  // labels of one style share theirs, so mostly it is selected already.
  const wxFont font = font_to_use();
  if (dc->GetFont().GetRefData() != font.GetRefData()) dc->SetFont(font);
  return dc;
}

// A null font (an empty palette, an unknown style key) falls back to the
// desktop's GUI font: contexts have no font of their own to measure with.
wxFont TextElement::font_to_use() const {
  return m_font.value.IsOk() ? m_font.value : wxSystemSettings::GetFont(wxSYS_DEFAULT_GUI_FONT);
}

void TextElement::ReleaseDC(wxDC* dc) {
  if (dc != GetCurrentDC() && !detail::is_measuring_context(dc)) delete dc;
}

void TextElement::UpdateSizeInternal() {
  m_natural_size = MeasureText(to_display(m_text));
  Invalidate(true);
  SizeChanged(m_natural_size);
}

wxSize TextElement::MeasureText(const wxString& shown) {
  if (shown.empty()) return wxSize(0, 0);
  // Outside a paint pass a single line goes the shortest way.
  if (!m_multiline && GetCurrentDC() == nullptr)
    return detail::measure_line(GetHolder(), font_to_use(), shown);
  wxDC* dc = GetDC();
  wxCoord width = 0;
  wxCoord height = 0;
  if (m_multiline)
    dc->GetMultiLineTextExtent(shown, &width, &height);
  else
    dc->GetTextExtent(shown, &width, &height);
  ReleaseDC(dc);
  return wxSize(width, height);
}

std::string TextElement::AddEllipsis(const std::string& text, int max_width, bool force) {
  const bool was_truncated = m_truncated;
  // The element's own line was measured with this font when either last
  // changed: a paint where it fits need not measure it again.
  if (!force && !m_multiline && text == m_text && m_natural_size.x <= max_width) {
    m_truncated = false;
    if (was_truncated) TruncationChanged(false);
    return text;
  }
  std::string result = text;
  wxDC* dc = GetDC();
  if (!force && width_of(*dc, result) <= max_width) {
    m_truncated = false;
  } else {
    m_truncated = true;
    for (;;) {
      if (result.empty()) break;
      // Cut by bytes, but a character is removed whole.
      result.pop_back();
      drop_partial_character(result);
      const std::string candidate = result + k_ellipsis;
      if (width_of(*dc, candidate) <= max_width) {
        result = candidate;
        break;
      }
    }
  }
  if (m_truncated != was_truncated) TruncationChanged(m_truncated);
  ReleaseDC(dc);
  return result;
}

// --- painting -----------------------------------------------------------------

void TextElement::OnDraw(wxDC& dc, const wxRect& rect) {
  if (m_color.value.IsOk()) dc.SetTextForeground(m_color.value);
  dc.SetFont(font_to_use());
  if (m_multiline) {
    dc.DrawLabel(to_display(m_text), wxNullBitmap, rect, 0, -1);
  } else {
    const std::string shown = m_truncation_enabled ? AddEllipsis(m_text, rect.width, false) : m_text;
    // The clipping of the paint pass cuts what overflows an uncut line.
    if (!shown.empty()) dc.DrawText(to_display(shown), rect.x, rect.y);
  }
  dc.SetFont(wxNullFont);
}

}  // namespace elements
}  // namespace orvix1
