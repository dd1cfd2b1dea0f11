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
using orvix1_test::started_program_t;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

// Whether the started program still runs; it must not be our child (the
// launch reparents it), and the launch must leave no zombie behind.
bool expect_detached(const started_program_t& start) {
  long parent = 0;
  char state = 0;
  const bool running = orvix1_test::read_process_state(start.pid, parent, state);
  if (running) {
    EXPECT_NE(parent, static_cast<long>(::getpid())) << "the program is a child of the host";
  }
  EXPECT_THAT(orvix1_test::zombie_children(), IsEmpty());
  return running;
}

TEST(ExternalApps, LaunchReturnsWhileTheProgramRunsOnAsNoChildOfTheHost) {
  fake_programs_t fakes;
  fakes.add_lingering_viewer("viewer");

  ASSERT_TRUE(orvix1::run_app_with_params("viewer", {"two words", "", "-x"}));

  const started_program_t start = fakes.wait_for_start("viewer");
  ASSERT_TRUE(start.started);
  EXPECT_THAT(start.arguments, ElementsAre("two words", "", "-x"));
  // It waits for its release, so it must still be running now.
  EXPECT_TRUE(expect_detached(start)) << "the launch waited for the program to end";
  fakes.release("viewer");
  EXPECT_TRUE(fakes.wait_for_end("viewer"));
}

TEST(ExternalApps, ProgramsThatCannotBeExecutedReportTheirErrno) {
  fake_programs_t fakes;
  fakes.add_non_executable("text-file");
  orvix1_test::log_capture_t capture("orvix.help");

  EXPECT_FALSE(orvix1::run_app_with_params("orvix-no-such-program", {"file"}));
  EXPECT_FALSE(orvix1::run_app_with_params(fakes.program("text-file"), {}));
  EXPECT_FALSE(orvix1::run_app_with_params("", {}));

  // The reasons came from the children's failed execs.
  std::string warnings;
  for (const auto& entry : capture.entries()) warnings += entry.message + "\n";
  EXPECT_THAT(warnings, HasSubstr("'orvix-no-such-program': " + std::string(std::strerror(ENOENT))));
  EXPECT_THAT(warnings, HasSubstr("text-file': " + std::string(std::strerror(EACCES))));
  EXPECT_THAT(orvix1_test::zombie_children(), IsEmpty());
}

TEST(ExternalApps, BareNamesAreLocatedWithWhereisAndGetTheFileAlone) {
  fake_programs_t fakes;
  fakes.add_whereis();
  fakes.add_viewer("viewer");
  const talvar2::path_t file(fakes.folder().file("manual with spaces.pdf"));

  ASSERT_TRUE(orvix1::run_app_with_file("viewer", file));
  EXPECT_FALSE(orvix1::run_app_with_file("absent-viewer", file));

  EXPECT_THAT(fakes.whereis_calls(), ElementsAre("viewer", "absent-viewer"));
  const started_program_t start = fakes.wait_for_start("viewer");
  ASSERT_TRUE(start.started);
  EXPECT_THAT(start.arguments, ElementsAre(file.as_string()));
  expect_detached(start);
}

TEST(ExternalApps, ExistingFilesStartWithoutALookup) {
  fake_programs_t fakes;
  fakes.add_whereis();
  fakes.add_viewer("by-path");
  fakes.add_viewer("in-folder");
  const talvar2::path_t file("/tmp/some.pdf");

  EXPECT_TRUE(orvix1::run_app_with_file(fakes.program("by-path"), file));
  // A bare name of a file in the working folder means that file, even though
  // PATH (the fake folder's parent is not on it) would not find it.
  char previous[4096];
  ASSERT_NE(::getcwd(previous, sizeof previous), nullptr);
  ASSERT_EQ(::chdir(fakes.bin().c_str()), 0);
  ::setenv("PATH", fakes.folder().path().c_str(), 1);
  const bool started_in_folder = orvix1::run_app_with_file("in-folder", file);
  ASSERT_EQ(::chdir(previous), 0);

  EXPECT_TRUE(started_in_folder);
  EXPECT_THAT(fakes.whereis_calls(), IsEmpty());
  EXPECT_THAT(fakes.wait_for_start("by-path").arguments, ElementsAre("/tmp/some.pdf"));
  EXPECT_THAT(fakes.wait_for_start("in-folder").arguments, ElementsAre("/tmp/some.pdf"));
}

TEST(ExternalApps, TheSystemWhereisFindsProgramsOnThePath) {
  fake_programs_t fakes("/usr/bin:/bin");
  fakes.add_viewer("orvix-test-viewer");

  ASSERT_TRUE(orvix1::run_app_with_file("orvix-test-viewer", talvar2::path_t("/tmp/x.pdf")));

  EXPECT_THAT(fakes.wait_for_start("orvix-test-viewer").arguments, ElementsAre("/tmp/x.pdf"));
  EXPECT_THAT(orvix1_test::zombie_children(), IsEmpty());
}

}  // namespace
