// Locations: the folders of the target machine, in "<profile>\locs\vardo.lo".
#include <cstdio>
#include <cstring>
#include <string>

#include "core/text_chars.h"
#include "quorvex/locations.h"
#include "quorvex/report.h"
#include "records/family_io.h"
#include "records/keyed_family.h"
#include "records/location_checks.h"
#include "records/location_family.h"
#include "records/reference_hooks.h"

namespace qv {
namespace {

bool IsEmptyText(const char* text) {
  return text == nullptr || *text == '\0';
}

void StoreFolder(char* destination, const std::string& folder) {
  snprintf(destination, sizeof(LORow::Folder), "%s", folder.c_str());
}

// "\" alone names the root of the target drive and is kept as it is.
void NormaliseFolderField(char* folder) {
  if (strcmp(folder, "\\") == 0) return;
  StoreFolder(folder, NormaliseFolderName(folder));
}

// What reading a location line checks, while the parse position is still
// that of the line: a folder that is a short path needs no short form, a
// long one should have one.
void CheckLocation(void* record) {
  LORow& row = static_cast<LORecord*>(record)->row;
  NormaliseFolderField(row.Folder);
  NormaliseFolderField(row.ShortFolder);
  std::string stripped;
  bool is_short = false;
  if (!StripReplaceableParameters(row.Folder, &stripped)) {
    char text[QV_LINE_SIZE];
    snprintf(text, sizeof text, "Location %s has a replaceable parameter with no closing bracket.",
             row.Folder);
    ReportError(text, 0);
  } else {
    is_short = IsShortPath(stripped);
  }
  if (is_short) {
    row.ShortFolder[0] = '\0';
  } else if (row.ShortFolder[0] == '\0') {
    char text[QV_LINE_SIZE];
    snprintf(text, sizeof text,
             "Location %s,%s has a long folder name and does not have an associated short "
             "folder name.",
             row.Name, row.Version);
    ReportError(text, 1);
  }
}

struct LoTraits {
  using Record = LORecord;
  struct Key {
    const char* name;
    const char* version;
    bool exact = false;  // an empty version names only the empty version
  };
  static constexpr auto kFree = &MPFreeLO;
  static constexpr const char* kInsertIn = "Cannot insert LO record in Orvik shipping profile";
  static constexpr const char* kInsertInto = "Cannot insert LO record into Orvik shipping profile";
  static constexpr const char* kDeleteFailed =
      "Cannot delete LO record from Orvik shipping profile.";
  static constexpr const char* kNotForOrvik = "LOs not implemented in QUORVEX for Orvik";
  static constexpr const char* kReferencesRemain =
      "Cannot delete all references to this LO, therefore cannot delete it.";

