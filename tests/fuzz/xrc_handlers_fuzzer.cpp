// Any bytes as an XRC document for the library's handlers, read as a host
// reads a resource file it does not control: remove_unsafe_xrc_objects, then
// wx loads the document and every object it declares is built (panels in a
// frame, dialogs on their own). Building must give an object or nothing,
// never crash, assert or leak.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include <wx/dialog.h>
#include <wx/filename.h>
#include <wx/filesys.h>
#include <wx/frame.h>
#include <wx/mstream.h>
#include <wx/panel.h>
#include <wx/xml/xml.h>

#include "fuzz_environment.h"
#include "orvix1/xrc_handlers.h"
#include "core/wx_log_capture.h"

namespace {

// The library's handlers only; wx's reports are dropped (a host sees them
// as wx errors, which is fine: they are not assertions).
class handler_resources_t : public wxXmlResource {
 public:
  handler_resources_t() : wxXmlResource(wxXRC_USE_LOCALE | wxXRC_NO_RELOADING) {
    orvix1::add_i18n_xml_handlers(this);
    AddHandler(new wxImageXmlHandler);
    AddHandler(new wxAnimationXmlHandler);
    AddHandler(new wxColourXmlHandler);
    AddHandler(new wxFontXmlHandler);
  }

 protected:
  void DoReportError(const wxString&, const wxXmlNode*, const wxString&) override {}
};

wxFrame* g_frame = nullptr;
std::string g_document_location;

// Pictures beside the document, so that file references of mutated
// documents are read and decoded too.
void write_pictures() {
  static const unsigned char gif[] = {
      'G', 'I', 'F', '8', '9', 'a', 1, 0, 1, 0, 0x80, 0, 0, 0, 0, 0, 0xff, 0xff, 0xff,
      0x21, 0xf9, 4, 0, 10, 0, 0, 0, 0x2c, 0, 0, 0, 0, 1, 0, 1, 0, 0, 2, 2, 0x44, 1, 0, 0x3b};
  orvix1_fuzz::write_input("spin.gif", gif, sizeof gif);
  orvix1_fuzz::write_input("logo.gif", gif, sizeof gif);
}

void build(wxXmlResource& resources, const wxXmlNode& object) {
  const wxString name = object.GetAttribute("name");
  const wxString class_name = object.GetAttribute("class");
  if (class_name == "wxPanel") {
    // A panel needs a parent: wx asserts on a missing one, which is the
    // host's call, not the file's.
    delete resources.LoadPanel(g_frame, name);
  } else if (class_name == "wxDialog") {
    std::unique_ptr<wxDialog> dialog(resources.LoadDialog(nullptr, name));
  } else {
    delete resources.LoadObject(nullptr, name, class_name);
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  orvix1_fuzz::start_environment(argc, argv);
  g_frame = new wxFrame(nullptr, wxID_ANY, "fuzz");
  write_pictures();
  const std::uint8_t nothing = 0;
  g_document_location = wxFileSystem::FileNameToURL(
      wxFileName(orvix1_fuzz::write_input("resources.xrc", &nothing, 0))).utf8_string();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const orvix1::wx_log_capture_t quiet;
  wxMemoryInputStream in(data, size);
  auto document = std::make_unique<wxXmlDocument>();
  if (!document->Load(in) || !orvix1::remove_unsafe_xrc_objects(*document, "fuzz input"))
    return 0;
  handler_resources_t resources;
  // The document goes to wx; the objects are read from it there.
  const wxXmlDocument* loaded = document.get();
  if (!resources.LoadDocument(document.release(), g_document_location)) return 0;
  for (const wxXmlNode* node = loaded->GetRoot()->GetChildren(); node != nullptr;
       node = node->GetNext())
    build(resources, *node);
  return 0;
}
