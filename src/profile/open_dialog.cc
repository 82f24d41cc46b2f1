// The Open Profile dialog: flags turned into controls for the host, and the
// controls turned back into flags on OK.
#include <cstdio>

#include "core/host.h"
#include "quorvex/profile.h"
#include "quorvex/report.h"
#include "quorvex/vcs.h"

namespace qv {
namespace {

constexpr uint32_t kKindBits = OPEN_MASTER | OPEN_ORVIK | OPEN_INSTALLATION;

int KindOfFlags(uint32_t flags) {
  if (flags & OPEN_INSTALLATION) return QV_KIND_INSTALLATION;
  if (flags & OPEN_ORVIK) return QV_KIND_ORVIK;
  return QV_KIND_MASTER;
}

uint32_t SetBit(uint32_t flags, uint32_t bit, bool on) {
  return on ? flags | bit : flags & ~bit;
}

}  // namespace
}  // namespace qv

extern "C" {

int QuorvexFillProjectList(QuorvexOpenProfileRequest* request) {
  if (request->projectsFilled) return 1;
  RecordList* projects = nullptr;
  if (!VcsListProjects(&projects)) return 0;  // the failure was reported; the list stays empty
  MPFreeStringList(request->projects);
  request->projects = projects;
  request->projectsFilled = 1;
  return 1;
}

int ShowOpenProfileDialog(char* path, char* vcsProject, const char* message, uint32_t* flags) {
  QuorvexOpenProfileRequest request = {};
  request.message = message;
  snprintf(request.path, sizeof request.path, "%s", path);
  snprintf(request.project, sizeof request.project, "%s", vcsProject);
  request.flags = *flags;
  request.kind = qv::KindOfFlags(*flags);
  request.versionControl = (*flags & OPEN_NO_VCS) == 0;
  request.readOnly = (*flags & OPEN_LOCK) == 0;
  request.readActiveOnly = (*flags & OPEN_READ_ACTIVE_ONLY) != 0;
  request.silent = (*flags & OPEN_SILENT) != 0;
  MPNewStringList(&request.projects);
  if (request.versionControl) QuorvexFillProjectList(&request);

  bool ok = qv::HostOpenProfileDialog(&request);
  MPFreeStringList(request.projects);
  if (!ok) return 0;

  uint32_t result = *flags & ~qv::kKindBits;
  switch (request.kind) {
    case QV_KIND_MASTER:
      result |= OPEN_MASTER;
      break;
    case QV_KIND_ORVIK:
      result |= OPEN_ORVIK;
      break;
    case QV_KIND_INSTALLATION:
      result |= OPEN_INSTALLATION;
      break;
    default:
      ReportError("Programming Error CheckedRadioButton #542!", 0);
      break;
  }
  result = qv::SetBit(result, OPEN_LOCK, !request.readOnly);
  result = qv::SetBit(result, OPEN_NO_VCS, !request.versionControl);
  result = qv::SetBit(result, OPEN_READ_ACTIVE_ONLY, request.readActiveOnly != 0);
  result = qv::SetBit(result, OPEN_SILENT, request.silent != 0);
  *flags = result;
  snprintf(path, QV_PATH_SIZE, "%s", request.path);
  snprintf(vcsProject, QV_PATH_SIZE, "%s", request.project);
  return 1;
}

}  // extern "C"
