#include "pages/elements_page.h"

#include <string>

#include <wx/window.h>

#include "orvix1/elements/DropArrowElement.h"
#include "orvix1/elements/ElementAdapter.h"
#include "orvix1/elements/ImageElement.h"
#include "orvix1/elements/RectangleElement.h"
#include "orvix1/elements/SpacerElement.h"
#include "orvix1/elements/StackLayout.h"
#include "orvix1/elements/TextElement.h"
#include "orvix1/ui_resources.h"
#include "orvix1/ui_settings.h"
#include "orvix1/wxCustomTooltip.h"
#include "pages/scaled.h"

namespace gallery {
namespace {

using namespace orvix1;
using namespace orvix1::elements;

constexpr int k_fill = UIElement::pfHExpand | UIElement::pfVExpand;

// A rectangle of a fixed size.
class box_t : public RectangleElement {
 public:
  box_t(element_ptr_t parent, int flags, wxSize size) : RectangleElement(parent, flags), m_size(size) {}
  wxSize GetSize() const override { return m_size; }
  wxSize GetMinSize() const override { return m_size; }

 private:
  wxSize m_size;
};

// A labelled box that takes the keyboard focus and shows it with its border.
class focus_box_t : public box_t {
 public:
  focus_box_t(element_ptr_t parent, const std::string& label)
      : box_t(parent, k_fill, dip(wxSize(170, 34))) {
    SetAcceptFocus(true);
    SetBorderStyle(border_rounded);
    SetBorderRadius(dip(5));
    m_label = new TextElement(this, pfVCenter | pfHCenter, label);
    show_focus(false);
  }
  bool SetFocus(bool focused) override {
    const bool taken = box_t::SetFocus(focused);
    if (taken) show_focus(focused);
    return taken;
  }

 private:
  void show_focus(bool focused) {
    const auto settings = ui_settings_t::get();
    SetBorderThickness(dip(focused ? 3 : 1));
    SetBorderColor(settings->get_color(focused ? color_selection_bg : color_shadow_3d));
  }
  talvar2::intrusive_pointer_t<TextElement> m_label;
};

// A rectangle's look from the palette: `fill` behind it, the strip border
// around it; it refills when the palette changes.
class fill_style_t : public ui_style_t {
 public:
  explicit fill_style_t(default_colors_t fill) : m_fill(fill) { set_style_info(); }
  void set_style_info() override {
    internal_set_color("clBtnBgNormal", m_settings->get_color(m_fill));
    internal_set_color("clBorderNormal", m_settings->get_color(color_strip_border));
  }

 private:
  default_colors_t m_fill;
};

// A window whose whole content is an element tree.
class elements_page_t : public wxWindow {
 public:
  explicit elements_page_t(wxWindow* parent) {
    SetBackgroundStyle(wxBG_STYLE_PAINT);
    // Tab is for the elements, not for dialog navigation.
    Create(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize,
           wxWANTS_CHARS | wxFULL_REPAINT_ON_RESIZE);
    m_adapter = new ElementAdapter(this);
    m_root = new RectangleElement();
    m_adapter->SetRootElement(m_root);
    build();
    m_root->MoveFocusForward(element_ptr_t());
  }
  ~elements_page_t() override {
    m_root->Destroy();
    delete m_adapter;
  }
  bool AcceptsFocus() const override { return true; }

  // The middle of the animated picture, which has a tooltip.
  wxPoint spinner_centre() const {
    return m_spinner ? m_spinner->GetRect().GetPosition() + m_spinner->GetRect().GetSize() / 2
                     : wxDefaultPosition;
  }
  wxCustomTooltip* spinner_tooltip() const {
    return m_spinner ? m_spinner->GetExistingTooltip() : nullptr;
  }

 private:
  void build() {
    const auto settings = ui_settings_t::get();
    m_root->SetUiStyle(new fill_style_t(color_window_bg));
    m_root->ShowBorder(false);
    // Margins pad an element's own drawing, not its children: spacers pad these.
    new SpacerElement(m_root, UIElement::pfTop | UIElement::pfHExpand, dip(wxSize(1, 10)));
    new SpacerElement(m_root, UIElement::pfLeft | UIElement::pfVExpand, dip(wxSize(12, 1)));
    new SpacerElement(m_root, UIElement::pfRight | UIElement::pfVExpand, dip(wxSize(12, 1)));

    auto* title = new TextElement(m_root, UIElement::pfTop | UIElement::pfHCenter,
                                  "Elements: one window, no native controls");
    title->SetFont(settings->get_font(font_title));
    build_footer();
    build_buttons();
    build_shapes();
  }

