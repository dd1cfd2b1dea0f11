#include "orvix1/wx_dll_application.h"

#include <cstdint>

#include <wx/clipbrd.h>
#include <wx/filesys.h>
#include <wx/fs_arc.h>
#include <wx/image.h>
#include <wx/init.h>
#include <wx/xrc/xmlres.h>

#include "orvix1/error_dialog.h"
#include "orvix1/html_help_window.h"
#include "orvix1/native_window.h"
#include "orvix1/xrc_handlers.h"
#include "accessibility/accessible.h"
#include "core/contract_sites.h"
#include "host/library_clients.h"

namespace orvix1 {
namespace {

std::int32_t g_initialization_counter = 0;
void* g_main_window = nullptr;
bool g_handlers_registered = false;
modal_callback_t g_modal_callback = nullptr;

// Whoever starts wxWidgets in this process gets a wxDLLGlobalApp.
const wxAppInitializer g_app_initializer(reinterpret_cast<wxAppInitializerFunction>(wxCreateApp));

void register_handlers() {
  wxInitAllImageHandlers();
  wxXmlResource* resource = wxXmlResource::Get();
  add_i18n_xml_handlers(resource);
  resource->InitAllHandlers();
  resource->AddHandler(new wxImageXmlHandler);
  resource->AddHandler(new wxAnimationXmlHandler);
  resource->AddHandler(new wxColourXmlHandler);
  resource->AddHandler(new wxFontXmlHandler);
  wxFileSystem::AddHandler(new wxArchiveFSHandler);
}

// Keeps copied data available after the library is gone.
void flush_clipboard() {
  if (wxTheApp == nullptr) return;
  wxClipboard* clipboard = wxTheClipboard;
  if (clipboard != nullptr && clipboard->Open()) {
    clipboard->Flush();
    clipboard->Close();
  }
}

void assert_not_over_cleaned() {
  contract_holds(g_initialization_counter > 0, contract::site_t::cleanup_unbalanced);
}

}  // namespace

// The process-wide mouse signal: built at load, destroyed at unload.
talvar2::signal_t<wxMouseEvent*> g_signal;

// The accessible type goes in before any library window exists: GTK keeps
// the accessible object it made first.
bool wxDLLGlobalApp::OnInit() {
  accessibility::install();
  return true;
}

int wxDLLGlobalApp::OnExit() { return wxAppBase::OnExit(); }

wxLayoutDirection wxDLLGlobalApp::GetLayoutDirection() const { return wxLayout_LeftToRight; }

wxAppConsole* wxCreateApp() {
  wxAppConsoleBase::CheckBuildOptions(WX_BUILD_OPTIONS_SIGNATURE, "your program");
  return new wxDLLGlobalApp;
}

wxDLLGlobalApp& wxGetApp() { return *static_cast<wxDLLGlobalApp*>(wxApp::GetInstance()); }

bool initialize_wxwidgets(void* main_window) {
  ++g_initialization_counter;
  g_main_window = main_window;
  accessibility::install();
  if (g_handlers_registered) return true;
  g_handlers_registered = true;
  register_handlers();
  return true;
}

bool detail::release_library_client() {
  if (g_initialization_counter == 1) {
    destroy_error_dlg();
    destroy_html_help_window();
  }
  process_message_loop();
  flush_clipboard();
  assert_not_over_cleaned();
  if (--g_initialization_counter > 0) return false;
  g_initialization_counter = 0;
  g_main_window = nullptr;
  return true;
}

void cleanup_wxwidgets() {
  // A host running a wx main loop ends wxWidgets itself; so does a host
  // that never started it.
  if (detail::release_library_client() && wxTheApp != nullptr &&
      !wxAppConsoleBase::IsMainLoopRunning())
    wxEntryCleanup();
}

void process_message_loop() {
  wxAppConsole* app = wxAppConsole::GetInstance();
  if (app == nullptr) return;
  while (app->ProcessIdle()) {
  }
  while (app->Pending()) app->Dispatch();
  app->ProcessPendingEvents();
  while (app->ProcessIdle()) {
  }
}

talvar2::smart_pointer_t<wxWindow> get_main_window() {
  if (g_main_window == nullptr) return talvar2::smart_pointer_t<wxWindow>();
  return talvar2::smart_pointer_t<wxWindow>(create_dummy_wrapper(g_main_window));
}

mouse_signal_t& get_mouse_signal() { return g_signal; }

void fire_mouse_signal(wxMouseEvent* event) {
  if (event == nullptr || !g_signal.has_connections()) return;
  g_signal(event);
}

void set_modal_callback(modal_callback_t callback) { g_modal_callback = callback; }

modal_callback_t get_modal_callback() { return g_modal_callback; }

}  // namespace orvix1
