// Resources: the named texts of each language, in
// "<profile>\RES_US\pelham<code>.re", section "Resources".
#include "records/resource_family.h"

#include <cstdio>
#include <cstring>

#include "core/copy_text.h"
#include "quorvex/report.h"
#include "quorvex/resources.h"
#include "records/family_io.h"
#include "records/line_capacity.h"
#include "records/orvik_rows.h"
#include "records/record_codec.h"
#include "records/resource_files.h"
#include "records/resource_names.h"

namespace qv {
namespace {

using ResourceListOps = ListOps<ResourceRecord, &MPFreeResource>;

void SetLanguage(void* record, const char* name, const char*) {
  CopyCut(static_cast<ResourceRecord*>(record)->LanguageCode, name);
}

void NoteGeneratedName(void* record) {
  NoteResourceName(static_cast<ResourceRecord*>(record)->ResourceName);
}

KindSchema MakeResourceSchema() {
  KindSchema schema = {
      FindKindInfo("Resources"),
      sizeof(ResourceRecord),
      offsetof(ResourceRecord, LanguageCode),
      offsetof(ResourceRecord, recordFlags),
      SIZE_MAX,
      offsetof(ResourceRecord, recordFlags),
      offsetof(ResourceRecord, lineNumber),
      {
          QV_MEMBER(ResourceRecord, LanguageCode, "LanguageCode", true),
          QV_MEMBER(ResourceRecord, ResourceName, "ResourceName", true),
          QV_MEMBER(ResourceRecord, Text, "Text", true),
          QV_MEMBER(ResourceRecord, ResourceNumber, "ResourceNumber", true),
          QV_MEMBER(ResourceRecord, Note, "Note", true),
          QV_MEMBER(ResourceRecord, recordFlags, "recordFlags", false),
          QV_MEMBER(ResourceRecord, lineNumber, "lineNumber", false),
      },
      {
          QV_LINE_FIELD(ResourceRecord, ResourceName, LineSyntax::kText, 40, 0, 0),
          QV_LINE_FIELD(ResourceRecord, Text, LineSyntax::kText, 384, 0, 0),
          QV_LINE_FIELD(ResourceRecord, ResourceNumber, LineSyntax::kInteger, 0, FO_OPTIONAL, 0),
          QV_LINE_FIELD(ResourceRecord, Note, LineSyntax::kText, 699, FO_OPTIONAL, 0),
      },
      "Resource",
      {},
      0,
      "%s cannot be found or opened!",
  };
  schema.set_owner = &SetLanguage;
  schema.after_read = &NoteGeneratedName;
  return schema;
}

bool LanguageGiven(const char* language) {
  if (language != nullptr && language[0] != '\0') return true;
  ReportError("A language code is needed to find a resource file.", 0);
  return false;
}

void ReportOrvikRefusal() {
  ReportError("Resources not implemented in QUORVEX for Orvik", 0);
}

// The language's texts in the Orvik database, in row order.
bool ReadOrvikResources(const char* language, RecordList** list_out) {
  RecordList* rows = nullptr;
  if (!ReadOrvikRows(ResourceSchema(), &rows)) {
    ResourceListOps::Free(rows);
    *list_out = nullptr;
    return false;
  }
  ResourceListOps::ForEach(rows, [&](ResourceRecord* record) {
    if (strcmp(record->LanguageCode, language) != 0) {
      UnlinkRecord(rows, record);
      MPFreeResource(record);
    } else {
      NoteResourceName(record->ResourceName);
    }
  });
  *list_out = rows;
  return true;
}

// The next record of the cursor walk named exactly name (case counts, an
// empty name too), or nullptr at the end.
ResourceRecord* NextNamed(RecordList* list, const char* name) {
  while (ResourceRecord* record = ResourceListOps::Next(list)) {
    if (strcmp(record->ResourceName, name) == 0) return record;
  }
  return nullptr;
}

// Puts a copy of source, which has a name, among the held texts of its
// language: in place of the stored text with its name, or at the end. The
// copy keeps the stored record's line and belongs to the file's language.
void PutCopy(HeldResources* held, const char* language, const ResourceRecord* source) {
  ResourceRecord* copy = nullptr;
  if (!MPCopyResource(&copy, source)) return;
  CopyCut(copy->LanguageCode, language);
  held->Put(copy);
}

bool ParseLanguageAndName(const Texts& key, const char** language, const char** name) {
  if (key.size() != 2) return false;
  *language = key[0].c_str();
  *name = key[1].c_str();
  return true;
}

const KindApi& MakeResourceApi() {
  static KindApi api;
  api.schema = &ResourceSchema();
  api.owner_names = {"language"};
  api.key_names = {"language", "name"};
  api.list = [](const Texts& owner, RecordList** list) {
    return !owner.empty() && MPGetResourceCompleteList(owner[0].c_str(), list) == 1;
  };
  api.get = [](const Texts& key, void** record) {
    const char* language;
    const char* name;
    if (!ParseLanguageAndName(key, &language, &name)) return false;
    ResourceRecord* found = nullptr;
    bool ok = MPGetResource(language, name, &found) == 1;
    *record = found;
    return ok;
  };
  api.put = [](void* record) { return MPPutResource(static_cast<ResourceRecord*>(record)) == 1; };
  api.remove = [](const Texts& key) {
    const char* language;
    const char* name;
    return ParseLanguageAndName(key, &language, &name) && MPDeleteResource(language, name) == 1;
  };
  api.flag_names = [](QvFlagNames** table) { return MPGetResourceFlagNames(table) == 1; };
  api.stored = [](const void* record) -> void* {
    const auto* resource = static_cast<const ResourceRecord*>(record);
    ResourceRecord* found = nullptr;
    MPGetResource(resource->LanguageCode, resource->ResourceName, &found);
    return found;
  };
  return api;
}

}  // namespace

const KindSchema& ResourceSchema() {
  static const KindSchema schema = MakeResourceSchema();
  return schema;
}

const LanguageFileKind& ResourceFileKind() {
  static const LanguageFileKind kind = {
      &ResourceSchema(),
      "RES",
      "RE",
      "RES",
      "RE",
      "Do you want to Create Resource File for this language?",
  };
  return kind;
}

const KindApi& ResourceKindApi() {
  static const KindApi& api = MakeResourceApi();
  return api;
}

}  // namespace qv

