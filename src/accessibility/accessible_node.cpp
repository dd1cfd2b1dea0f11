// The accessible objects of parts drawn inside a window: a plain type
// (component and actions) and a ranged one that adds a value.

#include <gtk/gtk.h>
#include <wx/window.h>

#include "accessibility/accessible.h"
#include "accessibility/accessible_glue.h"

using orvix1::accessibility::part_t;
namespace glue = orvix1::accessibility::glue;

extern "C" {

struct Orvix1NodeAccessible {
  AtkObject parent;
  part_t* part;
  wxWindow* window;
  glue::strings_t* strings;
};

struct Orvix1NodeAccessibleClass {
  AtkObjectClass parent_class;
};

static void orvix1_node_accessible_component_init(AtkComponentIface* iface);
static void orvix1_node_accessible_action_init(AtkActionIface* iface);

G_DEFINE_TYPE_WITH_CODE(Orvix1NodeAccessible, orvix1_node_accessible, ATK_TYPE_OBJECT,
                        G_IMPLEMENT_INTERFACE(ATK_TYPE_COMPONENT, orvix1_node_accessible_component_init)
                        G_IMPLEMENT_INTERFACE(ATK_TYPE_ACTION, orvix1_node_accessible_action_init))

struct Orvix1RangedAccessible {
  Orvix1NodeAccessible parent;
};

struct Orvix1RangedAccessibleClass {
  Orvix1NodeAccessibleClass parent_class;
};

static void orvix1_ranged_accessible_value_init(AtkValueIface* iface);

G_DEFINE_TYPE_WITH_CODE(Orvix1RangedAccessible, orvix1_ranged_accessible,
                        orvix1_node_accessible_get_type(),
                        G_IMPLEMENT_INTERFACE(ATK_TYPE_VALUE, orvix1_ranged_accessible_value_init))

}  // extern "C"

namespace {

Orvix1NodeAccessible* node_of(AtkObject* object) {
  return reinterpret_cast<Orvix1NodeAccessible*>(object);
}

part_t* part_of(AtkObject* object) { return node_of(object)->part; }
glue::strings_t& strings_of(AtkObject* object) { return *node_of(object)->strings; }

const gchar* node_name(AtkObject* object) {
  if (object->name || !part_of(object)) return object->name;
  return strings_of(object).keep(glue::string_slot_t::name, part_of(object)->name());
}

const gchar* node_description(AtkObject* object) {
  if (object->description || !part_of(object)) return object->description;
  return strings_of(object).keep(glue::string_slot_t::description, part_of(object)->description());
}

AtkRole node_role(AtkObject* object) {
  const part_t* part = part_of(object);
  return part ? part->role() : object->role;
}

AtkStateSet* node_states(AtkObject* object) {
  AtkStateSet* states = atk_state_set_new();
  const part_t* part = part_of(object);
  if (!part) {
    atk_state_set_add_state(states, ATK_STATE_DEFUNCT);
    return states;
  }
  wxWindow* window = node_of(object)->window;
  if (window->IsEnabled()) {
    atk_state_set_add_state(states, ATK_STATE_ENABLED);
    atk_state_set_add_state(states, ATK_STATE_SENSITIVE);
  }
  atk_state_set_add_state(states, ATK_STATE_VISIBLE);
  if (window->IsShownOnScreen()) atk_state_set_add_state(states, ATK_STATE_SHOWING);
  part->remove_states(states);
  part->add_states(states);
  return states;
}

gint node_child_count(AtkObject* object) {
  const part_t* part = part_of(object);
  return part ? part->drawn_child_count() : 0;
}

AtkObject* node_child(AtkObject* object, gint index) {
  const part_t* part = part_of(object);
  AtkObject* child = part ? part->drawn_child(index) : nullptr;
  return child ? ATK_OBJECT(g_object_ref(child)) : nullptr;
}

gint node_index_in_parent(AtkObject* object) {
  AtkObject* parent = atk_object_get_parent(object);
  const gint count = parent ? atk_object_get_n_accessible_children(parent) : 0;
  for (gint index = 0; index < count; ++index) {
    AtkObject* child = atk_object_ref_accessible_child(parent, index);
    if (child) g_object_unref(child);
    if (child == object) return index;
  }
  return -1;
}

void node_finalize(GObject* object) {
  delete node_of(ATK_OBJECT(object))->strings;
  G_OBJECT_CLASS(orvix1_node_accessible_parent_class)->finalize(object);
}

// --- component ----------------------------------------------------------

// The origin `coord_type` measures from, on the screen.
wxPoint origin_for(wxWindow* window, AtkCoordType coord_type) {
  if (coord_type == ATK_XY_SCREEN) return {};
  if (coord_type == ATK_XY_WINDOW) {
    GdkWindow* top = gtk_widget_get_window(gtk_widget_get_toplevel(window->GetHandle()));
    gint x = 0, y = 0;
    if (top) gdk_window_get_origin(top, &x, &y);
    return {x, y};
  }
  return window->ClientToScreen(wxPoint());  // the parent: the window holding the part
}

void node_extents(AtkComponent* component, gint* x, gint* y, gint* width, gint* height,
                  AtkCoordType coord_type) {
  AtkObject* object = ATK_OBJECT(component);
  const part_t* part = part_of(object);
  wxRect bounds = part ? part->bounds() : wxRect();
  if (part) {
    wxWindow* window = node_of(object)->window;
    bounds.SetPosition(window->ClientToScreen(bounds.GetPosition()) - origin_for(window, coord_type));
  }
  if (x) *x = bounds.x;
  if (y) *y = bounds.y;
  if (width) *width = bounds.width;
  if (height) *height = bounds.height;
}

gboolean node_grab_focus(AtkComponent* component) {
  part_t* part = part_of(ATK_OBJECT(component));
  return part && part->grab_focus();
}

// --- value --------------------------------------------------------------

void node_value_and_text(AtkValue* value, gdouble* current, gchar** text) {
  const part_t* part = part_of(ATK_OBJECT(value));
  const double now = part ? part->value() : 0;
  if (current) *current = now;
  if (text) *text = g_strdup_printf("%g", now);
}

AtkRange* node_range(AtkValue* value) {
  const part_t* part = part_of(ATK_OBJECT(value));
  const orvix1::accessibility::value_range_t range = part ? part->range() : orvix1::accessibility::value_range_t();
  return atk_range_new(range.minimum, range.maximum, nullptr);
}

gdouble node_increment(AtkValue* value) {
  const part_t* part = part_of(ATK_OBJECT(value));
  return part ? part->range().step : 0;
}

void node_set_value(AtkValue* value, gdouble new_value) {
  if (part_t* part = part_of(ATK_OBJECT(value))) part->set_value(new_value);
}

// The value interface's older calls, which some readers still use.
void set_gvalue(GValue* target, double number) {
  g_value_init(target, G_TYPE_DOUBLE);
  g_value_set_double(target, number);
}

void node_current_gvalue(AtkValue* value, GValue* target) {
  const part_t* part = part_of(ATK_OBJECT(value));
  set_gvalue(target, part ? part->value() : 0);
}

void node_minimum_gvalue(AtkValue* value, GValue* target) {
  const part_t* part = part_of(ATK_OBJECT(value));
  set_gvalue(target, part ? part->range().minimum : 0);
}

void node_maximum_gvalue(AtkValue* value, GValue* target) {
  const part_t* part = part_of(ATK_OBJECT(value));
  set_gvalue(target, part ? part->range().maximum : 0);
}

void node_increment_gvalue(AtkValue* value, GValue* target) { set_gvalue(target, node_increment(value)); }

gboolean node_set_gvalue(AtkValue* value, const GValue* source) {
  part_t* part = part_of(ATK_OBJECT(value));
  return part && G_VALUE_HOLDS_DOUBLE(source) && part->set_value(g_value_get_double(source));
}

}  // namespace

