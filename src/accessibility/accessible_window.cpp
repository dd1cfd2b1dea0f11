// wx 3.2 makes every window's client area a `wxPizza` widget, whose
// accessible objects are plain containers. `install` gives that widget class
// an accessible type derived from GTK's container accessible: it behaves
// exactly like it for windows no part is attached to, and asks the part
// otherwise.

#include <gtk/gtk.h>
#include <gtk/gtk-a11y.h>
#include <wx/window.h>

#include "accessibility/accessible.h"
#include "accessibility/accessible_glue.h"

// wx 3.2 exports the type of its client-area widget but installs no header
// that names it.
struct wxPizza {
  static GType type();
};

namespace orvix1 {
namespace accessibility {
namespace {

GQuark part_quark() {
  static const GQuark quark = g_quark_from_static_string("orvix1-accessible-part");
  return quark;
}

part_t* part_of_widget(GtkWidget* widget) {
  return widget ? static_cast<part_t*>(g_object_get_qdata(G_OBJECT(widget), part_quark())) : nullptr;
}

}  // namespace
}  // namespace accessibility
}  // namespace orvix1

using orvix1::accessibility::part_t;
namespace glue = orvix1::accessibility::glue;

extern "C" {

struct Orvix1WindowAccessible {
  GtkContainerAccessible parent;
  glue::strings_t* strings;
};

struct Orvix1WindowAccessibleClass {
  GtkContainerAccessibleClass parent_class;
};

static void orvix1_window_accessible_action_init(AtkActionIface* iface);

G_DEFINE_TYPE_WITH_CODE(Orvix1WindowAccessible, orvix1_window_accessible,
                        GTK_TYPE_CONTAINER_ACCESSIBLE,
                        G_IMPLEMENT_INTERFACE(ATK_TYPE_ACTION, orvix1_window_accessible_action_init))

}  // extern "C"

namespace {

AtkObjectClass* parent_atk_class() {
  return ATK_OBJECT_CLASS(orvix1_window_accessible_parent_class);
}

part_t* part_of(AtkObject* object) {
  return orvix1::accessibility::part_of_widget(gtk_accessible_get_widget(GTK_ACCESSIBLE(object)));
}

glue::strings_t& strings_of(AtkObject* object) {
  return *reinterpret_cast<Orvix1WindowAccessible*>(object)->strings;
}

const gchar* window_name(AtkObject* object) {
  const part_t* part = part_of(object);
  if (part && !object->name) {
    const std::string name = part->name();
    if (!name.empty()) return strings_of(object).keep(glue::string_slot_t::name, name);
  }
  return parent_atk_class()->get_name(object);
}

const gchar* window_description(AtkObject* object) {
  const part_t* part = part_of(object);
  if (part && !object->description) {
    const std::string description = part->description();
    if (!description.empty())
      return strings_of(object).keep(glue::string_slot_t::description, description);
  }
  return parent_atk_class()->get_description(object);
}

AtkRole window_role(AtkObject* object) {
  const part_t* part = part_of(object);
  return part ? part->role() : parent_atk_class()->get_role(object);
}

AtkStateSet* window_states(AtkObject* object) {
  AtkStateSet* states = parent_atk_class()->ref_state_set(object);
  if (const part_t* part = part_of(object)) {
    part->remove_states(states);
    part->add_states(states);
  }
  return states;
}

gint window_child_count(AtkObject* object) {
  const gint native = parent_atk_class()->get_n_children(object);
  const part_t* part = part_of(object);
  return native + (part ? part->drawn_child_count() : 0);
}

AtkObject* window_child(AtkObject* object, gint index) {
  const gint native = parent_atk_class()->get_n_children(object);
  if (index < native) return parent_atk_class()->ref_child(object, index);
  const part_t* part = part_of(object);
  AtkObject* child = part ? part->drawn_child(index - native) : nullptr;
  return child ? ATK_OBJECT(g_object_ref(child)) : nullptr;
}

void window_finalize(GObject* object) {
  delete reinterpret_cast<Orvix1WindowAccessible*>(object)->strings;
  G_OBJECT_CLASS(orvix1_window_accessible_parent_class)->finalize(object);
}

}  // namespace

extern "C" {

static void orvix1_window_accessible_class_init(Orvix1WindowAccessibleClass* klass) {
  AtkObjectClass* atk_class = ATK_OBJECT_CLASS(klass);
  atk_class->get_name = window_name;
  atk_class->get_description = window_description;
  atk_class->get_role = window_role;
  atk_class->ref_state_set = window_states;
  atk_class->get_n_children = window_child_count;
  atk_class->ref_child = window_child;
  G_OBJECT_CLASS(klass)->finalize = window_finalize;
}

static void orvix1_window_accessible_init(Orvix1WindowAccessible* self) {
  self->strings = new glue::strings_t;
}

static void orvix1_window_accessible_action_init(AtkActionIface* iface) {
  glue::fill_action_iface<part_of, strings_of>(iface);
}

}  // extern "C"

namespace orvix1 {
namespace accessibility {

void install() {
  static const bool installed = [] {
    auto* widget_class = static_cast<GtkWidgetClass*>(g_type_class_ref(wxPizza::type()));
    gtk_widget_class_set_accessible_type(widget_class, orvix1_window_accessible_get_type());
    return true;
  }();
  (void)installed;
}

namespace {

// The client-area widget: a top-level window's handle is its GtkWindow and a
// scrolled window's a scrolling container, whose accessible types are GTK's
// own; the client area inside them has ours.
GtkWidget* client_widget(const wxWindow* window) {
  return window->m_wxwindow ? window->m_wxwindow : window->GetHandle();
}

}  // namespace

void attach(wxWindow* window, part_t* part) {
  install();
  g_object_set_qdata(G_OBJECT(client_widget(window)), part_quark(), part);
}

void detach(wxWindow* window) {
  if (GtkWidget* widget = client_widget(window))
    g_object_set_qdata(G_OBJECT(widget), part_quark(), nullptr);
}

part_t* attached_part(const wxWindow* window) {
  return window ? part_of_widget(client_widget(window)) : nullptr;
}

AtkObject* accessible_of(const wxWindow* window) {
  GtkWidget* widget = window ? client_widget(window) : nullptr;
  return widget ? gtk_widget_get_accessible(widget) : nullptr;
}

}  // namespace accessibility
}  // namespace orvix1
