// The six entry kinds of a settings file: settings entries (IE, RE, PE) in
// "System-Settings Records" and created entries (CIE, CRE, CPE) in
// "Created System-Settings", described once each and served by EntryFamily.
#include <strings.h>

#include <string>
#include <vector>

#include "core/copy_text.h"
#include "quorvex/settings.h"
#include "records/kind_api.h"
#include "records/record_codec.h"
#include "records/record_list.h"
#include "records/ss_entry_family.h"
#include "records/ss_flag_tables.h"

namespace qv {
namespace {

// Both bodies start with the module's key, filled from the file.
void SetModuleOf(void* record, const char* name, const char* key) {
  auto* body = static_cast<SSRData*>(record);
  CopyCut(body->ModuleName, name);
  CopyCut(body->ModuleKey2, key);
}

template <class Record>
KindSchema EntrySchemaStart(const char* code) {
  KindSchema s{};
  s.kind = FindKindInfo(code);
  s.record_size = sizeof(Record);
  s.row_offset = offsetof(Record, row);
  s.row_size = sizeof(Record::row);
  s.row_pointer_offset = SIZE_MAX;
  s.record_flags_offset = offsetof(Record, recordFlags);
  s.line_number_offset = offsetof(Record, lineNumber);
  s.orvik_fetch_label = code;
  s.set_owner = &SetModuleOf;
  return s;
}

std::vector<MemberSpec> NodeMembers() {
  return {
      QV_MEMBER(SSRRecord, recordFlags, "recordFlags", false),
      QV_MEMBER(SSRRecord, Description, "Description", false),
      QV_MEMBER(SSRRecord, ModifySubkeyFlags, "ModifySubkeyFlags", false),
      QV_MEMBER(SSRRecord, ModifyValueNameFlags, "ModifyValueNameFlags", false),
      QV_MEMBER(SSRRecord, ModifyValueFlags, "ModifyValueFlags", false),
      QV_MEMBER(SSRRecord, lineNumber, "lineNumber", false),
  };
}

// The members of an entry of a shape; those the shape gives no meaning
// stay out of sight.
KindSchema SettingsSchema(const EntryKind& kind) {
  KindSchema s = EntrySchemaStart<SSRRecord>(kind.code);
  s.members = {
      QV_MEMBER(SSRRecord, row.ModuleName, "ModuleName", true),
      QV_MEMBER(SSRRecord, row.ModuleKey2, "ModuleKey2", true),
      QV_MEMBER(SSRRecord, row.Name, "Name", true),
      QV_MEMBER(SSRRecord, row.Type, "Type", true),
      QV_MEMBER(SSRRecord, row.CFKey1, "CFKey1", true),
      QV_MEMBER(SSRRecord, row.CFKey2, "CFKey2", true),
      QV_MEMBER(SSRRecord, row.CFKey3, "CFKey3", true),
      QV_MEMBER(SSRRecord, row.Data, "Data", true),
      QV_MEMBER(SSRRecord, row.DataLength, "DataLength", true),
      QV_MEMBER(SSRRecord, row.EntryFlags, "EntryFlags", true),
  };
  // Data holds text or bytes: EntryFamily checks it by its type.
  s.bytes_member = "Data";
  s.custom_line_members = {"Name",   "Type",       "CFKey1",    "CFKey2",
                           "CFKey3", "DataLength", "EntryFlags"};
  if (kind.shape == EntryShape::kIni) {
    s.members.insert(s.members.end(), {
                                          QV_MEMBER(SSRRecord, row.Section, "Section", true),
                                          QV_MEMBER(SSRRecord, row.Key, "Key", true),
                                      });
    s.custom_line_members.insert(s.custom_line_members.end(), {"Section", "Key"});
  } else {
    s.members.insert(s.members.end(), {
                                          QV_MEMBER(SSRRecord, row.Access, "Access", true),
                                          QV_MEMBER(SSRRecord, row.ValueName, "ValueName", true),
                                          QV_MEMBER(SSRRecord, row.DataType, "DataType", true),
                                          QV_MEMBER(SSRRecord, row.Options, "Options", true),
                                          QV_MEMBER(SSRRecord, row.Root, "Root", true),
                                          QV_MEMBER(SSRRecord, row.KeyPath, "KeyPath", true),
                                          QV_MEMBER(SSRRecord, row.AuxText, "AuxText", true),
                                      });
    if (kind.shape == EntryShape::kPs) {
      s.members.push_back(QV_MEMBER(SSRRecord, row.SecondType, "SecondType", true));
    }
    s.custom_line_members.insert(
        s.custom_line_members.end(),
        {"Access", "ValueName", "DataType", "Options", "Root", "KeyPath", "AuxText"});
  }
  std::vector<MemberSpec> node = NodeMembers();
  s.members.insert(s.members.end(), node.begin(), node.end());
  s.custom_line_members.insert(s.custom_line_members.end(),
                               {"recordFlags", "Description", "ModifySubkeyFlags",
                                "ModifyValueNameFlags", "ModifyValueFlags"});
  SetSettingsFlagTable(&s);
  return s;
}

KindSchema CreatedSchema(const EntryKind& kind) {
  KindSchema s = EntrySchemaStart<CSSRRecord>(kind.code);
  s.members = {
      QV_MEMBER(CSSRRecord, row.ModuleName, "ModuleName", true),
      QV_MEMBER(CSSRRecord, row.ModuleKey2, "ModuleKey2", true),
      QV_MEMBER(CSSRRecord, row.Name, "Name", true),
      QV_MEMBER(CSSRRecord, row.Type, "Type", true),
      QV_MEMBER(CSSRRecord, row.CFKey1, "CFKey1", true),
      QV_MEMBER(CSSRRecord, row.CFKey2, "CFKey2", true),
      QV_MEMBER(CSSRRecord, row.CFKey3, "CFKey3", true),
      QV_MEMBER(CSSRRecord, row.EntryFlags, "EntryFlags", true),
  };
  s.custom_line_members = {"Name", "Type", "CFKey1", "CFKey2", "CFKey3", "EntryFlags"};
  if (kind.shape == EntryShape::kIni) {
    s.members.insert(s.members.end(), {
                                          QV_MEMBER(CSSRRecord, row.Section, "Section", true),
                                          QV_MEMBER(CSSRRecord, row.Key, "Key", true),
                                      });
    s.custom_line_members.insert(s.custom_line_members.end(), {"Section", "Key"});
  } else {
    s.members.insert(s.members.end(), {
                                          QV_MEMBER(CSSRRecord, row.Root, "Root", true),
                                          QV_MEMBER(CSSRRecord, row.KeyPath, "KeyPath", true),
                                          QV_MEMBER(CSSRRecord, row.AuxText, "AuxText", true),
                                      });
    s.custom_line_members.insert(s.custom_line_members.end(), {"Root", "KeyPath", "AuxText"});
  }
  s.members.insert(s.members.end(),
                   {
                       QV_MEMBER(CSSRRecord, recordFlags, "recordFlags", false),
                       QV_MEMBER(CSSRRecord, Description, "Description", false),
                       QV_MEMBER(CSSRRecord, ModifySubkeyFlags, "ModifySubkeyFlags", false),
                       QV_MEMBER(CSSRRecord, ModifyValueNameFlags, "ModifyValueNameFlags", false),
                       QV_MEMBER(CSSRRecord, ModifyValueFlags, "ModifyValueFlags", false),
                       QV_MEMBER(CSSRRecord, lineNumber, "lineNumber", false),
                   });
  s.custom_line_members.insert(s.custom_line_members.end(),
                               {"recordFlags", "Description", "ModifySubkeyFlags",
                                "ModifyValueNameFlags", "ModifyValueFlags"});
  SetCreatedFlagTable(&s);
  return s;
}

// The kind's line hooks: a section holds three kinds, told by their tag.
template <const EntryKind& (*Kind)()>
KindSchema WithLines(KindSchema s) {
  s.parse_line = [](char* line, void* record) { return ParseEntryLine(Kind(), line, record); };
  s.append_line = [](const void* record, std::string* out) {
    return AppendEntryLine(Kind(), record, out);
  };
  s.takes_line = [](const char* line) {
    std::string name;
    std::string tag;
    // A line whose name and tag do not read is everyone's: its read fails.
    if (!ReadNameAndTag(line, &name, &tag)) return true;
    return strcasecmp(tag.c_str(), Kind().tag) == 0;
  };
  return s;
}

template <const EntryKind& (*Kind)()>
const EntryFamily& FamilyOf() {
  static const KindSchema schema =
      WithLines<Kind>(Kind().created ? CreatedSchema(Kind()) : SettingsSchema(Kind()));
  static const EntryFamily family(Kind(), schema);
  return family;
}

}  // namespace

const EntryFamily& ReFamily() {
  return FamilyOf<ReEntry>();
}
const EntryFamily& PeFamily() {
  return FamilyOf<PeEntry>();
}
const EntryFamily& IeFamily() {
  return FamilyOf<IeEntry>();
}
const EntryFamily& CreFamily() {
  return FamilyOf<CreEntry>();
}
const EntryFamily& CpeFamily() {
  return FamilyOf<CpeEntry>();
}
const EntryFamily& CieFamily() {
  return FamilyOf<CieEntry>();
}

const KindSchema& SsrBodySchema() {
  static const KindSchema schema = [] {
    KindSchema s = SettingsSchema(ReEntry());
    s.kind = FindKindInfo("SSR");
    s.orvik_fetch_label = "SSR";
    return s;
  }();
  return schema;
}
const KindSchema& CssrBodySchema() {
  static const KindSchema schema = [] {
    KindSchema s = CreatedSchema(CreEntry());
    s.kind = FindKindInfo("CSSR");
    s.orvik_fetch_label = "CSSR";
    return s;
  }();
  return schema;
}

// The kind's entry for the tool: the module's key, then the name.
KindApi MakeEntryApi(const EntryFamily* f) {
  KindApi a;
  a.schema = &f->schema();
  a.owner_names = {"module", "version"};
  a.key_names = {"module", "version", "Name"};
  a.list = [f](const Texts& owner, RecordList** list) {
    if (owner.size() < 2) return false;
    return f->ReadAll(owner[0].c_str(), owner[1].c_str(), list, MODE_READ) == 1;
  };
  a.get = [f](const Texts& key, void** record) {
    if (key.size() < 3) return false;
    return f->Get(key[0].c_str(), key[1].c_str(), key[2].c_str(), record) == 1;
  };
  a.put = [f](void* record) { return f->Put(record) == 1; };
  a.remove = [f](const Texts& key) {
    if (key.size() < 3) return false;
    return f->Delete(key[0].c_str(), key[1].c_str(), key[2].c_str()) == 1;
  };
  a.flag_names = [f](QvFlagNames** table) {
    *table = NewFlagNames(f->schema());
    return true;
  };
  a.stored = [f](const void* record) -> void* {
    const auto* body = static_cast<const SSRData*>(record);
    void* copy = nullptr;
    f->Get(body->ModuleName, body->ModuleKey2, body->Name, &copy);
    return copy;
  };
  return a;
}

template <const EntryFamily& (*Family)()>
const KindApi& ApiOf() {
  static const KindApi api = MakeEntryApi(&Family());
  return api;
}

const KindApi& ReKindApi() {
  return ApiOf<ReFamily>();
}
const KindApi& PeKindApi() {
  return ApiOf<PeFamily>();
}
const KindApi& IeKindApi() {
  return ApiOf<IeFamily>();
}
const KindApi& CreKindApi() {
  return ApiOf<CreFamily>();
}
const KindApi& CpeKindApi() {
  return ApiOf<CpeFamily>();
}
const KindApi& CieKindApi() {
  return ApiOf<CieFamily>();
}

}  // namespace qv

