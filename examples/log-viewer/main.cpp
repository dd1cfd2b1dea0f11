// log-viewer: a small application on an installed orvix1. Files listed on the
// left open as closable pages on the right; their lines are counted on a
// worker, with progress and cancel in the status strip; View switches
// between the shipped light and dark themes; the open files, tab order and
// splitter are kept in the user's settings for the next start.
//
//   log-viewer [--themes DIR] [FILE...]   DIR holds light.xml and dark.xml;
//                                         by default the installed package's
//   log-viewer --smoke                    a scripted run on generated files;
//                                         0 when all went well

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include <wx/log.h>
#include <wx/wx.h>

#include <orvix1/host_session.h>
#include <orvix1/tasks/Scheduler.h>
#include <orvix1/wx_xml_config.h>

#include "smoke_run.h"
#include "viewer_frame.h"

namespace {

int g_assertions = 0;

void count_assertion(const wxString& file, int line, const wxString&, const wxString& condition,
                     const wxString& message) {
  ++g_assertions;
  std::fprintf(stderr, "%s:%d: assertion \"%s\" failed: %s\n", file.utf8_str().data(), line,
               condition.utf8_str().data(), message.utf8_str().data());
}

struct arguments_t {
  bool smoke = false;
  std::string themes_dir = LOG_VIEWER_THEMES_DIR;
  std::vector<std::string> files;
};

bool parse(int argc, char** argv, arguments_t& arguments) {
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--smoke") == 0) {
      arguments.smoke = true;
    } else if (std::strcmp(argv[i], "--themes") == 0 && i + 1 < argc) {
      arguments.themes_dir = argv[++i];
    } else if (argv[i][0] == '-') {
      std::fprintf(stderr, "usage: log-viewer [--themes DIR] [--smoke] [FILE...]\n");
      return false;
    } else {
      arguments.files.push_back(argv[i]);
    }
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  arguments_t arguments;
  if (!parse(argc, argv, arguments)) return 2;
  // The smoke run keeps its files and settings in a folder of its own.
  smoke_folder_t smoke_folder;
  if (arguments.smoke && !smoke_folder.make()) return 1;

  wxSetAssertHandler(count_assertion);  // the default handler opens a dialog
  int status = 0;
  {
    // wxWidgets, the library and the live palette, until the end of the block.
    orvix1::host_session_t session(argc, argv);
    if (!session.ok()) {
      std::fprintf(stderr, "log-viewer: wxWidgets did not start (no display?)\n");
      return 2;
    }
    delete wxLog::SetActiveTarget(new wxLogStderr);
    {
      auto scheduler = orvix1::tasks::Scheduler::Get(new orvix1::tasks::ISchedulerStatusCallback);
      viewer_options_t options{arguments.themes_dir, orvix1::user_config_path("orvix1-log-viewer")};
      auto* frame = new viewer_frame_t(scheduler, options);
      frame->Show();
      if (arguments.smoke) {
        status = run_smoke(*frame, smoke_folder);
      } else {
        frame->restore_layout();
        for (const std::string& file : arguments.files) frame->open_file(file);
        wxTheApp->OnRun();  // until the frame is closed
      }
    }
    orvix1::tasks::Scheduler::Release();
  }
  if (arguments.smoke && status == 0 && g_assertions != 0) {
    std::printf("log-viewer: FAILED: %d assertions\n", g_assertions);
    status = 1;
  }
  if (arguments.smoke && status == 0) std::printf("log-viewer: ok\n");
  return status;
}
