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

TEST(EntryLifecycle, RegistersHandlersOnceAcrossReinitialisation) {
  EXPECT_EQ(file_system_probe_t::archive_handlers(), 1);
  EXPECT_NE(wxImage::FindHandler(wxBITMAP_TYPE_PNG), nullptr);
  EXPECT_NE(wxImage::FindHandler(wxBITMAP_TYPE_GIF), nullptr);

  run_in_main_loop([] {
    orvix1::cleanup_wxwidgets();  // the environment's reference: now at 0
    EXPECT_TRUE(orvix1::initialize_wxwidgets(nullptr));
  });
  EXPECT_EQ(file_system_probe_t::archive_handlers(), 1);
  EXPECT_TRUE(take_asserts().empty());
}

TEST(EntryLifecycle, TwoInitialisationsAndOneCleanupKeepTheLatestHandle) {
  host_window_t first(200, 100);
  host_window_t second(320, 160);
  EXPECT_TRUE(orvix1::initialize_wxwidgets(first.widget()));
  EXPECT_TRUE(orvix1::initialize_wxwidgets(second.widget()));
  orvix1::cleanup_wxwidgets();
  ASSERT_NE(wxTheApp, nullptr);

  talvar2::smart_pointer_t<wxWindow> main_window = orvix1::get_main_window();
  ASSERT_TRUE(main_window);
  EXPECT_EQ(main_window->GetSize(), wxSize(320, 160));
  talvar2::smart_pointer_t<wxWindow> again = orvix1::get_main_window();
  EXPECT_NE(again.get(), main_window.get());
  main_window = talvar2::smart_pointer_t<wxWindow>();
  again = talvar2::smart_pointer_t<wxWindow>();
  EXPECT_TRUE(second.still_alive());

  orvix1::cleanup_wxwidgets();
  EXPECT_NE(wxTheApp, nullptr);
  EXPECT_TRUE(take_asserts().empty());
}

TEST(EntryLifecycle, NullHandleGivesAnEmptyMainWindow) {
  host_window_t host(100, 100);
  orvix1::initialize_wxwidgets(host.widget());
  orvix1::initialize_wxwidgets(nullptr);
  EXPECT_FALSE(orvix1::get_main_window());
  orvix1::cleanup_wxwidgets();
  orvix1::cleanup_wxwidgets();
}

TEST(EntryLifecycle, LastCleanupInsideAMainLoopLeavesWxToTheLoop) {
  host_window_t host(100, 100);
  bool app_alive_after_cleanup = false;
  bool main_window_dropped = false;
  run_in_main_loop([&] {
    orvix1::initialize_wxwidgets(host.widget());
    orvix1::cleanup_wxwidgets();
    orvix1::cleanup_wxwidgets();  // the environment's reference: now at 0
    app_alive_after_cleanup = wxTheApp != nullptr;
    main_window_dropped = !orvix1::get_main_window();
    orvix1::initialize_wxwidgets(nullptr);
  });
  EXPECT_TRUE(app_alive_after_cleanup);
  EXPECT_TRUE(main_window_dropped);
}

TEST(EntryLifecycle, LastCleanupWithoutAMainLoopEndsWx) {
  orvix1::initialize_wxwidgets(nullptr);
  orvix1::cleanup_wxwidgets();
  ASSERT_NE(wxTheApp, nullptr);
  orvix1::cleanup_wxwidgets();  // the environment's reference
  EXPECT_EQ(wxTheApp, nullptr);
  orvix1_test::ensure_wx_running();
  EXPECT_NE(wxTheApp, nullptr);
}

TEST(EntryLifecycle, OverCleanupAssertsAndRecovers) {
  take_asserts();
  run_in_main_loop([] {
    orvix1::cleanup_wxwidgets();  // the environment's reference: now at 0
    orvix1::cleanup_wxwidgets();  // one too many
  });
  const auto asserts = take_asserts();
  ASSERT_EQ(asserts.size(), 1u);
  EXPECT_EQ(asserts[0].condition, "g_initialization_counter > 0");
  EXPECT_EQ(asserts[0].message,
            "cleanup_wxwidgets() was called more times than initialize_wxwidgets()");
  EXPECT_EQ(asserts[0].line, 158);
  EXPECT_NE(asserts[0].file.find("wx_dll_application"), std::string::npos);

  run_in_main_loop([] {
    orvix1::initialize_wxwidgets(nullptr);
    orvix1::cleanup_wxwidgets();
  });
  EXPECT_TRUE(take_asserts().empty());
  orvix1::initialize_wxwidgets(nullptr);  // the environment's reference again
}

TEST(EntryLifecycle, OnlyTheLastCleanupClosesTheErrorDialog) {
  orvix1::initialize_wxwidgets(nullptr);
  orvix1::show_error_dlg("disk full");
  orvix1::cleanup_wxwidgets();
  EXPECT_NE(orvix1::get_error_dlg(), nullptr);

  bool closed = false;
  run_in_main_loop([&] {
    orvix1::cleanup_wxwidgets();  // the environment's reference: the last one
    closed = orvix1::get_error_dlg() == nullptr;
    orvix1::initialize_wxwidgets(nullptr);
  });
  EXPECT_TRUE(closed);
}

}  // namespace