  static const KindSchema& Schema() { return LoSchema(); }
  static Key KeyOf(const LORecord& r) { return {r.row.Name, r.row.Version}; }
  static bool IsEmpty(const Key& key) { return IsEmptyText(key.name); }
  // A location with exactly the key given wins: only when there is none
  // does an empty version reach the other versions of the name.
  static Key ForList(RecordList* list, const Key& key) {
    if (key.exact || !IsEmptyText(key.version) || IsEmptyText(key.name)) return key;
    bool exact = FindExactLocation(list, key.name, "") != nullptr;
    return {key.name, "", exact};
  }
  static bool Matches(const LORecord& r, const Key& key) {
    if (key.exact || !IsEmptyText(key.version)) return LocationHasKey(r, key.name, key.version);
    return key.name != nullptr && EqualsIgnoreCase(key.name, r.row.Name);
  }
  static void KeepIdentity(LORecord* copy, const LORecord& stored) {
    memcpy(copy->row.Name, stored.row.Name, sizeof copy->row.Name);
    memcpy(copy->row.Version, stored.row.Version, sizeof copy->row.Version);
  }
  static void FillKey(LORecord* record, const Key& key) {
    snprintf(record->row.Name, sizeof record->row.Name, "%s", key.name != nullptr ? key.name : "");
    snprintf(record->row.Version, sizeof record->row.Version, "%s",
             key.version != nullptr ? key.version : "");
  }
  static std::vector<std::vector<const char*>> OrvikKeyTries(const Key& key) {
    if (IsEmptyText(key.version)) return {{"Name", "Version"}, {"Name"}};
    return {{"Name", "Version"}};
  }
  static void AfterTextWrite(RecordList* written) { ReplaceOpenLocations(written); }
  static void AfterOrvikChange() { ReloadOpenLocations(); }
  static bool DeleteReferences(const Key& key) {
    return MPUpdateLOReferences(key.name, key.version, kDeleteReferences, "", "") == 1;
  }
};

using Family = KeyedFamily<LoTraits>;

LoTraits::Key KeyFrom(const Texts& key) {
  return {key.at(0).c_str(), key.size() > 1 ? key[1].c_str() : ""};
}

const KindApi& MakeLoApi() {
  static KindApi api;
  api.schema = &LoSchema();
  api.key_names = {"Name", "Version"};
  api.list = [](const Texts&, RecordList** list) {
    return MPGetLOCompleteList(list, MODE_READ) == 1;
  };
  api.get = [](const Texts& key, void** record) {
    LORecord* found = nullptr;
    LoTraits::Key k = KeyFrom(key);
    bool ok = MPGetLO(k.name, k.version, &found) == 1;
    *record = found;
    return ok;
  };
  api.put = [](void* record) {
    bool written = false;
    return Family::Put(static_cast<LORecord*>(record), &written) == 1 && written;
  };
  api.remove = [](const Texts& key) {
    LoTraits::Key k = KeyFrom(key);
    return MPDeleteLO(k.name, k.version) == 1;
  };
  api.flag_names = [](QvFlagNames** table) { return MPGetLOFlagNames(table) == 1; };
  api.stored = [](const void* record) -> void* {
    return Family::StoredCopy(*static_cast<const LORecord*>(record));
  };
  return api;
}

}  // namespace

const KindSchema& LoSchema() {
  static const KindSchema schema = {
      FindKindInfo("LO"),
      sizeof(LORecord),
      offsetof(LORecord, row),
      sizeof(LORow),
      SIZE_MAX,
      offsetof(LORecord, recordFlags),
      offsetof(LORecord, lineNumber),
      {
          QV_MEMBER(LORecord, row.Name, "Name", true),
          QV_MEMBER(LORecord, row.Version, "Version", true),
          QV_MEMBER(LORecord, row.ParentName, "ParentName", true),
          QV_MEMBER(LORecord, row.ParentVersion, "ParentVersion", true),
          QV_MEMBER(LORecord, row.Folder, "Folder", true),
          QV_MEMBER(LORecord, row.ShortFolder, "ShortFolder", true),
          QV_MEMBER(LORecord, row.Attribute40, "Attribute40", true),
          QV_MEMBER(LORecord, row.Flags, "Flags", true),
          QV_MEMBER(LORecord, recordFlags, "recordFlags", false),
          QV_MEMBER(LORecord, lineNumber, "lineNumber", false),
      },
      {
          QV_LINE_FIELD(LORecord, row.Name, LineSyntax::kText, 40, 0, 0),
          QV_LINE_FIELD(LORecord, row.Version, LineSyntax::kText, 10, 0, 0),
          QV_LINE_FIELD(LORecord, row.ParentName, LineSyntax::kText, 40, FO_OPTIONAL, 0),
          QV_LINE_FIELD(LORecord, row.ParentVersion, LineSyntax::kText, 10, FO_OPTIONAL, 0),
          QV_LINE_FIELD(LORecord, row.Folder, LineSyntax::kText, 260, 0, 0),
          QV_LINE_FIELD(LORecord, row.ShortFolder, LineSyntax::kText, 260, FO_OPTIONAL, 0),
          QV_LINE_FIELD(LORecord, row.Attribute40, LineSyntax::kText, 40, 0, 0),
          QV_LINE_FIELD(LORecord, row.Flags, LineSyntax::kFlagString32, 0, 0, 0),
      },
      "Location",
      {"Modifiable", "Visible in custom dialog", "Always create",
       "Don't remove (Win, WinSys, etc.)", "Participates in Custom install",
       "Participates in Minimum install", "Participates in Standard install",
       "Participates in Local install", "Participates in Network install",
       "Participates in Workstation install", "Remote Create Always", "Remote Don't Remove"},
      0x4FC00000u,
      "Location File %s cannot be found or opened!",
      KindSchema::FailedLine::kFailRead,
      nullptr,
      nullptr,
      &CheckLocation,
      nullptr,
  };
  return schema;
}

const KindApi& LoKindApi() {
  static const KindApi& api = MakeLoApi();
  return api;
}

bool LocationHasKey(const LORecord& location, const char* name, const char* version) {
  if (name == nullptr || !EqualsIgnoreCase(name, location.row.Name)) return false;
  return EqualsIgnoreCase(version != nullptr ? version : "", location.row.Version);
}

LORecord* FindExactLocation(RecordList* list, const char* name, const char* version) {
  if (list == nullptr || IsEmptyText(name)) return nullptr;
  RecordNode* node = list->head;
  for (uint32_t i = 0; node != nullptr && i < list->count; ++i, node = node->next) {
    LORecord* location = static_cast<LORecord*>(node->record);
    if (LocationHasKey(*location, name, version)) return location;
  }
  return nullptr;
}

LORecord* FindLocation(RecordList* list, const char* name, const char* version) {
  if (LORecord* exact = FindExactLocation(list, name, version)) return exact;
  if (list == nullptr || IsEmptyText(name) || !IsEmptyText(version)) return nullptr;
  RecordNode* node = list->head;
  for (uint32_t i = 0; node != nullptr && i < list->count; ++i, node = node->next) {
    LORecord* location = static_cast<LORecord*>(node->record);
    if (EqualsIgnoreCase(name, location->row.Name)) return location;
  }
  return nullptr;
}

}  // namespace qv

