#include "orvix1/elements/bindings.h"

#include "core/contract_sites.h"

namespace orvix1 {
namespace elements {
namespace bindings {
namespace detail {

unsigned long keep_with(const element_ptr_t& element, const boost::any& binding) {
  if (!contract_holds(element.get() != nullptr, contract::site_t::binding_element_null))
    return no_binding;
  return element.get()->AddBinding(binding);
}

}  // namespace detail

namespace {

// Binds one of the element's own signals.
template <class Signal, class Handler>
unsigned long bind_own(const element_ptr_t& element, Signal UIElement::*signal, Handler handler) {
  if (!element) return detail::keep_with(element, boost::any());
  return bind_signal(element, element.get()->*signal, std::move(handler));
}

}  // namespace

void unbind(const element_ptr_t& element, unsigned long slot) {
  if (!contract_holds(element.get() != nullptr, contract::site_t::unbind_element_null)) return;
  element.get()->RemoveBinding(slot);
}

unsigned long on_mouse_entered(const element_ptr_t& element,
                               std::function<void(element_ptr_t)> handler) {
  return bind_own(element, &UIElement::MouseEntered, std::move(handler));
}

unsigned long on_mouse_left(const element_ptr_t& element,
                            std::function<void(element_ptr_t)> handler) {
  return bind_own(element, &UIElement::MouseLeft, std::move(handler));
}

unsigned long on_visibility_changed(const element_ptr_t& element,
                                    std::function<void(element_ptr_t)> handler) {
  return bind_own(element, &UIElement::VisibilityChanged, std::move(handler));
}

unsigned long on_child_added(const element_ptr_t& element,
                             std::function<void(element_ptr_t, element_ptr_t)> handler) {
  return bind_own(element, &UIElement::ChildAdded, std::move(handler));
}

unsigned long on_child_removed(const element_ptr_t& element,
                               std::function<void(element_ptr_t, element_ptr_t)> handler) {
  return bind_own(element, &UIElement::ChildRemoved, std::move(handler));
}

}  // namespace bindings
}  // namespace elements
}  // namespace orvix1
