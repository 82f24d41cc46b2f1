#include "records/new_files.h"

#include <cstdio>
#include <string>

#include "core/state.h"
#include "platform/file.h"
#include "platform/fs.h"
#include "profile/global_file_list.h"
#include "quorvex/catalogue.h"
#include "quorvex/vcs.h"
#include "quorvex/writer.h"

namespace qv {

void ListAsNew(const char* owner_name, const char* owner_key, const char* kind, const char* path) {
  AddGlobalFileEntry(owner_name, owner_key, kind, path, FS_CHECKED_OUT | kFileNewToVcs);
}

QvFile NewFileHeader(const char* kind, const char* first_key, const char* second_key) {
  File* header = File::OpenInMemory();
  AddSections(header->handle(), kind, first_key, second_key);
  header->Seek(0, SEEK_SET);
  return header->handle();
}

const char* UnwrittenNewFile(const char* owner_name, const char* owner_key, const char* kind) {
  RecordList* list = State().global_file_list;
  if (list == nullptr || list->head == nullptr) return nullptr;
  RecordNode* node = list->head;
  do {
    const ProfileFileEntry* entry = static_cast<const ProfileFileEntry*>(node->record);
    if ((entry->status & kFileNewToVcs) != 0 &&
        GlobalFileEntryMatches(*entry, owner_name, owner_key, kind) && !FileExists(entry->path)) {
      return entry->path;
    }
    node = node->next;
  } while (node != list->head);
  return nullptr;
}

void ForgetUnwrittenNewFile(const char* path) {
  const ProfileFileEntry* entry = FindGlobalFileEntry(path);
  if (entry == nullptr || (entry->status & kFileNewToVcs) == 0 || FileExists(entry->path)) return;
  // The entry goes with the removal: keep what names it.
  std::string name = entry->ownerName;
  std::string key = entry->ownerKey;
  std::string kind = entry->kind;
  RemoveGlobalFileEntry(name.c_str(), key.c_str(), kind.c_str());
}

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
