#include "records/ss_entry_family.h"

#include <cstdio>
#include <cstring>
#include <string>

#include "core/copy_text.h"
#include "orvik/transaction.h"
#include "quorvex/report.h"
#include "quorvex/settings.h"
#include "records/family_io.h"
#include "records/line_capacity.h"
#include "records/orvik_rows.h"
#include "records/record_codec.h"
#include "records/ss_entry_section.h"

namespace qv {
namespace {

// Both bodies start alike: module key, name, type.
static_assert(offsetof(SSRData, ModuleKey2) == offsetof(CSSRData, ModuleKey2));
static_assert(offsetof(SSRData, Name) == offsetof(CSSRData, Name));
static_assert(offsetof(SSRData, Type) == offsetof(CSSRData, Type));
static_assert(offsetof(SSRRecord, row) == 0 && offsetof(CSSRRecord, row) == 0);

SSRData* Body(void* record) {
  return static_cast<SSRData*>(record);
}
const SSRData* Body(const void* record) {
  return static_cast<const SSRData*>(record);
}
const char* OrEmpty(const char* text) {
  return text != nullptr ? text : "";
}
void SetModule(void* record, const char* module, const char* key2) {
  CopyCut(Body(record)->ModuleName, module);
  CopyCut(Body(record)->ModuleKey2, key2);
}
Owner ModuleOf(const char* module, const char* key2) {
  return Owner{OrEmpty(module), OrEmpty(key2)};
}

// The value is checked by its type: text as text, bytes as their count.
bool DataFitsLine(const EntryKind& kind, const void* record) {
  if (kind.created) return true;
  std::string problem = DataLineProblem(kind, *Body(record));
  if (problem.empty()) return true;
  char text[QV_LINE_SIZE];
  snprintf(text, sizeof text, "%s record refused: %s; nothing was written.", kind.code,
           problem.c_str());
  ReportError(text, 0);
  return false;
}

void Report(const char* format, const char* code) {
  char text[QV_LINE_SIZE];
  snprintf(text, sizeof text, format, code);
  ReportError(text, 0);
}

}  // namespace

void* EntryFamily::New() const {
  return NewRecord(schema_);
}

bool EntryFamily::Matches(const void* record, const char* module, const char* key2,
                          const char* name) const {
  const SSRData* body = Body(record);
  if (module != nullptr && strcmp(module, body->ModuleName) != 0) return false;
  if (key2 != nullptr && strcmp(key2, body->ModuleKey2) != 0) return false;
  return OrEmpty(name)[0] == '\0' || strcmp(name, body->Name) == 0;
}

int EntryFamily::ReadAll(const char* module, const char* key2, RecordList** list_out,
                         uint32_t mode) const {
  *list_out = nullptr;
  if (!RequireOpenProfile()) return 0;
  if (!IsOrvikProfile()) {
    return ReadEntrySection(schema_, ModuleOf(module, key2), mode, list_out) ? 1 : 0;
  }
  if (!ReadOrvikRows(schema_, list_out)) return 0;
  // The table holds the rows of every module: only this module's go out.
  std::vector<void*> others;
  GenericList::ForEach(*list_out, [&](void* r) {
    if (!Matches(r, OrEmpty(module), OrEmpty(key2), nullptr)) others.push_back(r);
  });
  for (void* r : others) {
    UnlinkRecord(*list_out, r);
    FreeRecord(r);
  }
  return 1;
}

int EntryFamily::Find(const char* module, const char* key2, const char* name, RecordList* list,
                      void** record_out) const {
  *record_out = nullptr;
  if (list == nullptr) return 0;
  for (;;) {
    void* record = GenericList::Next(list);
    *record_out = record;
    if (record == nullptr) return 0;
    if (Matches(record, module, key2, name)) return 1;
  }
}

int EntryFamily::Copy(void** record_in_out, const void* source, int mode, RecordList* list) const {
  void* stored = *record_in_out;
  void* copy = New();
  if (copy == nullptr) return 0;
  memcpy(copy, source, schema_.record_size);
  if (mode == 1 && stored != nullptr) KeepIdentity(copy, stored);
  *record_in_out = copy;
  if (stored != nullptr && list != nullptr) GenericList::ReplaceRecord(list, stored, copy);
  return 1;
}

void EntryFamily::KeepIdentity(void* copy, const void* stored) const {
  // The stored record keeps its identity: its module, name and line.
  memcpy(copy, stored, offsetof(SSRData, Type));
  SetLineNumber(schema_, copy, GetUnsigned(stored, schema_.line_number_offset, ValueType::kU32));
}

int EntryFamily::Get(const char* module, const char* key2, const char* name,
                     void** record_out) const {
  *record_out = nullptr;
  // Single records are served from the text store only.
  if (IsOrvikProfile() || OrEmpty(name)[0] == '\0') return 0;
  RecordList* list = nullptr;
  if (!ReadAll(module, key2, &list, MODE_READ)) return 0;
  void* found = nullptr;
  list->current = nullptr;
  int result =
      Find(module, key2, name, list, &found) == 1 ? Copy(record_out, found, 0, nullptr) : 0;
  GenericList::Free(list);
  return result;
}

void EntryFamily::Normalise(void* record) const {
  SSRData* body = Body(record);
  if (body->Type == 0) body->Type = kind_.type;
  if (kind_.created) {
    auto* created = static_cast<CSSRData*>(record);
    char* path = created->KeyPath;
    size_t skip = strspn(path, "\\");
    memmove(path, path + skip, strlen(path + skip) + 1);
    return;
  }
  if (!HoldsBytes(kind_, body->DataType)) body->DataLength = 0;
  if (kind_.shape == EntryShape::kIni) return;
  size_t skip = strspn(body->KeyPath, "\\");
  memmove(body->KeyPath, body->KeyPath + skip, strlen(body->KeyPath + skip) + 1);
  if (body->Access == 0) body->Access = SSR_DEFAULT_ACCESS;
  if (kind_.shape == EntryShape::kReg) body->EntryFlags &= ~1u;
  if (kind_.shape == EntryShape::kPs) body->SecondType = ZQFKEY_NONE;
}

int EntryFamily::Put(void* record) const {
  return PutAs(record, /*streams=*/true);
}

int EntryFamily::PutThroughList(void* record) const {
  return PutAs(record, /*streams=*/false);
}

int EntryFamily::PutAs(void* record, bool streams) const {
  if (!RequireLockedProfile()) return 0;
  void* entry = New();
  if (entry == nullptr) return 0;
  memcpy(entry, record, schema_.record_size);
  Normalise(entry);
  if (!DataFitsLine(kind_, entry) || !RecordFitsLine(schema_, entry)) {
    FreeRecord(entry);
    return 0;
  }
  if (IsOrvikProfile()) {
    bool inserted = InsertOrvikRow(schema_, entry);
    FreeRecord(entry);
    if (!inserted) Report("Cannot insert %s record into Orvik shipping profile", kind_.code);
    return inserted ? 1 : 0;
  }
  const SSRData* body = Body(entry);
  if (streams) {
    const Owner module = ModuleOf(body->ModuleName, body->ModuleKey2);
    auto replaces = [&](const void* stored) {
      return body->Name[0] != '\0' &&
             Matches(stored, body->ModuleName, body->ModuleKey2, body->Name);
    };
    auto keep_identity = [&](void* copy, const void* stored) { KeepIdentity(copy, stored); };
    char name[sizeof(SSRData::Name)] = "";
    switch (PutEntryIntoSection(kind_, schema_, module, entry, replaces, keep_identity, name)) {
      case StreamedEntryPut::kWritten:
        FreeRecord(entry);
        memcpy(Body(record)->Name, name, sizeof name);
        return 1;
      case StreamedEntryPut::kFailed:
        FreeRecord(entry);
        return 0;
      case StreamedEntryPut::kNeedsList:
        break;
    }
  }
  RecordList* list = nullptr;
  if (!ReadAll(body->ModuleName, body->ModuleKey2, &list, MODE_UPDATE)) {
    FreeRecord(entry);
    return 0;
  }
  void* found = nullptr;
  list->current = nullptr;
  if (body->Name[0] != '\0' &&
      Find(body->ModuleName, body->ModuleKey2, body->Name, list, &found) == 1) {
    void* stored = found;
    Copy(&stored, entry, 1, list);
    FreeRecord(entry);
    // The module's name is read below from the entry that took the stored
    // one's place; the one given was freed.
    entry = stored;
    body = Body(entry);
  } else if (!GenericList::Append(list, entry)) {
    FreeRecord(entry);
    GenericList::Free(list);
    return 0;
  }
  list->current = nullptr;
  bool written =
      WriteEntrySection(kind_, schema_, ModuleOf(body->ModuleName, body->ModuleKey2), list);
  // The entry now in the list carries the name it was written with.
  if (written) memcpy(Body(record)->Name, Body(entry)->Name, sizeof(SSRData::Name));
  GenericList::Free(list);
  return written ? 1 : 0;
}

int EntryFamily::PutCompleteList(const char* module, const char* key2, RecordList* list) const {
  if (!RequireLockedProfile()) return 0;
  GenericList::ForEach(list, [&](void* r) {
    SetModule(r, module, key2);
    Normalise(r);
  });
  bool fits = true;
  GenericList::ForEach(list, [&](void* r) {
    fits = DataFitsLine(kind_, r);
    return fits;
  });
  if (!fits || !ListFitsLines(schema_, list)) return 0;
  if (IsOrvikProfile()) {
    // The whole list lands, or none of it.
    return Transacted([&] {
      bool all = true;
      GenericList::ForEach(list, [&](void* r) {
        if (InsertOrvikRow(schema_, r)) return true;
        Report("Cannot insert %s record into Orvik shipping profile", kind_.code);
        all = false;
        return false;
      });
      return all ? 1 : 0;
    });
  }
  if (list != nullptr) list->current = nullptr;
  return WriteEntrySection(kind_, schema_, ModuleOf(module, key2), list) ? 1 : 0;
}

int EntryFamily::Delete(const char* module, const char* key2, const char* name) const {
  if (!RequireLockedProfile()) return 0;
  if (IsOrvikProfile()) {
    Report("Cannot delete %s record from Orvik shipping profile(Orvik not supported feature).",
           kind_.code);
    return 0;
  }
  RecordList* list = nullptr;
  if (!ReadAll(module, key2, &list, MODE_UPDATE)) return 0;
  void* found = nullptr;
  list->current = nullptr;
  if (OrEmpty(name)[0] == '\0' || Find(module, key2, name, list, &found) != 1) {
    ReportError(kListDeleteNotListed, 0);
    GenericList::Free(list);
    return 0;
  }
  UnlinkRecord(list, found);
  FreeRecord(found);
  list->current = nullptr;
  bool written = WriteEntrySection(kind_, schema_, ModuleOf(module, key2), list);
  GenericList::Free(list);
  return written ? 1 : 0;
}

}  // namespace qv
