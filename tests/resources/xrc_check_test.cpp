// Hostile resource files: every object below once reached (or could reach)
// an asserting, hanging or arbitrary-object path of wx. Each is refused with
// one warning naming its archive and itself, while its neighbours load; the
// library's handlers refuse the same objects when a host loads the file
// itself.

#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <wx/animate.h>
#include <wx/dialog.h>
#include <wx/font.h>
#include <wx/frame.h>
#include <wx/panel.h>
#include <wx/settings.h>
#include <wx/sstream.h>
#include <wx/xml/xml.h>

#include "orvix1/resource_loader.h"
#include "orvix1/xrc_handlers.h"
#include "support/log_capture.h"
#include "support/resource_archive.h"
#include "support/scratch_dir.h"
#include "support/wx_test_environment.h"

namespace {

using orvix1_test::xrc_text;

struct hostile_object_t {
  const char* name;    // as the warning gives it
  const char* klass;   // "wxColour", ...
  std::string body;    // the object's properties
  const char* reason;  // part of the warning
};

std::string object_xml(const hostile_object_t& object) {
  return std::string("<object class=\"") + object.klass + "\" name=\"" + object.name + "\">" +
         object.body + "</object>\n";
}

const hostile_object_t k_hostile[] = {
    // wx reads "[" in names as an id range and asserts on an empty base.
    {"[nBig", "wxFont", "<font><size>14</size></font>", "not a plain identifier"},
    {"a,b", "wxColour", "<value>#102030</value>", "not a plain identifier"},
    {"40000", "wxColour", "<value>#102030</value>", "not a plain identifier"},  // a window id
    {"huge", "wxFont", "<font><size>999999999</size></font>", "<size>: not a font size"},
    {"nofamily", "wxFont", "<font><size>10</size><family>nosuch</family></font>",
     "<family>: not a font family"},
    {"faces", "wxFont", "<font><face>" + std::string(10000, 'x') + "</face></font>",
     "control characters or too long"},
    {"manyfaces", "wxFont", "<font><face>a,b,c,d,e</face></font>", "not a short list"},
    {"charset", "wxFont", "<font><encoding>x-unknown</encoding></font>", "not a known encoding"},
    {"exponent", "wxFont", "<font><size>1e3</size></font>", "not a font size"},
    {"stock", "wxImage", "<bitmap stock_id=\"nosuch\"/>", "unknown stock id"},
    {"client", "wxImage", "<bitmap stock_id=\"wxART_ERROR\" stock_client=\"x\"/>",
     "unknown stock client"},
    {"climb", "wxImage", "<bitmap>../outside.png</bitmap>", "not a plain relative file path"},
    {"absolute", "wxImage", "<bitmap>/etc/passwd</bitmap>", "not a plain relative file path"},
    {"nested", "wxImage", "<bitmap>logo.png#zip:x.png</bitmap>", "not a plain relative"},
    {"scheme", "wxAnimation", "<animation>file:spin.gif</animation>", "not a plain relative"},
    {"variable", "wxAnimation", "<animation>$(HOME)/spin.gif</animation>", "not a plain relative"},
    {"absent", "wxAnimation", "<animation>nope.gif</animation>", "no file \"nope.gif\""},
    {"folder", "wxImage", "<bitmap>icons</bitmap>", "no file \"icons\""},
    {"colour", "wxColour", "<value>rgba(1,2,3,9)</value>", "<value>: not a colour"},
    {"control", "wxColour", "<value>re&#127;d</value>", "control characters"},
    {"empty", "wxColour", "", "no <value>"},
    {"nofont", "wxFont", "", "no <font>"},
    {"extra", "wxColour", "<value>#102030</value><size>1</size>", "<size>: unknown property"},
    {"child", "wxColour", "<value>#102030<b/></value>", "nested elements"},
    {"deep", "wxFont", "<font><size><a><b/></a></size></font>", "nested elements"},
};

// Refused objects are as if absent: older archives still serve their
// names, and nothing reaches a wx assertion.
TEST(XrcCheck, HostileObjectsAreRefusedOneWarningEachAndTheirNeighboursLoad) {
  (void)orvix1_test::take_asserts();
  const orvix1_test::scratch_folder_t dir;
  std::string objects = "<object class=\"wxColour\" name=\"clGood\"><value>#010203</value></object>\n";
  for (const hostile_object_t& object : k_hostile) objects += object_xml(object);
  // A sub-class, an object reference and an id range, which wx would make
  // or resolve by name, and a class the archive has no handler for.
  objects +=
      "<object class=\"wxColour\" name=\"sub\" subclass=\"wxFrame\"><value>red</value></object>\n"
      "<object_ref ref=\"clGood\" name=\"ref\"/>\n"
      "<object class=\"ids-range\" name=\"ids\"/>\n"
      "<object class=\"wxPanel\" name=\"panel\"/>\n";
  orvix1_test::write_folder(dir.file("older"),
                            {{"resources.xrc", xrc_text("<object class=\"wxFont\" name=\"huge\">"
                                                        "<font><size>12</size></font></object>")}});
  orvix1_test::write_folder(dir.file("hostile"), {{"resources.xrc", xrc_text(objects)},
                                                  {"icons/logo.png", "x"},
                                                  {"logo.png", "x"}});
  orvix1::resource_loader_t resources;
  ASSERT_TRUE(resources.add_archive(dir.file("older")));
  const orvix1_test::log_capture_t capture("orvix.resources");
  ASSERT_TRUE(resources.add_archive(dir.file("hostile")));

  const std::size_t hostile_count = std::size(k_hostile);
  ASSERT_EQ(capture.warnings(), hostile_count + 4);
  for (std::size_t i = 0; i < hostile_count; ++i) {
    const std::string& message = capture.entries()[i].message;
    SCOPED_TRACE(message);
    EXPECT_NE(message.find("hostile\": object \"" + std::string(k_hostile[i].name) + "\" (" +
                           k_hostile[i].klass + ") refused: "),
              std::string::npos);
    EXPECT_NE(message.find(k_hostile[i].reason), std::string::npos);
  }
  const char* const other_reasons[] = {"object attribute \"subclass\"", "not an object",
                                       "class \"ids-range\" is not taken",
                                       "class \"wxPanel\" is not taken"};
  for (std::size_t i = 0; i < std::size(other_reasons); ++i)
    EXPECT_NE(capture.entries()[hostile_count + i].message.find(other_reasons[i]),
              std::string::npos);
  EXPECT_FALSE(resources.has_object("[nBig", "wxFont"));
  const std::unique_ptr<wxObject> good(resources.load_object("clGood", "wxColour"));
  ASSERT_NE(dynamic_cast<wxColour*>(good.get()), nullptr);
  EXPECT_EQ(*dynamic_cast<wxColour*>(good.get()), wxColour(1, 2, 3));
  const std::unique_ptr<wxObject> older(resources.load_object("huge", "wxFont"));
  ASSERT_NE(dynamic_cast<wxFont*>(older.get()), nullptr);
  EXPECT_EQ(dynamic_cast<wxFont*>(older.get())->GetPointSize(), 12);
  EXPECT_TRUE(orvix1_test::take_asserts().empty());
}

// The library's handlers with a resource file the host loads itself; keeps
// what wx reports, so that the refusals can be read.
class reporting_resources_t : public wxXmlResource {
 public:
  reporting_resources_t() : wxXmlResource(wxXRC_USE_LOCALE | wxXRC_NO_RELOADING) {
    orvix1::add_i18n_xml_handlers(this);
    InitAllHandlers();
    AddHandler(new wxImageXmlHandler);
    AddHandler(new wxAnimationXmlHandler);
    AddHandler(new wxColourXmlHandler);
    AddHandler(new wxFontXmlHandler);
  }
  std::string reports;

