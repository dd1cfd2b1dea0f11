#include "orvix1/elements/TestHelper.h"

#include <wx/event.h>
#include <wx/window.h>

#include "orvix1/elements/ElementAdapter.h"

namespace orvix1 {
namespace elements {
namespace {

// Pre-order: the element, then each child's subtree from the head of the list.
// `first_only` stops at the first match.
bool collect(const element_ptr_t& element, const std::string& test_id, bool first_only,
             std::vector<element_ptr_t>& found) {
  if (element->GetTestID() == test_id) {
    found.push_back(element);
    if (first_only) return true;
  }
  for (const element_ptr_t& child : element->GetChildren())
    if (collect(child, test_id, first_only, found)) return true;
  return false;
}

struct button_events_t {
  wxEventType down;
  wxEventType up;
};

button_events_t events_of(wxMouseButton button) {
  switch (button) {
    case wxMOUSE_BTN_MIDDLE:
      return {wxEVT_MIDDLE_DOWN, wxEVT_MIDDLE_UP};
    case wxMOUSE_BTN_RIGHT:
      return {wxEVT_RIGHT_DOWN, wxEVT_RIGHT_UP};
    case wxMOUSE_BTN_AUX1:
      return {wxEVT_AUX1_DOWN, wxEVT_AUX1_UP};
    case wxMOUSE_BTN_AUX2:
      return {wxEVT_AUX2_DOWN, wxEVT_AUX2_UP};
    default:
      return {wxEVT_LEFT_DOWN, wxEVT_LEFT_UP};
  }
}

void set_button_state(wxMouseEvent& event, wxMouseButton button, bool down) {
  switch (button) {
    case wxMOUSE_BTN_MIDDLE:
      event.SetMiddleDown(down);
      break;
    case wxMOUSE_BTN_RIGHT:
      event.SetRightDown(down);
      break;
    case wxMOUSE_BTN_AUX1:
      event.SetAux1Down(down);
      break;
    case wxMOUSE_BTN_AUX2:
      event.SetAux2Down(down);
      break;
    default:
      event.SetLeftDown(down);
      break;
  }
}

// The rectangle of an element comes from its parent's layout; bring the
// layouts from the root down to the parent up to date, as hit-testing does.
void refresh_layouts_above(const UIElement& element) {
  std::vector<UIElement*> ancestors;
  for (UIElement* parent = element.GetParent(); parent != nullptr; parent = parent->GetParent())
    ancestors.push_back(parent);
  for (auto it = ancestors.rbegin(); it != ancestors.rend(); ++it) (*it)->HitTest(wxPoint());
}

}  // namespace

TestHelper::TestHelper(ElementAdapter* adapter) : m_adapter(adapter) {}

TestHelper::~TestHelper() = default;

element_ptr_t TestHelper::FindIn(const element_ptr_t& root, const std::string& test_id) {
  std::vector<element_ptr_t> found;
  if (root) collect(root, test_id, true, found);
  return found.empty() ? element_ptr_t() : found.front();
}

std::vector<element_ptr_t> TestHelper::FindAllIn(const element_ptr_t& root,
                                                 const std::string& test_id) {
  std::vector<element_ptr_t> found;
  if (root) collect(root, test_id, false, found);
  return found;
}

element_ptr_t TestHelper::Find(const std::string& test_id) const {
  return FindIn(m_adapter->GetRootElement(), test_id);
}

std::vector<element_ptr_t> TestHelper::FindAll(const std::string& test_id) const {
  return FindAllIn(m_adapter->GetRootElement(), test_id);
}

wxRect TestHelper::GetRect(const std::string& test_id) const {
  const element_ptr_t element = Find(test_id);
  if (!element || m_adapter->GetHolder() == nullptr) return wxRect();
  refresh_layouts_above(*element);
  return element->GetRect();
}

wxRect TestHelper::GetScreenRect(const std::string& test_id) const {
  wxRect rect = GetRect(test_id);
  if (rect.IsEmpty()) return wxRect();
  rect.SetPosition(m_adapter->GetHolder()->ClientToScreen(rect.GetPosition()));
  return rect;
}

bool TestHelper::FindTarget(const std::string& test_id, wxPoint& centre) const {
  const element_ptr_t element = Find(test_id);
  if (!element || m_adapter->GetHolder() == nullptr || !element->IsVisibleOnScreen()) return false;
  refresh_layouts_above(*element);
  const wxRect rect = element->GetRect();
  if (rect.IsEmpty()) return false;
  centre = wxPoint(rect.x + rect.width / 2, rect.y + rect.height / 2);
  return true;
}

bool TestHelper::SendMouse(wxEventType type, const wxPoint& position, wxMouseButton button,
                           bool button_down) {
  // An earlier event of the same gesture may have closed the holder.
  wxWindow* holder = m_adapter->GetHolder();
  if (holder == nullptr) return false;
  wxMouseEvent event(type);
  event.SetPosition(position);
  if (button != wxMOUSE_BTN_NONE) set_button_state(event, button, button_down);
  event.SetEventObject(holder);
  event.SetId(holder->GetId());
  m_adapter->OnMouse(event);
  return true;
}

bool TestHelper::MoveTo(const std::string& test_id) {
  wxPoint centre;
  return FindTarget(test_id, centre) && SendMouse(wxEVT_MOTION, centre, wxMOUSE_BTN_NONE, false);
}

bool TestHelper::Click(const std::string& test_id, wxMouseButton button) {
  wxPoint centre;
  if (!FindTarget(test_id, centre)) return false;
  const button_events_t events = events_of(button);
  return SendMouse(wxEVT_MOTION, centre, wxMOUSE_BTN_NONE, false) &&
         SendMouse(events.down, centre, button, true) &&
         SendMouse(events.up, centre, button, false);
}

bool TestHelper::SendKey(int key_code, int modifiers) {
  wxWindow* holder = m_adapter->GetHolder();
  if (holder == nullptr) return false;
  wxKeyEvent event(wxEVT_KEY_DOWN);
  event.m_keyCode = key_code;
  if (key_code >= WXK_SPACE && key_code < WXK_DELETE) event.m_uniChar = key_code;
  event.SetShiftDown((modifiers & wxMOD_SHIFT) != 0);
  event.SetControlDown((modifiers & wxMOD_CONTROL) != 0);
  event.SetAltDown((modifiers & wxMOD_ALT) != 0);
  event.SetMetaDown((modifiers & wxMOD_META) != 0);
  event.SetEventObject(holder);
  event.SetId(holder->GetId());
  m_adapter->OnKeyPress(event);
  return true;
}

}  // namespace elements
}  // namespace orvix1
