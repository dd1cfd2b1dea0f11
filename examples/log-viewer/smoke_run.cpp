#include "smoke_run.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <vector>

#include <wx/weakref.h>

#include <orvix1/testing.h>
#include <orvix1/ui_settings.h>

#include "viewer_frame.h"

using namespace std::chrono_literals;
using orvix1::wxTabPane;

namespace {

struct generated_log_t {
  const char* name;
  int full_lines;      // each ending in a newline
  const char* ending;  // a last line without one, or ""
  std::uint64_t expected_lines;
};

// Big enough for many progress reports, and logs with odd endings.
const generated_log_t k_logs[] = {
    {"app.log", 100000, "", 100000},
    {"short.log", 2, "three", 3},
    {"empty.log", 0, "", 0},
};

bool write_log(const std::string& path, int full_lines, const char* ending) {
  std::ofstream out(path, std::ios::binary);
  for (int i = 0; i < full_lines; ++i) out << "2026-11-24 12:00:00 INFO request " << i << " served\n";
  out << ending;
  return static_cast<bool>(out);
}

std::vector<std::string> page_keys(const wxTabPane& tabs) {
  std::vector<std::string> keys;
  for (int i = 0; i < tabs.GetPageCount(); ++i) keys.push_back(tabs.GetPageKey(tabs.GetPage(i)));
  return keys;
}

bool counted(const viewer_frame_t& frame, const std::string& path) {
  const line_count_t* count = frame.count_of(path);
  return count != nullptr && count->finished;
}

int failed(const std::string& what) {
  std::printf("log-viewer: FAILED: %s\n", what.c_str());
  return 1;
}

int check_counts(viewer_frame_t& frame, const smoke_folder_t& folder) {
  for (const generated_log_t& log : k_logs)
    if (!write_log(folder.file(log.name), log.full_lines, log.ending) || !frame.open_file(folder.file(log.name)))
      return failed(std::string("could not open ") + log.name);
  const auto all_counted = [&] {
    for (const generated_log_t& log : k_logs)
      if (!counted(frame, folder.file(log.name))) return false;
    return true;
  };
  if (!orvix1::testing::pump_until(all_counted, 20s)) return failed("the counts did not end within 20 s");
  for (const generated_log_t& log : k_logs) {
    const line_count_t& count = *frame.count_of(folder.file(log.name));
    if (!count.complete || count.lines != log.expected_lines)
      return failed(std::string(log.name) + " counted " + std::to_string(count.lines) + " lines");
  }
  const line_count_t& big = *frame.count_of(folder.file("app.log"));
  const std::uint64_t size = std::filesystem::file_size(folder.file("app.log"));
  if (big.progress_reports < 1 || big.done != size || big.total != size)
    return failed("app.log's progress did not reach its size");
  if (frame.status_text().find("| 0 lines |") == std::string::npos)  // empty.log, opened last, is selected
    return failed("the status strip shows '" + frame.status_text() + "'");
  return 0;
}

int check_cancel(viewer_frame_t& frame, const smoke_folder_t& folder) {
  const std::string path = folder.file("cancel.log");
  if (!write_log(path, 100000, "") || !frame.open_file(path)) return failed("could not open cancel.log");
  frame.cancel_counting();
  if (!orvix1::testing::pump_until([&] { return counted(frame, path); }, 20s))
    return failed("the canceled count did not end");
  if (frame.count_of(path)->complete || !frame.count_of(path)->canceled)
    return failed("the canceled count completed");
  if (frame.status_text().find("Counting canceled") == std::string::npos)
    return failed("the status strip shows '" + frame.status_text() + "' after cancel");
  return 0;
}

int check_themes(viewer_frame_t& frame) {
  const auto strip_colour = [] { return orvix1::ui_settings_t::get()->get_color(orvix1::color_strip_bg); };
  const wxColour before = strip_colour();
  if (!frame.switch_theme("dark")) return failed("the dark theme was not applied");
  const wxColour dark = strip_colour();
  if (dark == before || frame.status_text().find("Theme: dark") == std::string::npos)
    return failed("the dark theme changed nothing");
  if (!frame.switch_theme("light") || strip_colour() == dark) return failed("the light theme changed nothing");
  return 0;
}

int check_layout(viewer_frame_t& frame) {
  wxTabPane& tabs = *frame.tabs();
  tabs.MoveTab(0, wxTabPane::primary_panel, tabs.GetPageCount() - 1);
  tabs.SetSelection(1);
  frame.splitter()->SetRelativeSashPosition(0.3f);
  const std::vector<std::string> saved = page_keys(tabs);
  if (!frame.save_layout()) return failed("the layout was not saved");

  tabs.MoveTab(0, wxTabPane::primary_panel, tabs.GetPageCount() - 1);
  tabs.SetSelection(2);
  frame.splitter()->SetRelativeSashPosition(0.6f);
  if (!frame.restore_layout()) return failed("the layout was not restored");
  if (page_keys(tabs) != saved || tabs.GetSelection() != 1)
    return failed("the restored tabs are not the saved ones");
  if (std::fabs(frame.splitter()->GetRelativeSashPosition() - 0.3f) > 0.01f)
    return failed("the restored sash is at " + std::to_string(frame.splitter()->GetRelativeSashPosition()));
  return 0;
}

int check_close(viewer_frame_t& frame, const smoke_folder_t& folder) {
  wxTabPane& tabs = *frame.tabs();
  const std::string path = folder.file("short.log");
  const int pages = tabs.GetPageCount();
  int index = -1;
  for (int i = 0; i < pages; ++i)
    if (tabs.GetPageKey(tabs.GetPage(i)) == path) index = i;
  if (index < 0 || !tabs.RequestClose(index)) return failed("short.log's tab did not close");
  orvix1::testing::pump_until([] { return false; }, 50ms);  // the page is destroyed on a later turn
  if (tabs.GetPageCount() != pages - 1 || frame.count_of(path) != nullptr)
    return failed("short.log's page is still there");
  return 0;
}

}  // namespace

smoke_folder_t::~smoke_folder_t() {
  std::error_code ignored;
  if (!m_path.empty()) std::filesystem::remove_all(m_path, ignored);
}

bool smoke_folder_t::make() {
  std::string pattern = (std::filesystem::temp_directory_path() / "log-viewer-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) {
    std::perror("log-viewer: no scratch folder");
    return false;
  }
  m_path = pattern;
  setenv("XDG_CONFIG_HOME", file("config").c_str(), 1);  // user_config_path reads it
  return true;
}

int run_smoke(viewer_frame_t& frame, const smoke_folder_t& folder) {
  orvix1::testing::pump_until([&] { return frame.IsShownOnScreen(); }, 5s);
  int status = check_counts(frame, folder);
  if (status == 0) status = check_cancel(frame, folder);
  if (status == 0) status = check_themes(frame);
  if (status == 0) status = check_layout(frame);
  if (status == 0) status = check_close(frame, folder);
  if (status == 0 && !std::filesystem::exists(folder.file("config/orvix1-log-viewer/settings.xml")))
    status = failed("no settings file under XDG_CONFIG_HOME");

  wxWeakRef<wxWindow> window(&frame);
  frame.Close(true);
  if (!orvix1::testing::pump_until([&] { return window.get() == nullptr; }, 10s) && status == 0)
    status = failed("the frame did not close");
  return status;
}
