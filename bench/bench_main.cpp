// orvix-bench: the library's hot paths beside the libraries a user would
// pick instead. Needs a display (scripts/bench runs it under Xvfb).

#include <benchmark/benchmark.h>

#include <clocale>
#include <cstdio>
#include <string>

#include <wx/app.h>
#include <wx/init.h>
#include <wx/log.h>

#include "scheduler_bench.h"
#include "summary_reporter.h"

namespace {

// A failed assertion must not open a dialog in the middle of a measurement.
void print_assertion(const wxString& file, int line, const wxString& function,
                     const wxString& condition, const wxString& message) {
  std::fprintf(stderr, "assertion %s in %s (%s:%d) %s\n", condition.utf8_str().data(),
               function.utf8_str().data(), file.utf8_str().data(), line, message.utf8_str().data());
}

bool has_flag(int argc, char** argv, const std::string& flag) {
  for (int i = 1; i < argc; ++i)
    if (std::string(argv[i]).rfind(flag, 0) == 0) return true;
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  const bool command_line_rules =
      has_flag(argc, argv, "--benchmark_repetitions") || has_flag(argc, argv, "--benchmark_min_time");
  orvix1_bench::register_scheduler_throughput(command_line_rules);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  wxSetAssertHandler(print_assertion);
  if (!wxEntryStart(argc, argv)) {
    std::fprintf(stderr, "cannot start wxWidgets: is there a display?\n");
    return 2;
  }
  std::setlocale(LC_ALL, "C.UTF-8");
  delete wxLog::SetActiveTarget(new wxLogStderr);
  wxTheApp->CallOnInit();
  orvix1_bench::summary_reporter_t reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  wxEntryCleanup();
  return 0;
}
