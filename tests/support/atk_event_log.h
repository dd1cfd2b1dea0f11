#ifndef ORVIX1_TESTS_ATK_EVENT_LOG_H
#define ORVIX1_TESTS_ATK_EVENT_LOG_H

// The events a screen reader hears from some accessible objects, as text:
// "<label> selected=1", "<label> name=<new name>", "<label> description=<new
// description>", "<label> value", "<label> child+ <index>", "<label> child-
// <index>", "<label> activate"; without a label, the event alone.
// Showing and visible come from GTK mapping windows, whenever a layout
// moves them: they are left out unless asked for.

#include <atk/atk.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "support/atk_probe.h"

namespace orvix1_test {

class atk_event_log_t {
 public:
  atk_event_log_t() = default;
  atk_event_log_t(const atk_event_log_t&) = delete;
  atk_event_log_t& operator=(const atk_event_log_t&) = delete;
  ~atk_event_log_t() {
    for (const auto& [object, handler] : m_handlers) g_signal_handler_disconnect(object, handler);
    for (const auto& watched : m_watched) g_object_unref(watched->object);
  }

  void watch(AtkObject* object, const std::string& label = {}, bool with_visibility = false) {
    m_watched.push_back(
        std::make_unique<watched_t>(watched_t{this, g_object_ref(object), label, with_visibility}));
    watched_t* watched = m_watched.back().get();
    connect(object, "state-change", G_CALLBACK(on_state), watched);
    connect(object, "notify::accessible-name", G_CALLBACK(on_name), watched);
    connect(object, "notify::accessible-description", G_CALLBACK(on_description), watched);
    connect(object, "notify::accessible-value", G_CALLBACK(on_value), watched);
    connect(object, "children-changed::add", G_CALLBACK(on_child_added), watched);
    connect(object, "children-changed::remove", G_CALLBACK(on_child_removed), watched);
    if (ATK_IS_WINDOW(object)) connect(object, "activate", G_CALLBACK(on_activate), watched);
  }

  // The events since the last take, oldest first.
  std::vector<std::string> take() { return std::exchange(m_events, {}); }
  // The children the children-changed events named, oldest first.
  std::vector<AtkObject*> take_children() { return std::exchange(m_children, {}); }

 private:
  struct watched_t {
    atk_event_log_t* log;
    AtkObject* object;
    std::string label;
    bool with_visibility;
  };

  void connect(AtkObject* object, const char* signal, GCallback callback, watched_t* watched) {
    m_handlers.emplace_back(object, g_signal_connect(object, signal, callback, watched));
  }
  static void add(watched_t* watched, const std::string& event) {
    watched->log->m_events.push_back(watched->label.empty() ? event : watched->label + " " + event);
  }
  static void on_state(AtkObject*, gchar* state, gboolean value, gpointer data) {
    auto* watched = static_cast<watched_t*>(data);
    const std::string name(state);
    if (!watched->with_visibility && (name == "showing" || name == "visible")) return;
    add(watched, name + (value ? "=1" : "=0"));
  }
  static void on_name(AtkObject* object, GParamSpec*, gpointer data) {
    add(static_cast<watched_t*>(data), "name=" + name_of(object));
  }
  static void on_description(AtkObject* object, GParamSpec*, gpointer data) {
    add(static_cast<watched_t*>(data), "description=" + description_of(object));
  }
  static void on_value(AtkObject*, GParamSpec*, gpointer data) { add(static_cast<watched_t*>(data), "value"); }
  static void on_child_added(AtkObject*, guint index, AtkObject* child, gpointer data) {
    on_child(static_cast<watched_t*>(data), "child+ ", index, child);
  }
  static void on_child_removed(AtkObject*, guint index, AtkObject* child, gpointer data) {
    on_child(static_cast<watched_t*>(data), "child- ", index, child);
  }
  static void on_child(watched_t* watched, const char* event, guint index, AtkObject* child) {
    add(watched, event + std::to_string(static_cast<gint>(index)));
    watched->log->m_children.push_back(child);
  }
  static void on_activate(AtkObject*, gpointer data) { add(static_cast<watched_t*>(data), "activate"); }

  std::vector<std::unique_ptr<watched_t>> m_watched;
  std::vector<std::pair<AtkObject*, gulong>> m_handlers;
  std::vector<std::string> m_events;
  std::vector<AtkObject*> m_children;
};

}  // namespace orvix1_test

#endif
