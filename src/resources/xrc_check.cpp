#include "resources/xrc_check.h"

#include <cstring>

#include <wx/tokenzr.h>

#include "core/file_values.h"

namespace orvix1 {
namespace detail {
namespace {

// Limits no real resource file comes near; they bound the work a file can
// cause before wx builds anything.
constexpr int k_max_depth = 12;
constexpr std::size_t k_max_elements_per_object = 512;
constexpr std::size_t k_max_top_level_objects = 1000;
constexpr std::size_t k_max_path_length = 256;
constexpr std::size_t k_max_faces = 4;
constexpr std::size_t k_max_face_length = 64;
constexpr std::size_t k_max_flags = 16;
constexpr long k_max_window_extent = 8192;

using problem_t = wxString;  // empty: no problem

bool is_one_of(const wxString& value, std::initializer_list<const char*> allowed) {
  for (const char* item : allowed)
    if (value == item) return true;
  return false;
}

// The text of a property, read as wx reads it (the first text or CDATA
// child). A property holds text only.
problem_t leaf_text(const wxXmlNode& param, wxString& text,
                    std::initializer_list<const char*> attributes = {}) {
  for (const wxXmlAttribute* attribute = param.GetAttributes(); attribute != nullptr;
       attribute = attribute->GetNext()) {
    if (!is_one_of(attribute->GetName(), attributes))
      return "unexpected attribute \"" + attribute->GetName() + "\"";
  }
  for (const wxXmlNode* child = param.GetChildren(); child != nullptr; child = child->GetNext())
    if (child->GetType() == wxXML_ELEMENT_NODE) return "nested elements";
  text = param.GetNodeContent();
  if (!is_plain_text(text)) return "control characters or too long";
  return problem_t();
}

// Applies `accept` to the property's text; `what` names the expected form.
template <class Accept>
problem_t text_rule(const wxXmlNode& param, const char* what, Accept accept) {
  wxString text;
  problem_t problem = leaf_text(param, text);
  if (problem.empty() && !accept(text)) problem = wxString("not ") + what;
  return problem;
}

bool parse_long(const wxString& text, long low, long high, long& number) {
  if (text.empty() || text.length() > 8) return false;
  for (std::size_t i = 0; i < text.length(); ++i)
    if (!((text[i] >= '0' && text[i] <= '9') || (i == 0 && text[i] == '-'))) return false;
  return text.ToLong(&number) && number >= low && number <= high;
}

problem_t check_colour(const wxXmlNode& param) {
  return text_rule(param, "a colour", [](const wxString& text) {
    wxColour ignored;
    if (parse_colour_text(text, ignored)) return true;
    // wx's names of system colours ("wxSYS_COLOUR_WINDOW"); it compares
    // them against its own list.
    wxString rest;
    if (!text.StartsWith("wxSYS_COLOUR_", &rest) || rest.empty() || rest.length() > 32)
      return false;
    for (const wxUniChar c : rest)
      if (!((c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_')) return false;
    return true;
  });
}

problem_t check_bool(const wxXmlNode& param) {
  return text_rule(param, "0 or 1",
                   [](const wxString& text) { return is_one_of(text, {"0", "1"}); });
}

problem_t check_text(const wxXmlNode& param) {
  return text_rule(param, "text", [](const wxString&) { return true; });
}

problem_t check_domain(const wxXmlNode& param) {
  return text_rule(param, "a catalogue name", [](const wxString& text) {
    return text.empty() || is_safe_name(text);
  });
}

// "w,h" in pixels (-1 for the default). Dialog units ("d") need a window
// that a file cannot promise.
problem_t check_extent(const wxXmlNode& param) {
  return text_rule(param, "a pair of pixel sizes", [](const wxString& text) {
    const wxArrayString parts = wxSplit(text, ',', '\0');
    long number = 0;
    return parts.size() == 2 &&
           parse_long(wxString(parts[0]).Trim(true).Trim(false), -1, k_max_window_extent, number) &&
           parse_long(wxString(parts[1]).Trim(true).Trim(false), -1, k_max_window_extent, number);
  });
}

problem_t check_variant(const wxXmlNode& param) {
  return text_rule(param, "a window variant", [](const wxString& text) {
    return is_one_of(text, {"normal", "small", "mini", "large"});
  });
}

// Style flags "A | B"; `allowed` null takes any name made of the characters
// of wx's style names (the class's own handler checks them against its
// table).
problem_t check_flags(const wxXmlNode& param, std::initializer_list<const char*>* allowed) {
  return text_rule(param, "style flags", [allowed](const wxString& text) {
    const wxArrayString flags = wxStringTokenize(text, "| \t\n");
    if (flags.size() > k_max_flags) return false;
    for (const wxString& flag : flags) {
      if (allowed != nullptr ? !is_one_of(flag, *allowed) : !is_safe_name(flag)) return false;
    }
    return true;
  });
}

std::initializer_list<const char*> g_window_styles = {
    "wxTAB_TRAVERSAL",   "wxWANTS_CHARS",    "wxCLIP_CHILDREN",  "wxFULL_REPAINT_ON_RESIZE",
    "wxNO_FULL_REPAINT_ON_RESIZE",           "wxBORDER_NONE",    "wxBORDER_SIMPLE",
    "wxBORDER_SUNKEN",   "wxBORDER_RAISED",  "wxBORDER_STATIC",  "wxBORDER_THEME",
    "wxBORDER_DEFAULT",  "wxNO_BORDER",      "wxSIMPLE_BORDER",  "wxSUNKEN_BORDER",
    "wxRAISED_BORDER",   "wxSTATIC_BORDER",  "wxHSCROLL",        "wxVSCROLL",
    "wxALWAYS_SHOW_SB"};
std::initializer_list<const char*> g_dialog_styles = {
    "wxDEFAULT_DIALOG_STYLE", "wxCAPTION",         "wxRESIZE_BORDER", "wxSYSTEM_MENU",
    "wxCLOSE_BOX",            "wxMAXIMIZE_BOX",    "wxMINIMIZE_BOX",  "wxSTAY_ON_TOP",
    "wxDIALOG_NO_PARENT",     "wxTAB_TRAVERSAL",   "wxWANTS_CHARS",   "wxCLIP_CHILDREN",
    "wxBORDER_NONE",          "wxBORDER_SIMPLE",   "wxBORDER_THEME",  "wxNO_BORDER"};
std::initializer_list<const char*> g_extra_styles = {
    "wxWS_EX_VALIDATE_RECURSIVELY", "wxWS_EX_BLOCK_EVENTS", "wxWS_EX_TRANSIENT",
    "wxWS_EX_PROCESS_IDLE", "wxWS_EX_PROCESS_UI_UPDATES"};

// A relative path inside the resource's own folder or archive: plain
// segments, no "..", no URL schemes, "#" locations, variables or escapes
// (wx's file system reads all of those).
bool is_plain_relative_path(const wxString& path) {
  if (path.empty() || path.length() > k_max_path_length) return false;
  const wxArrayString segments = wxSplit(path, '/', '\0');
  for (const wxString& segment : segments) {
    if (segment.empty() || segment == "." || segment == "..") return false;
    for (const wxUniChar c : segment) {
      const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                         (c >= '0' && c <= '9') || wxString(" _.+@-").Find(c) != wxNOT_FOUND;
      if (!plain) return false;
    }
  }
  return true;
}

// Art ids and clients of wx's art provider; anything else gives an
// invalid bitmap that wx asserts on.
bool is_stock_id(const wxString& id) {
  static const char* const ids[] = {
      "wxART_ADD_BOOKMARK", "wxART_DEL_BOOKMARK", "wxART_HELP_SIDE_PANEL", "wxART_HELP_SETTINGS",
      "wxART_HELP_BOOK", "wxART_HELP_FOLDER", "wxART_HELP_PAGE", "wxART_GO_BACK",
      "wxART_GO_FORWARD", "wxART_GO_UP", "wxART_GO_DOWN", "wxART_GO_TO_PARENT", "wxART_GO_HOME",
      "wxART_GOTO_FIRST", "wxART_GOTO_LAST", "wxART_FILE_OPEN", "wxART_FILE_SAVE",
      "wxART_FILE_SAVE_AS", "wxART_PRINT", "wxART_HELP", "wxART_TIP", "wxART_REPORT_VIEW",
      "wxART_LIST_VIEW", "wxART_NEW_DIR", "wxART_HARDDISK", "wxART_FLOPPY", "wxART_CDROM",
      "wxART_REMOVABLE", "wxART_FOLDER", "wxART_FOLDER_OPEN", "wxART_GO_DIR_UP",
      "wxART_EXECUTABLE_FILE", "wxART_NORMAL_FILE", "wxART_TICK_MARK", "wxART_CROSS_MARK",
      "wxART_ERROR", "wxART_QUESTION", "wxART_WARNING", "wxART_INFORMATION",
      "wxART_MISSING_IMAGE", "wxART_COPY", "wxART_CUT", "wxART_PASTE", "wxART_DELETE",
      "wxART_NEW", "wxART_UNDO", "wxART_REDO", "wxART_PLUS", "wxART_MINUS", "wxART_CLOSE",
      "wxART_QUIT", "wxART_FIND", "wxART_FIND_AND_REPLACE", "wxART_FULL_SCREEN", "wxART_EDIT",
      "wxART_WX_LOGO", "wxART_REFRESH", "wxART_STOP"};
  for (const char* known : ids)
    if (id == known) return true;
  return false;
}

bool is_stock_client(const wxString& client) {
  return is_one_of(client, {"wxART_TOOLBAR", "wxART_MENU", "wxART_FRAME_ICON", "wxART_CMN_DIALOG",
                            "wxART_HELP_BROWSER", "wxART_MESSAGE_BOX", "wxART_BUTTON",
                            "wxART_LIST", "wxART_OTHER"});
}

problem_t check_stock_attributes(const wxXmlNode& node) {
  wxString value;
  if (node.GetAttribute("stock_id", &value) && !is_stock_id(value))
    return "unknown stock id \"" + value.Left(64) + "\"";
  if (node.GetAttribute("stock_client", &value) && !is_stock_client(value))
    return "unknown stock client \"" + value.Left(64) + "\"";
  return problem_t();
}

// The values each font property may take; what is not here is refused.
struct font_rule_t {
  const char* name;
  const char* expected;
  bool (*accepts)(const wxString& text);
};

const font_rule_t k_font_rules[] = {
    {"size", "a font size in points",
     [](const wxString& text) {
       double points = 0;
       return parse_bounded_number(text, k_min_font_points, k_max_font_points, points);
     }},
    {"relativesize", "a relative size from 0.25 to 4",
     [](const wxString& text) {
       double factor = 0;
       return parse_bounded_number(text, 0.25, 4, factor);
     }},
    {"style", "a font style",
     [](const wxString& text) { return is_one_of(text, {"normal", "italic", "slant"}); }},
    {"weight", "a font weight",
     [](const wxString& text) {
       return is_one_of(text, {"normal", "bold", "light", "thin", "extralight", "medium",
                               "semibold", "extrabold", "heavy", "extraheavy"});
     }},
    {"family", "a font family",
     [](const wxString& text) {
       return is_one_of(text, {"default", "decorative", "roman", "script", "swiss", "modern",
                               "teletype"});
     }},
    // wx enumerates the desktop's fonts once for every face it is offered.
    {"face", "a short list of face names",
     [](const wxString& text) {
       const wxArrayString faces = wxSplit(text, ',', '\0');
       if (faces.empty() || faces.size() > k_max_faces) return false;
       for (const wxString& face : faces)
         if (face.empty() || face.length() > k_max_face_length) return false;
       return true;
     }},
    // Unknown encodings make wx ask the user which one to use.
    {"encoding", "a known encoding",
     [](const wxString& text) {
       return is_one_of(text.Lower(), {"utf-8", "us-ascii", "iso-8859-1", "iso-8859-2",
                                       "iso-8859-5", "iso-8859-7", "iso-8859-15", "koi8-r",
                                       "windows-1250", "windows-1251", "windows-1252"});
     }},
    {"sysfont", "a system font",
     [](const wxString& text) {
       return is_one_of(text, {"wxSYS_OEM_FIXED_FONT", "wxSYS_ANSI_FIXED_FONT",
                               "wxSYS_ANSI_VAR_FONT", "wxSYS_SYSTEM_FONT",
                               "wxSYS_DEVICE_DEFAULT_FONT", "wxSYS_DEFAULT_GUI_FONT"});
     }},
};

problem_t check_font_param(const wxXmlNode& param) {
  const wxString name = param.GetName();
  if (name == "underlined" || name == "strikethrough") return check_bool(param);
  for (const font_rule_t& rule : k_font_rules)
    if (name == rule.name) return text_rule(param, rule.expected, rule.accepts);
  return "unknown font property";
}

// Walks one object and its subtree.
class object_checker_t {
 public:
  explicit object_checker_t(const xrc_rules_t& rules) : m_rules(rules) {}

  problem_t check(const wxXmlNode& object, bool top_level) {
    if (top_level && !is_one_of_classes(object.GetAttribute("class")))
      return "class \"" + object.GetAttribute("class").Left(64) + "\" is not taken here";
    if (top_level && !object.HasAttribute("name")) return "it has no name";
    const problem_t problem = enter(object, 0);
    return problem.empty() ? check_object(object, 0) : problem;
  }

 private:
  bool is_one_of_classes(const wxString& class_name) const {
    return m_rules.classes.count(class_name) != 0;
  }

  // Counts every element and bounds the depth, whatever else is checked.
  problem_t enter(const wxXmlNode& node, int depth) {
    if (depth > k_max_depth) return "nested too deeply";
    if (++m_elements > k_max_elements_per_object) return "too many elements";
    for (const wxXmlAttribute* attribute = node.GetAttributes(); attribute != nullptr;
         attribute = attribute->GetNext()) {
      if (!is_plain_text(attribute->GetValue(), k_max_path_length))
        return "attribute \"" + attribute->GetName() + "\" is too long or has control characters";
    }
    return problem_t();
  }

  // An object already counted by enter().
  problem_t check_object(const wxXmlNode& object, int depth) {
    for (const wxXmlAttribute* attribute = object.GetAttributes(); attribute != nullptr;
         attribute = attribute->GetNext()) {
      // "subclass" makes wx create any class by name; "platform" is left
      // out rather than checked against wx's platform table.
      if (!is_one_of(attribute->GetName(), {"class", "name"}))
        return "object attribute \"" + attribute->GetName() + "\" is not taken";
    }
    wxString name;
    if (object.GetAttribute("name", &name) && !is_safe_name(name))
      return "the name is not a plain identifier";
    const wxString class_name = object.GetAttribute("class");
    if (!is_safe_name(class_name) || class_name == "ids-range")
      return "class \"" + class_name.Left(64) + "\" is not taken";
    if (class_name == "wxColour")
      return check_params(object, depth, &object_checker_t::colour_param);
    if (class_name == "wxFont") return check_params(object, depth, &object_checker_t::font_param);
    if (class_name == "wxImage") return check_params(object, depth, &object_checker_t::image_param);
    if (class_name == "wxAnimation")
      return check_params(object, depth, &object_checker_t::animation_param);
    if (class_name == "wxPanel") return check_params(object, depth, &object_checker_t::panel_param);
    if (class_name == "wxDialog")
      return check_params(object, depth, &object_checker_t::dialog_param);
    return check_params(object, depth, &object_checker_t::foreign_param);
  }

  using param_check_t = problem_t (object_checker_t::*)(const wxXmlNode& param, int depth);

  // Every child element of an object is a property (or, where `check`
  // allows, a child object); the object's own required property is named by
  // the class rules.
  problem_t check_params(const wxXmlNode& object, int depth, param_check_t check) {
    for (const wxXmlNode* child = object.GetChildren(); child != nullptr;
         child = child->GetNext()) {
      if (child->GetType() != wxXML_ELEMENT_NODE) continue;
      problem_t problem = enter(*child, depth + 1);
      if (problem.empty()) problem = (this->*check)(*child, depth + 1);
      if (!problem.empty()) return "<" + child->GetName().Left(64) + ">: " + problem;
    }
    return required_param(object);
  }

  static problem_t required_param(const wxXmlNode& object) {
    static const std::pair<const char*, const char*> required[] = {
        {"wxColour", "value"}, {"wxFont", "font"}, {"wxImage", "bitmap"},
        {"wxAnimation", "animation"}};
    const wxString class_name = object.GetAttribute("class");
    for (const auto& [owner, param] : required) {
      if (class_name != owner) continue;
      for (const wxXmlNode* child = object.GetChildren(); child != nullptr;
           child = child->GetNext())
        if (child->GetType() == wxXML_ELEMENT_NODE && child->GetName() == param)
          return problem_t();
      return wxString("no <") + param + ">";
    }
    return problem_t();
  }

  problem_t colour_param(const wxXmlNode& param, int) {
    if (param.GetName() == "value") return check_colour(param);
    return "unknown property";
  }

  problem_t font_param(const wxXmlNode& param, int depth) {
    if (param.GetName() == "font") return font_node(param, depth);
    return "unknown property";
  }

  problem_t font_node(const wxXmlNode& font, int depth) {
    if (font.GetAttributes() != nullptr) return "unexpected attribute";
    for (const wxXmlNode* child = font.GetChildren(); child != nullptr; child = child->GetNext()) {
      if (child->GetType() != wxXML_ELEMENT_NODE) continue;
      problem_t problem = enter(*child, depth + 1);
      if (problem.empty()) problem = check_font_param(*child);
      if (!problem.empty()) return "<" + child->GetName().Left(64) + ">: " + problem;
    }
    return problem_t();
  }

  problem_t image_param(const wxXmlNode& param, int) {
    if (param.GetName() != "bitmap") return "unknown property";
    wxString path;
    problem_t problem = leaf_text(param, path, {"stock_id", "stock_client"});
    if (problem.empty()) problem = check_stock_attributes(param);
    if (problem.empty() && !param.HasAttribute("stock_id")) problem = check_file(path);
    return problem;
  }

  problem_t animation_param(const wxXmlNode& param, int) {
    if (param.GetName() != "animation") return "unknown property";
    wxString path;
    problem_t problem = leaf_text(param, path);
    return problem.empty() ? check_file(path) : problem;
  }

  problem_t check_file(const wxString& path) const {
    if (!is_plain_relative_path(path)) return "not a plain relative file path";
    if (m_rules.names_file && !m_rules.names_file(path))
      return "no file \"" + path + "\" in the archive";
    return problem_t();
  }

  // Properties every window handler reads (wxXmlResourceHandler's
  // SetupWindow), with the style flags `styles` allows (null: any name).
  problem_t window_param(const wxXmlNode& param, int depth,
                         std::initializer_list<const char*>* styles, bool* known) {
    *known = true;
    const wxString name = param.GetName();
    if (name == "pos" || name == "size") return check_extent(param);
    if (name == "style") return check_flags(param, styles);
    if (name == "exstyle") return check_flags(param, styles != nullptr ? &g_extra_styles : nullptr);
    if (is_one_of(name, {"bg", "fg", "ownbg", "ownfg"})) return check_colour(param);
    if (name == "font" || name == "ownfont") return font_node(param, depth);
    if (is_one_of(name, {"enabled", "hidden", "focused"})) return check_bool(param);
    if (name == "tooltip" || name == "help") return check_text(param);
    if (name == "variant") return check_variant(param);
    if (name == "object") return check_child_object(param, depth);
    *known = false;
    return problem_t();
  }

  // Objects inside windows are windows: a colour or a font there would be
  // made and dropped by wx.
  problem_t check_child_object(const wxXmlNode& child, int depth) {
    if (is_one_of(child.GetAttribute("class"), {"wxColour", "wxFont", "wxImage", "wxAnimation"}))
      return "a resource object inside a window";
    return check_object(child, depth);
  }

  problem_t panel_param(const wxXmlNode& param, int depth) {
    return own_window_param(param, depth, &g_window_styles);
  }

  problem_t dialog_param(const wxXmlNode& param, int depth) {
    if (param.GetName() == "title") return check_text(param);
    if (param.GetName() == "centered") return check_bool(param);
    return own_window_param(param, depth, &g_dialog_styles);
  }

  problem_t own_window_param(const wxXmlNode& param, int depth,
                             std::initializer_list<const char*>* styles) {
    if (param.GetName() == "domain") return check_domain(param);
    bool known = false;
    const problem_t problem = window_param(param, depth, styles, &known);
    return known ? problem : "unknown property";
  }

  // A class the library does not handle: its common window properties are
  // checked here, its own ones by its handler; any element may not hide
  // object references, id ranges or bad stock ids.
  problem_t foreign_param(const wxXmlNode& param, int depth) {
    bool known = false;
    const problem_t problem = window_param(param, depth, nullptr, &known);
    if (known) return problem;
    return check_subtree(param, depth);
  }

  problem_t check_subtree(const wxXmlNode& node, int depth) {
    if (node.GetName() == "object_ref") return "object references are not taken";
    problem_t problem = check_stock_attributes(node);
    if (!problem.empty()) return problem;
    for (const wxXmlNode* child = node.GetChildren(); child != nullptr; child = child->GetNext()) {
      if (child->GetType() == wxXML_ELEMENT_NODE) {
        problem = enter(*child, depth + 1);
        if (problem.empty())
          problem = child->GetName() == "object" ? check_child_object(*child, depth + 1)
                                                 : check_subtree(*child, depth + 1);
      } else if (!is_plain_text(child->GetContent())) {
        problem = "control characters or too long";
      }
      if (!problem.empty()) return problem;
    }
    return problem_t();
  }

  const xrc_rules_t& m_rules;
  std::size_t m_elements = 0;
};

}  // namespace

xrc_rules_t library_handler_rules() {
  xrc_rules_t rules;
  rules.classes = {"wxColour", "wxFont", "wxImage", "wxAnimation", "wxPanel", "wxDialog"};
  return rules;
}

wxString xrc_object_problem(const wxXmlNode& object, const xrc_rules_t& rules, bool top_level) {
  if (object.GetType() != wxXML_ELEMENT_NODE || object.GetName() != "object")
    return "not an object";
  return object_checker_t(rules).check(object, top_level);
}

bool remove_refused_xrc_objects(
    wxXmlDocument& document, const xrc_rules_t& rules,
    const std::function<void(const wxString&, const wxString&, const wxString&)>& refused,
    wxString& reason) {
  wxXmlNode* root = document.GetRoot();
  if (root == nullptr || root->GetName() != "resource") {
    reason = "it has no <resource> root";
    return false;
  }
  std::size_t objects = 0;
  wxXmlNode* child = root->GetChildren();
  while (child != nullptr) {
    wxXmlNode* const next = child->GetNext();
    if (child->GetType() == wxXML_ELEMENT_NODE) {
      ++objects;
      const wxString problem =
          objects > k_max_top_level_objects
              ? wxString("more objects than a resource file may hold; it and all after it are "
                         "ignored")
              : xrc_object_problem(*child, rules, true);
      // Past the limit only the first ignored object is reported.
      if (!problem.empty() && objects <= k_max_top_level_objects + 1)
        refused(child->GetAttribute("name").Left(128), child->GetAttribute("class").Left(64),
                problem);
      if (!problem.empty()) {
        root->RemoveChild(child);
        delete child;
      }
    }
    child = next;
  }
  return true;
}

}  // namespace detail
}  // namespace orvix1
