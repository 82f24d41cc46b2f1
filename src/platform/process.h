// Running the version-control client.
#ifndef QUORVEX_PLATFORM_PROCESS_H_
#define QUORVEX_PLATFORM_PROCESS_H_

#include <string>

namespace qv {

class File;

// The program that the command word "ss" starts: $QUORVEX_SS_CLIENT when
// set, else the `ss` found on PATH when it is not iproute2's network tool
// (its file is read for the text "iproute2", never run). Empty when there is
// no client. Decided once per process (again only if PATH changes).
std::string VersionControlClient();

// Runs a Windows-style command line: its first word names the program (the
// word "ss" is replaced by VersionControlClient(); when there is none,
// nothing is started and the result is ENOENT), the rest is
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
