#include "talvar2/debug/assertion.h"

#include <cstdio>
#include <mutex>
#include <utility>

namespace talvar2 {
namespace debug {
namespace {

std::mutex& handler_mutex() {
  static std::mutex mutex;
  return mutex;
}

assertion_handler_t& installed_handler() {
  static assertion_handler_t handler;
  return handler;
}

}  // namespace

void print_assertion(const char* expression, const char* file, int line, const char* function) {
  std::fprintf(stderr, "%s:%d: %s: assertion \"%s\" failed\n", file, line, function, expression);
}

void assertion_failed(const char* expression, const char* file, int line, const char* function) {
  assertion_handler_t handler;
  {
    std::lock_guard<std::mutex> lock(handler_mutex());
    handler = installed_handler();
  }
  // The handler runs unlocked: it may assert again or install another handler.
  if (handler)
    handler(expression, file, line, function);
  else
    print_assertion(expression, file, line, function);
}

assertion_handler_t set_assertion_handler(assertion_handler_t handler) {
  std::lock_guard<std::mutex> lock(handler_mutex());
  return std::exchange(installed_handler(), std::move(handler));
}

}  // namespace debug
}  // namespace talvar2
