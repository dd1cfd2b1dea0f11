#ifndef ORVIX1_EXTERNAL_APPS_H
#define ORVIX1_EXTERNAL_APPS_H
/// @file
/// Starting external programs (document viewers, the browser) that run on
/// independently of the host.
///
/// A started program is detached: it runs in a grandchild of the host
/// process, the short-lived child in between is reaped at once, and the
/// program itself belongs to the system's reaper (init or a subreaper) when
/// it ends. The host never collects a zombie from us and its own SIGCHLD
/// disposition is left alone.

#include <string>
#include <vector>

#include "orvix1/export.h"
#include "talvar2/path.h"

namespace orvix1 {

/// Starts `program` with `file` as its one argument. A `program` that names
/// an existing file is started as it is; any other name is located with the
/// system's "whereis" and its first match is started. Returns false (and
/// logs why) when nothing was found or the program could not be executed.
ORVIX1_API bool run_app_with_file(const std::string& program, const talvar2::path_t& file);

/// Starts `program` (searched along PATH when it has no slash) with
/// `arguments`, and returns whether it could be executed: the child reports
/// a failed exec through a close-on-exec pipe, so the answer is known as soon
/// as the exec has happened, without waiting for the program to end. A
/// program that starts and later exits with an error counts as started.
ORVIX1_API bool run_app_with_params(const std::string& program,
                                    const std::vector<std::string>& arguments);

/// For use in a freshly forked child only: replaces the process with
/// `program` (searched along PATH) and `arguments`. Only if that fails, the
/// exec's errno is written to `error_fd` as 4 bytes (unless `error_fd` is
/// negative), and the child ends at once with status 127 without running the
/// host's exit handlers.
[[noreturn]] ORVIX1_API void run_app_in_child_process(const std::string& program,
                                                      const std::vector<std::string>& arguments,
                                                      int error_fd);

}  // namespace orvix1

#endif
