// Running the version-control client as a child process.
#include <string>

#include "core/state.h"
#include "platform/file.h"
#include "platform/fs.h"
#include "platform/process.h"
#include "quorvex/report.h"
#include "quorvex/vcs.h"
#include "vcs/vcs_internal.h"

namespace qv {

namespace {

constexpr char kNoClientMessage[] =
    "No version-control client is configured: set QUORVEX_SS_CLIENT to the SourceSafe "
    "command-line client.";

}  // namespace

VcsFileParts SplitVcsPath(const char* path) {
  std::string drive;
  VcsFileParts parts;
  SplitPath(path != nullptr ? path : "", &drive, &parts.directory, &parts.file_name);
  parts.working_directory = drive + parts.directory;
  return parts;
}

bool VcsIsOff() {
  return (State().profile_flags & OPEN_NO_VCS) != 0;
}

bool VcsClientReady() {
  if (!VersionControlClient().empty()) return true;
  // Every operation fails from here on; one message says why, and how to
  // fix it.
  if (!State().vcs_client_missing_reported) {
    State().vcs_client_missing_reported = true;
    ReportError(kNoClientMessage, 0);
  }
  return false;
}

void ReportCommandFailed(const char* command) {
  char message[QV_LINE_SIZE];
  snprintf(message, sizeof message, "Source Safe command \"%s\" failed.", command);
  ReportError(message, 0);
}

int RunFileCommand(const VcsFileParts& parts, const char* command) {
  // The client acts on the current project; a failure to change it shows
  // up as a failure of the command itself.
  VcsSetCurrentProject(parts.directory.c_str());
  return RunCommand(command, parts.working_directory.c_str(), kShowNormal, command, QV_NO_FILE);
}

}  // namespace qv

// The show mode and the window title only matter where the client opens a
// console window; here the child simply inherits the caller's terminal.
extern "C" int RunCommand(const char* commandLine, const char* workingDirectory, int showMode,
                          const char* title, QvFile outputFile) {
  (void)showMode;
  (void)title;
  return qv::RunProcess(commandLine != nullptr ? commandLine : "",
                        workingDirectory != nullptr ? workingDirectory : "",
                        qv::File::FromHandle(outputFile));
}
