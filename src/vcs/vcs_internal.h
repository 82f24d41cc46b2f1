// Shared pieces of the version-control operations.
#ifndef QUORVEX_VCS_VCS_INTERNAL_H_
#define QUORVEX_VCS_VCS_INTERNAL_H_

#include <string>

namespace qv {

// The client's working directory and the name it is given for a file.
struct VcsFileParts {
  std::string working_directory;  // drive and directory of the file
  std::string directory;          // the directory alone
  std::string file_name;          // name with extension
};

VcsFileParts SplitVcsPath(const char* path);

// True when the open profile was opened with version control switched off.
bool VcsIsOff();

// Show modes of RunCommand.
constexpr int kShowMinimised = 1;
constexpr int kShowNormal = 0;

// True when there is a version-control client to run (see
// VersionControlClient). Otherwise false, and the first time it says so the
// missing client is reported.
bool VcsClientReady();

// Reports "Source Safe command \"%s\" failed." for a command line.
void ReportCommandFailed(const char* command);

// Runs a file command (remove, check-in, add) in the file's folder after
// making the file's project current; returns the client's exit code.
int RunFileCommand(const VcsFileParts& parts, const char* command);

}  // namespace qv

#endif  // QUORVEX_VCS_VCS_INTERNAL_H_
