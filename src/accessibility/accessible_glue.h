#ifndef ORVIX1_SRC_ACCESSIBILITY_ACCESSIBLE_GLUE_H
#define ORVIX1_SRC_ACCESSIBILITY_ACCESSIBLE_GLUE_H

// What the window and the node accessible types share: the strings ATK
// borrows from them and the action interface, which both answer from a part.

#include <atk/atk.h>

#include <array>
#include <string>
#include <vector>

#include "accessibility/accessible.h"

namespace orvix1 {
namespace accessibility {
namespace glue {

enum class string_slot_t { name, description, action_name, count };

// ATK returns `const gchar*` it does not own: the object keeps the last
// string it handed out in each slot.
class strings_t {
 public:
  const gchar* keep(string_slot_t slot, std::string text) {
    std::string& kept = m_slots[static_cast<std::size_t>(slot)];
    kept = std::move(text);
    return kept.c_str();
  }

 private:
  std::array<std::string, static_cast<std::size_t>(string_slot_t::count)> m_slots;
};

using part_lookup_t = part_t* (*)(AtkObject*);
using strings_lookup_t = strings_t& (*)(AtkObject*);

// Runs `action` on the part `object` stands for from the main loop, if the
// object still stands for a part then.
void run_later(AtkObject* object, part_lookup_t lookup, std::string action);

template <part_lookup_t lookup, strings_lookup_t strings>
void fill_action_iface(AtkActionIface* iface) {
  iface->get_n_actions = [](AtkAction* action) -> gint {
    const part_t* part = lookup(ATK_OBJECT(action));
    return part ? static_cast<gint>(part->actions().size()) : 0;
  };
  iface->get_name = [](AtkAction* action, gint index) -> const gchar* {
    const part_t* part = lookup(ATK_OBJECT(action));
    if (!part) return nullptr;
    std::vector<std::string> names = part->actions();
    if (index < 0 || index >= static_cast<gint>(names.size())) return nullptr;
    return strings(ATK_OBJECT(action)).keep(string_slot_t::action_name, std::move(names[index]));
  };
  iface->do_action = [](AtkAction* action, gint index) -> gboolean {
    const part_t* part = lookup(ATK_OBJECT(action));
    if (!part) return FALSE;
    std::vector<std::string> names = part->actions();
    if (index < 0 || index >= static_cast<gint>(names.size())) return FALSE;
    run_later(ATK_OBJECT(action), lookup, std::move(names[index]));
    return TRUE;
  };
}

}  // namespace glue
}  // namespace accessibility
}  // namespace orvix1

#endif
