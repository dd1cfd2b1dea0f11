// Start-up and clean-up counting. The test environment holds one
// initialize_wxwidgets() reference of its own for the whole process.

#include <gtest/gtest.h>
#include <wx/filesys.h>
#include <wx/fs_arc.h>
#include <wx/xrc/xmlres.h>

#include "orvix1/error_dialog.h"
#include "orvix1/wx_dll_application.h"
#include "support/host_window.h"
#include "support/wx_test_environment.h"

namespace {

using orvix1_test::host_window_t;
using orvix1_test::run_in_main_loop;
using orvix1_test::take_asserts;

// Reads the registered file-system handlers.
struct file_system_probe_t : wxFileSystem {
  static int archive_handlers() {
    int count = 0;
    for (wxObject* handler : m_Handlers)
      if (dynamic_cast<wxArchiveFSHandler*>(handler) != nullptr) ++count;
    return count;
  }
};

// Two initialisations and one clean-up keep the latest handle. Inside a main
// loop the last clean-up leaves wx to the loop but drops the main window and
// closes the error dialog (earlier clean-ups close nothing); one clean-up too
// many asserts, and initialising again registers no handler twice.
TEST(EntryLifecycle, TwoInitialisationsOneCleanupAndOverCleanupInsideAMainLoop) {
  EXPECT_EQ(file_system_probe_t::archive_handlers(), 1);
  host_window_t first(200, 100);
  host_window_t second(320, 160);
  EXPECT_TRUE(orvix1::initialize_wxwidgets(first.widget()));
  EXPECT_TRUE(orvix1::initialize_wxwidgets(second.widget()));
  orvix1::cleanup_wxwidgets();
  ASSERT_NE(wxTheApp, nullptr);
  {
    const talvar2::smart_pointer_t<wxWindow> main_window = orvix1::get_main_window();
    ASSERT_TRUE(main_window);
    EXPECT_EQ(main_window->GetSize(), wxSize(320, 160));
    EXPECT_NE(orvix1::get_main_window().get(), main_window.get());  // a fresh wrapper each time
  }
  EXPECT_TRUE(second.still_alive());
  orvix1::initialize_wxwidgets(nullptr);  // a null handle: no main window
  EXPECT_FALSE(orvix1::get_main_window());
  orvix1::initialize_wxwidgets(second.widget());
  orvix1::show_error_dlg("disk full");
  for (int i = 0; i < 3; ++i) orvix1::cleanup_wxwidgets();  // back to the environment's reference
  EXPECT_TRUE(take_asserts().empty());
  EXPECT_NE(orvix1::get_error_dlg(), nullptr);
  EXPECT_TRUE(orvix1::get_main_window());
  bool app_alive = false, main_window_dropped = false, error_dialog_closed = false;
  run_in_main_loop([&] {
    orvix1::cleanup_wxwidgets();  // the environment's reference: now at 0
    app_alive = wxTheApp != nullptr;
    main_window_dropped = !orvix1::get_main_window();
    error_dialog_closed = orvix1::get_error_dlg() == nullptr;
    orvix1::cleanup_wxwidgets();  // one too many
  });
  EXPECT_TRUE(app_alive);
  EXPECT_TRUE(main_window_dropped);
  EXPECT_TRUE(error_dialog_closed);
  const auto asserts = take_asserts();
  ASSERT_EQ(asserts.size(), 1u);
  EXPECT_EQ(asserts[0].condition, "g_initialization_counter > 0");
  EXPECT_EQ(asserts[0].message, "cleanup_wxwidgets() was called more times than initialize_wxwidgets()");
  EXPECT_EQ(asserts[0].line, 158);
  EXPECT_NE(asserts[0].file.find("wx_dll_application"), std::string::npos);

  EXPECT_TRUE(orvix1::initialize_wxwidgets(nullptr));  // the environment's reference again
  EXPECT_EQ(file_system_probe_t::archive_handlers(), 1);
  EXPECT_NE(wxImage::FindHandler(wxBITMAP_TYPE_GIF), nullptr);
}

}  // namespace