extern "C" {

static void orvix1_node_accessible_class_init(Orvix1NodeAccessibleClass* klass) {
  AtkObjectClass* atk_class = ATK_OBJECT_CLASS(klass);
  atk_class->get_name = node_name;
  atk_class->get_description = node_description;
  atk_class->get_role = node_role;
  atk_class->ref_state_set = node_states;
  atk_class->get_n_children = node_child_count;
  atk_class->ref_child = node_child;
  atk_class->get_index_in_parent = node_index_in_parent;
  G_OBJECT_CLASS(klass)->finalize = node_finalize;
}

static void orvix1_node_accessible_init(Orvix1NodeAccessible* self) {
  self->strings = new glue::strings_t;
}

static void orvix1_node_accessible_component_init(AtkComponentIface* iface) {
  iface->get_extents = node_extents;
  iface->grab_focus = node_grab_focus;
}

static void orvix1_node_accessible_action_init(AtkActionIface* iface) {
  glue::fill_action_iface<part_of, strings_of>(iface);
}

static void orvix1_ranged_accessible_class_init(Orvix1RangedAccessibleClass*) {}
static void orvix1_ranged_accessible_init(Orvix1RangedAccessible*) {}

static void orvix1_ranged_accessible_value_init(AtkValueIface* iface) {
  iface->get_value_and_text = node_value_and_text;
  iface->get_range = node_range;
  iface->get_increment = node_increment;
  iface->set_value = node_set_value;
  iface->get_current_value = node_current_gvalue;
  iface->get_minimum_value = node_minimum_gvalue;
  iface->get_maximum_value = node_maximum_gvalue;
  iface->get_minimum_increment = node_increment_gvalue;
  iface->set_current_value = node_set_gvalue;
}

}  // extern "C"

namespace orvix1 {
namespace accessibility {

node_t::node_t(part_t& part, wxWindow* window, AtkObject* parent, kind_t kind)
    : m_object(ATK_OBJECT(g_object_new(kind == kind_t::ranged ? orvix1_ranged_accessible_get_type()
                                                               : orvix1_node_accessible_get_type(),
                                       nullptr))) {
  Orvix1NodeAccessible* node = node_of(m_object);
  node->part = &part;
  node->window = window;
  atk_object_set_parent(m_object, parent);
}

node_t::~node_t() {
  node_of(m_object)->part = nullptr;
  notify_state(m_object, ATK_STATE_DEFUNCT, true);
  g_object_unref(m_object);
}

}  // namespace accessibility
}  // namespace orvix1
