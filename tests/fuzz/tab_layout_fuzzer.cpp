// Any bytes as a saved layout of a tab workspace, as a host reads back a
// file it wrote at its last run (and that may have been damaged since).
// Restoring must keep every page with its key, never crash, assert or leak;
// and the layout the pane then saves must restore without a complaint and
// save again unchanged.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <wx/frame.h>

#include "fuzz_environment.h"
#include "orvix1/ui_settings.h"
#include "orvix1/wxAdvancedSplitter.h"
#include "orvix1/wxTabPane.h"

namespace {

// Keyed pages in both strips, one page without a key, and a splitter around.
const char* const k_keys[] = {"a", "b", "c", "d", "e%", "f g"};
const int k_primary = 4;
talvar2::intrusive_pointer_t<orvix1::ui_settings_configure_t>* g_palette = nullptr;
orvix1::wxTabPane* g_pane = nullptr;
wxWindow* g_pages[7] = {};

void build_workspace() {
  auto* frame = new wxFrame(nullptr, wxID_ANY, "workspace", wxPoint(0, 0), wxSize(600, 300));
  auto* splitter = new orvix1::wxAdvancedSplitter(frame, wxID_ANY, wxPoint(0, 0), wxSize(600, 300));
  splitter->EnableAnimation(false);
  g_pane = new orvix1::wxTabPane(splitter, wxID_ANY);
  splitter->SplitVertically(new wxWindow(splitter, wxID_ANY), g_pane);
  for (int k = 0; k < 7; ++k) {
    g_pages[k] = new wxWindow(g_pane->GetPageArea(), wxID_ANY);
    g_pane->AddPage(k < k_primary ? 1 : 2, g_pages[k], wxString::Format("page %d", k), true);
    if (k < 6) g_pane->SetPageKey(g_pages[k], k_keys[k]);
  }
  frame->Show();
}

void fail(const char* what, const std::string& layout) {
  std::fprintf(stderr, "%s\nlayout:\n%s\n", what, layout.c_str());
  std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  orvix1_fuzz::start_environment(argc, argv);
  g_palette = new talvar2::intrusive_pointer_t<orvix1::ui_settings_configure_t>(
      orvix1::ui_settings_configure_t::get());
  build_workspace();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input(reinterpret_cast<const char*>(data), size);
  g_pane->RestoreLayout(input);
  if (g_pane->GetPageCount() != 7) fail("a tab came or went", input);
  for (int k = 0; k < 7; ++k)
    if (g_pane->FindPage(g_pages[k]) < 0 || g_pane->GetPageKey(g_pages[k]) != (k < 6 ? k_keys[k] : ""))
      fail("a page was lost or lost its key", input);
  const std::string saved = g_pane->SaveLayout();
  if (!g_pane->RestoreLayout(saved)) fail("the pane's own layout was not taken whole", saved);
  if (g_pane->SaveLayout() != saved) fail("the pane's own layout did not come back", saved);
  return 0;
}
