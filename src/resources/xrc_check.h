#ifndef ORVIX1_SRC_XRC_CHECK_H
#define ORVIX1_SRC_XRC_CHECK_H

// The gate between XRC text from files and wxXmlResource. wx reads object
// names as id ranges, font values into asserting conversions, stock ids into
// invalid bitmaps and sub-class names into arbitrary objects; an object only
// reaches wx when every part of it has one of the forms checked here.

#include <cstddef>
#include <functional>
#include <set>

#include <wx/string.h>
#include <wx/xml/xml.h>

namespace orvix1 {
namespace detail {

struct xrc_rules_t {
  // Classes a top-level object may have (those the resource has handlers
  // for among "wxColour", "wxFont", "wxImage", "wxAnimation", "wxPanel",
  // "wxDialog").
  std::set<wxString> classes;
  // Whether a file reference (already known to be a plain relative path)
  // names a file; null takes every such path.
  std::function<bool(const wxString& path)> names_file;
};

// The classes of the library's handlers.
xrc_rules_t library_handler_rules();

// Empty when `object` (an <object> element) may be given to wx, otherwise
// why not. `top_level` objects need a name.
wxString xrc_object_problem(const wxXmlNode& object, const xrc_rules_t& rules, bool top_level);

// Removes from the document every top-level element that is not an
// acceptable object, calling `refused(name, class, reason)` for each.
// False, with `reason`, when the document has no <resource> root.
bool remove_refused_xrc_objects(
    wxXmlDocument& document, const xrc_rules_t& rules,
    const std::function<void(const wxString&, const wxString&, const wxString&)>& refused,
    wxString& reason);

}  // namespace detail
}  // namespace orvix1

#endif
