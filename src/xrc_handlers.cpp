#include "orvix1/xrc_handlers.h"

#include <memory>
#include <vector>

#include <wx/animate.h>
#include <wx/colour.h>
#include <wx/filesys.h>
#include <wx/font.h>
#include <wx/image.h>
#include <wx/mstream.h>
#include <wx/xml/xml.h>

#include "read_to_end.h"

wxIMPLEMENT_DYNAMIC_CLASS(wxImageXmlHandler, wxXmlResourceHandler);
wxIMPLEMENT_DYNAMIC_CLASS(wxAnimationXmlHandler, wxXmlResourceHandler);
wxIMPLEMENT_DYNAMIC_CLASS(wxColourXmlHandler, wxXmlResourceHandler);
wxIMPLEMENT_DYNAMIC_CLASS(wxFontXmlHandler, wxXmlResourceHandler);
wxIMPLEMENT_DYNAMIC_CLASS(wxI18nPanelXmlHandler, wxPanelXmlHandler);
wxIMPLEMENT_DYNAMIC_CLASS(wxI18nDialogXmlHandler, wxDialogXmlHandler);

namespace {

// Sets the resource's translation domain for the lifetime of a scope: the
// texts of an object and of all its children are read while it is alive.
class domain_scope_t {
 public:
  domain_scope_t(wxXmlResource* resource, const wxString& domain)
      : m_resource(resource), m_previous(resource->GetDomain()), m_active(!domain.empty()) {
    if (m_active) m_resource->SetDomain(domain);
  }
  ~domain_scope_t() {
    if (m_active) m_resource->SetDomain(m_previous);
  }
  domain_scope_t(const domain_scope_t&) = delete;
  domain_scope_t& operator=(const domain_scope_t&) = delete;

 private:
  wxXmlResource* m_resource;
  wxString m_previous;
  bool m_active;
};

// Reads an image through the resource's file system, so that paths relative
// to the resource file and "#zip:" paths inside archives both resolve.
// The file is read whole before it is decoded: the decoders seek back and
// forth, and a damaged entry of a zip archive crashes wx's seek instead of
// failing it.
wxImage load_image(wxFileSystem& file_system, const wxString& path) {
  std::unique_ptr<wxFSFile> file(file_system.OpenFile(path, wxFS_READ));
  if (!file || file->GetStream() == nullptr) return wxImage();
  std::vector<char> bytes;
  if (!orvix1::detail::read_to_end(*file->GetStream(), bytes)) return wxImage();
  wxMemoryInputStream in(bytes.data(), bytes.size());
  wxImage image;
  image.LoadFile(in, wxBITMAP_TYPE_ANY);
  return image;
}

}  // namespace

namespace orvix1 {

void add_i18n_xml_handlers(wxXmlResource* resource) {
  resource->AddHandler(new wxI18nPanelXmlHandler);
  resource->AddHandler(new wxI18nDialogXmlHandler);
}

}  // namespace orvix1

wxImageXmlHandler::wxImageXmlHandler() = default;

bool wxImageXmlHandler::CanHandle(wxXmlNode* node) { return IsOfClass(node, "wxImage"); }

wxObject* wxImageXmlHandler::DoCreateResource() {
  const wxXmlNode* bitmap_node = GetParamNode("bitmap");
  if (bitmap_node == nullptr) {
    ReportError("an image needs a \"bitmap\" property");
    return nullptr;
  }
  wxImage image;
  if (bitmap_node->HasAttribute("stock_id"))
    image = GetBitmap(bitmap_node).ConvertToImage();
  else
    image = load_image(GetCurFileSystem(), GetFilePath(bitmap_node));
  if (!image.IsOk()) {
    ReportParamError("bitmap", "cannot load the image");
    return nullptr;
  }
  return new wxImage(image);
}

wxAnimationXmlHandler::wxAnimationXmlHandler() = default;

bool wxAnimationXmlHandler::CanHandle(wxXmlNode* node) { return IsOfClass(node, "wxAnimation"); }

wxObject* wxAnimationXmlHandler::DoCreateResource() {
  if (GetParamNode("animation") == nullptr) {
    ReportError("an animation needs an \"animation\" property");
    return nullptr;
  }
  wxAnimation* animation = GetAnimation("animation");
  if (animation == nullptr) return nullptr;  // already reported by GetAnimation
  if (!animation->IsOk()) {
    delete animation;
    ReportParamError("animation", "cannot load the animation");
    return nullptr;
  }
  return animation;
}

wxColourXmlHandler::wxColourXmlHandler() = default;

bool wxColourXmlHandler::CanHandle(wxXmlNode* node) { return IsOfClass(node, "wxColour"); }

wxObject* wxColourXmlHandler::DoCreateResource() {
  if (GetParamNode("value") == nullptr) {
    ReportError("a colour needs a \"value\" property");
    return nullptr;
  }
  const wxColour colour = GetColour("value");
  // GetColour has reported an unreadable value already.
  if (!colour.IsOk()) return nullptr;
  return new wxColour(colour);
}

wxFontXmlHandler::wxFontXmlHandler() = default;

bool wxFontXmlHandler::CanHandle(wxXmlNode* node) { return IsOfClass(node, "wxFont"); }

wxObject* wxFontXmlHandler::DoCreateResource() {
  if (GetParamNode("font") == nullptr) {
    ReportError("a font needs a \"font\" property");
    return nullptr;
  }
  const wxFont font = GetFont("font");
  if (!font.IsOk()) {
    ReportParamError("font", "cannot create the font");
    return nullptr;
  }
  return new wxFont(font);
}

wxObject* wxI18nPanelXmlHandler::DoCreateResource() {
  const domain_scope_t scope(m_resource, GetParamValue("domain"));
  return wxPanelXmlHandler::DoCreateResource();
}

wxObject* wxI18nDialogXmlHandler::DoCreateResource() {
  const domain_scope_t scope(m_resource, GetParamValue("domain"));
  return wxDialogXmlHandler::DoCreateResource();
}
