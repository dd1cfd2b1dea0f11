#include "orvix1/xrc_handlers.h"

#include <memory>
#include <vector>

#include <wx/animate.h>
#include <wx/colour.h>
#include <wx/filesys.h>
#include <wx/font.h>
#include <wx/image.h>
#include <wx/xml/xml.h>

#include "resources/image_decoding.h"
#include "core/log.h"
#include "core/read_to_end.h"
#include "resources/xrc_check.h"

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

// Reads a file through the resource's file system, so that paths relative
// to the resource file and "#zip:" paths inside archives both resolve.
// The file is read whole before it is decoded: the decoders seek back and
// forth, and a damaged entry of a zip archive crashes wx's seek instead of
// failing it. False when it cannot be read to its end.
bool read_resource_file(wxFileSystem& file_system, const wxString& path, std::vector<char>& bytes) {
  std::unique_ptr<wxFSFile> file(file_system.OpenFile(path, wxFS_READ));
  return file && file->GetStream() != nullptr &&
         orvix1::detail::read_to_end(*file->GetStream(), bytes,
                                     orvix1::detail::k_most_picture_bytes);
}

// An invalid value when the file cannot be read or decoded.
template <class T, class Decode>
T load_picture(wxFileSystem& file_system, const wxString& path, Decode decode) {
  std::vector<char> bytes;
  std::string ignored;  // the handlers report the property
  T value;
  if (read_resource_file(file_system, path, bytes))
    decode(bytes.data(), bytes.size(), value, ignored);
  return value;
}

// Whether the object a handler is about to build may not reach wx (see
// xrc_check.h), after reporting why. Resource files are input like any
// other: the library's handlers check what they are given even when the
// document was not checked as a whole.
template <class Report>
bool refuses(const wxXmlNode* node, Report report) {
  static const orvix1::detail::xrc_rules_t rules = orvix1::detail::library_handler_rules();
  const wxString problem = orvix1::detail::xrc_object_problem(*node, rules, false);
  if (!problem.empty()) report(problem);
  return !problem.empty();
}

}  // namespace

namespace orvix1 {

void add_i18n_xml_handlers(wxXmlResource* resource) {
  resource->AddHandler(new wxI18nPanelXmlHandler);
  resource->AddHandler(new wxI18nDialogXmlHandler);
}

bool remove_unsafe_xrc_objects(wxXmlDocument& document, const std::string& source) {
  const log4cplus::Logger logger = log::get_logger("orvix.resources");
  wxString reason;
  const bool usable = detail::remove_refused_xrc_objects(
      document, detail::library_handler_rules(),
      [&](const wxString& name, const wxString& class_name, const wxString& problem) {
        ORVIX_LOG_WARNING(logger, "resource file \"" << source << "\": object \""
                                                      << name.utf8_string() << "\" ("
                                                      << class_name.utf8_string()
                                                      << ") refused: " << problem.utf8_string());
      },
      reason);
  if (!usable)
    ORVIX_LOG_WARNING(logger,
                      "resource file \"" << source << "\" refused: " << reason.utf8_string());
  return usable;
}

}  // namespace orvix1

wxImageXmlHandler::wxImageXmlHandler() = default;

bool wxImageXmlHandler::CanHandle(wxXmlNode* node) { return IsOfClass(node, "wxImage"); }

wxObject* wxImageXmlHandler::DoCreateResource() {
  if (refuses(m_node, [this](const wxString& why) { ReportError(why); })) return nullptr;
  const wxXmlNode* bitmap_node = GetParamNode("bitmap");
  if (bitmap_node == nullptr) {
    ReportError("an image needs a \"bitmap\" property");
    return nullptr;
  }
  wxImage image;
  if (bitmap_node->HasAttribute("stock_id")) {
    // A desktop without the icon theme has no picture for a known id.
    const wxBitmap stock = GetBitmap(bitmap_node);
    if (stock.IsOk()) image = stock.ConvertToImage();
  } else {
    image = load_picture<wxImage>(GetCurFileSystem(), GetFilePath(bitmap_node),
                                  orvix1::detail::decode_image);
  }
  if (!image.IsOk()) {
    ReportParamError("bitmap", "cannot load the image");
    return nullptr;
  }
  return new wxImage(image);
}

wxAnimationXmlHandler::wxAnimationXmlHandler() = default;

bool wxAnimationXmlHandler::CanHandle(wxXmlNode* node) { return IsOfClass(node, "wxAnimation"); }

wxObject* wxAnimationXmlHandler::DoCreateResource() {
  if (refuses(m_node, [this](const wxString& why) { ReportError(why); })) return nullptr;
  const wxXmlNode* animation_node = GetParamNode("animation");
  if (animation_node == nullptr) {
    ReportError("an animation needs an \"animation\" property");
    return nullptr;
  }
  const wxAnimation animation = load_picture<wxAnimation>(
      GetCurFileSystem(), GetFilePath(animation_node), orvix1::detail::decode_animation);
  if (!animation.IsOk()) {
    ReportParamError("animation", "cannot load the animation");
    return nullptr;
  }
  return new wxAnimation(animation);
}

wxColourXmlHandler::wxColourXmlHandler() = default;

bool wxColourXmlHandler::CanHandle(wxXmlNode* node) { return IsOfClass(node, "wxColour"); }

wxObject* wxColourXmlHandler::DoCreateResource() {
  if (refuses(m_node, [this](const wxString& why) { ReportError(why); })) return nullptr;
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
  if (refuses(m_node, [this](const wxString& why) { ReportError(why); })) return nullptr;
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
  if (refuses(m_node, [this](const wxString& why) { ReportError(why); })) return nullptr;
  const domain_scope_t scope(m_resource, GetParamValue("domain"));
  return wxPanelXmlHandler::DoCreateResource();
}

wxObject* wxI18nDialogXmlHandler::DoCreateResource() {
  if (refuses(m_node, [this](const wxString& why) { ReportError(why); })) return nullptr;
  const domain_scope_t scope(m_resource, GetParamValue("domain"));
  return wxDialogXmlHandler::DoCreateResource();
}
