// Any bytes as the palette's settings file: load must answer true or false
// and keep the palette usable, never crash or assert.

#include <cstddef>
#include <cstdint>

#include "fuzz_environment.h"
#include "orvix1/ui_settings.h"

namespace {

talvar2::intrusive_pointer_t<orvix1::ui_settings_configure_t>* g_settings = nullptr;

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  orvix1_fuzz::start_environment(argc, argv);
  g_settings = new talvar2::intrusive_pointer_t<orvix1::ui_settings_configure_t>(
      orvix1::ui_settings_configure_t::get());
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  orvix1::ui_settings_configure_t& settings = **g_settings;
  settings.load(orvix1_fuzz::write_input("settings.xml", data, size));
  // What was taken must be readable: colours and fonts are copied out as
  // widgets copy them.
  for (int i = 0; i < orvix1::fonts_count; ++i)
    (void)settings.get_font(static_cast<orvix1::default_fonts_t>(i)).GetNativeFontInfoDesc();
  return 0;
}
