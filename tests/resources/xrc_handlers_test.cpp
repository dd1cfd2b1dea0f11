#include "orvix1/xrc_handlers.h"

#include <memory>

#include <gtest/gtest.h>
#include <wx/animate.h>
#include <wx/dialog.h>
#include <wx/frame.h>
#include <wx/panel.h>
#include <wx/settings.h>

#include "support/resource_archive.h"
#include "support/scratch_dir.h"
#include "support/wx_test_environment.h"

namespace {

using orvix1_test::take_asserts;

// A copy of the named object, or an invalid value when none was made.
template <class T>
T value(wxXmlResource& resource, const char* name, const char* class_name) {
  std::unique_ptr<wxObject> object(resource.LoadObject(nullptr, name, class_name));
  auto* value = dynamic_cast<T*>(object.get());
  return value != nullptr ? *value : T();
}

// Records the translation domain in force while a child object is built.
class domain_probe_handler_t : public wxXmlResourceHandler {
 public:
  static wxString seen;
  bool CanHandle(wxXmlNode* node) override { return IsOfClass(node, "domainProbe"); }
  wxObject* DoCreateResource() override {
    seen = m_resource->GetDomain();
    return new wxPanel(dynamic_cast<wxWindow*>(m_parent));
  }
};
wxString domain_probe_handler_t::seen;

// With every handler start-up registers, one XRC file loads images and
// animations relative to itself, colours and fonts, and panels and dialogs
// that translate their subtree in their own domain. (Images inside zip
// archives, hex and system colours, broken and empty declarations:
// UiResources.)
TEST(XrcHandlers, LoadImagesAnimationsColoursFontsAndTranslatedPanelsAndDialogs) {
  take_asserts();
  const orvix1_test::scratch_folder_t dir;
  dir.write("pixel.png", orvix1_test::png_bytes(6, 4, wxColour(10, 200, 30)));
  dir.write("spin.gif", orvix1_test::gif_bytes(6, 4));
  dir.write("res.xrc",
            orvix1_test::xrc_text(
                "<object class=\"wxImage\" name=\"logo\"><bitmap>pixel.png</bitmap></object>\n"
                "<object class=\"wxImage\" name=\"missing\"><bitmap>nope.png</bitmap></object>\n"
                "<object class=\"wxAnimation\" name=\"spin\"><animation>spin.gif</animation></object>\n"
                "<object class=\"wxAnimation\" name=\"bad\"><animation>none.gif</animation></object>\n"
                "<object class=\"wxColour\" name=\"named\"><value>red</value></object>\n"
                "<object class=\"wxFont\" name=\"big\"><font><size>14</size><weight>bold</weight>"
                "<underlined>1</underlined></font></object>\n"
                "<object class=\"wxFont\" name=\"gui\"><font><sysfont>wxSYS_DEFAULT_GUI_FONT</sysfont>"
                "</font></object>\n"
                "<object class=\"wxPanel\" name=\"panel\"><domain>panel-texts</domain>"
                "<object class=\"domainProbe\"/></object>\n"
                "<object class=\"wxDialog\" name=\"dialog\"><domain>dialog-texts</domain>"
                "<title>Hello</title><object class=\"domainProbe\"/></object>\n"
                "<object class=\"wxPanel\" name=\"plain\"><object class=\"domainProbe\"/></object>"));
  wxXmlResource resource;
  orvix1::add_i18n_xml_handlers(&resource);
  resource.InitAllHandlers();
  resource.AddHandler(new wxImageXmlHandler);
  resource.AddHandler(new wxAnimationXmlHandler);
  resource.AddHandler(new wxColourXmlHandler);
  resource.AddHandler(new wxFontXmlHandler);
  resource.AddHandler(new domain_probe_handler_t);
  ASSERT_TRUE(resource.Load(dir.file("res.xrc")));

  const wxImage image = value<wxImage>(resource, "logo", "wxImage");
  ASSERT_TRUE(image.IsOk());
  EXPECT_EQ(image.GetGreen(3, 2), 200);
  EXPECT_EQ(value<wxAnimation>(resource, "spin", "wxAnimation").GetSize(), wxSize(6, 4));
  EXPECT_FALSE(value<wxImage>(resource, "missing", "wxImage").IsOk());
  EXPECT_FALSE(value<wxAnimation>(resource, "bad", "wxAnimation").IsOk());
  EXPECT_EQ(value<wxColour>(resource, "named", "wxColour"), *wxRED);
  const wxFont big = value<wxFont>(resource, "big", "wxFont");
  EXPECT_EQ(big.GetPointSize(), 14);
  EXPECT_EQ(big.GetWeight(), wxFONTWEIGHT_BOLD);
  EXPECT_TRUE(big.GetUnderlined());
  EXPECT_EQ(value<wxFont>(resource, "gui", "wxFont"), wxSystemSettings::GetFont(wxSYS_DEFAULT_GUI_FONT));

  resource.SetDomain("app");
  wxFrame* frame = new wxFrame(nullptr, wxID_ANY, "host");
  ASSERT_NE(resource.LoadPanel(frame, "panel"), nullptr);
  EXPECT_EQ(domain_probe_handler_t::seen, "panel-texts");
  EXPECT_EQ(resource.GetDomain(), "app");
  wxDialog* dialog = resource.LoadDialog(frame, "dialog");
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(domain_probe_handler_t::seen, "dialog-texts");
  EXPECT_EQ(dialog->GetTitle(), "Hello");
  ASSERT_NE(resource.LoadPanel(frame, "plain"), nullptr);
  EXPECT_EQ(domain_probe_handler_t::seen, "app");
  dialog->Destroy();
  frame->Destroy();
  orvix1_test::pump_events();
  EXPECT_TRUE(take_asserts().empty());
}

}  // namespace
