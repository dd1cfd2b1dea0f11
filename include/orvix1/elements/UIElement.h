#ifndef ORVIX1_ELEMENTS_UIELEMENT_H
#define ORVIX1_ELEMENTS_UIELEMENT_H
/// @file
/// A retained tree of light, owner-drawn elements inside one wx window. An
/// element has no window of its own: it paints on the device context of the
/// window that hosts the tree, and everything that needs that window (client
/// rectangle, timers, capture, tooltips, keyboard focus) is asked for by the
/// root element through its Request... signals, which the host answers
/// (ElementAdapter). Elements are held through intrusive_pointer_t: hold a
/// new element in one before using it.

#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <string>

#include <boost/any.hpp>
#include <wx/dc.h>
#include <wx/event.h>
#include <wx/gdicmn.h>
#include <wx/window.h>

#include "orvix1/export.h"
#include "orvix1/styled.h"
#include "talvar2/functor/signal.h"
#include "talvar2/pointers/intrusive_pointer.h"

namespace orvix1 {

class wxCustomTooltip;

namespace elements {

class Layout;
class UIElement;

using element_ptr_t = talvar2::intrusive_pointer_t<UIElement>;

/// Space kept free inside an element's rectangle, in pixels.
struct margin_t {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;

  margin_t() = default;
  margin_t(int left_, int top_, int right_, int bottom_)
      : left(left_), top(top_), right(right_), bottom(bottom_) {}
  bool operator==(const margin_t& other) const {
    return left == other.left && top == other.top && right == other.right && bottom == other.bottom;
  }
};
/// A light, owner-drawn element of a tree hosted in one wx window.
class ORVIX1_API UIElement : public talvar2::intrusive_pointer_impl_t, public StyledBase {
  /// Read by every relayout, paint and hit-test: kept together at the front
  /// of the object, ahead of the signals, so that walking many children
  /// touches few cache lines.
  std::list<element_ptr_t> m_children;
  UIElement* m_parent = nullptr;
  int m_position_flags;
  bool m_visible = true;
  bool m_updates_frozen = false;
  bool m_resizable = false;
  bool m_has_layout_rect = false;
  wxRect m_layout_rect;  ///< kept by the parent's layout (see Layout)
  /// Null until the element needs a layout: a leaf has no children to lay
  /// out, and most elements are leaves (see layout()).
  mutable talvar2::intrusive_pointer_t<Layout> m_layout;
  friend class Layout;

 public:
  /// Where the parent's layout puts an element (Layout reads them).
  enum PositionFlags {
    pfLeft = 0x01,
    pfRight = 0x02,
    pfTop = 0x04,
    pfBottom = 0x08,
    pfVCenter = 0x10,
    pfVExpand = 0x20,
    pfHCenter = 0x40,
    pfHExpand = 0x80,
  };

  // --- signals; the Request... ones are emitted on the root only ---
  talvar2::signal_t<element_ptr_t, element_ptr_t> ChildAdded;    ///< (parent, child)
  talvar2::signal_t<element_ptr_t, element_ptr_t> ChildRemoved;  ///< (parent, child)
  talvar2::signal_t<element_ptr_t> VisibilityChanged;
  talvar2::signal_t<element_ptr_t> MouseEntered;
  talvar2::signal_t<element_ptr_t> MouseLeft;
  talvar2::signal_t<wxRect&> RequestClientRect;
  talvar2::signal_t<wxWindow**> RequestHolderWindow;
  talvar2::signal_t<element_ptr_t, int> RequestSetTimer;
  talvar2::signal_t<element_ptr_t> RequestKillTimer;
  talvar2::signal_t<element_ptr_t> RequestCaptureMouse;
  talvar2::signal_t<> RequestReleaseMouse;
  talvar2::signal_t<wxCustomTooltip*> RequestSetTooltip;
  talvar2::signal_t<> RequestClearTooltip;
  talvar2::signal_t<element_ptr_t> RequestChangeFocus;

  /// A root: centred both ways, as a host requires of a root.
  UIElement();
  /// A child of `parent`, docked left and centred vertically, or with the
  /// given position flags; it joins the parent at once.
  explicit UIElement(element_ptr_t parent);
  UIElement(element_ptr_t parent, int position_flags);
  ~UIElement() override;
  UIElement(const UIElement&) = delete;
  UIElement& operator=(const UIElement&) = delete;

