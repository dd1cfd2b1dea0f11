#include "orvix1/xrc_handlers.h"

#include <memory>

#include <gtest/gtest.h>
#include <wx/animate.h>
#include <wx/dialog.h>
#include <wx/ffile.h>
#include <wx/filename.h>
#include <wx/image.h>
#include <wx/anidecod.h>
#include <wx/imaggif.h>
#include <wx/panel.h>
#include <wx/quantize.h>
#include <wx/settings.h>
#include <wx/wfstream.h>
#include <wx/zipstrm.h>

#include "support/scratch_dir.h"
#include "support/wx_test_environment.h"

namespace {

using orvix1_test::take_asserts;

wxImage sample_image() {
  wxImage image(6, 4);
  image.SetRGB(wxRect(0, 0, 6, 4), 10, 200, 30);
  return image;
}

std::string resource_file(const std::string& objects) {
  return "<?xml version=\"1.0\"?>\n<resource xmlns=\"http://www.wxwidgets.org/wxxrc\" "
         "version=\"2.5.3.0\">\n" +
         objects + "\n</resource>\n";
}

class XrcHandlers : public ::testing::Test {
 protected:
  void SetUp() override { take_asserts(); }
  void TearDown() override { delete m_resource; }

  wxXmlResource& load(const wxString& path) {
    m_resource = new wxXmlResource;
    orvix1::add_i18n_xml_handlers(m_resource);
    m_resource->InitAllHandlers();
    m_resource->AddHandler(new wxImageXmlHandler);
    m_resource->AddHandler(new wxAnimationXmlHandler);
    m_resource->AddHandler(new wxColourXmlHandler);
    m_resource->AddHandler(new wxFontXmlHandler);
    EXPECT_TRUE(m_resource->Load(path));
    return *m_resource;
  }

  orvix1_test::scratch_folder_t m_dir;
  wxXmlResource* m_resource = nullptr;
};

TEST_F(XrcHandlers, LoadsNamedImagesRelativeToTheResource) {
  ASSERT_TRUE(sample_image().SaveFile(m_dir.file("pixel.png"), wxBITMAP_TYPE_PNG));
  m_dir.write("res.xrc", resource_file(
                             "<object class=\"wxImage\" name=\"logo\"><bitmap>pixel.png</bitmap></object>\n"
                             "<object class=\"wxImage\" name=\"missing\"><bitmap>nope.png</bitmap></object>"));
  wxXmlResource& resource = load(m_dir.file("res.xrc"));

  std::unique_ptr<wxObject> object(resource.LoadObject(nullptr, "logo", "wxImage"));
  auto* image = dynamic_cast<wxImage*>(object.get());
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(image->GetSize(), wxSize(6, 4));
  EXPECT_EQ(image->GetGreen(3, 2), 200);

  std::unique_ptr<wxObject> missing(resource.LoadObject(nullptr, "missing", "wxImage"));
  EXPECT_EQ(missing, nullptr);
}

TEST_F(XrcHandlers, LoadsResourcesFromInsideAnArchive) {
  {
    wxFFileOutputStream file(m_dir.file("pack.zip"));
    wxZipOutputStream zip(file);
    zip.PutNextEntry("res.xrc");
    const std::string xrc = resource_file(
        "<object class=\"wxImage\" name=\"logo\"><bitmap>pixel.png</bitmap></object>");
    zip.Write(xrc.data(), xrc.size());
    zip.PutNextEntry("pixel.png");
    sample_image().SaveFile(zip, wxBITMAP_TYPE_PNG);
  }
  wxXmlResource& resource = load(m_dir.file("pack.zip") + "#zip:res.xrc");
  std::unique_ptr<wxObject> object(resource.LoadObject(nullptr, "logo", "wxImage"));
  auto* image = dynamic_cast<wxImage*>(object.get());
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(image->GetSize(), wxSize(6, 4));
}

TEST_F(XrcHandlers, LoadsAnimations) {
  wxImageArray frames;
  for (const wxImage& frame : {sample_image().ConvertToGreyscale(), sample_image()}) {
    wxImage quantized;
    ASSERT_TRUE(wxQuantize::Quantize(frame, quantized, 16));
    frames.Add(quantized);
  }
  {
    wxFFileOutputStream out(m_dir.file("spin.gif"));
    wxGIFHandler gif;
    ASSERT_TRUE(gif.SaveAnimation(frames, &out, false, 50));
  }
  m_dir.write("res.xrc", resource_file(
                             "<object class=\"wxAnimation\" name=\"spin\"><animation>spin.gif</animation></object>\n"
                             "<object class=\"wxAnimation\" name=\"bad\"><animation>none.gif</animation></object>"));
  wxXmlResource& resource = load(m_dir.file("res.xrc"));

  std::unique_ptr<wxObject> object(resource.LoadObject(nullptr, "spin", "wxAnimation"));
  auto* animation = dynamic_cast<wxAnimation*>(object.get());
  ASSERT_NE(animation, nullptr);
  EXPECT_TRUE(animation->IsOk());
  EXPECT_EQ(animation->GetSize(), wxSize(6, 4));

  std::unique_ptr<wxObject> bad(resource.LoadObject(nullptr, "bad", "wxAnimation"));
  EXPECT_EQ(bad, nullptr);
}

// A copy of the named object, or an invalid value when it cannot be loaded.
template <class T>
T load_value(wxXmlResource& resource, const char* name, const char* class_name) {
  std::unique_ptr<wxObject> object(resource.LoadObject(nullptr, name, class_name));
  auto* value = dynamic_cast<T*>(object.get());
  return value != nullptr ? *value : T();
}

TEST_F(XrcHandlers, LoadsNamedColours) {
  m_dir.write("res.xrc", resource_file(
                             "<object class=\"wxColour\" name=\"hex\"><value>#102030</value></object>\n"
                             "<object class=\"wxColour\" name=\"named\"><value>red</value></object>\n"
                             "<object class=\"wxColour\" name=\"system\"><value>wxSYS_COLOUR_WINDOW</value></object>\n"
                             "<object class=\"wxColour\" name=\"bad\"><value>no-such-colour</value></object>\n"
                             "<object class=\"wxColour\" name=\"empty\"/>"));
  wxXmlResource& resource = load(m_dir.file("res.xrc"));
  const auto colour = [&](const char* name) { return load_value<wxColour>(resource, name, "wxColour"); };
  EXPECT_EQ(colour("hex"), wxColour(0x10, 0x20, 0x30));
  EXPECT_EQ(colour("named"), *wxRED);
  EXPECT_EQ(colour("system"), wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOW));
  EXPECT_EQ(std::unique_ptr<wxObject>(resource.LoadObject(nullptr, "bad", "wxColour")), nullptr);
  EXPECT_EQ(std::unique_ptr<wxObject>(resource.LoadObject(nullptr, "empty", "wxColour")), nullptr);
}

