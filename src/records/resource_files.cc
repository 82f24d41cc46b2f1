#include "records/resource_files.h"

#include <cstring>
#include <string>
#include <vector>

#include "core/state.h"
#include "quorvex/resources.h"
#include "records/family_io.h"
#include "records/language_file.h"
#include "records/resource_family.h"
#include "records/resource_names.h"

namespace qv {

struct ResourceFileEntry {
  std::string language;
  RecordList* list = nullptr;
  bool changed = false;
};

struct ResourceFileTable {
  std::vector<ResourceFileEntry> entries;
};

namespace {

using ResourceListOps = ListOps<ResourceRecord, &MPFreeResource>;

ResourceFileEntry* FindEntry(const char* language) {
  ResourceFileTable* table = State().resource_files;
  if (table == nullptr) return nullptr;
  for (ResourceFileEntry& entry : table->entries) {
    if (entry.language == language) return &entry;
  }
  return nullptr;
}

ResourceFileTable& Table() {
  if (State().resource_files == nullptr) State().resource_files = new ResourceFileTable;
  return *State().resource_files;
}

}  // namespace

RecordList* HeldResourceList(const char* language) {
  ResourceFileEntry* entry = FindEntry(language);
  return entry != nullptr ? entry->list : nullptr;
}

RecordList* HoldResourceList(const char* language, bool offer_creation) {
  if (RecordList* held = HeldResourceList(language)) return held;
  char path[QV_PATH_SIZE] = "";
  QvFile file = OpenLanguageFileForChange(ResourceFileKind(), language, offer_creation, path);
  if (!QvFileIsOpen(file)) return nullptr;
  RecordList* list = nullptr;
  GenericList::New(&list);
  bool read = list != nullptr && ReadLanguageSection(ResourceSchema(), file, language, list);
  QvCloseFile(file);
  if (!read) {
    ResourceListOps::Free(list);
    return nullptr;
  }
  Table().entries.push_back({language, list, false});
  return list;
}

void MarkResourceListChanged(const char* language) {
  if (ResourceFileEntry* entry = FindEntry(language)) entry->changed = true;
}

bool WriteResourceFile(const char* language, RecordList* list) {
  char path[QV_PATH_SIZE] = "";
  QvFile file = OpenLanguageFileForChange(ResourceFileKind(), language, true, path);
  if (!QvFileIsOpen(file)) return false;
  ResourceListOps::ForEach(list, [](ResourceRecord* record) {
    if (record->ResourceName[0] == '\0') {
      NextResourceName(record->ResourceName, sizeof record->ResourceName);
    }
  });
  return WriteLanguageSection(ResourceFileKind(), file, path, list);
}

bool WriteHeldResourceList(const char* language) {
  ResourceFileEntry* entry = FindEntry(language);
  if (entry == nullptr) return false;
  if (!WriteResourceFile(language, entry->list)) return false;
  entry->changed = false;
  return true;
}

void WriteBackResourceFiles() {
  ResourceFileTable* table = State().resource_files;
  if (table == nullptr) return;
  for (ResourceFileEntry& entry : table->entries) {
    if (State().locked && entry.changed) WriteResourceFile(entry.language.c_str(), entry.list);
    ResourceListOps::Free(entry.list);
    entry.list = nullptr;
  }
  delete table;
  State().resource_files = nullptr;
}

}  // namespace qv