  // --- virtual interface ---
  virtual wxSize GetSize() const;
  virtual wxSize GetMinSize() const;
  virtual void SetResizable(bool resizable);
  virtual bool IsResizable() const;
  virtual void SetLayoutLogic(talvar2::intrusive_pointer_t<Layout> layout);
  /// The layout set, or the OptimalLayout made now for an element given none.
  virtual talvar2::intrusive_pointer_t<Layout> GetLayoutLogic() const;
  virtual bool SetFocus(bool focused);
  virtual bool AcceptsFocus() const;
  void SetUiStyle(talvar2::intrusive_pointer_t<ui_style_t> style) override;
  virtual element_ptr_t GetElementFromPoint(const wxPoint& point);
  virtual void AddChild(element_ptr_t child);
  virtual void RemoveChild(element_ptr_t child);
  virtual element_ptr_t MoveFocusForward(element_ptr_t current);
  virtual element_ptr_t MoveFocusBack(element_ptr_t current);
  virtual void OnDraw(wxDC& dc, const wxRect& rect);
  virtual void OnTimer();
  virtual void InvalidateColors();
  virtual void OnMouseEnter(const wxMouseEvent& event);
  virtual void OnMouseLeave(const wxMouseEvent& event);
  virtual void OnMouseMove(const wxMouseEvent& event, bool& propagate);
  virtual void OnMouseDown(const wxMouseEvent& event, bool& propagate);
  virtual void OnMouseUp(const wxMouseEvent& event, bool& propagate);
  /// Takes the focus when the element accepts it.
  virtual void OnMouseClick(const wxMouseEvent& event, bool& propagate);
  virtual void OnVisibilityChanged(bool visible_on_screen);
  virtual void OnKeyPress(wxKeyEvent& event);
  /// Drops cached colours (InvalidateColors).
  void on_style_updated() override;

  // --- tree and z-order; the head of the child list is the top ---
  void ChangeZOrderToTop(element_ptr_t child);
  void ChangeZOrderToBack(element_ptr_t child);
  void ChangeZOrderToBeforeElement(element_ptr_t child, element_ptr_t pos);
  void ChangeZOrderToAfterElement(element_ptr_t child, element_ptr_t pos);
  void ChangeParent(element_ptr_t new_parent);
  /// Puts `new_child` in `old_child`'s place; emits ChildRemoved and ChildAdded.
  void ReplaceChild(element_ptr_t old_child, element_ptr_t new_child);
  void Destroy();
  void DestroyChildren();
  void DestroyTooltip();
  UIElement* GetRootElement() const;
  UIElement* GetParent() const { return m_parent; }
  const std::list<element_ptr_t>& GetChildren() const { return m_children; }
  wxWindow* GetHolder() const;

  // --- geometry ---
  /// Sizes asked for without subclassing (a colour swatch, a fixed gap).
  /// GetSize() and GetMinSize() report a fixed axis as set and an axis with a
  /// minimum as at least that; the parent's layout places the element by
  /// them (expanding position flags still stretch it). A component of
  /// wxDefaultCoord leaves that axis to the element, and wxDefaultSize, the
  /// start, leaves the sizes exactly as the element computes them. Library
  /// elements that compute their own size (text, images, arrows, spacers)
  /// honour them too; an element class of your own that overrides GetSize()
  /// or GetMinSize() passes its result through LimitSize() to do so. The
  /// root's size is its window's.
  void SetFixedSize(const wxSize& size);
  void SetMinSize(const wxSize& size);
  const wxSize& GetFixedSize() const { return m_fixed_size; }
  const wxSize& GetMinSizeLimit() const { return m_min_size_limit; }
  /// `size` with the fixed and minimum sizes applied.
  wxSize LimitSize(wxSize size) const;
  /// GetSize() and GetMinSize() with the limits applied, whatever a subclass
  /// does: what layouts place children by.
  wxSize GetLimitedSize() const { return LimitSize(GetSize()); }
  wxSize GetLimitedMinSize() const { return LimitSize(GetMinSize()); }
  wxRect GetRect() const;
  void SetMargin(const margin_t& margin);
  const margin_t& GetMargin() const { return m_margin; }
  void SetPositionFlags(int flags);
  int GetPositionFlags() const { return m_position_flags; }
  bool HitTest(const wxPoint& point) const;

