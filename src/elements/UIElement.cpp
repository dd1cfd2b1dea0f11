#include "orvix1/elements/UIElement.h"

#include <algorithm>
#include <climits>
#include <functional>
#include <type_traits>
#include <vector>

#include "orvix1/elements/OptimalLayout.h"
#include "core/contract_sites.h"

namespace orvix1 {
namespace elements {
namespace {

using contract::site_t;

// A counted reference to an element that is known to be alive, for the
// signal arguments and the calls that take one.
element_ptr_t self_of(const UIElement* element) { return const_cast<UIElement*>(element); }

wxRect inner_rect(const wxRect& rect, const margin_t& margin) {
  return wxRect(rect.x + margin.left, rect.y + margin.top,
                std::max(0, rect.width - margin.left - margin.right),
                std::max(0, rect.height - margin.top - margin.bottom));
}

}  // namespace

// The default layout is made when first needed (layout()).
UIElement::UIElement() : m_position_flags(pfVCenter | pfHCenter) {}

UIElement::UIElement(element_ptr_t parent) : UIElement(parent, pfLeft | pfVCenter) {}

UIElement::UIElement(element_ptr_t parent, int position_flags) : m_position_flags(position_flags) {
  if (!contract_holds(parent.get() != nullptr, site_t::element_parent_null)) return;
  m_tab_order = parent->GenerateUniqueTabOrder();
  // The parent's list takes the first reference of this element.
  parent->AddChild(this);
}

UIElement::~UIElement() {
  for (element_ptr_t& child : m_children) {
    child->m_parent = nullptr;
    child->m_has_layout_rect = false;
  }
  if (m_layout) m_layout->SetControlledElement(nullptr);
}

// --- sizes, layout, focus flags ---------------------------------------------

// A leaf's layout would add up no children: nothing, which is said here
// without making one.
wxSize UIElement::GetSize() const {
  if (m_parent != nullptr) return LimitSize(HasLayoutWork() ? layout().GetSize() : wxSize(0, 0));
  if (!contract_holds(!RequestClientRect.empty(), site_t::element_size_unanswered))
    return wxSize();
  wxRect rect(0, 0, 0, 0);
  RequestClientRect(rect);
  return rect.GetSize();
}

wxSize UIElement::GetMinSize() const {
  return LimitSize(HasLayoutWork() ? layout().GetMinSize() : wxSize(0, 0));
}

void UIElement::SetFixedSize(const wxSize& size) {
  if (m_fixed_size == size) return;
  m_fixed_size = size;
  Invalidate(true);
}

void UIElement::SetMinSize(const wxSize& size) {
  if (m_min_size_limit == size) return;
  m_min_size_limit = size;
  Invalidate(true);
}

wxSize UIElement::LimitSize(wxSize size) const {
  const auto limit = [](int& length, int fixed, int minimum) {
    if (fixed != wxDefaultCoord)
      length = fixed;
    else if (minimum != wxDefaultCoord)
      length = std::max(length, minimum);
  };
  limit(size.x, m_fixed_size.x, m_min_size_limit.x);
  limit(size.y, m_fixed_size.y, m_min_size_limit.y);
  return size;
}

void UIElement::SetResizable(bool resizable) { m_resizable = resizable; }

bool UIElement::IsResizable() const { return m_resizable; }

void UIElement::SetLayoutLogic(talvar2::intrusive_pointer_t<Layout> layout) {
  if (!contract_holds(layout.get() != nullptr, site_t::element_layout_null)) return;
  if (m_layout && m_layout != layout) m_layout->SetControlledElement(nullptr);
  m_layout = layout;
  m_layout->SetControlledElement(this);
}

talvar2::intrusive_pointer_t<Layout> UIElement::GetLayoutLogic() const { return &layout(); }

Layout& UIElement::layout() const {
  if (!m_layout) {
    m_layout = new OptimalLayout;
    m_layout->SetControlledElement(const_cast<UIElement*>(this));
  }
  return *m_layout;
}

bool UIElement::AcceptsFocus() const { return m_accepts_focus; }

void UIElement::SetAcceptFocus(bool accept) { m_accepts_focus = accept; }

// --- tree and z-order ---------------------------------------------------------

std::list<element_ptr_t>::iterator UIElement::FindChild(const UIElement* child) {
  return std::find_if(m_children.begin(), m_children.end(),
                      [child](const element_ptr_t& candidate) { return candidate.get() == child; });
}

void UIElement::AddChild(element_ptr_t child) {
  if (!contract_holds(child.get() != nullptr, site_t::add_child_null)) return;
  // Only an element that names this one as its parent can be in the list
  // already; for the others the walk is skipped.
  const bool listed = child->m_parent == this && FindChild(child.get()) != m_children.end();
  if (!contract_holds(!listed, site_t::add_child_present)) return;
  if (child->m_parent != nullptr && child->m_parent != this) child->m_parent->RemoveChild(child);
  m_children.push_back(child);
  child->m_parent = this;
  if (m_largest_child_tab_order_known)
    m_largest_child_tab_order = std::max(m_largest_child_tab_order, child->m_tab_order);
  child->m_has_layout_rect = false;  // a rectangle from another parent's layout
  if (m_style_propagation) {
    if (talvar2::intrusive_pointer_t<ui_style_t> style = GetUiStyle())
      child->SetStyleRecursively(style);
  }
  Invalidate(true);
  ChildAdded(self_of(this), child);
}

void UIElement::RemoveChild(element_ptr_t child) {
  if (!contract_holds(child.get() != nullptr, site_t::remove_child_null)) return;
  const auto found = FindChild(child.get());
  if (!contract_holds(found != m_children.end(), site_t::remove_child_absent)) return;
  m_children.erase(found);  // `child` keeps it alive until the signal is out
  child->m_parent = nullptr;
  if (child->m_tab_order == m_largest_child_tab_order) m_largest_child_tab_order_known = false;
  child->m_has_layout_rect = false;
  Invalidate(true);
  ChildRemoved(self_of(this), child);
}

void UIElement::ChangeZOrderToTop(element_ptr_t child) {
  const auto element = FindChild(child.get());
  if (!contract_holds(element != m_children.end(), site_t::to_top_child_absent)) return;
  m_children.splice(m_children.begin(), m_children, element);
  Invalidate(true);
}

void UIElement::ChangeZOrderToBack(element_ptr_t child) {
  const auto element = FindChild(child.get());
  if (!contract_holds(element != m_children.end(), site_t::to_back_child_absent)) return;
  m_children.splice(m_children.end(), m_children, element);
  Invalidate(true);
}

void UIElement::ChangeZOrderToBeforeElement(element_ptr_t child, element_ptr_t pos) {
  MoveChildNextTo(child.get(), pos.get(), false);
}

void UIElement::ChangeZOrderToAfterElement(element_ptr_t child, element_ptr_t pos) {
  MoveChildNextTo(child.get(), pos.get(), true);
}

// The assertions report the public caller's name, as wxASSERT in it would.
void UIElement::MoveChildNextTo(const UIElement* child, const UIElement* pos, bool after) {
  const auto element = FindChild(child);
  if (!contract_holds(element != m_children.end(),
                      after ? site_t::after_child_absent : site_t::before_child_absent))
    return;
  const auto position = FindChild(pos);
  if (!contract_holds(position != m_children.end(),
                      after ? site_t::after_pos_absent : site_t::before_pos_absent))
    return;
  if (element != position) m_children.splice(after ? std::next(position) : position, m_children, element);
  Invalidate(true);
}

void UIElement::ChangeParent(element_ptr_t new_parent) {
  if (!contract_holds(new_parent.get() != nullptr, site_t::new_parent_null)) return;
  const element_ptr_t self(this);  // the old parent's list may hold the last reference
  if (m_parent != nullptr) m_parent->RemoveChild(self);
  m_parent = new_parent.get();
  new_parent->AddChild(self);
  // Counted with this element already among the children: one more than
  // the largest, its own old value included.
  SetTabOrder(new_parent->GenerateUniqueTabOrder());
  Invalidate(true);
}

void UIElement::ReplaceChild(element_ptr_t old_child, element_ptr_t new_child) {
  if (!contract_holds(old_child && new_child, site_t::replace_child_null)) return;
  const auto element = FindChild(old_child.get());
  if (!contract_holds(element != m_children.end(), site_t::replace_child_absent)) return;
  if (new_child->m_parent != nullptr && new_child->m_parent != this)
    new_child->m_parent->RemoveChild(new_child);
  *element = new_child;
  m_largest_child_tab_order_known = false;
  new_child->m_parent = this;
  old_child->m_parent = nullptr;
  old_child->m_has_layout_rect = false;
  Invalidate(true);
  ChildRemoved(self_of(this), old_child);
  ChildAdded(self_of(this), new_child);
}

void UIElement::Destroy() {
  const element_ptr_t self(this);  // unlinking may drop the last reference
  m_destroyed = true;
  DestroyTooltip();
  if (m_timer_running) KillTimer();
  DestroyChildren();
  if (m_parent != nullptr) {
    m_parent->RemoveChild(self);
    m_parent = nullptr;
  }
}

void UIElement::DestroyChildren() {
  const std::vector<element_ptr_t> children(m_children.begin(), m_children.end());
  for (const element_ptr_t& child : children) child.get()->Destroy();
  Invalidate(true);
}

UIElement* UIElement::GetRootElement() const {
  const UIElement* element = this;
  while (element->m_parent != nullptr) element = element->m_parent;
  return const_cast<UIElement*>(element);
}

wxWindow* UIElement::GetHolder() const {
  if (m_parent != nullptr) return GetRootElement()->GetHolder();
  if (!contract_holds(!RequestHolderWindow.empty(), site_t::element_holder_unanswered))
    return nullptr;
  wxWindow* window = nullptr;
  RequestHolderWindow(&window);
  return window;
}

// --- geometry -----------------------------------------------------------------

wxRect UIElement::GetRect() const {
  if (m_parent != nullptr)
    return m_parent->layout().GetChildRect(m_parent->GetRect(), self_of(this));
  wxRect rect(0, 0, 0, 0);
  if (contract_holds(!RequestClientRect.empty(), site_t::element_rect_unanswered))
    RequestClientRect(rect);
  return rect;
}

void UIElement::SetMargin(const margin_t& margin) { m_margin = margin; }

void UIElement::SetPositionFlags(int flags) {
  m_position_flags = flags;
  Invalidate(true);
}

void UIElement::RefreshLayoutIfDirty() const {
  const UIElement* root = GetRootElement();
  if (!contract_holds(root != nullptr, site_t::element_root_null)) return;
  if (root->m_layout_dirty && HasLayoutWork()) layout().Invalidate();
}

bool UIElement::HitTest(const wxPoint& point) const {
  RefreshLayoutIfDirty();
  return GetRect().Contains(point);
}

element_ptr_t UIElement::GetElementFromPoint(const wxPoint& point) {
  RefreshLayoutIfDirty();
  if (!GetRect().Contains(point)) return element_ptr_t();
  for (element_ptr_t& child : m_children)
    if (child->m_visible && child->GetRect().Contains(point))
      return child->GetElementFromPoint(point);
  return self_of(this);
}

// --- mouse --------------------------------------------------------------------

void UIElement::ProcessMouse(const wxMouseEvent& event) {
  RefreshLayoutIfDirty();
  bool propagate = true;
  const wxPoint position = event.GetPosition();
  if (event.Moving() || event.Dragging()) {
    OnMouseMove(event, propagate);
  } else if (event.LeftIsDown() || event.RightIsDown()) {
    OnMouseDown(event, propagate);
    m_pressed = true;
  } else if (event.ButtonUp()) {
    OnMouseUp(event, propagate);
    // A release outside gives no click and keeps the press.
    if (m_pressed && GetRect().Contains(position)) {
      OnMouseClick(event, propagate);
      m_pressed = false;
    }
  }
  if (!propagate || m_children.empty()) return;
  // Every visible child under the pointer gets the event, not only the top
  // one; handlers may change the list meanwhile.
  const std::vector<element_ptr_t> children(m_children.begin(), m_children.end());
  for (const element_ptr_t& child : children)
    if (child->m_visible && child->GetRect().Contains(position)) child.get()->ProcessMouse(event);
}

void UIElement::OnMouseEnter(const wxMouseEvent&) {
  if (wxCustomTooltip* tooltip = GetExistingTooltip()) GetRootElement()->RequestSetTooltip(tooltip);
  MouseEntered(self_of(this));
}

void UIElement::OnMouseLeave(const wxMouseEvent&) {
  if (GetExistingTooltip() != nullptr) GetRootElement()->RequestClearTooltip();
  MouseLeft(self_of(this));
}

void UIElement::OnMouseMove(const wxMouseEvent&, bool&) {}
void UIElement::OnMouseDown(const wxMouseEvent&, bool&) {}
void UIElement::OnMouseUp(const wxMouseEvent&, bool&) {}

void UIElement::OnMouseClick(const wxMouseEvent&, bool&) {
  if (AcceptsFocus()) SetFocus(true);
}

// --- painting -----------------------------------------------------------------

void UIElement::OnDraw(wxDC&, const wxRect&) {}

void UIElement::SetCurrentDC(wxDC* dc) {
  m_current_dc = dc;
  for (element_ptr_t& child : m_children) child->SetCurrentDC(dc);
}

void UIElement::ProcessDraw(wxDC& dc, const wxRect& rect, bool force_layout) {
  SetCurrentDC(&dc);
  // A root is laid out even as a leaf, as its host asks for its rectangle.
  const bool lay_out = HasLayoutWork() || m_parent == nullptr;
  if (m_parent == nullptr && m_layout_dirty) {
    layout().Invalidate();
    m_layout_dirty = false;
    force_layout = true;
  } else if (force_layout && lay_out) {
    layout().Invalidate();
  }
  const wxRect inner = inner_rect(rect, m_margin);
  dc.SetClippingRegion(inner);
  OnDraw(dc, inner);
  dc.DestroyClippingRegion();
  // The head of the list, which wins hit-tests, is painted first. A leaf
  // wholly outside the context is skipped: long lists in a small window
  // paint only what shows. Empty leaves still run (a text squeezed to
  // nothing reports its truncation from its drawing).
  const wxRect drawable(wxPoint(0, 0), dc.GetSize());
  for (element_ptr_t& child : m_children) {
    if (!child->m_visible) continue;
    const wxRect child_rect = layout().GetChildRect(rect, child);
    const bool off_context = !child_rect.IsEmpty() && !child_rect.Intersects(drawable);
    if (child->m_children.empty() && off_context) continue;
    child->ProcessDraw(dc, child_rect, force_layout);
  }
  SetCurrentDC(nullptr);
}

// --- invalidation -------------------------------------------------------------

void UIElement::InvalidateLayout() { GetRootElement()->m_layout_dirty = true; }

void UIElement::Invalidate(bool layout_too) {
  if (m_updates_frozen) return;
  if (layout_too) InvalidateLayout();
  if (m_destroyed) return;
  // The whole holder is repainted, never a part of it.
  if (wxWindow* holder = GetHolder()) holder->Refresh(false, nullptr);
}

void UIElement::FreezeUpdates(bool freeze) { m_updates_frozen = freeze; }

void UIElement::ProcessSizeChange(const wxSizeEvent&) { InvalidateLayout(); }

// --- visibility ---------------------------------------------------------------

void UIElement::SetVisible(bool visible) {
  if (m_visible == visible) return;
  m_visible = visible;
  ProcessVisibilityChanged();
  Invalidate(true);
}

bool UIElement::IsVisibleOnScreen() const {
  const UIElement* element = this;
  while (element->m_visible && element->m_parent != nullptr) element = element->m_parent;
  if (!element->m_visible) return false;
  if (element->RequestHolderWindow.empty()) return true;
  wxWindow* holder = element->GetHolder();
  return holder == nullptr || holder->IsShownOnScreen();
}

void UIElement::ProcessVisibilityChanged() {
  OnVisibilityChanged(IsVisibleOnScreen());
  for (element_ptr_t& child : m_children) child->ProcessVisibilityChanged();
  VisibilityChanged(self_of(this));
}

void UIElement::OnVisibilityChanged(bool) {}

// --- focus --------------------------------------------------------------------

bool UIElement::SetFocus(bool focused) {
  if (!AcceptsFocus()) return false;
  m_focused = focused;
  if (focused) {
    if (wxWindow* holder = GetHolder()) holder->SetFocus();
    GetRootElement()->RequestChangeFocus(self_of(this));
  }
  Invalidate(true);
  return true;
}

bool UIElement::ProcessChangeFocus(bool focused) {
  if (SetFocus(focused)) return true;
  for (element_ptr_t& child : m_children) {
    if (!child->m_visible && !child->AcceptsFocus()) continue;
    if (child->ProcessChangeFocus(focused)) return true;
  }
  return false;
}

int UIElement::GenerateUniqueTabOrder() const {
  if (m_children.empty()) return 0;
  if (!m_largest_child_tab_order_known) {
    int largest = INT_MIN;
    for (const element_ptr_t& child : m_children) largest = std::max(largest, child->m_tab_order);
    m_largest_child_tab_order = largest;
    m_largest_child_tab_order_known = true;
  }
  return m_largest_child_tab_order + 1;
}

void UIElement::SetTabOrder(int order) {
  const int old_order = m_tab_order;
  m_tab_order = order;
  if (m_parent != nullptr) m_parent->ChildTabOrderChanged(old_order, order);
}

void UIElement::ChildTabOrderChanged(int old_order, int new_order) {
  if (!m_largest_child_tab_order_known) return;
  if (new_order >= m_largest_child_tab_order)
    m_largest_child_tab_order = new_order;
  else if (old_order == m_largest_child_tab_order)
    m_largest_child_tab_order_known = false;
}

element_ptr_t UIElement::MoveFocusForward(element_ptr_t current) {
  return FindNextFocusedElement<std::greater<int>>(current);
}

element_ptr_t UIElement::MoveFocusBack(element_ptr_t current) {
  return FindNextFocusedElement<std::less<int>>(current);
}

// A depth-first walk in tab order from `current` (or from the top when
// nothing is focused). No wrap-around: past the last element the answer is
// null and the host passes the focus on to the next window.
template <class Compare>
element_ptr_t UIElement::FindNextFocusedElement(element_ptr_t current) {
  const Compare comes_after;
  // Entering an element from above: every child comes after the reference.
  const int entry_reference = std::is_same<Compare, std::greater<int>>::value ? -1 : INT_MAX;
  UIElement* climbed_from = current.get();
  UIElement* element = current ? current->m_parent : this;
  while (element != nullptr) {
    const bool leave = !element->m_visible ||
                       (element->m_children.empty() && !element->AcceptsFocus());
    UIElement* next = nullptr;
    if (!leave) {
      const int reference = climbed_from != nullptr ? climbed_from->m_tab_order : entry_reference;
      for (const element_ptr_t& child : element->m_children) {
        if (!child->m_visible || !comes_after(child->m_tab_order, reference)) continue;
        // The first in list order wins among equal tab orders.
        if (next == nullptr || comes_after(next->m_tab_order, child->m_tab_order)) next = child.get();
      }
    }
    if (next == nullptr) {
      climbed_from = element;
      element = element->m_parent;
      continue;
    }
    if (next->AcceptsFocus() && next->m_visible && next->SetFocus(true)) return next;
    climbed_from = nullptr;  // search the children of `next` from the top
    element = next;
  }
  return element_ptr_t();
}

// --- timers and capture -------------------------------------------------------

void UIElement::SetTimer(int milliseconds) {
  UIElement* root = GetRootElement();
  if (!contract_holds(!root->RequestSetTimer.empty(), site_t::set_timer_unanswered)) return;
  m_timer_running = true;
  root->RequestSetTimer(self_of(this), milliseconds);
}

void UIElement::KillTimer() {
  UIElement* root = GetRootElement();
  if (contract_holds(!root->RequestKillTimer.empty(), site_t::kill_timer_unanswered))
    root->RequestKillTimer(self_of(this));
  m_timer_running = false;
}

void UIElement::ProcessTimer() { OnTimer(); }

void UIElement::OnTimer() {}

void UIElement::CaptureMouse() {
  UIElement* root = GetRootElement();
  if (contract_holds(!root->RequestCaptureMouse.empty(), site_t::capture_mouse_unanswered))
    root->RequestCaptureMouse(self_of(this));
}

void UIElement::ReleaseMouse() {
  UIElement* root = GetRootElement();
  if (contract_holds(!root->RequestReleaseMouse.empty(), site_t::release_mouse_unanswered))
    root->RequestReleaseMouse();
}

// --- style --------------------------------------------------------------------

void UIElement::SetUiStyle(talvar2::intrusive_pointer_t<ui_style_t> style) {
  StyledBase::SetUiStyle(style);
}

void UIElement::SetStyleRecursively(talvar2::intrusive_pointer_t<ui_style_t> style) {
  SetUiStyle(style);
  for (element_ptr_t& child : m_children) child->SetStyleRecursively(style);
}

void UIElement::on_style_updated() { InvalidateColors(); }

void UIElement::InvalidateColors() {}

// A styled element keeps its style's colours.
void UIElement::ProcessSysColorChanged() {
  if (PeekUiStyle() == nullptr) InvalidateColors();
  for (element_ptr_t& child : m_children) child->ProcessSysColorChanged();
}

void UIElement::OnKeyPress(wxKeyEvent&) {}

// --- bindings -----------------------------------------------------------------

UIElement::extras_t& UIElement::Extras() {
  if (!m_extras) m_extras = std::make_unique<extras_t>();
  return *m_extras;
}

unsigned long UIElement::GenerateUniqueBindingSlotId() const {
  if (!m_extras || m_extras->bindings.empty()) return 0;
  return m_extras->bindings.rbegin()->first + 1;
}

unsigned long UIElement::AddBinding(const boost::any& value) {
  const unsigned long slot = GenerateUniqueBindingSlotId();
  Extras().bindings.emplace(slot, value);
  return slot;
}

void UIElement::RemoveBinding(unsigned long slot) {
  if (m_extras) m_extras->bindings.erase(slot);
}

// --- test identifiers -----------------------------------------------------------

void UIElement::SetTestID(const std::string& id) {
  if (id.empty() && !m_extras) return;
  Extras().test_id = id;
}

const std::string& UIElement::GetTestID() const {
  static const std::string none;
  return m_extras ? m_extras->test_id : none;
}

}  // namespace elements
}  // namespace orvix1