using qv::Family;

QV_DEFINE_LIST_OPERATIONS(LO, LORecord, MPFreeLO)

extern "C" {

int MPNewLO(LORecord** recordOut) {
  *recordOut = Family::New();
  return *recordOut != nullptr ? 1 : 0;
}

int MPFreeLO(LORecord* record) {
  qv::FreeRecord(record);
  return 1;
}

int MPReleaseLO(LORecord** record) {
  if (record == nullptr) return 1;
  qv::FreeRecord(*record);
  *record = nullptr;
  return 1;
}

int MPGetLOCompleteList(LOList** listOut, uint32_t mode) {
  return Family::ReadAll(listOut, mode);
}

int MPGetLO(const char* name, const char* version, LORecord** recordOut) {
  return Family::Get({name, version}, recordOut);
}

int MPPutLO(LORecord* record) {
  return Family::Put(record);
}

int MPPutLOCompleteList(LOList* list) {
  return Family::PutCompleteList(list);
}

int MPDeleteLO(const char* name, const char* version) {
  return Family::Delete({name, version});
}

int MPCopyLO(LORecord** recordInOut, const LORecord* source, int mode, LOList* list) {
  return Family::Copy(recordInOut, source, mode, list);
}

int MPFindLONode(const char* name, const char* version, LOList* list, LORecord** recordOut) {
  return Family::Find({name, version}, list, recordOut);
}

int MPGetLOFlagNames(LOFlagNames** tableOut) {
  *tableOut = qv::NewFlagNames(qv::LoSchema());
  return 1;
}

int MPUpdateLOReferences(const char* name, const char* version, uint32_t mode, const char* newName,
                         const char* newVersion) {
  if (mode != qv::kDeleteReferences && mode != qv::kUpdateReferences) return 1;
  return qv::UpdateModuleLocationsOfLocation(name, version, mode, newName, newVersion) ? 1 : 0;
}

int MPWriteLOList(LOList* list) {
  return Family::Write(list);
}

}  // extern "C"