 protected:
  void DoReportError(const wxString&, const wxXmlNode*, const wxString& message) override {
    reports += message.utf8_string() + "\n";
  }
};

// The same objects under plain names, and windows with bad properties of
// their own or of their children, built by the handlers without the check of
// the whole document: each gives nothing and says why.
TEST(XrcCheck, TheLibraryHandlersRefuseWhatTheCheckRefuses) {
  (void)orvix1_test::take_asserts();
  const orvix1_test::scratch_folder_t dir;
  std::string objects;
  std::vector<std::pair<std::string, std::string>> expected;  // (class, reason)
  for (const hostile_object_t& object : k_hostile) {
    const std::string reason = object.reason;
    // Names are wx's to read before any handler runs; files are looked up
    // in archives only.
    if (reason.find("identifier") != std::string::npos || reason.find("no file") != std::string::npos)
      continue;
    const std::string name = "o" + std::to_string(expected.size());
    objects += object_xml({name.c_str(), object.klass, object.body, object.reason});
    expected.emplace_back(object.klass, reason);
  }
  const std::pair<const char*, const char*> windows[] = {
      {"<object class=\"wxPanel\" name=\"w0\"><font><size>0</size></font></object>", "<size>"},
      {"<object class=\"wxPanel\" name=\"w1\"><object class=\"wxStaticText\">"
       "<label>a</label><font><size>999999999</size></font></object></object>",
       "not a font size"},
      {"<object class=\"wxPanel\" name=\"w2\"><object class=\"wxBitmapButton\">"
       "<bitmap stock_id=\"nosuch\"/></object></object>",
       "unknown stock id"},
      {"<object class=\"wxPanel\" name=\"w3\"><object class=\"wxColour\"><value>red</value>"
       "</object></object>",
       "a resource object inside a window"},
      {"<object class=\"wxDialog\" name=\"w4\"><size>10d,5d</size></object>", "pixel sizes"},
      {"<object class=\"wxDialog\" name=\"w5\"><icon>x.png</icon></object>", "unknown property"},
      {"<object class=\"wxPanel\" name=\"w6\"><style>wxPOPUP_WINDOW</style></object>",
       "style flags"},
  };
  for (const auto& window : windows) objects += window.first;
  std::string deep;
  for (int i = 0; i < 14; ++i) deep += "<object class=\"wxPanel\">";
  for (int i = 0; i < 14; ++i) deep += "</object>";
  objects += "<object class=\"wxPanel\" name=\"w7\">" + deep + "</object>";
  dir.write("res.xrc", xrc_text(objects));
  reporting_resources_t resources;
  ASSERT_TRUE(resources.Load(dir.file("res.xrc")));
  wxFrame frame(nullptr, wxID_ANY, "parent");

  for (std::size_t i = 0; i < expected.size(); ++i) {
    resources.reports.clear();
    const std::string name = "o" + std::to_string(i);
    EXPECT_EQ(std::unique_ptr<wxObject>(resources.LoadObject(nullptr, name, expected[i].first)),
              nullptr)
        << name;
    EXPECT_NE(resources.reports.find(expected[i].second), std::string::npos)
        << name << ": " << resources.reports;
  }
  for (std::size_t i = 0; i <= std::size(windows); ++i) {
    resources.reports.clear();
    const wxString name = wxString::Format("w%zu", i);
    const bool dialog = i == 4 || i == 5;
    const wxObject* made = dialog ? static_cast<wxObject*>(resources.LoadDialog(nullptr, name))
                                  : resources.LoadPanel(&frame, name);
    EXPECT_EQ(made, nullptr) << name;
    const char* reason = i < std::size(windows) ? windows[i].second : "nested too deeply";
    EXPECT_NE(resources.reports.find(reason), std::string::npos) << name << ": " << resources.reports;
  }
  EXPECT_TRUE(orvix1_test::take_asserts().empty());
}

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

// What the handlers take, read relative to a file the host loads itself:
// pictures (a missing one gives nothing), colours, fonts with the
// properties wx reads, and panels and dialogs that translate their subtree
// in their own domain. (Hex and system colours, and pictures and animations
// in archives: UiResources.)
TEST(XrcHandlers, LoadPicturesColoursFontsAndTranslatedPanelsAndDialogs) {
  (void)orvix1_test::take_asserts();
  const orvix1_test::scratch_folder_t dir;
  dir.write("pixel.png", orvix1_test::png_bytes(6, 4, wxColour(10, 200, 30)));
  dir.write("res.xrc",
            xrc_text("<object class=\"wxImage\" name=\"logo\"><bitmap>pixel.png</bitmap></object>\n"
                     "<object class=\"wxImage\" name=\"missing\"><bitmap>nope.png</bitmap></object>\n"
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
  reporting_resources_t resource;
  resource.AddHandler(new domain_probe_handler_t);
  ASSERT_TRUE(resource.Load(dir.file("res.xrc")));

  EXPECT_EQ(value<wxImage>(resource, "logo", "wxImage").GetGreen(3, 2), 200);
  EXPECT_FALSE(value<wxImage>(resource, "missing", "wxImage").IsOk());
  EXPECT_FALSE(value<wxAnimation>(resource, "bad", "wxAnimation").IsOk());
  EXPECT_EQ(value<wxColour>(resource, "named", "wxColour"), *wxRED);
  const wxFont big = value<wxFont>(resource, "big", "wxFont");
  EXPECT_EQ(big.GetPointSize(), 14);
  EXPECT_EQ(big.GetWeight(), wxFONTWEIGHT_BOLD);
  EXPECT_TRUE(big.GetUnderlined());
  EXPECT_EQ(value<wxFont>(resource, "gui", "wxFont"), wxSystemSettings::GetFont(wxSYS_DEFAULT_GUI_FONT));

  resource.SetDomain("app");
  wxFrame frame(nullptr, wxID_ANY, "host");
  ASSERT_NE(resource.LoadPanel(&frame, "panel"), nullptr);
  EXPECT_EQ(domain_probe_handler_t::seen, "panel-texts");
  EXPECT_EQ(resource.GetDomain(), "app");
  const std::unique_ptr<wxDialog> dialog(resource.LoadDialog(&frame, "dialog"));
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(domain_probe_handler_t::seen, "dialog-texts");
  EXPECT_EQ(dialog->GetTitle(), "Hello");
  ASSERT_NE(resource.LoadPanel(&frame, "plain"), nullptr);
  EXPECT_EQ(domain_probe_handler_t::seen, "app");
  EXPECT_TRUE(orvix1_test::take_asserts().empty());
}

// A document is cut to the objects a resource file may hold, with one
// warning for all that are cut; one without a resource root is left alone.
TEST(XrcCheck, DocumentsKeepAtMostAThousandObjectsAndNeedAResourceRoot) {
  std::string objects;
  for (int i = 0; i < 1005; ++i)
    objects += "<object class=\"wxColour\" name=\"c" + std::to_string(i) +
               "\"><value>red</value></object>";
  wxXmlDocument document;
  wxStringInputStream in(wxString::FromUTF8(xrc_text(objects)));
  ASSERT_TRUE(document.Load(in));
  const orvix1_test::log_capture_t capture("orvix.resources");
  EXPECT_TRUE(orvix1::remove_unsafe_xrc_objects(document, "many.xrc"));
  ASSERT_EQ(capture.warnings(), 1u);
  EXPECT_NE(capture.entries()[0].message.find("\"many.xrc\": object \"c1000\""), std::string::npos);
  int kept = 0;
  for (const wxXmlNode* node = document.GetRoot()->GetChildren(); node; node = node->GetNext())
    kept += node->GetType() == wxXML_ELEMENT_NODE;
  EXPECT_EQ(kept, 1000);

  wxXmlDocument other;
  wxStringInputStream other_in("<settings><object class=\"wxColour\" name=\"a\"/></settings>");
  ASSERT_TRUE(other.Load(other_in));
  EXPECT_FALSE(orvix1::remove_unsafe_xrc_objects(other, "other.xml"));
  EXPECT_EQ(capture.warnings(), 2u);
  EXPECT_NE(other.GetRoot()->GetChildren(), nullptr);
}

}  // namespace