// The C operations of an entry kind.
#define QV_DEFINE_SETTINGS_ENTRY(code, RecordType, family)                                 \
  QV_DEFINE_LIST_OPERATIONS(code, RecordType, MPFree##code)                                \
  extern "C" {                                                                             \
  int MPNew##code(RecordType** recordOut) {                                                \
    *recordOut = static_cast<RecordType*>(family().New());                                 \
    return *recordOut != nullptr ? 1 : 0;                                                  \
  }                                                                                        \
  int MPFree##code(RecordType* record) {                                                   \
    ::qv::FreeRecord(record);                                                              \
    return 1;                                                                              \
  }                                                                                        \
  int MPGet##code##CompleteList(const char* moduleName, const char* moduleKey2,            \
                                code##List** listOut, uint32_t mode) {                     \
    return family().ReadAll(moduleName, moduleKey2, listOut, mode);                        \
  }                                                                                        \
  int MPPut##code##CompleteList(const char* moduleName, const char* moduleKey2,            \
                                code##List* list) {                                        \
    return family().PutCompleteList(moduleName, moduleKey2, list);                         \
  }                                                                                        \
  int MPGet##code(const char* moduleName, const char* moduleKey2, const char* name,        \
                  RecordType** recordOut) {                                                \
    void* found = nullptr;                                                                 \
    int result = family().Get(moduleName, moduleKey2, name, &found);                       \
    *recordOut = static_cast<RecordType*>(found);                                          \
    return result;                                                                         \
  }                                                                                        \
  int MPPut##code(RecordType* record) {                                                    \
    return family().Put(record);                                                           \
  }                                                                                        \
  int MPDelete##code(const char* moduleName, const char* moduleKey2, const char* name) {   \
    return family().Delete(moduleName, moduleKey2, name);                                  \
  }                                                                                        \
  int MPCopy##code(RecordType** recordInOut, const RecordType* source, int mode,           \
                   code##List* list) {                                                     \
    void* record = *recordInOut;                                                           \
    int result = family().Copy(&record, source, mode, list);                               \
    *recordInOut = static_cast<RecordType*>(record);                                       \
    return result;                                                                         \
  }                                                                                        \
  int MPFind##code##Node(const char* moduleName, const char* moduleKey2, const char* name, \
                         code##List* list, RecordType** recordOut) {                       \
    void* found = nullptr;                                                                 \
    int result = family().Find(moduleName, moduleKey2, name, list, &found);                \
    *recordOut = static_cast<RecordType*>(found);                                          \
    return result;                                                                         \
  }                                                                                        \
  }

QV_DEFINE_SETTINGS_ENTRY(IE, IERecord, qv::IeFamily)
QV_DEFINE_SETTINGS_ENTRY(RE, RERecord, qv::ReFamily)
QV_DEFINE_SETTINGS_ENTRY(PE, PERecord, qv::PeFamily)
QV_DEFINE_SETTINGS_ENTRY(CIE, CIERecord, qv::CieFamily)
QV_DEFINE_SETTINGS_ENTRY(CRE, CRERecord, qv::CreFamily)
QV_DEFINE_SETTINGS_ENTRY(CPE, CPERecord, qv::CpeFamily)
