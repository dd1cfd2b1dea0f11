#include "elements/element_accessible.h"

#include <iterator>
#include <vector>

#include <wx/window.h>

#include "orvix1/elements/ImageElement.h"
#include "orvix1/elements/SpacerElement.h"
#include "orvix1/elements/TextElement.h"

namespace orvix1 {
namespace elements {
namespace detail {
namespace {

const UIElement* child_at(const UIElement& parent, int index) {
  const std::list<element_ptr_t>& children = parent.GetChildren();
  if (index < 0 || index >= static_cast<int>(children.size())) return nullptr;
  return std::next(children.begin(), index)->get();
}

// The texts shown inside `element`, in list order: what a focusable element
// (a button made of elements) is called.
void gather_texts(const UIElement& element, std::string& texts) {
  for (const element_ptr_t& child : element.GetChildren()) {
    const auto* text = dynamic_cast<const TextElement*>(child.get());
    if (text && !text->GetText().empty()) texts += (texts.empty() ? "" : " ") + text->GetText();
    gather_texts(*child, texts);
  }
}

int index_of(const UIElement& parent, const UIElement* child) {
  int index = 0;
  for (const element_ptr_t& candidate : parent.GetChildren()) {
    if (candidate.get() == child) return index;
    ++index;
  }
  return -1;
}

}  // namespace

// One element's object. What it last announced is kept to tell, at the next
// paint, whether the element's words changed.
class tree_accessible_t::element_part_t : public accessibility::part_t {
 public:
  element_part_t(const tree_accessible_t& tree, UIElement& element, wxWindow* holder,
                 AtkObject* parent)
      : m_tree(tree), m_element(element), m_node(*this, holder, parent) {
    remember();
  }

  AtkObject* object() const { return m_node.object(); }

  /// Whether the tree hears of the element's children coming and going.
  bool watched = false;

  AtkRole role() const override {
    if (dynamic_cast<const TextElement*>(&m_element)) return ATK_ROLE_LABEL;
    if (dynamic_cast<const ImageElement*>(&m_element)) return ATK_ROLE_IMAGE;
    if (dynamic_cast<const SpacerElement*>(&m_element)) return ATK_ROLE_FILLER;
    return ATK_ROLE_PANEL;
  }

  // The whole text, also while the element shows it cut short.
  std::string name() const override {
    if (const auto* text = dynamic_cast<const TextElement*>(&m_element)) return text->GetText();
    std::string texts;
    if (m_element.AcceptsFocus()) gather_texts(m_element, texts);
    return texts;
  }

  std::string description() const override {
    const auto* image = dynamic_cast<const ImageElement*>(&m_element);
    if (image && !image->GetAccessibleDescription().empty())
      return image->GetAccessibleDescription();
    return tooltip_text_of(m_element);
  }

  void add_states(AtkStateSet* states) const override {
    if (!m_element.AcceptsFocus()) return;
    atk_state_set_add_state(states, ATK_STATE_FOCUSABLE);
    if (m_element.IsFocused()) atk_state_set_add_state(states, ATK_STATE_FOCUSED);
  }

  void remove_states(AtkStateSet* states) const override {
    if (!m_element.IsVisible()) atk_state_set_remove_state(states, ATK_STATE_VISIBLE);
    if (!m_element.IsVisibleOnScreen()) atk_state_set_remove_state(states, ATK_STATE_SHOWING);
  }

  int drawn_child_count() const override {
    return static_cast<int>(m_element.GetChildren().size());
  }

  AtkObject* drawn_child(int index) const override {
    const UIElement* child = child_at(m_element, index);
    return child ? m_tree.object_of(const_cast<UIElement*>(child)) : nullptr;
  }

  wxRect bounds() const override { return m_element.GetRect(); }

  bool grab_focus() override { return m_element.SetFocus(true); }

  // Announces what changed since the last call.
  void announce_changes() {
    const std::string previous_name = m_name, previous_description = m_description;
    const bool was_showing = m_showing;
    remember();
    if (m_name != previous_name) accessibility::notify_name(object());
    if (m_description != previous_description) accessibility::notify_description(object());
    if (m_showing != was_showing)
      accessibility::notify_state(object(), ATK_STATE_SHOWING, m_showing);
  }

 private:
  void remember() {
    m_name = name();
    m_description = description();
    m_showing = m_element.IsVisibleOnScreen();
    const std::string& id = m_element.GetTestID();
    const gchar* current = atk_object_get_accessible_id(object());
    if (id != (current ? current : "")) atk_object_set_accessible_id(object(), id.c_str());
  }