  // Docked at the bottom across the width: cut with "..." as the window narrows.
  void build_footer() {
    new SpacerElement(m_root, UIElement::pfBottom | UIElement::pfHExpand, dip(wxSize(1, 10)));
    new TextElement(m_root, UIElement::pfBottom | UIElement::pfHExpand,
                    "This label is docked to the bottom and stretched across the window; make "
                    "the window narrower and it ends in an ellipsis instead of overflowing.");
  }

  // A column stacked top to bottom; Tab walks it.
  void build_buttons() {
    element_ptr_t column(new UIElement(m_root, UIElement::pfLeft | UIElement::pfVExpand));
    auto* stack = new StackLayout();
    column->SetLayoutLogic(stack);
    int number = 0;
    for (const char* label : {"First (Tab)", "Second", "Third (Shift+Tab)", "Fourth"}) {
      auto* button = new focus_box_t(column, label);
      button->GetTooltip()->SetText(std::string("Focus element: ") + label);
      // Scripts find the boxes by these, screen-reader checks too.
      button->SetTestID("focus-" + std::to_string(++number));
      new SpacerElement(column, k_fill, dip(wxSize(0, 8)));
    }
  }

  // Shapes side by side, a spinner centred below them, a drop arrow at the right.
  void build_shapes() {
    element_ptr_t area(new UIElement(m_root, k_fill));
    new SpacerElement(area, UIElement::pfLeft | UIElement::pfVExpand, dip(wxSize(16, 1)));
    element_ptr_t row(new UIElement(area, UIElement::pfTop | UIElement::pfLeft));
    auto* stack = new StackLayout();
    stack->SetOrientation(true);
    row->SetLayoutLogic(stack);
    struct shape_t {
      int thickness;
      bool rounded;
      bool border;
      default_colors_t fill;
    };
    for (const shape_t& shape : {shape_t{1, false, true, color_note_bg},
                                 shape_t{3, true, true, color_strip_bg},
                                 shape_t{2, false, false, color_selection_bg},
                                 shape_t{4, true, true, color_pane_bg}}) {
      auto* box = new box_t(row, UIElement::pfLeft | UIElement::pfVCenter, dip(wxSize(110, 70)));
      box->SetUiStyle(new fill_style_t(shape.fill));
      box->SetBorderThickness(dip(shape.thickness));
      box->ShowBorder(shape.border);
      box->SetBorderStyle(shape.rounded ? RectangleElement::border_rounded
                                        : RectangleElement::border_square);
      box->SetBorderRadius(dip(10));
      new SpacerElement(row, UIElement::pfLeft | UIElement::pfVCenter, dip(wxSize(12, 1)));
    }
    // A stack gives its children the whole height of the row: the arrow keeps
    // its own size docked in the area instead.
    new DropArrowElement(area, UIElement::pfRight | UIElement::pfTop);

    m_spinner = new ImageElement(area, UIElement::pfVCenter | UIElement::pfHCenter);
    // Straight from the gallery's resource archive ("...zip#zip:animations/...").
    m_spinner->SetAnimationFile(wxString::FromUTF8(
        ui_resources_t::get()->get_resource_loader().find_file("animations/spinner.gif")));
    m_spinner->GetTooltip()->SetText("An animated GIF from the resource archive, stepped by element timers");
  }

  ElementAdapter* m_adapter = nullptr;
  talvar2::intrusive_pointer_t<RectangleElement> m_root;
  talvar2::intrusive_pointer_t<ImageElement> m_spinner;
};

}  // namespace

wxWindow* create_elements_page(wxWindow* parent) { return new elements_page_t(parent); }

wxPoint elements_page_tooltip_point(wxWindow* page) {
  const auto* elements = dynamic_cast<elements_page_t*>(page);
  return elements != nullptr ? elements->spinner_centre() : wxDefaultPosition;
}

wxCustomTooltip* elements_page_tooltip(wxWindow* page) {
  const auto* elements = dynamic_cast<elements_page_t*>(page);
  return elements != nullptr ? elements->spinner_tooltip() : nullptr;
}

}  // namespace gallery
