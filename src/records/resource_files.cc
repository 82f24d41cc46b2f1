#include "records/resource_files.h"

#include <memory>
#include <string>
#include <vector>

#include "core/state.h"
#include "quorvex/resources.h"
#include "records/family_io.h"
#include "records/language_file.h"
#include "records/resource_family.h"

namespace qv {

struct ResourceFileEntry {
  std::string language;
  std::unique_ptr<HeldResources> texts;
  bool changed = false;
};

struct ResourceFileTable {
  std::vector<ResourceFileEntry> entries;
};

namespace {

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

bool WriteResourceFile(const char* language, HeldResources& texts) {
  char path[QV_PATH_SIZE] = "";
  QvFile file = OpenLanguageFileForChange(ResourceFileKind(), language, true, path);
  if (!QvFileIsOpen(file)) return false;
  return WriteLanguageSectionLines(ResourceFileKind(), file, path, texts.SectionLines());
}

}  // namespace

HeldResources* HeldResourcesOf(const char* language) {
  ResourceFileEntry* entry = FindEntry(language);
  return entry != nullptr ? entry->texts.get() : nullptr;
}

HeldResources* HoldResources(const char* language, bool offer_creation) {
  if (HeldResources* held = HeldResourcesOf(language)) return held;
  char path[QV_PATH_SIZE] = "";
  QvFile file = OpenLanguageFileForChange(ResourceFileKind(), language, offer_creation, path);
  if (!QvFileIsOpen(file)) return nullptr;
  RecordList* list = nullptr;
  GenericList::New(&list);
  bool read = list != nullptr && ReadLanguageSection(ResourceSchema(), file, language, list);
  QvCloseFile(file);
  if (!read) {
    GenericList::Free(list);
    return nullptr;
  }
  Table().entries.push_back({language, std::make_unique<HeldResources>(list), false});
  return Table().entries.back().texts.get();
}

void MarkResourcesChanged(const char* language) {
  if (ResourceFileEntry* entry = FindEntry(language)) entry->changed = true;
}

bool WriteHeldResources(const char* language) {
  ResourceFileEntry* entry = FindEntry(language);
  if (entry == nullptr) return false;
  if (!WriteResourceFile(language, *entry->texts)) return false;
  entry->changed = false;
  return true;
}

void WriteBackResourceFiles() {
  ResourceFileTable* table = State().resource_files;
  if (table == nullptr) return;
  for (ResourceFileEntry& entry : table->entries) {
    if (State().locked && entry.changed) WriteResourceFile(entry.language.c_str(), *entry.texts);
    entry.texts.reset();
  }
  delete table;
  State().resource_files = nullptr;
}

}  // namespace qv
