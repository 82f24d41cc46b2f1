#include "records/ss_associations.h"

#include "records/owner_kinds.h"
#include "records/ss_settings_file.h"

namespace qv {
namespace {

template <class Desc>
KindSchema AssociationSchema(const char* code, const char* title, std::vector<MemberSpec> members,
                             std::vector<LineField> line) {
  using Record = typename Desc::Record;
  KindSchema s = OwnerRecordSchema<Desc>(code,
                                         {
                                             QV_MEMBER(Record, row.ModuleName, "ModuleName", true),
                                             QV_MEMBER(Record, row.ModuleKey2, "ModuleKey2", true),
                                         },
                                         kSettingsFileMissing);
  s.members.insert(s.members.end(), members.begin(), members.end());
  s.members.push_back(QV_MEMBER(Record, recordFlags, "recordFlags", false));
  s.members.push_back(QV_MEMBER(Record, lineNumber, "lineNumber", false));
  s.line = std::move(line);
  s.flag_label = title;
  s.orvik_fetch_label = code;
  return s;
}

// A shipped file's key stands as in the shipped file's own line.
template <class Record>
std::vector<MemberSpec> FileKeyMembers() {
  return {
      QV_MEMBER(Record, row.Language, "Language", true),
      QV_MEMBER(Record, row.GroupName, "GroupName", true),
      QV_MEMBER(Record, row.FileName, "FileName", true),
  };
}
template <class Record>
std::vector<LineField> FileKeyFields() {
  return {
      QV_LINE_FIELD(Record, row.Language, LineSyntax::kText, 10, 0, 0),
      QV_LINE_FIELD(Record, row.GroupName, LineSyntax::kText, 20, 0, 0),
      QV_LINE_FIELD(Record, row.FileName, LineSyntax::kText, 40, 0, 0),
  };
}

}  // namespace

const KindSchema& MOSRDesc::Schema() {
  static const KindSchema schema = AssociationSchema<MOSRDesc>(
      "MOSR", "Module Settings Record", {QV_MEMBER(MOSRRecord, row.SSRName, "SSRName", true)},
      {QV_LINE_FIELD(MOSRRecord, row.SSRName, LineSyntax::kText, 20, 0, 0)});
  return schema;
}

const KindSchema& MOCRDesc::Schema() {
  static const KindSchema schema = AssociationSchema<MOCRDesc>(
      "MOCR", "Module Created Settings Record",
      {QV_MEMBER(MOCRRecord, row.CSSRName, "CSSRName", true)},
      {QV_LINE_FIELD(MOCRRecord, row.CSSRName, LineSyntax::kText, 20, 0, 0)});
  return schema;
}

const KindSchema& SFSRDesc::Schema() {
  static const KindSchema schema = [] {
    std::vector<MemberSpec> members = FileKeyMembers<SFSRRecord>();
    members.push_back(QV_MEMBER(SFSRRecord, row.SSRName, "SSRName", true));
    std::vector<LineField> line = FileKeyFields<SFSRRecord>();
    line.push_back(QV_LINE_FIELD(SFSRRecord, row.SSRName, LineSyntax::kText, 20, 0, 0));
    return AssociationSchema<SFSRDesc>("SFSR", "Shipped File Settings Record", members, line);
  }();
  return schema;
}

const KindSchema& SFCRDesc::Schema() {
  static const KindSchema schema = [] {
    std::vector<MemberSpec> members = FileKeyMembers<SFCRRecord>();
    members.push_back(QV_MEMBER(SFCRRecord, row.CSSRName, "CSSRName", true));
    std::vector<LineField> line = FileKeyFields<SFCRRecord>();
    line.push_back(QV_LINE_FIELD(SFCRRecord, row.CSSRName, LineSyntax::kText, 20, 0, 0));
    return AssociationSchema<SFCRDesc>("SFCR", "File Created Settings Record", members, line);
  }();
  return schema;
}

int MOSRDesc::Put(MOSRRecord* record, bool* written) {
  return MOSRFamily::Put(record, written);
}
int SFSRDesc::Put(SFSRRecord* record, bool* written) {
  return SFSRFamily::Put(record, written);
}
int MOCRDesc::Put(MOCRRecord* record, bool* written) {
  return MOCRFamily::Put(record, written);
}
int SFCRDesc::Put(SFCRRecord* record, bool* written) {
  return SFCRFamily::Put(record, written);
}

const KindApi& MosrKindApi() {
  return MOSRFamily::Api();
}
const KindApi& SfsrKindApi() {
  return SFSRFamily::Api();
}
const KindApi& MocrKindApi() {
  return MOCRFamily::Api();
}
const KindApi& SfcrKindApi() {
  return SFCRFamily::Api();
}

// The section becomes the list; the database takes each row as an insert.
template <class Family>
int PutAssociationList(const char* module, const char* key2, RecordList* list) {
  if (IsOrvikProfile()) return Family::PutCompleteList(module, key2, list);
  Family::List::ForEach(list, [&](typename Family::Record* r) {
    OwnedKindTraits<typename Family::Desc>::SetOwner(r, module, key2);
  });
  return Family::Write(module, key2, list);
}

}  // namespace qv