  const tree_accessible_t& m_tree;
  UIElement& m_element;
  accessibility::node_t m_node;
  std::string m_name;
  std::string m_description;
  bool m_showing = false;
};

tree_accessible_t::tree_accessible_t(wxWindow* holder) : m_holder(holder) {
  if (accessibility::attached_part(holder) != nullptr) return;
  accessibility::attach(holder, this);
  m_attached = true;
}

tree_accessible_t::~tree_accessible_t() {
  set_root(nullptr);
  if (m_attached && accessibility::attached_part(m_holder) == this) accessibility::detach(m_holder);
}

AtkObject* tree_accessible_t::holder_object() const {
  return accessibility::accessible_of(m_holder);
}

int tree_accessible_t::drawn_child_count() const {
  if (m_root == nullptr) return 0;
  watch(m_root);  // the holder's children have been seen
  return static_cast<int>(m_root->GetChildren().size());
}

AtkObject* tree_accessible_t::drawn_child(int index) const {
  const UIElement* child = m_root ? child_at(*m_root, index) : nullptr;
  return child ? object_of(const_cast<UIElement*>(child)) : nullptr;
}

tree_accessible_t::element_part_t* tree_accessible_t::find(const UIElement* element) const {
  const auto found = m_parts.find(element);
  return found == m_parts.end() ? nullptr : found->second.get();
}

AtkObject* tree_accessible_t::object_of(UIElement* element) const {
  if (element == nullptr || !m_attached || m_root == nullptr || element == m_root) return nullptr;
  if (element_part_t* known = find(element)) return known->object();
  UIElement* parent = element->GetParent();
  AtkObject* parent_object = parent == m_root ? holder_object() : object_of(parent);
  if (parent_object == nullptr) return nullptr;  // not in this tree
  watch(parent);
  auto made = std::make_unique<element_part_t>(*this, *element, m_holder, parent_object);
  AtkObject* object = made->object();
  m_parts.emplace(element, std::move(made));
  return object;
}

// The root's children hang from the holder, every other element's from its
// parent's object.
AtkObject* tree_accessible_t::seen_parent_object(UIElement* parent) const {
  if (parent == m_root) return m_root_seen ? holder_object() : nullptr;
  element_part_t* part = find(parent);
  return part ? part->object() : nullptr;
}

// Watching an element costs its signals a connection: only the root and the
// elements with a child assistive technology has reached are watched.
void tree_accessible_t::watch(UIElement* element) const {
  bool& watched = element == m_root ? m_root_seen : find(element)->watched;
  if (watched) return;
  watched = true;
  auto* self = const_cast<tree_accessible_t*>(this);
  element->ChildAdded.connect(self, &tree_accessible_t::on_child_added);
  element->ChildRemoved.connect(self, &tree_accessible_t::on_child_removed);
}

void tree_accessible_t::unwatch(UIElement* element) const {
  auto* self = const_cast<tree_accessible_t*>(this);
  element->ChildAdded.disconnect(self, &tree_accessible_t::on_child_added);
  element->ChildRemoved.disconnect(self, &tree_accessible_t::on_child_removed);
}

void tree_accessible_t::on_child_added(element_ptr_t parent, element_ptr_t child) {
  AtkObject* parent_object = seen_parent_object(parent.get());
  if (parent_object == nullptr) return;
  int index = index_of(*parent, child.get());
  // The root's children come after the holder's own windows.
  if (parent.get() == m_root)
    index += atk_object_get_n_accessible_children(parent_object) - drawn_child_count();
  accessibility::notify_child_added(parent_object, index, object_of(child.get()));
}

// The child has left its parent's list already: its index is unknown (-1).
void tree_accessible_t::on_child_removed(element_ptr_t parent, element_ptr_t child) {
  element_part_t* part = find(child.get());
  if (part == nullptr) return;
  accessibility::notify_child_removed(seen_parent_object(parent.get()), -1, part->object());
  forget(child.get());
}

void tree_accessible_t::forget(UIElement* element) {
  const auto found = m_parts.find(element);
  if (found == m_parts.end()) return;
  for (const element_ptr_t& child : element->GetChildren()) forget(child.get());
  if (found->second->watched) unwatch(element);
  if (element == m_announced_focus) m_announced_focus = nullptr;
  m_parts.erase(found);
}

// A new tree: the former one's objects go defunct; a reader that had seen
// the holder's children learns that they changed.
void tree_accessible_t::set_root(UIElement* root) {
  if (root == m_root) return;
  const bool seen = m_root_seen;
  if (m_root != nullptr) {
    for (const element_ptr_t& child : m_root->GetChildren()) on_child_removed(m_root, child);
    if (seen) unwatch(m_root);
  }
  m_root_seen = false;
  m_root = root;
  if (!seen || m_root == nullptr) return;
  watch(m_root);
  for (const element_ptr_t& child : m_root->GetChildren()) on_child_added(m_root, child);
}

// Taking the focus can bring the holder's focus-in, which gives it to the
// same element again: that is announced once.
void tree_accessible_t::focus_moved(UIElement* from, UIElement* to) {
  if (from == m_announced_focus && from != to) m_announced_focus = nullptr;
  if (element_part_t* left = find(from))
    accessibility::notify_state(left->object(), ATK_STATE_FOCUSED, false);
  if (!m_root_seen || to == nullptr || !to->IsFocused() || to == m_announced_focus) return;
  m_announced_focus = to;
  accessibility::notify_state(object_of(to), ATK_STATE_FOCUSED, true);
}

// Listeners may reach new elements meanwhile, which changes the map.
void tree_accessible_t::painted() {
  if (m_parts.empty()) return;
  std::vector<const UIElement*> elements;
  elements.reserve(m_parts.size());
  for (const auto& entry : m_parts) elements.push_back(entry.first);
  for (const UIElement* element : elements)
    if (element_part_t* part = find(element)) part->announce_changes();
}

}  // namespace detail
}  // namespace elements
}  // namespace orvix1
