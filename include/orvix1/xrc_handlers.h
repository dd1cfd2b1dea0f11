#ifndef ORVIX1_XRC_HANDLERS_H
#define ORVIX1_XRC_HANDLERS_H
/// @file
/// Resource handlers that initialize_wxwidgets registers with wxXmlResource.

#include <string>

#include <wx/xrc/xh_dlg.h>
#include <wx/xrc/xh_panel.h>
#include <wx/xrc/xmlres.h>

#include "orvix1/export.h"

namespace orvix1 {
/// Registers the internationalised panel and dialog handlers. They must come
/// before wxXmlResource::InitAllHandlers so that they take "wxPanel" and
/// "wxDialog" ahead of the stock handlers.
ORVIX1_API void add_i18n_xml_handlers(wxXmlResource* resource);

/// Prepares an XRC document read from a file the program does not control
/// for wxXmlResource::LoadDocument. wx reads some text in such files as
/// syntax and asserts or hangs on it (names with "[", absurd font sizes,
/// unknown stock ids); this takes out every top-level element that is not an
/// object the library's handlers build from values of checked forms (the
/// rules are in the handlers' descriptions below), with one warning on the
/// "orvix.resources" logger naming `source` and the object. The library's
/// handlers check each object again when they build it; objects inside
/// panels and dialogs of other classes have their common window properties
/// checked, their own ones are left to their handlers. False, with a
/// warning and the document unchanged, when it has no <resource> root.
ORVIX1_API bool remove_unsafe_xrc_objects(wxXmlDocument& document, const std::string& source);
}  // namespace orvix1

/// `<object class="wxImage" name="...">` with a `<bitmap>` (or `<file>`) property:
/// loads a wxImage; LoadObject(nullptr, name, "wxImage") returns a new one.
class ORVIX1_API wxImageXmlHandler : public wxXmlResourceHandler {
 public:
  wxImageXmlHandler();
  wxObject* DoCreateResource() override;
  bool CanHandle(wxXmlNode* node) override;

 private:
  wxDECLARE_DYNAMIC_CLASS(wxImageXmlHandler);
};

/// `<object class="wxAnimation" name="...">` with an `<animation>` property: loads
/// a wxAnimation; LoadObject(nullptr, name, "wxAnimation") returns a new one.
class ORVIX1_API wxAnimationXmlHandler : public wxXmlResourceHandler {
 public:
  wxAnimationXmlHandler();
  wxObject* DoCreateResource() override;
  bool CanHandle(wxXmlNode* node) override;

 private:
  wxDECLARE_DYNAMIC_CLASS(wxAnimationXmlHandler);
};

/// `<object class="wxColour" name="...">` with a `<value>` property holding what
/// XRC colour properties accept ("#RRGGBB", a colour name, a system colour
/// such as wxSYS_COLOUR_WINDOW): LoadObject(nullptr, name, "wxColour")
/// returns a new wxColour.
class ORVIX1_API wxColourXmlHandler : public wxXmlResourceHandler {
 public:
  wxColourXmlHandler();
  wxObject* DoCreateResource() override;
  bool CanHandle(wxXmlNode* node) override;

 private:
  wxDECLARE_DYNAMIC_CLASS(wxColourXmlHandler);
};

/// `<object class="wxFont" name="...">` with a `<font>` property in XRC font
/// syntax (size, style, weight, family, face, sysfont, ...):
/// LoadObject(nullptr, name, "wxFont") returns a new wxFont.
class ORVIX1_API wxFontXmlHandler : public wxXmlResourceHandler {
 public:
  wxFontXmlHandler();
  wxObject* DoCreateResource() override;
  bool CanHandle(wxXmlNode* node) override;

 private:
  wxDECLARE_DYNAMIC_CLASS(wxFontXmlHandler);
};

/// wxPanel with an optional `<domain>` property: the texts of the panel and of
/// everything inside it are translated in that message catalogue.
class ORVIX1_API wxI18nPanelXmlHandler : public wxPanelXmlHandler {
 public:
  wxObject* DoCreateResource() override;

 private:
  wxDECLARE_DYNAMIC_CLASS(wxI18nPanelXmlHandler);
};

/// wxDialog with an optional `<domain>` property, as wxI18nPanelXmlHandler.
class ORVIX1_API wxI18nDialogXmlHandler : public wxDialogXmlHandler {
 public:
  wxObject* DoCreateResource() override;

 private:
  wxDECLARE_DYNAMIC_CLASS(wxI18nDialogXmlHandler);
};

#endif
