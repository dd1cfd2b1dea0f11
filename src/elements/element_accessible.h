#ifndef ORVIX1_SRC_ELEMENTS_ELEMENT_ACCESSIBLE_H
#define ORVIX1_SRC_ELEMENTS_ELEMENT_ACCESSIBLE_H

// What a screen reader sees of an element tree: the holder window's drawn
// children are the root's children, and below them each element's. An
// element gets its accessible object only when assistive technology first
// reaches it, and the objects are kept here, by element: an element itself
// carries nothing for them, and a tree no one reads costs nothing.
//
// Roles: a text element is a label named by its whole text, an image
// element an image described by the host (SetAccessibleDescription), a
// spacer a filler, any other element a panel; a focusable one is named by
// the texts inside it. An element's tooltip text is
// its description when the host gave none, its test id its accessible id.
// Changed names and descriptions are announced when the holder next paints,
// which every change that shows does.

#include <memory>
#include <string>
#include <unordered_map>

#include "accessibility/accessible.h"
#include "orvix1/elements/UIElement.h"
#include "talvar2/functor/signal.h"

namespace orvix1 {
namespace elements {
namespace detail {

// The text of the element's tooltip, empty without one; the tooltip layer
// supplies it.
std::string tooltip_text_of(const UIElement& element);

class tree_accessible_t : public accessibility::part_t, public talvar2::subscriber_base_t {
 public:
  /// Describes `holder` unless another part describes it already.
  explicit tree_accessible_t(wxWindow* holder);
  ~tree_accessible_t() override;
  tree_accessible_t(const tree_accessible_t&) = delete;
  tree_accessible_t& operator=(const tree_accessible_t&) = delete;

  AtkRole role() const override { return ATK_ROLE_PANEL; }
  int drawn_child_count() const override;
  AtkObject* drawn_child(int index) const override;

  // --- what the adapter reports ---
  void set_root(UIElement* root);
  void focus_moved(UIElement* from, UIElement* to);
  void painted();

  /// The element's accessible object, made (with its ancestors') on first
  /// use; null for an element outside the tree.
  AtkObject* object_of(UIElement* element) const;

 private:
  class element_part_t;

  AtkObject* holder_object() const;
  /// The object a child of `parent` hangs from, if assistive technology has
  /// seen it; null otherwise.
  AtkObject* seen_parent_object(UIElement* parent) const;
  element_part_t* find(const UIElement* element) const;
  void watch(UIElement* element) const;
  void unwatch(UIElement* element) const;
  void on_child_added(element_ptr_t parent, element_ptr_t child);
  void on_child_removed(element_ptr_t parent, element_ptr_t child);
  /// Drops the objects of `element` and its descendants: they go defunct.
  void forget(UIElement* element);

  wxWindow* m_holder;
  bool m_attached = false;
  UIElement* m_root = nullptr;
  mutable bool m_root_seen = false;
  /// The element last announced as focused, while it keeps the focus.
  const UIElement* m_announced_focus = nullptr;
  mutable std::unordered_map<const UIElement*, std::unique_ptr<element_part_t>> m_parts;
};

}  // namespace detail
}  // namespace elements
}  // namespace orvix1

#endif
