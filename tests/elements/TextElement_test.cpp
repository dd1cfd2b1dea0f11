#include "orvix1/elements/TextElement.h"

#include <string>
#include <vector>

#include <glib.h>
#include <gtk/gtk.h>
#include <gtest/gtest.h>
#include <wx/dcclient.h>
#include <wx/dcmemory.h>
#include <wx/frame.h>

#include "orvix1/elements/bindings.h"
#include "orvix1/text_utils.h"
#include "orvix1/ui_settings.h"
#include "support/fake_element_host.h"
#include "support/paint_canvas.h"
#include "support/wx_test_environment.h"

namespace {

using namespace orvix1;
using namespace orvix1::elements;
using namespace orvix1_test;

using text_ptr_t = talvar2::intrusive_pointer_t<TextElement>;
constexpr int k_top_left = UIElement::pfLeft | UIElement::pfTop;

int width_in(wxDC& dc, const wxFont& font, const std::string& text) {
  dc.SetFont(font);
  return dc.GetTextExtent(wxString::FromUTF8(text)).x;
}

// How many pixels of `area` the text darkened on a white canvas.
int inked(const paint_canvas_t& canvas, const wxRect& area) {
  return area.width * area.height - canvas.count(area, *wxWHITE);
}

class TextElementTest : public ::testing::Test {
 protected:
  void SetUp() override {
    take_asserts();
    m_palette->set_color(color_window_text, wxColour(10, 20, 30));
    m_palette->set_font(font_normal_bold, m_bold);
    m_frame = new wxFrame(nullptr, wxID_ANY, "text", wxPoint(0, 0), wxSize(300, 100));
    m_window = new wxWindow(m_frame, wxID_ANY, wxPoint(0, 0), wxSize(300, 100));
    m_window->SetBackgroundStyle(wxBG_STYLE_PAINT);
    m_frame->Show();
    pump_events();
    m_host.m_holder = m_window;
  }
  void TearDown() override {
    m_host.m_holder = nullptr;
    m_frame->Destroy();
    pump_events();
    EXPECT_TRUE(take_asserts().empty());
  }

  text_ptr_t make_text(const std::string& text) {
    text_ptr_t element(new TextElement(m_root, k_top_left, text));
    bindings::bind_signal(element, element->SizeChanged, [this](wxSize size) { m_sizes.push_back(size); });
    bindings::bind_signal(element, element->TruncationChanged,
                          [this](bool truncated) { m_truncations.push_back(truncated); });
    m_host.holder_requests = 0;
    return element;
  }
  // As the element measures when no paint pass runs.
  int client_width(const wxFont& font, const std::string& text) {
    wxClientDC dc(m_window);
    return width_in(dc, font, text);
  }
  // The text drawn into `rect` of a white 200x40 canvas.
  paint_canvas_t draw(TextElement& text, const wxRect& rect) {
    paint_canvas_t canvas(200, 40);
    canvas.paint([&](wxDC& dc) { text.ProcessDraw(dc, rect, false); });
    return canvas;
  }
  int memory_width(const std::string& text) {
    wxBitmap bitmap(1, 1);
    wxMemoryDC dc(bitmap);
    return width_in(dc, m_bold, text);
  }
  // The longest byte prefix of `text` that fits with "..." appended.
  std::string expected_cut(wxDC& dc, const wxFont& font, const std::string& text, int max_width) {
    for (std::string prefix = text.substr(0, text.size() - 1);; prefix.pop_back()) {
      if (width_in(dc, font, prefix + "...") <= max_width) return prefix + "...";
      if (prefix.empty()) return "";
    }
  }

