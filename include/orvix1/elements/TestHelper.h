#ifndef ORVIX1_ELEMENTS_TESTHELPER_H
#define ORVIX1_ELEMENTS_TESTHELPER_H
/// @file
/// Finds the elements of an adapter's tree by their test identifier
/// (UIElement::SetTestID) and drives them by name, as a user would: the
/// pointer moves to an element, clicks it, keys go to the focused element.
/// The synthesised events go through the adapter, so hit-testing, enter and
/// leave, capture and focus all take their ordinary course.
///
///   TestHelper::pointer_t helper(new TestHelper(adapter));
///   helper->Click("ok");
///   helper->SendKey(WXK_TAB);
///
/// The helper does not own the adapter: it must not outlive it.

#include <string>
#include <vector>

#include <wx/defs.h>
#include <wx/gdicmn.h>

#include "orvix1/elements/UIElement.h"
#include "orvix1/export.h"
#include "talvar2/pointers/intrusive_pointer.h"

namespace orvix1 {
namespace elements {

class ElementAdapter;
/// Finds the elements of a tree by test identifier and drives them as a user would.
class ORVIX1_API TestHelper : public talvar2::intrusive_pointer_impl_t {
 public:
  using pointer_t = talvar2::intrusive_pointer_t<TestHelper>;

  explicit TestHelper(ElementAdapter* adapter);
  ~TestHelper() override;
  TestHelper(const TestHelper&) = delete;
  TestHelper& operator=(const TestHelper&) = delete;

  // --- finding: depth first from the root, parents before their children,
  /// children from the head of their list ---
  element_ptr_t Find(const std::string& test_id) const;
  std::vector<element_ptr_t> FindAll(const std::string& test_id) const;
  /// The same searches in any tree.
  static element_ptr_t FindIn(const element_ptr_t& root, const std::string& test_id);
  static std::vector<element_ptr_t> FindAllIn(const element_ptr_t& root,
                                              const std::string& test_id);

  /// The element's rectangle in the holder's client coordinates, or in screen
  /// coordinates (for a real pointer); empty when there is no such element.
  wxRect GetRect(const std::string& test_id) const;
  wxRect GetScreenRect(const std::string& test_id) const;

  // --- driving; false when the element is missing or not visible on
  /// screen, or the adapter has no holder ---
  /// Moves the pointer to the element's centre (a motion event).
  bool MoveTo(const std::string& test_id);
  /// Moves the pointer there, then presses and releases `button` at the
  /// element's centre.
  bool Click(const std::string& test_id, wxMouseButton button = wxMOUSE_BTN_LEFT);
  /// A key press as the holder receives it: the focused element gets it, Tab
  /// moves the focus. `modifiers` is a wxKeyModifier set (wxMOD_SHIFT...).
  bool SendKey(int key_code, int modifiers = wxMOD_NONE);

 private:
  /// The visible element's centre, or false.
  bool FindTarget(const std::string& test_id, wxPoint& centre) const;
  /// False when the adapter has no holder (any more).
  bool SendMouse(wxEventType type, const wxPoint& position, wxMouseButton button,
                 bool button_down);

  ElementAdapter* m_adapter;
};

}  // namespace elements
}  // namespace orvix1

#endif
