#ifndef ORVIX1_ELEMENTS_LAYOUT_H
#define ORVIX1_ELEMENTS_LAYOUT_H
/// @file
/// A layout decides where an element's children lie: one rectangle per child,
/// computed by Invalidate() and then answered by GetChildRect() for painting,
/// hit-testing and UIElement::GetRect(). It also gives its element's
/// preferred and minimum size from the children.

#include <list>
#include <vector>

#include <wx/gdicmn.h>

#include "orvix1/elements/UIElement.h"
#include "orvix1/export.h"
#include "talvar2/pointers/intrusive_pointer.h"

namespace orvix1 {
namespace elements {
/// Decides where an element's children lie and how large the element wants to be.
class ORVIX1_API Layout : public talvar2::intrusive_pointer_impl_t {
 public:
  Layout();
  ~Layout() override;
  Layout(const Layout&) = delete;
  Layout& operator=(const Layout&) = delete;

  /// The size the visible children ask for. Docked ones add up along their
  /// axis; centred or stretched ones add up too, unless every visible child
  /// is centred or stretched on that axis, when the largest of them and the
  /// docked sum decides. GetMinSize() works on the minimum sizes.
  virtual wxSize GetMinSize() const;
  virtual wxSize GetSize() const;
  /// The child's rectangle from the last relayout.
  virtual wxRect GetChildRect(const wxRect& parent_rect, const element_ptr_t& child) const = 0;
  virtual wxRect CalcElementPosition(const wxRect& rect, const wxSize& size, int flags) const;
  /// Recomputes the children's rectangles; nothing here.
  virtual void OnInvalidate();
  /// Places a child of `size` with `flags` in `remaining`, and takes the space
  /// it docks to out of `remaining`.
  virtual wxRect ProcessPositionCalculation(wxRect& remaining, const wxSize& size, int flags) const;

  void SetControlledElement(UIElement* element);
  element_ptr_t GetControlledElement() const;
  /// Recomputes the rectangles, with the children's updates frozen meanwhile.
  void Invalidate();

 protected:
  /// The element whose children are laid out, unchecked (null when unset).
  UIElement* controlled() const { return m_element; }
  /// The same, but a missing element is reported as GetControlledElement()
  /// reports it.
  UIElement* RequireControlled() const;
  /// The children to lay out, in list order: the copy that Invalidate() holds
  /// for the relayout under way, so that OnInvalidate() need not walk the
  /// list again, or a fresh copy when OnInvalidate() runs on its own. Walk it
  /// by index: a child may start another relayout when asked for its size.
  const std::vector<UIElement*>& ChildrenToLayOut();

  /// The rectangle cache. Each child keeps the rectangle its parent's layout
  /// gave it, so that lookups cost nothing and relayouts allocate nothing.
  void ClearChildRects() const;
  /// ClearChildRects() for one child, for a layout that walks the children anyway.
  void ClearChildRect(UIElement& child) const;
  void StoreChildRect(UIElement& child, const wxRect& rect) const;
  /// False when `child` is not a laid-out child of the controlled element.
  bool FindChildRect(const UIElement& child, wxRect& rect) const;
  /// How many children of the controlled element have a rectangle.
  std::size_t CountChildRects() const;

  /// The size along both axes of the children, from their GetSize() or
  /// GetMinSize(); see GetSize(). `visible_total`, when given, receives the
  /// plain sum of the visible children's sizes, so that callers need not ask
  /// the children a second time.
  wxSize CalculateSize(bool minimum, wxSize* visible_total = nullptr) const;

 private:
  UIElement* m_element = nullptr;
  /// The copy of the child list, kept to spare an allocation per relayout;
  /// while Invalidate() runs it holds one reference per child.
  std::vector<UIElement*> m_held_children;
  /// The copy Invalidate() holds for the relayout under way, if any.
  const std::vector<UIElement*>* m_held = nullptr;
};

/// Places `children` in the order the optimal layout fills them: docked ones
/// first, centred or stretched ones last, invisible ones at the end.
ORVIX1_API std::list<element_ptr_t> ArrangeElementsByPriority(const std::list<element_ptr_t>& children);

}  // namespace elements
}  // namespace orvix1

#endif
