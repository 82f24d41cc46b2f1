#include "command.h"

#include <iostream>

#include "quorvex/quorvex.h"

namespace qvtool {

std::vector<CommandFactory>& CommandTable() {
  static std::vector<CommandFactory> table;
  return table;
}

bool OpenProfile(const GlobalOptions& options, bool change) {
  char path[QV_PATH_SIZE] = "";
  snprintf(path, sizeof path, "%s", options.profile.c_str());
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
  if (!OpenMasterProfile(path, &flags, options.log.c_str())) {
    PrintError("cannot open the profile" +
               (options.profile.empty() ? std::string() : " " + options.profile));
    return false;
  }
  return true;
}

void PrintError(const std::string& text) {
  std::cerr << "quorvex: " << text << "\n";
}

}  // namespace qvtool
