// Any bytes as a resource archive: adding it must succeed or fail with a
// warning, and everything asked of an added archive must give a value or an
// invalid result, never crash or assert.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include <wx/filesys.h>
#include <wx/fs_arc.h>

#include "fuzz_environment.h"
#include "orvix1/image_loader.h"
#include "orvix1/resource_loader.h"

namespace {

// wx caches the directory of every archive it opened by location; each input
// reuses one path, so the cache is emptied between inputs.
wxArchiveFSHandler* g_archives = nullptr;

// wx keeps its handlers in a protected list; this finds the archive handler
// that the library registered.
struct handler_list_t : wxFileSystem {
  static wxArchiveFSHandler* archive_handler() {
    for (auto node = m_Handlers.GetFirst(); node != nullptr; node = node->GetNext())
      if (auto* handler = dynamic_cast<wxArchiveFSHandler*>(node->GetData())) return handler;
    return nullptr;
  }
};

// The names the seed archives hold, so that mutations of them are read.
const char* const k_files[] = {"resources.xrc", "icons/logo.png", "spin.gif", "missing.png"};
const char* const k_images[] = {"logo", "icons/logo.png", "icons/logo.png/..", "missing.png"};
const char* const k_animations[] = {"spin", "spin.gif"};

void read_everything(const orvix1::resource_loader_t& resources) {
  const orvix1::image_loader_t images(resources);
  std::vector<unsigned char> bytes;
  for (const char* name : k_files) resources.read_file(name, bytes);
  for (const char* name : k_images) {
    images.load_image(name);
    images.load_bitmap(name);
    images.load_icon(name);
  }
  for (const char* name : k_animations) images.load_animation(name);
  resources.load_object("clBg", "wxColour");
  resources.load_object("fnBig", "wxFont");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  orvix1_fuzz::start_environment(argc, argv);
  g_archives = handler_list_t::archive_handler();
  if (g_archives == nullptr) std::abort();  // the library registers one
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  orvix1::resource_loader_t resources;
  if (resources.add_archive(orvix1_fuzz::write_input("archive.zip", data, size)))
    read_everything(resources);
  g_archives->Cleanup();
  return 0;
}
