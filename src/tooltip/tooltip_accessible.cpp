#include "tooltip/tooltip_accessible.h"

#include <gtk/gtk.h>
#include <wx/window.h>

#include "accessibility/accessible.h"
#include "elements/element_accessible.h"

namespace orvix1 {
namespace detail {
namespace {

AtkObject* frame_object(wxWindow& window) {
  return gtk_widget_get_accessible(window.GetHandle());
}

// ATK has no call that takes an object's own description back; with the
// field empty the object describes itself again (a part's description, or
// GTK's tooltip text).
void forget_description(AtkObject* object) {
  g_free(object->description);
  object->description = nullptr;
  accessibility::notify_description(object);
}

}  // namespace

// Named at once: ATK stays silent when an object gets its first name, and
// the first text must be heard too.
tooltip_accessible_t::tooltip_accessible_t(wxWindow& tooltip) : m_tooltip(tooltip) {
  atk_object_set_role(frame_object(m_tooltip), ATK_ROLE_TOOL_TIP);
  atk_object_set_name(frame_object(m_tooltip), "");
}

tooltip_accessible_t::~tooltip_accessible_t() { detached(false); }

// Setting the name tells screen readers of the change.
void tooltip_accessible_t::text_changed(const std::string& text) {
  atk_object_set_name(frame_object(m_tooltip), text.c_str());
  describe_target(text);
}

// An element holder shows its elements' tooltips, which describe those
// elements already: the holder itself stays undescribed.
void tooltip_accessible_t::attached(wxWindow& target, const std::string& text) {
  detached(true);
  if (dynamic_cast<const elements::detail::tree_accessible_t*>(accessibility::attached_part(&target)))
    return;
  m_target = accessibility::accessible_of(&target);
  if (m_target == nullptr) return;
  g_object_ref(m_target);
  describe_target(text);
}

void tooltip_accessible_t::detached(bool target_stays) {
  if (m_target == nullptr) return;
  if (target_stays) describe_target(std::string());
  g_object_unref(m_target);
  m_target = nullptr;
  m_description.clear();
}

// A description this tooltip did not set is the host's, and stays.
void tooltip_accessible_t::describe_target(const std::string& text) {
  if (m_target == nullptr) return;
  const gchar* current = m_target->description;
  const bool own = current == nullptr || *current == '\0' || (!m_description.empty() && m_description == current);
  if (!own) return;
  m_description = text;
  if (text.empty()) {
    if (current != nullptr) forget_description(m_target);
    return;
  }
  const bool first = current == nullptr;
  atk_object_set_description(m_target, text.c_str());
  // ATK stays silent when an object gets its first description.
  if (first) accessibility::notify_description(m_target);
}

}  // namespace detail
}  // namespace orvix1