TEST_F(XrcHandlers, LoadsNamedFonts) {
  m_dir.write("res.xrc", resource_file(
                             "<object class=\"wxFont\" name=\"big\"><font><size>14</size>"
                             "<weight>bold</weight><style>italic</style><underlined>1</underlined>"
                             "</font></object>\n"
                             "<object class=\"wxFont\" name=\"mono\"><font><family>teletype</family>"
                             "</font></object>\n"
                             "<object class=\"wxFont\" name=\"gui\"><font><sysfont>wxSYS_DEFAULT_GUI_FONT"
                             "</sysfont></font></object>\n"
                             "<object class=\"wxFont\" name=\"empty\"/>"));
  wxXmlResource& resource = load(m_dir.file("res.xrc"));
  const auto font = [&](const char* name) { return load_value<wxFont>(resource, name, "wxFont"); };
  const wxFont big = font("big");
  ASSERT_TRUE(big.IsOk());
  EXPECT_EQ(big.GetPointSize(), 14);
  EXPECT_EQ(big.GetWeight(), wxFONTWEIGHT_BOLD);
  EXPECT_EQ(big.GetStyle(), wxFONTSTYLE_ITALIC);
  EXPECT_TRUE(big.GetUnderlined());
  EXPECT_TRUE(font("mono").IsFixedWidth());
  EXPECT_EQ(font("gui"), wxSystemSettings::GetFont(wxSYS_DEFAULT_GUI_FONT));
  EXPECT_EQ(std::unique_ptr<wxObject>(resource.LoadObject(nullptr, "empty", "wxFont")), nullptr);
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

TEST_F(XrcHandlers, PanelsAndDialogsTranslateTheirSubtreeInTheirDomain) {
  m_dir.write("res.xrc", resource_file(
                             "<object class=\"wxPanel\" name=\"panel\"><domain>panel-texts</domain>"
                             "<object class=\"domainProbe\"/></object>\n"
                             "<object class=\"wxDialog\" name=\"dialog\"><domain>dialog-texts</domain>"
                             "<title>Hello</title><object class=\"domainProbe\"/></object>\n"
                             "<object class=\"wxPanel\" name=\"plain\"><object class=\"domainProbe\"/></object>"));
  wxXmlResource& resource = load(m_dir.file("res.xrc"));
  resource.AddHandler(new domain_probe_handler_t);
  resource.SetDomain("app");

  wxFrame* frame = new wxFrame(nullptr, wxID_ANY, "host");
  wxPanel* panel = resource.LoadPanel(frame, "panel");
  ASSERT_NE(panel, nullptr);
  EXPECT_EQ(domain_probe_handler_t::seen, "panel-texts");
  EXPECT_EQ(resource.GetDomain(), "app");

  wxDialog* dialog = resource.LoadDialog(frame, "dialog");
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(domain_probe_handler_t::seen, "dialog-texts");
  EXPECT_EQ(dialog->GetTitle(), "Hello");
  EXPECT_EQ(resource.GetDomain(), "app");

  ASSERT_NE(resource.LoadPanel(frame, "plain"), nullptr);
  EXPECT_EQ(domain_probe_handler_t::seen, "app");
  dialog->Destroy();
  frame->Destroy();
  orvix1_test::pump_events();
  EXPECT_TRUE(take_asserts().empty());
}

}  // namespace
