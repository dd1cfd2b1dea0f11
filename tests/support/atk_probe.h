#ifndef ORVIX1_TESTS_ATK_PROBE_H
#define ORVIX1_TESTS_ATK_PROBE_H

// Reading a widget's accessible objects in the process, as the AT-SPI bridge
// reads them for a screen reader.

#include <atk/atk.h>

#include <string>
#include <vector>

namespace orvix1_test {

inline bool has_state(AtkObject* object, AtkStateType state) {
  AtkStateSet* states = atk_object_ref_state_set(object);
  const bool held = atk_state_set_contains_state(states, state);
  g_object_unref(states);
  return held;
}

inline std::string name_of(AtkObject* object) {
  const gchar* name = atk_object_get_name(object);
  return name ? name : "";
}

inline std::string description_of(AtkObject* object) {
  const gchar* text = atk_object_get_description(object);
  return text ? text : "";
}

inline std::vector<std::string> actions_of(AtkObject* object) {
  std::vector<std::string> names;
  if (!ATK_IS_ACTION(object)) return names;
  for (int i = 0; i < atk_action_get_n_actions(ATK_ACTION(object)); ++i)
    names.push_back(atk_action_get_name(ATK_ACTION(object), i));
  return names;
}

// Runs `action` on `object`; false when it has no such action.
inline bool run_action(AtkObject* object, const std::string& action) {
  const std::vector<std::string> names = actions_of(object);
  for (std::size_t i = 0; i < names.size(); ++i)
    if (names[i] == action) return atk_action_do_action(ATK_ACTION(object), static_cast<gint>(i));
  return false;
}

// The children of `object` (a reference held by `object` itself remains).
inline std::vector<AtkObject*> children_of(AtkObject* object) {
  std::vector<AtkObject*> children;
  for (int i = 0; i < atk_object_get_n_accessible_children(object); ++i) {
    AtkObject* child = atk_object_ref_accessible_child(object, i);
    if (child) g_object_unref(child);
    children.push_back(child);
  }
  return children;
}

// Depth first, the descendants of `root` (itself included) with `role`.
inline std::vector<AtkObject*> find_by_role(AtkObject* root, AtkRole role) {
  std::vector<AtkObject*> found;
  if (atk_object_get_role(root) == role) found.push_back(root);
  for (AtkObject* child : children_of(root))
    if (child)
      for (AtkObject* match : find_by_role(child, role)) found.push_back(match);
  return found;
}

}  // namespace orvix1_test

#endif
