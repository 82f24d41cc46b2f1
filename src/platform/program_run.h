// Running a program with its standard streams on files, for the tests that
// drive the command-line host as a user's script would.
#ifndef QUORVEX_PLATFORM_PROGRAM_RUN_H_
#define QUORVEX_PLATFORM_PROGRAM_RUN_H_

#include <string>
#include <vector>

namespace qv {

// Starts args[0] (a path, or a name searched on PATH) with the arguments
// args[1..] passed exactly as given, in directory (empty: the current
// one), standard input read from input_path and standard output and error
// written to output_path and error_path; waits for it. Returns its exit
// code (128 plus the signal for one killed by a signal), 127 when it could
// not be started.
int RunProgramWithFiles(const std::vector<std::string>& args, const std::string& directory,
                        const std::string& input_path, const std::string& output_path,
                        const std::string& error_path);

}  // namespace qv

#endif  // QUORVEX_PLATFORM_PROGRAM_RUN_H_
