#include "orvix1/elements/TextElement.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <wx/dcclient.h>
#include <wx/dcmemory.h>
#include <wx/frame.h>

#include "orvix1/elements/bindings.h"
#include "orvix1/ui_settings.h"
#include "support/fake_element_host.h"
#include "support/paint_canvas.h"
#include "support/wx_test_environment.h"

namespace {

using namespace orvix1;
using namespace orvix1::elements;
using orvix1_test::fake_element_host_t;
using orvix1_test::pump_events;
using orvix1_test::take_asserts;

using text_ptr_t = talvar2::intrusive_pointer_t<TextElement>;
constexpr int k_top_left = UIElement::pfLeft | UIElement::pfTop;

int width_in(wxDC& dc, const wxFont& font, const std::string& text) {
  dc.SetFont(font);
  return dc.GetTextExtent(wxString::FromUTF8(text)).x;
}

// How many pixels of `area` the text darkened on a white canvas.
int inked(const orvix1_test::paint_canvas_t& canvas, const wxRect& area) {
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
  // Measured the way the element measures when no paint pass runs.
  int client_width(const wxFont& font, const std::string& text) {
    wxClientDC dc(m_window);
    return width_in(dc, font, text);
  }
  // The text drawn into `rect` of a white 200x40 canvas.
  orvix1_test::paint_canvas_t draw(TextElement& text, const wxRect& rect) {
    orvix1_test::paint_canvas_t canvas(200, 40);
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

// --- style --------------------------------------------------------------------

TEST_F(TextElementTest, ColourAndFontComeFromThePaletteOrAtOnceFromAStyleTheParentPushesDown) {
  text_ptr_t plain = make_text("label");
  EXPECT_NE(dynamic_cast<TextElement::default_style_t*>(plain->GetUiStyle().get()), nullptr);
  EXPECT_EQ(plain->GetColor(), wxColour(10, 20, 30));
  EXPECT_EQ(plain->GetFont(), m_bold);

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

  // A value taken from the style is replaced on the next style change,
  // and the size follows it.
  const wxFont bigger = wxFontInfo(16).Family(wxFONTFAMILY_SWISS).Bold();
  m_palette->set_font(font_normal_bold, bigger);
  style->on_ui_settings_updated();
  EXPECT_EQ(text->GetFont(), bigger);
  ASSERT_FALSE(m_sizes.empty());
  EXPECT_EQ(m_sizes.back().x, client_width(bigger, "label"));

  const wxFont chosen = wxFontInfo(9).Family(wxFONTFAMILY_MODERN);
  text->SetFont(chosen);
  text->SetColor(wxColour(1, 2, 3));
  m_palette->set_font(font_normal_bold, m_bold);
  m_palette->set_color(color_window_text, wxColour(90, 90, 90));
  style->on_ui_settings_updated();
  EXPECT_EQ(text->GetFont(), chosen);
  EXPECT_EQ(text->GetColor(), wxColour(1, 2, 3));
  EXPECT_EQ(text->GetSize().x, client_width(chosen, "label"));

  // Another style altogether does not override them either.
  talvar2::intrusive_pointer_t<ui_style_t> other(new TextElement::default_style_t);
  text->SetUiStyle(other);
  EXPECT_EQ(text->GetFont(), chosen);
  EXPECT_EQ(text->GetColor(), wxColour(1, 2, 3));
}

TEST_F(TextElementTest, StyleColourIsFollowedUntilSetColorLocksIt) {
  text_ptr_t text = make_text("label");
  m_palette->set_color(color_window_text, wxColour(90, 90, 90));
  text->GetUiStyle()->on_ui_settings_updated();
  EXPECT_EQ(text->GetColor(), wxColour(90, 90, 90));

  m_sizes.clear();
  m_host.holder_requests = 0;
  text->SetColor(wxColour(1, 2, 3));
  EXPECT_GT(m_host.holder_requests, 0);  // repainted
  EXPECT_TRUE(m_sizes.empty());  // but not measured again
}

// --- size ---------------------------------------------------------------------

TEST_F(TextElementTest, SizeIsTheTextExtentAndIsSignalledOnEveryRecompute) {
  text_ptr_t text = make_text("");
  EXPECT_EQ(text->GetSize(), wxSize(0, 0));

  text->SetText("Hello, world");
  wxClientDC dc(m_window);
  dc.SetFont(m_bold);
  const wxSize extent = dc.GetTextExtent("Hello, world");
  EXPECT_EQ(text->GetSize(), extent);
  EXPECT_EQ(m_sizes, std::vector<wxSize>{extent});
  EXPECT_GT(m_host.holder_requests, 0);

  // Switching the mode back and forth measures again each time, with the
  // same result for one line.
  text->SetMultilineMode(true);
  text->SetMultilineMode(false);
  EXPECT_EQ(m_sizes, (std::vector<wxSize>{extent, extent, extent}));
}

TEST_F(TextElementTest, UnchangedTextOrFontNeitherMeasuresNorRepaints) {
  text_ptr_t text = make_text("same");
  text->SetText("same");
  text->SetFont(m_bold);  // equal to the style's font
  EXPECT_TRUE(m_sizes.empty());
  EXPECT_EQ(m_host.holder_requests, 0);
}

TEST_F(TextElementTest, MultilineSizeIsTheWidestLineByAllLines) {
  const std::string lines = "short\nthe longest line of all\nmid line";
  text_ptr_t text = make_text(lines);
  text->SetMultilineMode(true);

  wxClientDC dc(m_window);
  dc.SetFont(m_bold);
  const wxSize one_line = dc.GetTextExtent("the longest line of all");
  EXPECT_EQ(text->GetSize().x, one_line.x);
  EXPECT_EQ(text->GetSize().y, 3 * one_line.y);
  EXPECT_EQ(m_sizes.back(), text->GetSize());
}

TEST_F(TextElementTest, MinimumSizeIsNothingWhileResizable) {
  text_ptr_t text = make_text("label");
  EXPECT_TRUE(text->IsResizable());
  EXPECT_EQ(text->GetMinSize(), wxSize(0, 0));
  text->SetResizable(false);
  EXPECT_EQ(text->GetMinSize(), text->GetSize());
}

// --- cutting ------------------------------------------------------------------

TEST_F(TextElementTest, ATextThatFitsExactlyIsKeptAndOnePixelLessCutsIt) {
  const std::string label = "Exactly fitting label";
  text_ptr_t text = make_text(label);
  const int full = client_width(m_bold, label);

  EXPECT_EQ(text->AddEllipsis(label, full, false), label);
  EXPECT_FALSE(text->IsTruncated());
  EXPECT_TRUE(m_truncations.empty());

  wxClientDC dc(m_window);
  const std::string cut = text->AddEllipsis(label, full - 1, false);
  EXPECT_EQ(cut, expected_cut(dc, m_bold, label, full - 1));
  EXPECT_EQ(cut.substr(cut.size() - 3), "...");
  EXPECT_TRUE(text->IsTruncated());
  // A cut text that fits exactly is taken as well.
  EXPECT_EQ(text->AddEllipsis(label, width_in(dc, m_bold, cut), false), cut);

  // Forced, even a fitting text gets its ellipsis.
  const std::string forced = text->AddEllipsis(label, full, true);
  EXPECT_EQ(forced, expected_cut(dc, m_bold, label, full));
  EXPECT_EQ(m_truncations, std::vector<bool>{true});
}

TEST_F(TextElementTest, WidthBelowTheEllipsisDrawsNothingAndCountsAsCut) {
  text_ptr_t text = make_text("Some label");
  text->SetColor(*wxBLACK);
  const int dots = memory_width("...");
  EXPECT_EQ(inked(draw(*text, wxRect(0, 0, dots - 1, 30)), wxRect(0, 0, 200, 40)), 0);
  EXPECT_TRUE(text->IsTruncated());
  EXPECT_EQ(m_truncations, std::vector<bool>{true});
  EXPECT_EQ(text->AddEllipsis("Some label", dots - 1, false), "");
}

TEST_F(TextElementTest, TruncationIsSignalledOnlyWhenItChanges) {
  const std::string label = "A label too long for its place";
  text_ptr_t text = make_text(label);
  const wxRect narrow(0, 0, 60, 30);
  const wxRect wide(0, 0, memory_width(label), 30);
  for (const wxRect& rect : {narrow, narrow, wide, wide}) draw(*text, rect);
  EXPECT_EQ(m_truncations, (std::vector<bool>{true, false}));
  EXPECT_FALSE(text->IsTruncated());
}

TEST_F(TextElementTest, TheDrawnLineIsTheCutText) {
  const std::string label = "A label too long for its place";
  text_ptr_t text = make_text(label);
  text->SetColor(*wxBLACK);
  const int max_width = 90;
  const orvix1_test::paint_canvas_t cut = draw(*text, wxRect(0, 0, max_width, 30));

  // The same text drawn by hand, with the ellipsis where the element put it.
  orvix1_test::paint_canvas_t expected(200, 40);
  expected.paint([&](wxDC& dc) {
    dc.SetTextForeground(*wxBLACK);
    dc.DrawText(wxString::FromUTF8(expected_cut(dc, m_bold, label, max_width)), 0, 0);
  });
  const wxRect all(0, 0, 200, 40);
  EXPECT_GT(inked(cut, all), 0);
  EXPECT_EQ(inked(cut, all), inked(expected, all));
  // Nothing reaches past the width it was given.
  EXPECT_EQ(inked(cut, wxRect(max_width, 0, 200 - max_width, 40)), 0);
}

TEST_F(TextElementTest, WithoutTruncationOrInMultilineModeNoEllipsisIsAdded) {
  text_ptr_t text = make_text("A label too long for its place\nand a second line");
  text->SetColor(*wxBLACK);
  const wxRect narrow(0, 0, 20, 40);

  text->SetTextTruncation(false);
  const orvix1_test::paint_canvas_t whole = draw(*text, narrow);
  EXPECT_FALSE(text->IsTruncated());
  EXPECT_GT(inked(whole, narrow), 0);  // the start of the text, clipped
  EXPECT_EQ(inked(whole, wxRect(20, 0, 180, 40)), 0);

  text->SetTextTruncation(true);
  text->SetMultilineMode(true);
  EXPECT_GT(inked(draw(*text, narrow), narrow), 0);
  EXPECT_FALSE(text->IsTruncated());
  EXPECT_TRUE(m_truncations.empty());
}

// Cutting goes by bytes: the last character of "ééééé" is split and the
// broken byte is kept before the dots. The C library's conversion cannot
// read such a line, so it measures, and shows, as nothing.
TEST_F(TextElementTest, CuttingMultiByteTextSplitsTheLastCharacter) {
  const std::string accented = "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9";  // five é
  text_ptr_t text = make_text(accented);
  EXPECT_EQ(text->GetSize().x, client_width(m_bold, accented));  // read as UTF-8

  const std::string cut = text->AddEllipsis(accented, client_width(m_bold, accented) - 1, false);
  EXPECT_EQ(cut, accented.substr(0, accented.size() - 1) + "...");
  EXPECT_TRUE(text->IsTruncated());
}

// --- detached -----------------------------------------------------------------

TEST_F(TextElementTest, ADetachedElementReportsTheMissingHostAndStillMeasures) {
  text_ptr_t detached(new TextElement());
  detached->SetText("label");
  bool reported = false;
  for (const orvix1_test::recorded_assert_t& failure : take_asserts())
    reported = reported || failure.condition == "RequestHolderWindow.empty() == false";
  EXPECT_TRUE(reported);
  EXPECT_GT(detached->GetSize().x, 0);
}

}  // namespace
