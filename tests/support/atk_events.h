#ifndef ORVIX1_TESTS_ATK_EVENTS_H
#define ORVIX1_TESTS_ATK_EVENTS_H

// Records the events an accessible object emits, as the AT-SPI bridge hears
// them: "focused=1" (a state change), "accessible-name" (a property
// change), "add 2" / "remove -1" (children changed, with the index).

#include <atk/atk.h>

#include <string>
#include <utility>
#include <vector>

namespace orvix1_test {

class atk_events_t {
 public:
  explicit atk_events_t(AtkObject* object) : m_object(object) {
    g_object_ref(m_object);
    m_handlers = {
        g_signal_connect(object, "state-change", G_CALLBACK(on_state), this),
        g_signal_connect(object, "property-change", G_CALLBACK(on_property), this),
        g_signal_connect(object, "children-changed::add", G_CALLBACK(on_added), this),
        g_signal_connect(object, "children-changed::remove", G_CALLBACK(on_removed), this)};
  }
  ~atk_events_t() {
    for (gulong handler : m_handlers) g_signal_handler_disconnect(m_object, handler);
    g_object_unref(m_object);
  }
  atk_events_t(const atk_events_t&) = delete;
  atk_events_t& operator=(const atk_events_t&) = delete;

  std::vector<std::string> take() { return std::exchange(m_events, {}); }
  // The children the last "children-changed" events named, oldest first.
  std::vector<AtkObject*> take_children() { return std::exchange(m_children, {}); }

 private:
  static void on_state(AtkObject*, const gchar* name, gboolean value, atk_events_t* self) {
    self->m_events.push_back(std::string(name) + (value ? "=1" : "=0"));
  }
  static void on_property(AtkObject*, AtkPropertyValues* values, atk_events_t* self) {
    self->m_events.push_back(values->property_name);
  }
  static void on_added(AtkObject*, guint index, AtkObject* child, atk_events_t* self) {
    self->m_events.push_back("add " + std::to_string(static_cast<gint>(index)));
    self->m_children.push_back(child);
  }
  static void on_removed(AtkObject*, guint index, AtkObject* child, atk_events_t* self) {
    self->m_events.push_back("remove " + std::to_string(static_cast<gint>(index)));
    self->m_children.push_back(child);
  }

  AtkObject* m_object;
  std::vector<gulong> m_handlers;
  std::vector<std::string> m_events;
  std::vector<AtkObject*> m_children;
};

}  // namespace orvix1_test

#endif
