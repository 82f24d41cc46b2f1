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

}  // namespace qv

using qv::MOCRFamily;
using qv::MOSRFamily;
using qv::SFCRFamily;
using qv::SFSRFamily;

QV_DEFINE_OWNER_CONTENT_OPERATIONS(MOSR, MOSRFamily)
QV_DEFINE_OWNER_CONTENT_OPERATIONS(SFSR, SFSRFamily)
QV_DEFINE_OWNER_CONTENT_OPERATIONS(MOCR, MOCRFamily)
QV_DEFINE_OWNER_CONTENT_OPERATIONS(SFCR, SFCRFamily)

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
