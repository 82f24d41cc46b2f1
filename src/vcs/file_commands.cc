// Removing, checking in and adding profile files.
#include <cstdio>

#include "quorvex/report.h"
#include "quorvex/vcs.h"
#include "vcs/vcs_internal.h"

namespace qv {
namespace {

constexpr int kRefusedExitCode = 100;

}  // namespace
}  // namespace qv

extern "C" int VcsRemove(const char* path) {
  if (qv::VcsIsOff()) return 1;
  if (!qv::VcsClientReady()) return 0;
  qv::VcsFileParts parts = qv::SplitVcsPath(path);
  char command[QV_LINE_SIZE];
  snprintf(command, sizeof command, "ss remove %s", parts.file_name.c_str());
  if (qv::RunFileCommand(parts, command) == 0) return 1;
  qv::ReportCommandFailed(command);
  return 0;
}

extern "C" int VcsCheckIn(const char* path, const char* comment) {
  if (qv::VcsIsOff()) return 1;
  if (!qv::VcsClientReady()) return 0;
  qv::VcsFileParts parts = qv::SplitVcsPath(path);
  char command[QV_LINE_SIZE];
  snprintf(command, sizeof command, "ss checkin %s -c\"%s\"", parts.file_name.c_str(),
           comment != nullptr ? comment : "");
  if (qv::RunFileCommand(parts, command) == 0) return 1;
  qv::ReportCommandFailed(command);
  return 0;
}

// Only the client's refusal counts against an add; any other outcome is
// taken as done.
extern "C" int VcsAdd(const char* path, const char* comment) {
  if (qv::VcsIsOff()) return 1;
  if (!qv::VcsClientReady()) return 0;
  qv::VcsFileParts parts = qv::SplitVcsPath(path);
  char command[QV_LINE_SIZE];
  snprintf(command, sizeof command, "ss add %s -c\"%s\"", parts.file_name.c_str(),
           comment != nullptr ? comment : "");
  if (qv::RunFileCommand(parts, command) != qv::kRefusedExitCode) return 1;
  qv::ReportCommandFailed(command);
  return 0;
}
