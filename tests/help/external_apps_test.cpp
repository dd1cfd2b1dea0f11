#include "orvix1/external_apps.h"

#include <cerrno>
#include <cstring>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "support/fake_programs.h"
#include "support/log_capture.h"

namespace {

using orvix1_test::fake_programs_t;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

// The launch returns while the program runs on as no child of the host, and
// leaves no zombie.
TEST(ExternalApps, LaunchReturnsWhileTheProgramRunsOnAsNoChildAndFailedExecsReportTheirErrno) {
  fake_programs_t fakes;
  fakes.add_lingering_viewer("viewer");
  ASSERT_TRUE(orvix1::run_app_with_params("viewer", {"two words", "", "-x"}));
  const orvix1_test::started_program_t start = fakes.wait_for_start("viewer");
  EXPECT_THAT(start.arguments, ElementsAre("two words", "", "-x"));
  long parent = 0;
  char state = 0;
  ASSERT_TRUE(orvix1_test::read_process_state(start.pid, parent, state)) << "the launch waited for the end";
  EXPECT_NE(parent, static_cast<long>(::getpid()));
  EXPECT_THAT(orvix1_test::zombie_children(), IsEmpty());
  fakes.release("viewer");
  EXPECT_TRUE(fakes.wait_for_end("viewer"));

  // Programs that cannot be executed fail with the errno of the child's exec,
  // reported through the pipe.
  fakes.add_non_executable("text-file");
  orvix1_test::log_capture_t capture("orvix.help");
  EXPECT_FALSE(orvix1::run_app_with_params("orvix-no-such-program", {"file"}));
  EXPECT_FALSE(orvix1::run_app_with_params(fakes.program("text-file"), {}));
  EXPECT_FALSE(orvix1::run_app_with_params("", {}));
  std::string warnings;
  for (const auto& entry : capture.entries()) warnings += entry.message + "\n";
  EXPECT_THAT(warnings, HasSubstr("'orvix-no-such-program': " + std::string(std::strerror(ENOENT))));
  EXPECT_THAT(warnings, HasSubstr("text-file': " + std::string(std::strerror(EACCES))));
  EXPECT_THAT(orvix1_test::zombie_children(), IsEmpty());
}

// A path starts without a lookup. (Bare names located with whereis, absent
// ones not started: Help.MailcapViewerGetsTheFileAsItsOnlyArgument.)
TEST(ExternalApps, APathStartsWithoutALookupAndGetsTheFileAlone) {
  fake_programs_t fakes;
  fakes.add_whereis();
  fakes.add_viewer("by-path");
  const talvar2::path_t file(fakes.folder().file("manual with spaces.pdf"));
  EXPECT_TRUE(orvix1::run_app_with_file(fakes.program("by-path"), file));
  EXPECT_THAT(fakes.wait_for_start("by-path").arguments, ElementsAre(file.as_string()));
  EXPECT_THAT(fakes.whereis_calls(), IsEmpty());
}

TEST(ExternalApps, TheSystemWhereisFindsProgramsOnThePath) {
  fake_programs_t fakes("/usr/bin:/bin");
  fakes.add_viewer("orvix-test-viewer");
  ASSERT_TRUE(orvix1::run_app_with_file("orvix-test-viewer", talvar2::path_t("/tmp/x.pdf")));
  EXPECT_THAT(fakes.wait_for_start("orvix-test-viewer").arguments, ElementsAre("/tmp/x.pdf"));
}

}  // namespace
