#include "command.h"

#include <filesystem>
#include <iostream>

#include "open_diagnosis.h"
#include "platform/registry.h"
#include "profile/last_profile.h"
#include "quorvex/quorvex.h"

namespace qvtool {
namespace {

// The registry keeps the path for the next run without -p, which may start
// in another folder: a relative path would name something else there.
std::string AbsolutePath(const std::string& path) {
  if (path.empty() || path[0] == '/' || path[0] == '\\') return path;
  std::error_code error;
  std::filesystem::path absolute = std::filesystem::absolute(path, error);
  if (error) return path;
  std::string text = absolute.lexically_normal().string();
  while (text.size() > 1 && text.back() == '/') text.pop_back();
  return text;
}

std::string StoredProfilePath() {
  return qv::RegistryGetString(qv::LastProfileKey(), "Path").value_or("");
}

void ExplainFailure(const GlobalOptions& options, const std::string& given, bool locking) {
  std::string path = given;
  bool remembered = false;
  if (path.empty()) {
    path = StoredProfilePath();
    remembered = !path.empty();
  }
  if (path.empty()) {
    PrintError("no profile given, and none was opened before");
    PrintError(
        "give one with -p PATH (a Master Profile folder, or an Orvik database with --orvik);");
    PrintError("later commands without -p open it again");
    return;
  }
  for (const std::string& line : WhyOpenFailed(path, options.orvik, locking)) PrintError(line);
  if (remembered) PrintError("(the profile opened last; give another with -p PATH)");
}

}  // namespace

std::vector<CommandFactory>& CommandTable() {
  static std::vector<CommandFactory> table;
  return table;
}

bool OpenProfile(const GlobalOptions& options, bool change) {
  std::string given = AbsolutePath(options.profile);
  char path[QV_PATH_SIZE] = "";
  snprintf(path, sizeof path, "%s", given.c_str());
  uint32_t flags = options.orvik ? OPEN_ORVIK : OPEN_MASTER;
  if (change || options.lock) flags |= OPEN_LOCK;
  if (options.vcs_project.empty()) flags |= OPEN_NO_VCS;
  if (options.read_active_only) flags |= OPEN_READ_ACTIVE_ONLY;
  if (options.silent) flags |= OPEN_SILENT;
  if (!options.vcs_project.empty()) {
    // The engine takes the project of a path from the tool's last-profile
    // entry; record the one asked for under the path it goes with.
    WriteLastProfile(path, flags, options.vcs_project.c_str());
  }
  bool locking = (flags & OPEN_LOCK) != 0;
  if (!OpenMasterProfile(path, &flags, options.log.c_str())) {
    ExplainFailure(options, given, locking);
    return false;
  }
  return true;
}

void PrintError(const std::string& text) {
  std::cerr << "quorvex: " << text << "\n";
}

}  // namespace qvtool