  // --- state ---
  void SetVisible(bool visible);
  bool IsVisible() const { return m_visible; }
  bool IsVisibleOnScreen() const;
  bool IsFocused() const { return m_focused; }
  void SetAcceptFocus(bool accept);
  void SetTabOrder(int order);
  int GetTabOrder() const { return m_tab_order; }
  int GenerateUniqueTabOrder() const;
  void Invalidate(bool layout_too);
  void InvalidateLayout();
  void FreezeUpdates(bool freeze);
  bool IsUpdatesFrozen() const { return m_updates_frozen; }
  bool IsLayoutDirty() const { return m_layout_dirty; }
  bool IsDestroyed() const { return m_destroyed; }
  bool IsPressed() const { return m_pressed; }
  void SetTimer(int milliseconds);
  void KillTimer();
  bool IsTimerRunning() const { return m_timer_running; }
  void CaptureMouse();
  void ReleaseMouse();

  // --- tooltip ---
  /// The element's tooltip, made on first use; shown while the pointer is
  /// over the element.
  wxCustomTooltip* GetTooltip();
  wxCustomTooltip* GetExistingTooltip() const { return m_extras ? m_extras->tooltip : nullptr; }
  void OnTooltipDestroyed(wxCustomTooltip* tooltip);

  // --- style ---
  void SetStylePropagation(bool propagate) { m_style_propagation = propagate; }
  bool GetStylePropagation() const { return m_style_propagation; }
  void SetStyleRecursively(talvar2::intrusive_pointer_t<ui_style_t> style);
  void ProcessSysColorChanged();

  // --- bindings and test identifiers ---
  /// Keeps `value` (a connection, a helper) alive as long as the element.
  unsigned long AddBinding(const boost::any& value);
  void RemoveBinding(unsigned long slot);
  std::size_t GetBindingsCount() const { return m_extras ? m_extras->bindings.size() : 0; }
  void SetTestID(const std::string& id);
  const std::string& GetTestID() const;

  // --- entry points for the host ---
  void ProcessDraw(wxDC& dc, const wxRect& rect, bool force_layout);
  void ProcessMouse(const wxMouseEvent& event);
  void ProcessSizeChange(const wxSizeEvent& event);
  void ProcessTimer();
  bool ProcessChangeFocus(bool focused);
  void ProcessVisibilityChanged();
  void SetCurrentDC(wxDC* dc);
  wxDC* GetCurrentDC() const { return m_current_dc; }

 protected:
  /// Brings the tree's layout up to date before geometry is read.
  void RefreshLayoutIfDirty() const;

 private:
  template <class Compare>
  element_ptr_t FindNextFocusedElement(element_ptr_t current);
  unsigned long GenerateUniqueBindingSlotId() const;
  std::list<element_ptr_t>::iterator FindChild(const UIElement* child);
  void MoveChildNextTo(const UIElement* child, const UIElement* pos, bool after);
  void ChildTabOrderChanged(int old_order, int new_order);
  /// The layout, made on first use when none was set.
  Layout& layout() const;
  /// Whether a relayout can place anything: a leaf's layout has nothing to
  /// do, so none is made for it.
  bool HasLayoutWork() const { return m_layout || !m_children.empty(); }

  /// What few elements use, made on first use: a label pays one pointer for it.
  struct extras_t {
    std::string test_id;
    std::map<unsigned long, boost::any> bindings;
    wxCustomTooltip* tooltip = nullptr;
  };
  extras_t& Extras();

  wxDC* m_current_dc = nullptr;
  bool m_layout_dirty = true;
  bool m_destroyed = false;
  bool m_pressed = false;
  bool m_timer_running = false;
  bool m_accepts_focus = false;
  bool m_focused = false;
  bool m_style_propagation = false;
  int m_tab_order = 0;
  /// The largest tab order among the children, while known: every new child
  /// asks for it, and a walk over thousands of siblings each time would make
  /// building a wide tree quadratic.
  mutable int m_largest_child_tab_order = 0;
  mutable bool m_largest_child_tab_order_known = false;
  margin_t m_margin;
  wxSize m_fixed_size = wxDefaultSize;
  wxSize m_min_size_limit = wxDefaultSize;
  std::unique_ptr<extras_t> m_extras;
};

}  // namespace elements
}  // namespace orvix1

#endif