QV_DEFINE_LIST_OPERATIONS(Resource, ResourceRecord, MPFreeResource)

extern "C" {

int MPNewResource(ResourceRecord** recordOut) {
  *recordOut = static_cast<ResourceRecord*>(qv::NewRecord(qv::ResourceSchema()));
  return *recordOut != nullptr ? 1 : 0;
}

int MPFreeResource(ResourceRecord* record) {
  qv::FreeRecord(record);
  return 1;
}

int MPReleaseResource(ResourceRecord** record) {
  if (record == nullptr) return 1;
  qv::FreeRecord(*record);
  *record = nullptr;
  return 1;
}

int MPCopyResource(ResourceRecord** recordOut, const ResourceRecord* source) {
  if (!MPNewResource(recordOut)) return 0;
  **recordOut = *source;
  return 1;
}

int MPFindResourceNode(const char* resourceName, ResourceList* list, ResourceRecord** recordOut) {
  for (;;) {
    ResourceRecord* record = qv::ResourceListOps::Next(list);
    *recordOut = record;
    if (record == nullptr) return 0;
    if (resourceName == nullptr || resourceName[0] == '\0') return 1;
    if (strcmp(record->ResourceName, resourceName) == 0) return 1;
  }
}

int MPGetResourceFlagNames(ResourceFlagNames** tableOut) {
  *tableOut = qv::NewFlagNames(qv::ResourceSchema());
  return 1;
}

int MPGetResourceCompleteList(const char* languageCode, ResourceList** listOut) {
  *listOut = nullptr;
  if (!qv::RequireOpenProfile()) return 0;
  if (languageCode == nullptr) languageCode = "";
  if (qv::IsOrvikProfile()) return qv::ReadOrvikResources(languageCode, listOut) ? 1 : 0;
  // Texts changed in memory are what the file will hold.
  if (qv::HeldResources* held = qv::HeldResourcesOf(languageCode)) {
    *listOut = held->CopyList();
    return *listOut != nullptr ? 1 : 0;
  }
  return qv::ReadLanguageList(qv::ResourceFileKind(), languageCode, MODE_READ, listOut) ? 1 : 0;
}

int MPGetResource(const char* languageCode, const char* resourceName, ResourceRecord** recordOut) {
  *recordOut = nullptr;
  if (resourceName == nullptr || resourceName[0] == '\0') return 0;
  // Held texts are found by name, without copying the language's list.
  // Only an open, locked profile holds texts, and never of the empty code.
  qv::HeldResources* held = languageCode != nullptr ? qv::HeldResourcesOf(languageCode) : nullptr;
  if (held != nullptr) {
    const ResourceRecord* found = held->Find(resourceName);
    return found != nullptr ? MPCopyResource(recordOut, found) : 0;
  }
  ResourceList* list = nullptr;
  if (!MPGetResourceCompleteList(languageCode, &list)) return 0;
  list->current = nullptr;
  ResourceRecord* found = qv::NextNamed(list, resourceName);
  int result = found != nullptr ? MPCopyResource(recordOut, found) : 0;
  MPFreeResourceList(list);
  return result;
}

int MPPutResource(ResourceRecord* record) {
  if (!qv::RequireLockedProfile()) return 0;
  if (qv::IsOrvikProfile()) {
    qv::ReportOrvikRefusal();
    return 0;
  }
  if (!qv::LanguageGiven(record->LanguageCode)) return 0;
  if (!qv::RecordFitsLine(qv::ResourceSchema(), record)) return 0;
  // Loading the language's texts raises the counter above their names.
  qv::HeldResources* held = qv::HoldResources(record->LanguageCode, true);
  if (held == nullptr) return 0;
  if (record->ResourceName[0] == '\0') {
    qv::NextResourceName(record->ResourceName, sizeof record->ResourceName);
  }
  qv::PutCopy(held, record->LanguageCode, record);
  qv::MarkResourcesChanged(record->LanguageCode);
  return 1;
}

int MPDeleteResource(const char* languageCode, const char* resourceName) {
  if (!qv::RequireLockedProfile()) return 0;
  if (qv::IsOrvikProfile()) {
    ReportError("Cannot delete Resources record from Orvik shipping profile", 0);
    return 0;
  }
  if (languageCode == nullptr || resourceName == nullptr || resourceName[0] == '\0') return 0;
  // A language without a file has nothing to delete.
  qv::HeldResources* held = qv::HoldResources(languageCode, false);
  if (held == nullptr) return 0;
  bool deleted = held->Remove(resourceName);
  if (deleted) qv::MarkResourcesChanged(languageCode);
  return deleted ? 1 : 0;
}

int MPPutResourceCompleteList(ResourceList* list) {
  if (!qv::RequireLockedProfile()) return 0;
  if (list == nullptr || list->head == nullptr) return 1;
  if (qv::IsOrvikProfile()) {
    qv::ReportOrvikRefusal();
    return 0;
  }
  char language[sizeof(ResourceRecord::LanguageCode)];
  snprintf(language, sizeof language, "%s",
           static_cast<ResourceRecord*>(list->head->record)->LanguageCode);
  if (!qv::LanguageGiven(language)) return 0;
  if (!qv::ListFitsLines(qv::ResourceSchema(), list)) return 0;
  // The generated-name counter rises only from names read from the files:
  // names inside the list handed in are the caller's and do not count.
  qv::HeldResources* held = qv::HoldResources(language, true);
  if (held == nullptr) return 0;
  qv::ResourceListOps::ForEach(list, [&](ResourceRecord* record) {
    if (record->ResourceName[0] == '\0') {
      qv::NextResourceName(record->ResourceName, sizeof record->ResourceName);
    }
    qv::PutCopy(held, language, record);
  });
  qv::MarkResourcesChanged(language);
  return qv::WriteHeldResources(language) ? 1 : 0;
}

int MPMatchResources(const char* primaryCode, const char* updateCode, ResourceList** primaryOut,
                     ResourceList** updateOut, ResourceList** resultOut) {
  *primaryOut = nullptr;
  *updateOut = nullptr;
  *resultOut = nullptr;
  if (!qv::RequireOpenProfile()) return 0;
  if (!MPGetResourceCompleteList(primaryCode, primaryOut)) {
    ReportError("Can't access Primary Language Resources(They might not exist yet)", 0);
    return 0;
  }
  if (!MPGetResourceCompleteList(updateCode, updateOut)) {
    ReportError("Can't access Update Language Resources(They might not exist yet)", 0);
    return 0;
  }
  MPNewResourceList(resultOut);
  if (*resultOut == nullptr) return 0;
  ResourceList* primary = *primaryOut;
  ResourceList* update = *updateOut;
  primary->current = nullptr;
  qv::ResourceListOps::ForEach(update, [&](ResourceRecord* record) {
    // Behind the last partner found first, then once more from the top.
    RecordNode* last_found = primary->current;
    ResourceRecord* partner = qv::NextNamed(primary, record->ResourceName);
    if (partner == nullptr) partner = qv::NextNamed(primary, record->ResourceName);
    if (partner == nullptr) {
      primary->current = last_found;
      return;
    }
    if (partner->ResourceNumber != record->ResourceNumber) return;
    qv::UnlinkRecord(primary, partner);
    MPFreeResource(partner);
    qv::UnlinkRecord(update, record);
    MPAppendResource(*resultOut, record);
  });
  primary->current = nullptr;
  return 1;
}

}  // extern "C"
