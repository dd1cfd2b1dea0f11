#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <wx/frame.h>
#include <wx/settings.h>

#include "orvix1/elements/BgImageElement.h"
#include "orvix1/elements/DropArrowElement.h"
#include "orvix1/elements/RectangleElement.h"
#include "orvix1/ui_settings.h"
#include "orvix1/ui_style.h"
#include "orvix1/wxStaticPicture.h"
#include "support/dpi_scale.h"
#include "support/fake_element_host.h"
#include "support/log_capture.h"
#include "support/paint_canvas.h"
#include "support/wx_test_environment.h"

namespace {

using namespace orvix1;
using namespace orvix1::elements;
using namespace orvix1_test;

const wxColour k_red(255, 0, 0);
const wxColour k_blue(0, 0, 255);
const wxColour k_green(0, 160, 0);
const wxColour k_white(255, 255, 255);

// Shows the rectangle that the element fills.
class shape_probe_t : public RectangleElement {
 public:
  using RectangleElement::GetShapeRect;
  using RectangleElement::RectangleElement;
};

// A top-level window for as long as the test runs.
class scoped_frame_t {
 public:
  scoped_frame_t() : frame(new wxFrame(nullptr, wxID_ANY, "holder")) {}
  ~scoped_frame_t() {
    frame->Destroy();
    pump_events();
  }
  wxFrame* const frame;
};

template <class Element>
class hosted_t {
 public:
  explicit hosted_t(wxRect client = wxRect(0, 0, 40, 30)) : host(element, client) {}
  talvar2::intrusive_pointer_t<Element> element{new Element()};
  fake_element_host_t host;
};

class RectangleElementTest : public ::testing::Test {
 protected:
  void SetUp() override {
    take_asserts();
    rect().SetBkColor(k_red);
    rect().SetBorderColor(k_blue);
  }
  void TearDown() override { EXPECT_TRUE(take_asserts().empty()); }

  shape_probe_t& rect() { return *m_hosted.element; }
  // The element drawn into (0, 0, 20, 20) of a 30x30 white canvas.
  paint_canvas_t draw() {
    paint_canvas_t canvas(30, 30);
    canvas.paint([&](wxDC& dc) { rect().OnDraw(dc, wxRect(0, 0, 20, 20)); });
    return canvas;
  }