  const wxFont m_bold{wxFontInfo(11).Family(wxFONTFAMILY_SWISS).Bold()};
  talvar2::intrusive_pointer_t<ui_settings_configure_t> m_palette{new ui_settings_configure_t};
  element_ptr_t m_root{new UIElement()};
  fake_element_host_t m_host{m_root, wxRect(0, 0, 300, 100)};
  std::vector<wxSize> m_sizes;  // as signalled
  std::vector<bool> m_truncations;
  wxFrame* m_frame = nullptr;
  wxWindow* m_window = nullptr;
};

TEST_F(TextElementTest, ColourAndFontComeAtOnceFromAStyleTheParentPushesDown) {
  talvar2::intrusive_pointer_t<ui_style_t> parent_style(new ui_style_t);
  const wxFont italic = wxFontInfo(14).Family(wxFONTFAMILY_SWISS).Italic();
  parent_style->lock_color("clTextNormal", wxColour(200, 0, 0));
  parent_style->lock_font("fnNormalBold", italic);
  m_root->SetStylePropagation(true);
  m_root->SetUiStyle(parent_style);
  text_ptr_t text = make_text("label");
  EXPECT_EQ(text->GetColor(), wxColour(200, 0, 0));
  EXPECT_EQ(text->GetFont(), italic);
  EXPECT_EQ(text->GetSize().x, client_width(italic, "label"));
}

TEST_F(TextElementTest, ExplicitFontAndColourSurviveStyleChangesWhileStyleValuesFollow) {
  text_ptr_t text = make_text("label");
  talvar2::intrusive_pointer_t<ui_style_t> style = text->GetUiStyle();
  EXPECT_NE(dynamic_cast<TextElement::default_style_t*>(style.get()), nullptr);
  EXPECT_EQ(text->GetColor(), wxColour(10, 20, 30));  // from the palette
  EXPECT_EQ(text->GetFont(), m_bold);

  // A style value is replaced on the next style change, and the size follows it.
  const wxFont bigger = wxFontInfo(16).Family(wxFONTFAMILY_SWISS).Bold();
  m_palette->set_font(font_normal_bold, bigger);
  style->on_ui_settings_updated();
  EXPECT_EQ(text->GetFont(), bigger);
  ASSERT_FALSE(m_sizes.empty());
  EXPECT_EQ(m_sizes.back().x, client_width(bigger, "label"));

  // SetColor repaints without measuring again.
  m_sizes.clear();
  m_host.holder_requests = 0;
  text->SetColor(wxColour(1, 2, 3));
  EXPECT_GT(m_host.holder_requests, 0);
  EXPECT_TRUE(m_sizes.empty());

  const wxFont chosen = wxFontInfo(9).Family(wxFONTFAMILY_MODERN);
  text->SetFont(chosen);
  m_palette->set_font(font_normal_bold, m_bold);
  m_palette->set_color(color_window_text, wxColour(90, 90, 90));
  style->on_ui_settings_updated();
  EXPECT_EQ(text->GetFont(), chosen);
  EXPECT_EQ(text->GetColor(), wxColour(1, 2, 3));
  EXPECT_EQ(text->GetSize().x, client_width(chosen, "label"));
}

// Labels without a style share one default style. A caller's change to one
// label's style reaches no other label, not even one made afterwards; palette
// changes reach them all, also when a label's handler destroys another.
TEST_F(TextElementTest, AStyleChangeStaysWithItsLabelWhilePaletteChangesReachEveryLabel) {
  text_ptr_t changed = make_text("one");
  text_ptr_t other = make_text("two");
  text_ptr_t doomed = make_text("three");
  const wxFont big = wxFontInfo(16).Family(wxFONTFAMILY_SWISS).Bold();
  changed->GetUiStyle()->lock_color("clTextNormal", wxColour(200, 0, 0));
  changed->GetUiStyle()->lock_font("fnNormalBold", big);
  text_ptr_t fresh = make_text("four");
  for (TextElement* label : {changed.get(), other.get(), doomed.get(), fresh.get()}) label->InvalidateColors();
  EXPECT_EQ(changed->GetFont(), big);
  for (const text_ptr_t& label : {other, fresh}) {
    EXPECT_EQ(label->GetColor(), wxColour(10, 20, 30));
    EXPECT_EQ(label->GetFont(), m_bold);
  }

  bindings::bind_signal(other, other->SizeChanged, [&doomed] {
    if (!doomed) return;
    doomed->Destroy();
    doomed.reset();
  });
  m_palette->set_color(color_window_text, wxColour(90, 90, 90));
  m_palette->changed()();
  EXPECT_FALSE(doomed);
  EXPECT_EQ(other->GetColor(), wxColour(90, 90, 90));
  EXPECT_EQ(fresh->GetColor(), wxColour(90, 90, 90));
  EXPECT_EQ(changed->GetColor(), wxColour(200, 0, 0));
}

// Labels are measured on a shared context, as a client context of their
// window measures them, also when that context scales fonts for the desktop.
TEST_F(TextElementTest, LabelsMeasureAsTheirWindowsContextAtEveryDesktopResolution) {
  gint saved_dpi = 0;
  g_object_get(gtk_settings_get_default(), "gtk-xft-dpi", &saved_dpi, NULL);
  for (int dpi : {96, 144}) {
    g_object_set(gtk_settings_get_default(), "gtk-xft-dpi", dpi * 1024, NULL);
    pump_events();  // contexts live until the loop idles
    wxClientDC dc(m_window);
    dc.SetFont(m_bold);
    for (const char* line : {"Label 1", "fi fl AVAVA To"})
      EXPECT_EQ(make_text(line)->GetSize(), dc.GetTextExtent(line)) << dpi << " dpi: " << line;
  }
  g_object_set(gtk_settings_get_default(), "gtk-xft-dpi", saved_dpi, NULL);
}

TEST_F(TextElementTest, SizeIsTheExtentOfTheWidestLineByAllLinesAndIsSignalled) {
  text_ptr_t text = make_text("");
  EXPECT_EQ(text->GetSize(), wxSize(0, 0));
  text->SetText("short\nthe longest line of all\nmid line");
  text->SetMultilineMode(true);
  wxClientDC dc(m_window);
  dc.SetFont(m_bold);
  const wxSize one_line = dc.GetTextExtent("the longest line of all");
  EXPECT_EQ(text->GetSize(), wxSize(one_line.x, 3 * one_line.y));
  EXPECT_EQ(m_sizes.back(), text->GetSize());
  EXPECT_EQ(text->GetMinSize(), wxSize(0, 0));  // nothing while resizable

  // The same text or the style's own font again neither measures nor repaints.
  m_sizes.clear();
  m_host.holder_requests = 0;
  text->SetText("short\nthe longest line of all\nmid line");
  text->SetFont(m_bold);
  EXPECT_TRUE(m_sizes.empty());
  EXPECT_EQ(m_host.holder_requests, 0);
}

TEST_F(TextElementTest, ATextThatFitsExactlyIsKeptAndOnePixelLessCutsIt) {
  const std::string label = "Exactly fitting label";
  text_ptr_t text = make_text(label);
  const int full = client_width(m_bold, label);

  EXPECT_EQ(text->AddEllipsis(label, full, false), label);
  EXPECT_FALSE(text->IsTruncated());

  wxClientDC dc(m_window);
  const std::string cut = text->AddEllipsis(label, full - 1, false);
  EXPECT_EQ(cut, expected_cut(dc, m_bold, label, full - 1));
  EXPECT_TRUE(text->IsTruncated());

  // Forced, even a fitting text gets its ellipsis.
  const std::string forced = text->AddEllipsis(label, full, true);
  EXPECT_EQ(forced, expected_cut(dc, m_bold, label, full));
  EXPECT_EQ(m_truncations, std::vector<bool>{true});
}

// Below the width of the ellipsis nothing is drawn and the text counts as cut.
TEST_F(TextElementTest, TheDrawnLineIsTheCutTextAndTruncationIsSignalledOnlyWhenItChanges) {
  const std::string label = "A label too long for its place";
  text_ptr_t text = make_text(label);
  text->SetColor(*wxBLACK);
  const int max_width = 90;
  const wxRect narrow(0, 0, max_width, 30);
  const wxRect wide(0, 0, memory_width(label), 30);
  const wxRect all(0, 0, 200, 40);
  EXPECT_EQ(inked(draw(*text, wxRect(0, 0, memory_width("...") - 1, 30)), all), 0);
  EXPECT_TRUE(text->IsTruncated());
  const paint_canvas_t cut = draw(*text, narrow);
  for (const wxRect& rect : {narrow, wide, wide}) draw(*text, rect);
  EXPECT_EQ(m_truncations, (std::vector<bool>{true, false}));

  // The same text drawn by hand, with the ellipsis where the element put it.
  paint_canvas_t expected(200, 40);
  expected.paint([&](wxDC& dc) {
    dc.SetTextForeground(*wxBLACK);
    dc.DrawText(wxString::FromUTF8(expected_cut(dc, m_bold, label, max_width)), 0, 0);
  });
  EXPECT_GT(inked(cut, all), 0);
  EXPECT_EQ(inked(cut, all), inked(expected, all));
}

TEST_F(TextElementTest, WithoutTruncationOrInMultilineModeNoEllipsisIsAdded) {
  text_ptr_t text = make_text("A label too long for its place\nand a second line");
  text->SetColor(*wxBLACK);
  const wxRect narrow(0, 0, 20, 40);

  text->SetTextTruncation(false);
  EXPECT_GT(inked(draw(*text, narrow), narrow), 0);  // the start of the text, clipped

  text->SetTextTruncation(true);
  text->SetMultilineMode(true);
  EXPECT_GT(inked(draw(*text, narrow), narrow), 0);
  EXPECT_TRUE(m_truncations.empty());
}

// Cuts never split a character: at every width the line stays valid UTF-8,
// keeps its dots while they fit and is never wider than asked. Text drawn
// by elide_text and wrapped by wrap_text follows the same rule.
TEST_F(TextElementTest, CutsNeverSplitACharacterAtAnyWidth) {
  const std::string texts[] = {
      "Gr\xC3\xB6\xC3\x9F" "en\xC3\xA4nderung \xC3\xBC" "ber \xC3\x96lf\xC3\xA4sser",  // Größenänderung über Ölfässer
      "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E\xE3\x81\xAE\xE6\x96\x87",  // 日本語の文
      "ok \xF0\x9F\x98\x80\xF0\x9F\x9A\x80 go",                                   // two emoji
  };
  wxClientDC dc(m_window);
  dc.SetFont(m_bold);
  const int dots = client_width(m_bold, "...");
  for (const std::string& whole : texts) {
    text_ptr_t text = make_text(whole);
    const wxString wide = wxString::FromUTF8(whole);
    for (int width = 0; width <= client_width(m_bold, whole); ++width) {
      SCOPED_TRACE(whole + " at " + std::to_string(width));
      const std::string cut = text->AddEllipsis(whole, width, false);
      ASSERT_TRUE(g_utf8_validate(cut.c_str(), static_cast<gssize>(cut.size()), nullptr));
      EXPECT_EQ(cut.empty(), width < dots);
      EXPECT_LE(client_width(m_bold, cut), width);
      const wxString elided = elide_text(dc, wide, width);
      EXPECT_EQ(elided.empty(), width < dots);
      EXPECT_LE(dc.GetTextExtent(elided).x, width);
      ASSERT_EQ(wxString::FromUTF8(elided.utf8_str()), elided);
    }
    const wxString wrapped = wrap_text(dc, wide, dots);
    EXPECT_EQ(wxString::FromUTF8(wrapped.utf8_str()), wrapped);
  }
}

}  // namespace
