#include <cstdio>
#include <string>

#include <gtk/gtk.h>
#include <wx/debug.h>
#include <wx/window.h>

#include "orvix1/testing.h"

namespace orvix1 {
namespace testing {
namespace {

// What tells a screen reader's user more than the role; enabled, sensitive,
// visible and showing hold almost everywhere and would only add noise.
const AtkStateType k_noted_states[] = {
    ATK_STATE_FOCUSABLE, ATK_STATE_FOCUSED,   ATK_STATE_SELECTABLE, ATK_STATE_SELECTED,
    ATK_STATE_EXPANDABLE, ATK_STATE_EXPANDED, ATK_STATE_COLLAPSED,  ATK_STATE_CHECKED,
};

std::string quoted(const char* text) {
  std::string result = "\"";
  for (const char* c = text != nullptr ? text : ""; *c != '\0'; ++c) {
    if (*c == '"' || *c == '\\') result += '\\';
    result += *c == '\n' ? std::string("\\n") : std::string(1, *c);
  }
  return result + "\"";
}

std::string number(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", value);
  return text;
}

// Through the interface's current call when the object has it; older
// accessibles only answer the deprecated one.
std::string value_of(AtkValue* value) {
  double current = 0;
  if (ATK_VALUE_GET_IFACE(value)->get_value_and_text != nullptr) {
    gchar* text = nullptr;  // some implementations write it unasked
    atk_value_get_value_and_text(value, &current, &text);
    g_free(text);
  } else {
    GValue old = G_VALUE_INIT;
    G_GNUC_BEGIN_IGNORE_DEPRECATIONS
    atk_value_get_current_value(value, &old);
    G_GNUC_END_IGNORE_DEPRECATIONS
    if (G_VALUE_HOLDS_DOUBLE(&old)) current = g_value_get_double(&old);
    g_value_unset(&old);
  }
  std::string text = " value=" + number(current);
  if (AtkRange* range = atk_value_get_range(value)) {
    text += " (" + number(atk_range_get_lower_limit(range)) + ".." +
            number(atk_range_get_upper_limit(range)) + ")";
    atk_range_free(range);
  }
  return text;
}

std::string states_of(AtkStateSet* states, bool parent_showing) {
  std::string noted;
  for (AtkStateType state : k_noted_states)
    if (atk_state_set_contains_state(states, state))
      noted += (noted.empty() ? "" : ", ") + std::string(atk_state_type_get_name(state));
  // Said once, where a hidden part begins.
  if (parent_showing && !atk_state_set_contains_state(states, ATK_STATE_SHOWING))
    noted += noted.empty() ? "not showing" : ", not showing";
  return noted.empty() ? noted : " [" + noted + "]";
}

std::string actions_of(AtkAction* action) {
  std::string names;
  for (int i = 0; i < atk_action_get_n_actions(action); ++i) {
    const char* name = atk_action_get_name(action, i);
    names += (i > 0 ? ", " : "") + std::string(name != nullptr ? name : "");
  }
  return names.empty() ? names : " actions=(" + names + ")";
}

std::string line_of(AtkObject* object, bool parent_showing, bool& showing) {
  std::string line = std::string(atk_role_get_name(atk_object_get_role(object))) + " " +
                     quoted(atk_object_get_name(object));
  AtkStateSet* states = atk_object_ref_state_set(object);
  showing = states != nullptr && atk_state_set_contains_state(states, ATK_STATE_SHOWING);
  if (states != nullptr) {
    line += states_of(states, parent_showing);
    g_object_unref(states);
  }
  if (ATK_IS_ACTION(object)) line += actions_of(ATK_ACTION(object));
  if (ATK_IS_VALUE(object)) line += value_of(ATK_VALUE(object));
  const char* description = atk_object_get_description(object);
  if (description != nullptr && *description != '\0') line += " description=" + quoted(description);
  const char* id = atk_object_get_accessible_id(object);
  if (id != nullptr && *id != '\0') line += " id=" + quoted(id);
  return line;
}

void describe(AtkObject* object, int depth, bool parent_showing, std::string& out) {
  bool showing = false;
  out += std::string(2 * depth, ' ') + line_of(object, parent_showing, showing) + "\n";
  for (int i = 0; i < atk_object_get_n_accessible_children(object); ++i) {
    AtkObject* child = atk_object_ref_accessible_child(object, i);
    if (child == nullptr) continue;
    describe(child, depth + 1, showing, out);
    g_object_unref(child);
  }
}

}  // namespace

std::string describe_accessible_tree(wxWindow* window) {
  wxCHECK_MSG(window != nullptr && window->GetHandle() != nullptr, std::string(),
              "a window that has been created");
  return describe_accessible_tree(gtk_widget_get_accessible(window->GetHandle()));
}

std::string describe_accessible_tree(AtkObject* object) {
  wxCHECK_MSG(object != nullptr, std::string(), "an accessible object");
  std::string out;
  describe(object, 0, true, out);
  return out;
}

}  // namespace testing
}  // namespace orvix1
