// Any bytes as a mailcap file: every viewer name the parser hands on (to
// the process launcher, in the library) must be one that exec may see. The
// check uses GLib's UTF-8 reader, not the parser's own. Nothing is started.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>

#include <glib.h>

#include "fuzz_environment.h"
#include "help/mailcap.h"

namespace {

[[noreturn]] void fail(const std::string& name, const char* why) {
  std::fprintf(stderr, "viewer name of %zu bytes %s:", name.size(), why);
  for (const char c : name) std::fprintf(stderr, " %02x", static_cast<unsigned char>(c));
  std::fprintf(stderr, "\n");
  std::abort();
}

void check(const std::string& name) {
  using orvix1::detail::k_mailcap_longest_viewer;
  if (name.empty()) fail(name, "is empty");
  if (name.size() > k_mailcap_longest_viewer) fail(name, "is too long");
  if (name.find(' ') != std::string::npos) fail(name, "holds a space");
  const gchar* end = nullptr;
  if (!g_utf8_validate(name.data(), static_cast<gssize>(name.size()), &end))
    fail(name, "is not UTF-8");
  for (const gchar* at = name.data(); at < end; at = g_utf8_next_char(at))
    if (g_unichar_iscntrl(g_utf8_get_char(at))) fail(name, "holds a control character");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  orvix1_fuzz::start_environment(argc, argv);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
  for (const std::string& name : orvix1::detail::mailcap_pdf_viewers(in, "fuzz-mailcap"))
    check(name);
  return 0;
}
