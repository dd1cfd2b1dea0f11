#ifndef ORVIX1_ELEMENTS_BINDINGS_H
#define ORVIX1_ELEMENTS_BINDINGS_H
/// @file
/// Connects signals to lambdas for exactly as long as an element lives.
///
/// talvar2 signals call member functions of subscribers. A binding is a small
/// subscriber that owns a callable; the element keeps it among its bindings
/// (UIElement::AddBinding), so the connection lasts until the element dies or
/// the binding is removed, and never longer:
///
///   bindings::on_mouse_entered(button, [](element_ptr_t e) { e->Invalidate(false); });
///   const unsigned long slot =
///       bindings::bind_signal(label, style->changed(), [label_raw] { label_raw->Invalidate(true); });
///   bindings::unbind(label, slot);  // cut it early
///
/// The callable takes the signal's arguments, or none at all. It must not hold
/// an element_ptr_t to the element it is bound to (the element would keep
/// itself alive): use the signal's argument or a raw pointer. A binding may
/// remove itself from inside its callable.

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

#include <boost/any.hpp>

#include "orvix1/elements/UIElement.h"
#include "orvix1/export.h"
#include "talvar2/functor/signal.h"

namespace orvix1 {
namespace elements {
namespace bindings {

/// The slot of a binding that was not made (no element).
constexpr unsigned long no_binding = ~0ul;

/// A subscriber that calls a callable with the signal's arguments.
template <class... A>
class signal_binding_t : public talvar2::subscriber_base_t {
 public:
  explicit signal_binding_t(std::function<void(A...)> callable)
      : m_callable(std::make_shared<std::function<void(A...)>>(std::move(callable))) {}

  void call(A... args) {
    // Held for the call: the callable may remove this binding.
    const std::shared_ptr<std::function<void(A...)>> callable = m_callable;
    if (*callable) (*callable)(args...);
  }

 private:
  std::shared_ptr<std::function<void(A...)>> m_callable;
};

namespace detail {

/// Stores `binding` on `element`; reports a null element.
ORVIX1_API unsigned long keep_with(const element_ptr_t& element, const boost::any& binding);

/// Adapts a callable that takes the signal's arguments, or none.
template <class... A, class Callable>
std::function<void(A...)> adapt(Callable&& callable,
                                typename std::enable_if<std::is_invocable<Callable&, A...>::value,
                                                        int>::type = 0) {
  return std::function<void(A...)>(std::forward<Callable>(callable));
}
template <class... A, class Callable>
std::function<void(A...)> adapt(
    Callable&& callable,
    typename std::enable_if<!std::is_invocable<Callable&, A...>::value &&
                                std::is_invocable<Callable&>::value,
                            long>::type = 0) {
  return [inner = std::forward<Callable>(callable)](A...) mutable { inner(); };
}

}  // namespace detail

/// Connects `signal` (the element's own or any other object's) to `callable`
/// for as long as `element` lives. Returns the binding's slot on the element.
template <class Callable, class... A>
unsigned long bind_signal(const element_ptr_t& element, talvar2::basic_signal_t<A...>& signal,
                          Callable&& callable) {
  static_assert(std::is_invocable<Callable&, A...>::value || std::is_invocable<Callable&>::value,
                "the callable takes the signal's arguments or none");
  if (!element) return detail::keep_with(element, boost::any());
  auto binding = std::make_shared<signal_binding_t<A...>>(
      detail::adapt<A...>(std::forward<Callable>(callable)));
  signal.connect(binding.get(), &signal_binding_t<A...>::call);
  return detail::keep_with(element, binding);
}

/// Cuts a binding before its element dies.
ORVIX1_API void unbind(const element_ptr_t& element, unsigned long slot);

/// The element's own signals, by name.
ORVIX1_API unsigned long on_mouse_entered(const element_ptr_t& element,
                                          std::function<void(element_ptr_t)> handler);
ORVIX1_API unsigned long on_mouse_left(const element_ptr_t& element,
                                       std::function<void(element_ptr_t)> handler);
ORVIX1_API unsigned long on_visibility_changed(const element_ptr_t& element,
                                               std::function<void(element_ptr_t)> handler);
/// (parent, child)
ORVIX1_API unsigned long on_child_added(const element_ptr_t& element,
                                        std::function<void(element_ptr_t, element_ptr_t)> handler);
ORVIX1_API unsigned long on_child_removed(const element_ptr_t& element,
                                          std::function<void(element_ptr_t, element_ptr_t)> handler);

}  // namespace bindings
}  // namespace elements
}  // namespace orvix1

#endif