  hosted_t<shape_probe_t> m_hosted;
};

// Wider borders move the shape in by two and shrink it by the thickness.
TEST_F(RectangleElementTest, BordersOfOneTwoAndThreePixels) {
  const std::pair<int, wxRect> shapes[] = {
      {1, wxRect(0, 0, 20, 20)}, {2, wxRect(2, 2, 18, 18)}, {3, wxRect(2, 2, 17, 17)}};
  for (const auto& [thickness, shape] : shapes) {
    rect().SetBorderThickness(thickness);
    EXPECT_EQ(rect().GetShapeRect(wxRect(0, 0, 20, 20)), shape) << thickness;
  }
  EXPECT_EQ(rect().GetShapeRect(wxRect(5, 7, 20, 20)), wxRect(7, 9, 17, 17));
  rect().SetBorderThickness(1);  // the pen's round joins soften the four corner pixels
  const paint_canvas_t canvas = draw();
  const std::pair<wxRect, wxColour> spans[] = {
      {wxRect(1, 0, 18, 1), k_blue},  {wxRect(1, 19, 18, 1), k_blue},   {wxRect(0, 1, 1, 18), k_blue},
      {wxRect(19, 1, 1, 18), k_blue}, {wxRect(1, 1, 18, 18), k_red},    {wxRect(20, 0, 10, 30), k_white},
      {wxRect(0, 20, 30, 10), k_white}};
  for (const auto& [span, colour] : spans) EXPECT_TRUE(canvas.all(span, colour)) << span.x << "," << span.y;
}

TEST_F(RectangleElementTest, AHiddenBorderIsDrawnInTheFillColourOverTheSameArea) {
  rect().SetBorderThickness(3);
  const paint_canvas_t framed = draw();
  rect().ShowBorder(false);
  const paint_canvas_t plain = draw();
  const wxRect all(0, 0, 30, 30);
  EXPECT_EQ(plain.count(all, k_white), framed.count(all, k_white));
  EXPECT_EQ(plain.count(all, k_blue), 0);
  EXPECT_TRUE(plain.all(wxRect(1, 3, 19, 14), k_red));
}

TEST_F(RectangleElementTest, TheRoundedStyleCutsTheCorners) {
  const wxRect top_left(0, 0, 3, 3);
  EXPECT_EQ(draw().count(top_left, k_white), 0);
  rect().SetBorderStyle(RectangleElement::border_rounded);
  rect().SetBorderRadius(6);
  const paint_canvas_t canvas = draw();
  EXPECT_GE(canvas.count(top_left, k_white), 3);
  EXPECT_EQ(canvas.at(10, 0), k_blue);
}

// Unset colours come from the palette and follow it; explicit ones win over
// style changes until handed back.
TEST(RectangleElementStyleTest, PaletteStyleAndExplicitColours) {
  talvar2::intrusive_pointer_t<ui_settings_configure_t> palette = ui_settings_configure_t::get();
  hosted_t<RectangleElement> hosted;
  RectangleElement& rect = *hosted.element;
  EXPECT_EQ(rect.GetBkColor(), palette->get_color(color_face));
  palette->set_color(color_face, wxColour(1, 2, 3));
  palette->set_color(color_shadow_3d, wxColour(4, 5, 6));
  palette->changed()();  // as after a change of the desktop's colours
  EXPECT_EQ(rect.GetBkColor(), wxColour(1, 2, 3));
  EXPECT_EQ(rect.GetBorderColor(), wxColour(4, 5, 6));

  rect.SetBkColor(k_green);
  talvar2::intrusive_pointer_t<ui_style_t> style(new ui_style_t);
  style->internal_set_color("clBtnBgNormal", k_red);
  style->internal_set_color("clBorderNormal", k_blue);
  rect.SetUiStyle(style);
  EXPECT_EQ(rect.GetBkColor(), k_green);
  EXPECT_EQ(rect.GetBorderColor(), k_blue);

  style->internal_set_color("clBorderNormal", k_white);
  style->internal_set_color("clBtnBgNormal", k_white);
  rect.InvalidateColors();
  EXPECT_EQ(rect.GetBkColor(), k_green);
  EXPECT_EQ(rect.GetBorderColor(), k_white);

  rect.SetBkColor(wxNullColour);  // back to the style
  EXPECT_EQ(rect.GetBkColor(), k_white);

  take_asserts();
  rect.SetUiStyle(new ui_style_t);  // a style without the keys paints nothing
  EXPECT_FALSE(rect.GetBkColor().IsOk());
  paint_canvas_t canvas(30, 30);
  canvas.paint([&](wxDC& dc) { rect.OnDraw(dc, wxRect(0, 0, 20, 20)); });
  EXPECT_TRUE(canvas.all(wxRect(0, 0, 30, 30), k_white));
  EXPECT_TRUE(take_asserts().empty());
}

class BgImageElementTest : public ::testing::Test {
 protected:
  void SetUp() override {
    background().SetBkColor(k_red);
    background().ShowBorder(false);
    background().SetBgImage(half_masked_image(wxSize(8, 8), k_green, wxColour(1, 2, 3)));  // left half masked
  }
  BgImageElement& background() { return *m_hosted.element; }
  // The element drawn into `rect` on a canvas of the host's client size.
  paint_canvas_t draw(const wxRect& rect) {
    paint_canvas_t canvas(40, 30);
    canvas.paint([&](wxDC& dc) { background().OnDraw(dc, rect); });
    return canvas;
  }

