#include "records/new_files.h"

#include "profile/global_file_list.h"
#include "quorvex/catalogue.h"
#include "quorvex/vcs.h"

namespace qv {

void MarkNewToVcs(const char* path) {
  ProfileFileEntry* entry = FindGlobalFileEntry(path);
  if (entry != nullptr) entry->status |= FS_CHECKED_OUT | kFileNewToVcs;
}

void AddIfNewToVcs(const char* path) {
  ProfileFileEntry* entry = FindGlobalFileEntry(path);
  if (entry == nullptr || (entry->status & kFileNewToVcs) == 0) return;
  if (VcsAdd(path, "Initial Revision.") == 1) {
    entry = FindGlobalFileEntry(path);
    if (entry != nullptr) entry->status &= ~(kFileNewToVcs | FS_CHECKED_OUT);
  }
}

}  // namespace qv
