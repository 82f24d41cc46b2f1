// Making a profile file's project current and checking the file out.
#include <cstdio>
#include <string>

#include "core/host.h"
#include "core/state.h"
#include "platform/fs.h"
#include "quorvex/catalogue.h"
#include "quorvex/report.h"
#include "quorvex/vcs.h"
#include "vcs/vcs_internal.h"

namespace qv {
namespace {

constexpr int kRefusedExitCode = 100;         // the client would not check the file out
constexpr int kCheckedOutToUserExitCode = 1;  // status: checked out to the given user
constexpr size_t kUserNameMax = 100;

constexpr char kWritableCopyQuestion[] =
    "There is a writeable copy of file %s locally.  Would you like to proceed with it's "
    "checkout?\nHint:  If you have it checked out, simply answer Yes.";

bool IsWritable(const std::string& path) {
  return FileExists(path) && !IsReadOnly(path);
}

// A refused check-out is fine when the file is already checked out to the
// person at hand: ask the client whose check-out it is.
int CheckOutRefused(const VcsFileParts& parts, const char* path, const char* checkout_command) {
  std::string user = CurrentUserName();
  if (user.size() > kUserNameMax) user.resize(kUserNameMax);
  if (!user.empty()) {
    char command[QV_LINE_SIZE];
    snprintf(command, sizeof command, "ss status %s -u%s", parts.file_name.c_str(), user.c_str());
    int code =
        RunCommand(command, parts.working_directory.c_str(), kShowMinimised, command, QV_NO_FILE);
    if (code == kCheckedOutToUserExitCode) {
      char message[QV_LINE_SIZE];
      snprintf(message, sizeof message, "%s, I have noticed you already have file %s checked out.",
               user.c_str(), parts.file_name.c_str());
      ReportError(message, 0);
      SetFileStatusBits(path, FS_CHECKED_OUT);
      SetReadOnly(path, false);
      return 1;
    }
  }
  ReportCommandFailed(checkout_command);
  return 0;
}

}  // namespace
}  // namespace qv

extern "C" int VcsSetCurrentProject(const char* directory) {
  if (qv::VcsIsOff()) return 1;
  if (!qv::VcsClientReady()) return 0;
  std::string folder = directory != nullptr ? directory : "";
  if (!folder.empty() && qv::IsSeparator(folder.back())) folder.pop_back();
  size_t last = folder.find_last_of("\\/");
  if (last == std::string::npos) return 0;
  // Projects are named with backslashes whatever separator the host path uses.
  std::string component = "\\" + folder.substr(last + 1);
  char command[QV_LINE_SIZE];
  snprintf(command, sizeof command, "ss cp \\%s%s", qv::State().vcs_project, component.c_str());
  if (RunCommand(command, nullptr, qv::kShowMinimised, command, QV_NO_FILE) == 0) return 1;
  qv::ReportCommandFailed(command);
  return 0;
}

extern "C" int VcsCheckOut(const char* path) {
  if (path == nullptr) return 0;
  if (qv::VcsIsOff()) {
    qv::SetReadOnly(path, false);
    return 1;
  }
  if ((GetFileStatus(path) & FS_CHECKED_OUT) != 0) return 1;
  if (!qv::VcsClientReady()) return 0;

  qv::VcsFileParts parts = qv::SplitVcsPath(path);
  VcsSetCurrentProject(parts.directory.c_str());

  // A writable local copy may hold changes that the check-out would
  // overwrite; only the person can tell.
  if (qv::IsWritable(path)) {
    char question[QV_LINE_SIZE];
    snprintf(question, sizeof question, qv::kWritableCopyQuestion, parts.file_name.c_str());
    if (!qv::HostMessageBox(question, "Error from QUORVEX!", QV_BOX_QUESTION)) return 0;
    qv::SetReadOnly(path, true);
  }

  char command[QV_LINE_SIZE];
  snprintf(command, sizeof command, "ss checkout %s", parts.file_name.c_str());
  int code =
      RunCommand(command, parts.working_directory.c_str(), qv::kShowNormal, command, QV_NO_FILE);
  if (code == qv::kRefusedExitCode) return qv::CheckOutRefused(parts, path, command);
  // Every other code, a client that could not be started included, counts
  // as a check-out.
  SetFileStatusBits(path, FS_CHECKED_OUT);
  return 1;
}
