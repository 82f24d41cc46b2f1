#include "profile/global_file_list.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "core/copy_text.h"
#include "core/state.h"
#include "core/text_chars.h"

namespace qv {

namespace {

const char* OrEmpty(const char* text) {
  return text != nullptr ? text : "";
}

// Links a node holding entry after the tail, keeping the ring closed.
bool AppendNode(RecordList* list, ProfileFileEntry* entry) {
  RecordNode* node = static_cast<RecordNode*>(calloc(1, sizeof(RecordNode)));
  if (node == nullptr) return false;
  node->record = entry;
  if (list->head == nullptr) {
    node->next = node;
    node->prev = node;
    list->head = node;
  } else {
    node->prev = list->tail;
    node->next = list->head;
    list->tail->next = node;
    list->head->prev = node;
  }
  list->tail = node;
  ++list->count;
  return true;
}

void UnlinkNode(RecordList* list, RecordNode* node) {
  --list->count;
  if (list->head == list->tail) {
    list->head = list->tail = list->current = nullptr;
  } else {
    if (node == list->head) list->head = node->next;
    if (node == list->tail) list->tail = node->prev;
    if (list->current == node) list->current = node->prev;
    node->prev->next = node->next;
    node->next->prev = node->prev;
  }
  free(node->record);
  free(node);
}

}  // namespace

RecordList* NewGlobalFileList() {
  return static_cast<RecordList*>(calloc(1, sizeof(RecordList)));
}

void FreeGlobalFileList(RecordList* list) {
  if (list == nullptr) return;
  RecordNode* node = list->head;
  for (uint32_t i = 0; node != nullptr && i < list->count; ++i) {
    RecordNode* next = node->next;
    free(node->record);
    free(node);
    node = next;
  }
  free(list);
}

bool AddGlobalFileEntry(const char* owner_name, const char* owner_key, const char* kind,
                        const char* path, uint32_t status) {
  RecordList* list = State().global_file_list;
  if (list == nullptr) return false;
  ProfileFileEntry* entry = static_cast<ProfileFileEntry*>(calloc(1, sizeof(ProfileFileEntry)));
  if (entry == nullptr) return false;
  CopyCut(entry->ownerName, sizeof entry->ownerName, owner_name);
  CopyCut(entry->ownerKey, sizeof entry->ownerKey, owner_key);
  CopyCut(entry->kind, sizeof entry->kind, kind);
  CopyCut(entry->path, sizeof entry->path, path);
  entry->status = status;
  if (!AppendNode(list, entry)) {
    free(entry);
    return false;
  }
  return true;
}

bool GlobalFileEntryMatches(const ProfileFileEntry& entry, const char* owner_name,
                            const char* owner_key, const char* kind) {
  return strcmp(entry.ownerName, OrEmpty(owner_name)) == 0 &&
         strcmp(entry.ownerKey, OrEmpty(owner_key)) == 0 &&
         EqualsIgnoreCase(entry.kind, OrEmpty(kind));
}

bool RemoveGlobalFileEntry(const char* owner_name, const char* owner_key, const char* kind) {
  RecordList* list = State().global_file_list;
  if (list == nullptr || list->head == nullptr) return false;
  RecordNode* node = list->head;
  do {
    const ProfileFileEntry* entry = static_cast<const ProfileFileEntry*>(node->record);
    if (GlobalFileEntryMatches(*entry, owner_name, owner_key, kind)) {
      UnlinkNode(list, node);
      return true;
    }
    node = node->next;
  } while (node != list->head);
  return false;
}

ProfileFileEntry* FindGlobalFileEntry(const char* path) {
  RecordList* list = State().global_file_list;
  if (list == nullptr || list->head == nullptr) return nullptr;
  RecordNode* node = list->head;
  do {
    ProfileFileEntry* entry = static_cast<ProfileFileEntry*>(node->record);
    if (EqualsIgnoreCase(entry->path, OrEmpty(path))) return entry;
    node = node->next;
  } while (node != list->head);
  return nullptr;
}

}  // namespace qv
