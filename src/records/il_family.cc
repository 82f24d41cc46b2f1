// Icon locations: the shell folders that receive icons, in
// "<profile>\locs\icons.lo".
#include <cstdio>
#include <cstring>
#include <string>

#include "core/text_chars.h"
#include "quorvex/locations.h"
#include "records/family_io.h"
#include "records/keyed_family.h"
#include "records/location_family.h"
#include "records/reference_hooks.h"

namespace qv {
namespace {

bool IsEmptyText(const char* text) {
  return text == nullptr || *text == '\0';
}

struct IlTraits {
  using Record = ILRecord;
  struct Key {
    const char* name;
  };
  static constexpr auto kFree = &MPFreeIL;
  static constexpr const char* kInsertIn = "Cannot insert IL record in Orvik shipping profile";
  static constexpr const char* kInsertInto = "Cannot insert IL record into Orvik shipping profile";
  static constexpr const char* kDeleteFailed =
      "Cannot delete IL record from Orvik shipping profile.";
  static constexpr const char* kNotForOrvik = "ILs not implemented in QUORVEX for Orvik";
  static constexpr const char* kReferencesRemain =
      "Cannot delete all references to this IL, therefore cannot delete it.";

  static const KindSchema& Schema() { return IlSchema(); }
  static Key KeyOf(const ILRecord& r) { return {r.row.Name}; }
  static bool IsEmpty(const Key& key) { return IsEmptyText(key.name); }
  static Key ForList(RecordList*, const Key& key) { return key; }
  static bool Matches(const ILRecord& r, const Key& key) {
    return EqualsIgnoreCase(key.name, r.row.Name);
  }
  static void KeepIdentity(ILRecord* copy, const ILRecord& stored) {
    memcpy(copy->row.Name, stored.row.Name, sizeof copy->row.Name);
  }
  static void FillKey(ILRecord* record, const Key& key) {
    snprintf(record->row.Name, sizeof record->row.Name, "%s", key.name != nullptr ? key.name : "");
  }
  static std::vector<std::vector<const char*>> OrvikKeyTries(const Key&) { return {{"Name"}}; }
  // Icon locations are read afresh by every operation: nothing to keep.
  static void AfterTextWrite(RecordList*) {}
  static void AfterOrvikChange() {}
  static bool DeleteReferences(const Key& key) {
    return MPUpdateILReferences(key.name, kDeleteReferences, "") == 1;
  }
};

using Family = KeyedFamily<IlTraits>;

const KindApi& MakeIlApi() {
  static KindApi api;
  api.schema = &IlSchema();
  api.key_names = {"Name"};
  api.list = [](const Texts&, RecordList** list) {
    return MPGetILCompleteList(list, MODE_READ) == 1;
  };
  api.get = [](const Texts& key, void** record) {
    ILRecord* found = nullptr;
    bool ok = MPGetIL(key.at(0).c_str(), &found) == 1;
    *record = found;
    return ok;
  };
  api.put = [](void* record) {
    bool written = false;
    return Family::Put(static_cast<ILRecord*>(record), &written) == 1 && written;
  };
  api.remove = [](const Texts& key) { return MPDeleteIL(key.at(0).c_str()) == 1; };
  api.flag_names = [](QvFlagNames** table) { return MPGetILFlagNames(table) == 1; };
  api.stored = [](const void* record) -> void* {
    return Family::StoredCopy(*static_cast<const ILRecord*>(record));
  };
  return api;
}

}  // namespace

const KindSchema& IlSchema() {
  static const KindSchema schema = {
      FindKindInfo("IL"),
      sizeof(ILRecord),
      offsetof(ILRecord, row),
      sizeof(ILRow),
      SIZE_MAX,
      offsetof(ILRecord, recordFlags),
      offsetof(ILRecord, lineNumber),
      {
          QV_MEMBER(ILRecord, row.Name, "Name", true),
          QV_MEMBER(ILRecord, row.OsType, "OsType", true),
          QV_MEMBER(ILRecord, row.Path, "Path", true),
          QV_MEMBER(ILRecord, row.Flags, "Flags", true),
          QV_MEMBER(ILRecord, recordFlags, "recordFlags", false),
          QV_MEMBER(ILRecord, lineNumber, "lineNumber", false),
      },
      {
          QV_LINE_FIELD(ILRecord, row.Name, LineSyntax::kText, 20, 0, 0),
          QV_LINE_FIELD(ILRecord, row.OsType, LineSyntax::kOsType, 20, 0, 0),
          QV_LINE_FIELD(ILRecord, row.Path, LineSyntax::kText, 260, 0, 0),
          QV_LINE_FIELD(ILRecord, row.Flags, LineSyntax::kFlagString32, 0, 0, 0),
      },
      "Icon Location",
      {"Don't remove", "Check if Personal Location [vs Common (matters only under NT)]"},
      0u,
      "Icon Location File %s cannot be found or opened!",
  };
  return schema;
}

const KindApi& IlKindApi() {
  static const KindApi& api = MakeIlApi();
  return api;
}

}  // namespace qv

using qv::Family;

QV_DEFINE_LIST_OPERATIONS(IL, ILRecord, MPFreeIL)

extern "C" {

int MPNewIL(ILRecord** recordOut) {
  *recordOut = Family::New();
  return *recordOut != nullptr ? 1 : 0;
}

int MPFreeIL(ILRecord* record) {
  qv::FreeRecord(record);
  return 1;
}

int MPReleaseIL(ILRecord** record) {
  if (record == nullptr) return 1;
  qv::FreeRecord(*record);
  *record = nullptr;
  return 1;
}

int MPGetILCompleteList(ILList** listOut, uint32_t mode) {
  return Family::ReadAll(listOut, mode);
}

int MPGetIL(const char* name, ILRecord** recordOut) {
  return Family::Get({name}, recordOut);
}

int MPPutIL(ILRecord* record) {
  return Family::Put(record);
}

int MPPutILCompleteList(ILList* list) {
  return Family::PutCompleteList(list);
}

int MPUpdateILReferences(const char* name, uint32_t mode, const char* newName) {
  if (mode != qv::kDeleteReferences && mode != qv::kUpdateReferences) return 1;
  return qv::UpdateInstalledIconLocationsOfIconLocation(name, mode, newName) ? 1 : 0;
}

int MPDeleteIL(const char* name) {
  return Family::Delete({name});
}

int MPCopyIL(ILRecord** recordInOut, const ILRecord* source, int mode, ILList* list) {
  return Family::Copy(recordInOut, source, mode, list);
}

int MPFindILNode(const char* name, ILList* list, ILRecord** recordOut) {
  return Family::Find({name}, list, recordOut);
}

int MPGetILFlagNames(ILFlagNames** tableOut) {
  *tableOut = qv::NewFlagNames(qv::IlSchema());
  return 1;
}

int MPWriteILList(ILList* list) {
  return Family::Write(list);
}

}  // extern "C"
