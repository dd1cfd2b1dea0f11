#ifndef ORVIX1_TESTS_FUZZ_FUZZ_ENVIRONMENT_H
#define ORVIX1_TESTS_FUZZ_FUZZ_ENVIRONMENT_H

// What every fuzz target shares: wxWidgets started once as a host would
// (needs a display: scripts/fuzz runs the targets under Xvfb), and a file
// in a private folder that each input is written to, because the readers
// under test take paths.

#include <cstddef>
#include <cstdint>
#include <string>

namespace orvix1_fuzz {

// Starts wxWidgets and the library. A wx assertion or a GLib critical is a
// finding: it prints its text and aborts, so that libFuzzer keeps the input. The library's log
// lines are computed but not printed (they would drown the fuzzer's output).
void start_environment(int* argc, char*** argv);

// Writes `size` bytes to a file named `name` in this process's own folder and
// returns its path. The folder goes when the process ends.
std::string write_input(const std::string& name, const std::uint8_t* data, std::size_t size);

}  // namespace orvix1_fuzz

#endif
