// The events screen readers follow, and actions run from the main loop.

#include <glib.h>

#include <string>

#include "accessibility/accessible.h"
#include "accessibility/accessible_glue.h"

namespace orvix1 {
namespace accessibility {

void notify_state(AtkObject* object, AtkStateType state, bool value) {
  if (object) atk_object_notify_state_change(object, state, value);
}

void notify_name(AtkObject* object) {
  if (object) g_object_notify(G_OBJECT(object), "accessible-name");
}

void notify_description(AtkObject* object) {
  if (object) g_object_notify(G_OBJECT(object), "accessible-description");
}

void notify_value(AtkObject* object) {
  if (!object || !ATK_IS_VALUE(object)) return;
  gdouble value = 0;
  gchar* text = nullptr;
  atk_value_get_value_and_text(ATK_VALUE(object), &value, &text);
  g_signal_emit_by_name(object, "value-changed", value, text);
  g_free(text);
  g_object_notify(G_OBJECT(object), "accessible-value");
}

void notify_child_added(AtkObject* parent, int index, AtkObject* child) {
  if (parent && child) g_signal_emit_by_name(parent, "children-changed::add", index, child);
}

void notify_child_removed(AtkObject* parent, int index, AtkObject* child) {
  if (parent && child) g_signal_emit_by_name(parent, "children-changed::remove", index, child);
}

namespace glue {
namespace {

struct pending_action_t {
  AtkObject* object;
  part_lookup_t lookup;
  std::string action;
};

gboolean run_pending_action(gpointer data) {
  auto* pending = static_cast<pending_action_t*>(data);
  if (part_t* part = pending->lookup(pending->object)) part->do_action(pending->action);
  g_object_unref(pending->object);
  delete pending;
  return G_SOURCE_REMOVE;
}

}  // namespace

void run_later(AtkObject* object, part_lookup_t lookup, std::string action) {
  g_object_ref(object);
  g_idle_add(run_pending_action, new pending_action_t{object, lookup, std::move(action)});
}

}  // namespace glue
}  // namespace accessibility
}  // namespace orvix1
