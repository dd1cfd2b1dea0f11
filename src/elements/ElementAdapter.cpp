#include "orvix1/elements/ElementAdapter.h"

#include <algorithm>
#include <climits>
#include <tuple>
#include <vector>

#include <wx/dcbuffer.h>

#include "core/contract_sites.h"
#include "elements/element_accessible.h"

namespace orvix1 {
namespace elements {
namespace {

// Every mouse event the holder can receive; all of them go to OnMouse.
// (The event types are wx's own globals: read them when needed, not while
// libraries are still being loaded.)
std::vector<wxEventTypeTag<wxMouseEvent>> mouse_event_types() {
  return {wxEVT_LEFT_DOWN,   wxEVT_LEFT_UP,      wxEVT_LEFT_DCLICK,  wxEVT_MIDDLE_DOWN,
          wxEVT_MIDDLE_UP,   wxEVT_MIDDLE_DCLICK, wxEVT_RIGHT_DOWN, wxEVT_RIGHT_UP,
          wxEVT_RIGHT_DCLICK, wxEVT_AUX1_DOWN,   wxEVT_AUX1_UP,      wxEVT_AUX1_DCLICK,
          wxEVT_AUX2_DOWN,   wxEVT_AUX2_UP,      wxEVT_AUX2_DCLICK,  wxEVT_MOTION,
          wxEVT_ENTER_WINDOW, wxEVT_LEAVE_WINDOW, wxEVT_MOUSEWHEEL};
}

// `element` and its ancestors up to its root, deepest first.
std::vector<element_ptr_t> ancestor_chain(const element_ptr_t& element) {
  std::vector<element_ptr_t> chain;
  for (UIElement* link = element.get(); link != nullptr; link = link->GetParent())
    chain.emplace_back(link);
  return chain;
}

bool chain_contains(const std::vector<element_ptr_t>& chain, const element_ptr_t& element) {
  return std::find(chain.begin(), chain.end(), element) != chain.end();
}

// One of the root's request signals and the adapter's answer to it.
template <class Signal, class Handler>
struct request_route_t {
  Signal UIElement::*signal;
  Handler handler;
};

template <class Signal, class Handler>
constexpr request_route_t<Signal, Handler> route(Signal UIElement::*signal, Handler handler) {
  return {signal, handler};
}

// Everything the root asks of its host. Connecting and disconnecting walk
// this one table, so that a request cannot stay connected to a former root.
constexpr auto request_routes = std::make_tuple(
    route(&UIElement::RequestClientRect, &ElementAdapter::OnRequestClientRect),
    route(&UIElement::RequestHolderWindow, &ElementAdapter::OnRequestHolderWindow),
    route(&UIElement::RequestSetTimer, &ElementAdapter::OnRequestSetTimer),
    route(&UIElement::RequestKillTimer, &ElementAdapter::OnRequestKillTimer),
    route(&UIElement::RequestCaptureMouse, &ElementAdapter::OnRequestCaptureMouse),
    route(&UIElement::RequestReleaseMouse, &ElementAdapter::OnRequestReleaseMouse),
    route(&UIElement::RequestSetTooltip, &ElementAdapter::OnRequestSetTooltip),
    route(&UIElement::RequestClearTooltip, &ElementAdapter::OnRequestClearTooltip),
    route(&UIElement::RequestChangeFocus, &ElementAdapter::OnRequestChangeFocus));

template <class Action>
void for_each_request_route(Action action) {
  std::apply([&action](const auto&... routes) { (action(routes), ...); }, request_routes);
}

}  // namespace

ElementAdapter::ElementAdapter(wxWindow* holder) : m_holder(holder) {
  if (!contract_holds(holder != nullptr, contract::site_t::adapter_holder_null)) return;
  BindHolder();
  m_accessible = std::make_unique<detail::tree_accessible_t>(holder);
}

ElementAdapter::~ElementAdapter() {
  DisconnectRoot();
  DetachHolder(false);
  m_mouse_capture_element.reset();
  m_hovered.reset();
  m_focused.reset();
}

// --- the tree and the holder ----------------------------------------------

void ElementAdapter::SetRootElement(element_ptr_t element) {
  if (element) {
    const int centred = UIElement::pfVCenter | UIElement::pfHCenter;
    contract_holds((element->GetPositionFlags() & centred) == centred,
                   contract::site_t::adapter_root_not_centred);
  }
  if (element == m_root_element) return;
  DisconnectRoot();
  // Hover, capture, focus and timers belonged to the old tree, whose requests
  // no longer reach this adapter: forget them.
  ForgetTreeState();
  m_root_element = element;
  if (m_accessible) m_accessible->set_root(element.get());
  ConnectRoot();
  if (m_holder != nullptr) m_holder->Refresh(false, nullptr);
}

void ElementAdapter::ConnectRoot() {
  if (!m_root_element) return;
  UIElement& root = *m_root_element;
  for_each_request_route(
      [this, &root](const auto& route) { (root.*route.signal).connect(this, route.handler); });
}

void ElementAdapter::DisconnectRoot() {
  if (!m_root_element) return;
  UIElement& root = *m_root_element;
  for_each_request_route(
      [this, &root](const auto& route) { (root.*route.signal).disconnect(this, route.handler); });
}

void ElementAdapter::ForgetTreeState() {
  OnRequestClearTooltip();
  ReleaseHolderCapture();
  m_mouse_capture_element.reset();
  m_hovered.reset();
  m_focused.reset();
  m_timers.clear();
  if (m_timer) m_timer->Stop();
}

void ElementAdapter::BindHolder() {
  m_holder->Bind(wxEVT_PAINT, &ElementAdapter::OnPaint, this);
  m_holder->Bind(wxEVT_SIZE, &ElementAdapter::OnSize, this);
  for (const auto& type : mouse_event_types()) m_holder->Bind(type, &ElementAdapter::OnMouse, this);
  m_holder->Bind(wxEVT_MOUSE_CAPTURE_LOST, &ElementAdapter::OnMouseCaptureLost, this);
  m_holder->Bind(wxEVT_SET_FOCUS, &ElementAdapter::OnSetFocus, this);
  m_holder->Bind(wxEVT_KILL_FOCUS, &ElementAdapter::OnKillFocus, this);
  m_holder->Bind(wxEVT_KEY_DOWN, &ElementAdapter::OnKeyPress, this);
  m_holder->Bind(wxEVT_TIMER, &ElementAdapter::OnTimer, this);
  m_holder->Bind(wxEVT_SHOW, &ElementAdapter::OnWindowShow, this);
  m_holder->Bind(wxEVT_SYS_COLOUR_CHANGED, &ElementAdapter::OnSysColourChanged, this);
  m_holder->Bind(wxEVT_ERASE_BACKGROUND, &ElementAdapter::OnEraseBackground, this);
  m_holder->Bind(wxEVT_DESTROY, &ElementAdapter::OnHolderDestroyed, this);
}

void ElementAdapter::UnbindHolder() {
  m_holder->Unbind(wxEVT_PAINT, &ElementAdapter::OnPaint, this);
  m_holder->Unbind(wxEVT_SIZE, &ElementAdapter::OnSize, this);
  for (const auto& type : mouse_event_types())
    m_holder->Unbind(type, &ElementAdapter::OnMouse, this);
  m_holder->Unbind(wxEVT_MOUSE_CAPTURE_LOST, &ElementAdapter::OnMouseCaptureLost, this);
  m_holder->Unbind(wxEVT_SET_FOCUS, &ElementAdapter::OnSetFocus, this);
  m_holder->Unbind(wxEVT_KILL_FOCUS, &ElementAdapter::OnKillFocus, this);
  m_holder->Unbind(wxEVT_KEY_DOWN, &ElementAdapter::OnKeyPress, this);
  m_holder->Unbind(wxEVT_TIMER, &ElementAdapter::OnTimer, this);
  m_holder->Unbind(wxEVT_SHOW, &ElementAdapter::OnWindowShow, this);
  m_holder->Unbind(wxEVT_SYS_COLOUR_CHANGED, &ElementAdapter::OnSysColourChanged, this);
  m_holder->Unbind(wxEVT_ERASE_BACKGROUND, &ElementAdapter::OnEraseBackground, this);
  m_holder->Unbind(wxEVT_DESTROY, &ElementAdapter::OnHolderDestroyed, this);
}

// A dying holder and a living one are left alike: unbound, without the
// timer and without a capture taken for an element.
void ElementAdapter::DetachHolder(bool /*holder_is_dying*/) {
  if (m_holder == nullptr) return;
  m_accessible.reset();
  OnRequestClearTooltip();
  UnbindHolder();
  // The timer is owned by the holder: it must not fire at a window that is
  // gone. The elements' timers end with it.
  StopTimer();
  m_timers.clear();
  // A dying window still answers HasCapture() while its destroy event runs;
  // leaving the capture set would point wx at a deleted window.
  ReleaseHolderCapture();
  m_mouse_capture_element.reset();
  m_holder = nullptr;
}

void ElementAdapter::HandleEraseBackground(bool handle) { m_handle_erase_background = handle; }

void ElementAdapter::OnHolderDestroyed(wxWindowDestroyEvent& event) {
  event.Skip();
  // Destroy events of the holder's children reach it too.
  if (event.GetEventObject() == m_holder) DetachHolder(true);
}

void ElementAdapter::ReleaseHolderCapture() {
  if (m_holder != nullptr && m_mouse_capture_element && m_holder->HasCapture())
    m_holder->ReleaseMouse();
}

void ElementAdapter::StopTimer() {
  if (!m_timer) return;
  m_timer->Stop();
  m_timer = talvar2::smart_pointer_t<wxTimer>();
}

// --- painting, size and the other window events --------------------------

void ElementAdapter::OnPaint(wxPaintEvent& event) {
  if (!m_root_element || m_holder == nullptr) {
    event.Skip();
    return;
  }
  element_ptr_t root = m_root_element;
  wxAutoBufferedPaintDC dc(m_holder);
  const wxSize client = m_holder->GetClientSize();
  root->ProcessDraw(dc, wxRect(0, 0, client.x, client.y), false);
  if (m_accessible) m_accessible->painted();
}

void ElementAdapter::OnSize(wxSizeEvent& event) {
  if (event.GetEventObject() != m_holder) {
    event.Skip();
    return;
  }
  if (m_root_element) {
    element_ptr_t root = m_root_element;
    root->ProcessSizeChange(event);
  }
  m_holder->Refresh(false, nullptr);
  event.Skip();
}

void ElementAdapter::OnEraseBackground(wxEraseEvent& event) {
  // Consumed, the event erases nothing: the paint handler covers the window.
  if (!m_handle_erase_background) event.Skip();
}

void ElementAdapter::OnWindowShow(wxShowEvent& event) {
  if (m_root_element) {
    element_ptr_t root = m_root_element;
    root->ProcessVisibilityChanged();
  }
  event.Skip();
}

void ElementAdapter::OnSysColourChanged(wxSysColourChangedEvent& event) {
  if (m_root_element) {
    element_ptr_t root = m_root_element;
    root->ProcessSysColorChanged();
    // The elements dropped their cached colours; show the new ones.
    if (m_holder != nullptr) m_holder->Refresh(false, nullptr);
  }
  event.Skip();
}

// --- requests for the window ----------------------------------------------

void ElementAdapter::OnRequestClientRect(wxRect& rect) {
  if (m_holder == nullptr) return;
  const wxSize client = m_holder->GetClientSize();
  rect = wxRect(0, 0, client.x, client.y);
}

void ElementAdapter::OnRequestHolderWindow(wxWindow** window) { *window = m_holder; }

// --- timers ---------------------------------------------------------------

int ElementAdapter::SmallestInterval() const {
  int smallest = INT_MAX;
  for (const auto& entry : m_timers) smallest = std::min(smallest, entry.second.interval);
  return smallest;
}

void ElementAdapter::StartTimer(int milliseconds) {
  if (!m_timer) m_timer = talvar2::smart_pointer_t<wxTimer>(new wxTimer(m_holder, timer_id));
  // wxTimer reads 0 and less as "the previous interval"; the shortest
  // interval that means something is one millisecond.
  const bool timer_started = m_timer->Start(std::max(milliseconds, 1));
  contract_holds(timer_started, contract::site_t::adapter_timer_not_started);
}

void ElementAdapter::OnRequestSetTimer(element_ptr_t sender, int milliseconds) {
  if (m_holder == nullptr) return;
  contract_holds(m_timers.find(sender) == m_timers.end(), contract::site_t::adapter_second_timer);
  m_timers[sender] = timer_info_t{milliseconds, 0};
  StartTimer(SmallestInterval());
}

void ElementAdapter::OnRequestKillTimer(element_ptr_t element) {
  if (m_timers.erase(element) == 0 || !m_timer) return;
  if (m_timers.empty()) {
    m_timer->Stop();
    return;
  }
  const int smallest = SmallestInterval();
  if (smallest != m_timer->GetInterval()) StartTimer(smallest);
}

void ElementAdapter::OnTimer(wxTimerEvent& event) {
  event.Skip();
  if (event.GetId() != timer_id || !m_timer) return;
  const int tick = m_timer->GetInterval();
  std::vector<element_ptr_t> firing;
  for (auto& entry : m_timers) {
    timer_info_t& info = entry.second;
    info.accumulated += tick;
    if (info.accumulated < info.interval) continue;
    info.accumulated = 0;
    firing.push_back(entry.first);
  }
  // The map may change under the elements' hands from here on.
  for (element_ptr_t& element : firing) element->ProcessTimer();
}

// --- mouse ----------------------------------------------------------------

void ElementAdapter::OnMouse(wxMouseEvent& event) {
  if (!event.ButtonDown()) event.Skip();
  m_last_mouse_position = event.GetPosition();
  if (!m_root_element) return;
  if (m_mouse_capture_element) {
    element_ptr_t captured = m_mouse_capture_element;
    captured->ProcessMouse(event);
    return;
  }
  HandleMouseEnterLeave(event);
  element_ptr_t root = m_root_element;
  root->ProcessMouse(event);
}

void ElementAdapter::HandleMouseEnterLeave(wxMouseEvent& event) {
  if (!m_root_element) return;
  element_ptr_t root = m_root_element;
  element_ptr_t entered = root->GetElementFromPoint(event.GetPosition());
  if (entered == m_hovered) return;
  const std::vector<element_ptr_t> old_chain = ancestor_chain(m_hovered);
  const std::vector<element_ptr_t> new_chain = ancestor_chain(entered);
  for (const element_ptr_t& element : old_chain)
    if (!chain_contains(new_chain, element)) element.get()->OnMouseLeave(event);
  for (const element_ptr_t& element : new_chain)
    if (!chain_contains(old_chain, element)) element.get()->OnMouseEnter(event);
  m_hovered = entered;
}

void ElementAdapter::CatchUpHover() {
  // The pointer is where the last mouse event left it: while the capture
  // lasted every motion came here.
  wxMouseEvent event(wxEVT_MOTION);
  event.SetPosition(m_last_mouse_position);
  event.SetEventObject(m_holder);
  HandleMouseEnterLeave(event);
}

void ElementAdapter::OnRequestCaptureMouse(element_ptr_t element) {
  if (m_holder == nullptr) return;
  const bool free =
      contract_holds(!m_mouse_capture_element, contract::site_t::adapter_second_capture);
  m_mouse_capture_element = element;
  // Otherwise the window holds the capture already: wx would stack a second
  // capture, and one release would no longer undo it.
  if (free) m_holder->CaptureMouse();
}

void ElementAdapter::OnRequestReleaseMouse() {
  if (m_holder == nullptr || !m_mouse_capture_element) return;
  ReleaseHolderCapture();
  m_mouse_capture_element.reset();
  CatchUpHover();
}

void ElementAdapter::OnMouseCaptureLost(wxMouseCaptureLostEvent& event) {
  // A capture the host took for itself is the host's business.
  if (!m_mouse_capture_element) {
    event.Skip();
    return;
  }
  // wx has taken the capture away already: nothing to release.
  m_mouse_capture_element.reset();
  CatchUpHover();
}

// --- focus and keyboard ---------------------------------------------------

void ElementAdapter::OnSetFocus(wxFocusEvent& event) {
  event.Skip();
  if (!m_root_element) return;
  element_ptr_t root = m_root_element;
  if (!root->ProcessChangeFocus(true)) PassFocusToNextWindow(1);
}

void ElementAdapter::OnKillFocus(wxFocusEvent& event) {
  event.Skip();
  if (!m_root_element) return;
  element_ptr_t root = m_root_element;
  root->ProcessChangeFocus(false);
  if (m_focused) {
    element_ptr_t focused = m_focused;
    m_focused.reset();
    focused->ProcessChangeFocus(false);
    if (m_accessible) m_accessible->focus_moved(focused.get(), nullptr);
  }
}

void ElementAdapter::OnRequestChangeFocus(element_ptr_t element) {
  element_ptr_t previous = m_focused != element ? m_focused : element_ptr_t();
  if (previous) previous->SetFocus(false);
  m_focused = element;
  if (m_accessible) m_accessible->focus_moved(previous.get(), element.get());
}

// Key-down rather than char events: Tab arrives here before the toolkit
// turns it into navigation, and elements see every key, also those that make
// no character. An element skips a key to leave it to the holder's default
// handling (and so to the char events that follow).
void ElementAdapter::OnKeyPress(wxKeyEvent& event) {
  element_ptr_t previous = m_focused;
  if (previous) {
    previous->OnKeyPress(event);
    if (event.GetSkipped()) return;
  }
  if (event.GetKeyCode() != WXK_TAB) {
    // Nothing here wants the key: the holder's default handling gets it.
    if (!previous) event.Skip();
    return;
  }
  if (!contract_holds(m_root_element.get() != nullptr, contract::site_t::adapter_root_null)) return;
  element_ptr_t root = m_root_element;
  const bool backward = event.ShiftDown();
  element_ptr_t next =
      backward ? root->MoveFocusBack(previous) : root->MoveFocusForward(previous);
  if (!next) {
    PassFocusToNextWindow(backward ? 0 : 1);
    return;
  }
  if (previous && previous != next) previous->SetFocus(false);
  next->SetFocus(true);
}

bool ElementAdapter::PassFocusToNextWindow(int direction) {
  if (m_holder == nullptr || m_holder->GetParent() == nullptr) return false;
  // The holder's parent moves the focus on from the holder to its sibling.
  if (m_passing_focus) return false;  // it came straight back: nowhere else to go
  const int flags = (direction == 1 ? wxNavigationKeyEvent::IsForward
                                    : wxNavigationKeyEvent::IsBackward) |
                    wxNavigationKeyEvent::FromTab;
  m_passing_focus = true;
  const bool passed = m_holder->Navigate(flags);
  m_passing_focus = false;
  return passed;
}

}  // namespace elements
}  // namespace orvix1