  hosted_t<BgImageElement> m_hosted;
};

// Align 5 pins the picture to the context's origin, 6 to the top right of the
// element's width (the host's client width for a root), not the rectangle's.
TEST_F(BgImageElementTest, AlignFiveAndSixPinThePictureThroughItsMask) {
  const paint_canvas_t at_origin = draw(wxRect(10, 10, 30, 20));
  EXPECT_TRUE(at_origin.all(wxRect(4, 0, 4, 8), k_green));  // not moved into the rectangle
  EXPECT_TRUE(at_origin.all(wxRect(0, 0, 4, 8), k_white));  // masked: what was below shows
  EXPECT_TRUE(at_origin.all(wxRect(11, 11, 28, 18), k_red));
  background().SetImageAlign(6);
  const paint_canvas_t at_right = draw(wxRect(0, 0, 24, 30));
  EXPECT_TRUE(at_right.all(wxRect(36, 0, 4, 8), k_green));  // at 40 - 8
  EXPECT_TRUE(at_right.all(wxRect(32, 0, 4, 8), k_white));
}

TEST_F(BgImageElementTest, OtherAlignValuesAndEmptyPicturesDrawOnlyTheRectangleAStaticPictureDrawsToo) {
  EXPECT_NE(background().GetBgStaticPicture().getBitmap(true).GetMask(), nullptr);
  hosted_t<RectangleElement> plain;
  plain.element->SetBkColor(k_red);
  plain.element->ShowBorder(false);
  paint_canvas_t rectangle_only(40, 30);
  rectangle_only.paint([&](wxDC& dc) { plain.element->OnDraw(dc, wxRect(0, 0, 40, 30)); });

  background().SetImageAlign(4);
  EXPECT_TRUE(draw(wxRect(0, 0, 40, 30)).same_as(rectangle_only));
  background().SetImageAlign(5);
  background().SetBgImage(wxImage());
  EXPECT_TRUE(draw(wxRect(0, 0, 40, 30)).same_as(rectangle_only));

  const scoped_frame_t holder;
  wxImage blue(6, 5);
  blue.SetRGB(wxRect(0, 0, 6, 5), 0, 0, 255);
  const orvix1::wxStaticPicture control(holder.frame, wxID_ANY, wxBitmap(blue));
  background().SetBgStaticPicture(control);
  EXPECT_TRUE(draw(wxRect(0, 0, 40, 30)).all(wxRect(0, 0, 6, 5), k_blue));
}

// Answers the metrics from a table instead of the desktop.
class metrics_probe_t : public DropArrowElement {
 public:
  int arrow_x = -1;
  int arrow_y = -1;

 protected:
  int GetSystemMetric(wxSystemMetric metric) const override {
    return metric == wxSYS_VSCROLL_ARROW_X   ? arrow_x
           : metric == wxSYS_VSCROLL_ARROW_Y ? arrow_y
           : metric == wxSYS_VSCROLL_X       ? 17
           : metric == wxSYS_HSCROLL_Y       ? 13
                                             : -1;
  }
};

TEST(DropArrowElementTest, NegativeArrowMetricsFallBackToTheScrollBarSizes) {
  hosted_t<metrics_probe_t> hosted;
  metrics_probe_t& arrow = *hosted.element;
  EXPECT_EQ(arrow.GetMinSize(), wxSize(17, 13));
  arrow.arrow_x = 0;  // zero is a size, not a missing metric
  EXPECT_EQ(arrow.GetMinSize(), wxSize(0, 13));
  arrow.arrow_x = -1;
  arrow.arrow_y = 9;
  EXPECT_EQ(arrow.GetMinSize(), wxSize(17, 9));
  // The desktop's metrics do not grow with its resolution: the library's scale does.
  const orvix1_test::scoped_DPI_scale_t scale(1.5);
  EXPECT_EQ(arrow.GetMinSize(), wxSize(25, 13));
}

TEST(DropArrowElementTest, DrawsTheNativeButtonInsideItsRectangleOnlyWithAHolder) {
  const wxRect button(10, 10, 20, 20);
  hosted_t<DropArrowElement> hosted(button);
  const scoped_frame_t holder;
  hosted.host.m_holder = holder.frame;
  paint_canvas_t canvas(40, 40, k_red);
  // The paint pass clips to the element; the theme may draw a shadow beyond.
  canvas.paint([&](wxDC& dc) { hosted.element->ProcessDraw(dc, button, true); });
  EXPECT_LT(canvas.count(button, k_red), button.width * button.height / 2);
  EXPECT_EQ(canvas.count(wxRect(0, 0, 40, 40), k_red), 40 * 40 - button.width * button.height +
                                                           canvas.count(button, k_red));

  log_capture_t log("orvix.elements");
  hosted.host.m_holder = nullptr;  // without a holder nothing is drawn and the log says why
  paint_canvas_t untouched(40, 40, k_red);
  untouched.paint([&](wxDC& dc) { hosted.element->OnDraw(dc, button); });
  EXPECT_TRUE(untouched.all(wxRect(0, 0, 40, 40), k_red));
  ASSERT_EQ(log.entries().size(), 1u);
  EXPECT_NE(log.entries()[0].message.find("holder"), std::string::npos);
}

}  // namespace
