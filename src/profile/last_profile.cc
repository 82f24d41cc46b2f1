// The last profile per host program: "Path", "Type" and "VCS Project" under
// the host program's own key, so that each tool reopens what it had open.
#include "profile/last_profile.h"

#include <strings.h>

#include <cstdio>

#include "platform/fs.h"
#include "platform/registry.h"
#include "quorvex/profile.h"

namespace qv {

const char kStewardryKey[] = "SOFTWARE\\Vardo\\Lodestar\\Stewardry";

std::string LastProfileKey() {
  return std::string(kStewardryKey) + "\\" + LastPathComponent(HostProgramPath());
}

}  // namespace qv

extern "C" {

int ReadLastProfile(char* path, uint32_t* flags, char* vcsProject) {
  std::string key = qv::LastProfileKey();
  if (!qv::RegistryKeyExists(key)) {
    if (*flags & OPEN_SILENT) return 1;
    if (path[0] != '\0' && (*flags & OPEN_NO_VCS)) return 1;
    return ShowOpenProfileDialog(path, vcsProject, "Enter the full path of the Master Profile",
                                 flags);
  }
  std::string project = qv::RegistryGetString(key, "VCS Project").value_or("");
  std::string stored = qv::RegistryGetString(key, "Path").value_or("");
  snprintf(vcsProject, QV_PATH_SIZE, "%s", project.c_str());
  // The stored project belongs to the stored path only.
  if (strcasecmp(stored.c_str(), path) != 0) vcsProject[0] = '\0';
  if (path[0] == '\0') snprintf(path, QV_PATH_SIZE, "%s", stored.c_str());
  if (*flags & OPEN_TYPE_FROM_REGISTRY) {
    std::optional<uint32_t> type = qv::RegistryGetDword(key, "Type");
    if (type) *flags = *type;
  }
  return 1;
}

int WriteLastProfile(const char* path, uint32_t flags, const char* vcsProject) {
  qv::RegistryValue path_value{"Path", false, path, 0};
  qv::RegistryValue type_value{"Type", true, "", flags};
  qv::RegistryValue project_value{"VCS Project", false, vcsProject, 0};
  // Failures are silent: forgetting the last profile costs the user a dialog.
  qv::RegistrySetValues(qv::LastProfileKey(), {path_value, type_value, project_value});
  return 1;
}

}  // extern "C"