using qv::MOCRFamily;
using qv::MOSRFamily;
using qv::SFCRFamily;
using qv::SFSRFamily;

#define QV_DEFINE_ASSOCIATION_OPERATIONS(code)                                   \
  QV_DEFINE_LIST_OPERATIONS(code, code##Record, MPFree##code)                    \
  extern "C" {                                                                   \
  int MPNew##code(code##Record** recordOut) {                                    \
    *recordOut = code##Family::New();                                            \
    return *recordOut != nullptr ? 1 : 0;                                        \
  }                                                                              \
  int MPFree##code(code##Record* record) {                                       \
    ::qv::FreeRecord(record);                                                    \
    return 1;                                                                    \
  }                                                                              \
  int MPGet##code##CompleteList(const char* moduleName, const char* moduleKey2,  \
                                code##List** listOut, uint32_t mode) {           \
    return code##Family::ReadAll(moduleName, moduleKey2, listOut, mode);         \
  }                                                                              \
  int MPPut##code##CompleteList(const char* moduleName, const char* moduleKey2,  \
                                code##List* list) {                              \
    return ::qv::PutAssociationList<code##Family>(moduleName, moduleKey2, list); \
  }                                                                              \
  int MPPut##code(code##Record* record) {                                        \
    return code##Family::Put(record);                                            \
  }                                                                              \
  int MPGet##code##FlagNames(code##FlagNames** tableOut) {                       \
    *tableOut = ::qv::NewFlagNames(code##Family::Schema());                      \
    return 1;                                                                    \
  }                                                                              \
  }

QV_DEFINE_ASSOCIATION_OPERATIONS(MOSR)
QV_DEFINE_ASSOCIATION_OPERATIONS(SFSR)
QV_DEFINE_ASSOCIATION_OPERATIONS(MOCR)
QV_DEFINE_ASSOCIATION_OPERATIONS(SFCR)

extern "C" {

int MPGetMOSR(const char* moduleName, const char* moduleKey2, const char* ssrName,
              MOSRRecord** recordOut) {
  return MOSRFamily::Get({moduleName, moduleKey2, {qv::KeyPart(ssrName)}}, recordOut);
}
int MPDeleteMOSR(const char* moduleName, const char* moduleKey2, const char* ssrName) {
  return MOSRFamily::Delete({moduleName, moduleKey2, {qv::KeyPart(ssrName)}});
}
int MPGetMOCR(const char* moduleName, const char* moduleKey2, const char* cssrName,
              MOCRRecord** recordOut) {
  return MOCRFamily::Get({moduleName, moduleKey2, {qv::KeyPart(cssrName)}}, recordOut);
}
int MPDeleteMOCR(const char* moduleName, const char* moduleKey2, const char* cssrName) {
  return MOCRFamily::Delete({moduleName, moduleKey2, {qv::KeyPart(cssrName)}});
}
int MPGetSFSR(const char* moduleName, const char* moduleKey2, const char* language,
              const char* groupName, const char* fileName, const char* ssrName,
              SFSRRecord** recordOut) {
  return SFSRFamily::Get({moduleName,
                          moduleKey2,
                          {qv::KeyPart(language), qv::KeyPart(groupName), qv::KeyPart(fileName),
                           qv::KeyPart(ssrName)}},
                         recordOut);
}
int MPDeleteSFSR(const char* moduleName, const char* moduleKey2, const char* language,
                 const char* groupName, const char* fileName, const char* ssrName) {
  return SFSRFamily::Delete({moduleName,
                             moduleKey2,
                             {qv::KeyPart(language), qv::KeyPart(groupName), qv::KeyPart(fileName),
                              qv::KeyPart(ssrName)}});
}
int MPGetSFCR(const char* moduleName, const char* moduleKey2, const char* language,
              const char* groupName, const char* fileName, const char* cssrName,
              SFCRRecord** recordOut) {
  return SFCRFamily::Get({moduleName,
                          moduleKey2,
                          {qv::KeyPart(language), qv::KeyPart(groupName), qv::KeyPart(fileName),
                           qv::KeyPart(cssrName)}},
                         recordOut);
}
int MPDeleteSFCR(const char* moduleName, const char* moduleKey2, const char* language,
                 const char* groupName, const char* fileName, const char* cssrName) {
  return SFCRFamily::Delete({moduleName,
                             moduleKey2,
                             {qv::KeyPart(language), qv::KeyPart(groupName), qv::KeyPart(fileName),
                              qv::KeyPart(cssrName)}});
}

}  // extern "C"
