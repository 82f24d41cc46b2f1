// Running the version-control client.
#ifndef QUORVEX_PLATFORM_PROCESS_H_
#define QUORVEX_PLATFORM_PROCESS_H_

#include <string>

namespace qv {

class File;

// Runs a Windows-style command line: its first word names the program (the
// word "ss" is replaced by $QUORVEX_SS_CLIENT when that is set), the rest is
// split into arguments by the Windows rules (double quotes group and are
// removed). The child gets the whole command line in the environment
// variable QUORVEX_COMMAND_LINE, runs in working_directory (empty: the
// current one) with standard output into stdout_file (nullptr: inherited),
// and is waited for. The child writes from stdout_file's position on, and
// the position ends up just after what it wrote. Returns its exit code (128
// plus the signal for a child killed by one), or the errno that kept it from
// starting (ENOENT for a program that does not exist).
int RunProcess(const std::string& command_line, const std::string& working_directory,
               File* stdout_file);

}  // namespace qv

#endif  // QUORVEX_PLATFORM_PROCESS_H_
