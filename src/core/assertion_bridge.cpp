// Sends the companion library's debug assertions down wxWidgets' assertion
// path once wxWidgets runs, so that a host (or a test) sees every failed
// check of the process in one handler. Before that, and when the host has
// switched wx assertions off, they are printed and execution goes on.

#include <wx/app.h>
#include <wx/debug.h>

#include "talvar2/debug/assertion.h"

namespace orvix1 {
namespace {

void report_through_wx(const char* expression, const char* file, int line, const char* function) {
  if (wxTheApp != nullptr && wxTheAssertHandler != nullptr)
    wxOnAssert(file, line, function, expression);
  else
    talvar2::debug::print_assertion(expression, file, line, function);
}

struct assertion_bridge_t {
  assertion_bridge_t() { talvar2::debug::set_assertion_handler(report_through_wx); }
};

const assertion_bridge_t g_assertion_bridge;

}  // namespace
}  // namespace orvix1
