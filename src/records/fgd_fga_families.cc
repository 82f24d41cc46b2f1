// The file groups of other modules that a group requires (FGD, "[File
// Groups I Require]") and the Ads a group carries (FGA, "[File Group
// Ads]"), both in the module's file.
#include "quorvex/filegroups.h"
#include "records/filegroup_families.h"

namespace qv {

const KindSchema& FgdDesc::Schema() {
  static const KindSchema schema = [] {
    KindSchema s = ModuleRecordSchema<FGDRecord>("FGD");
    s.members.insert(s.members.end(),
                     {
                         QV_MEMBER(FGDRecord, row.GroupName, "GroupName", true),
                         QV_MEMBER(FGDRecord, row.ReqModuleName, "ReqModuleName", true),
                         QV_MEMBER(FGDRecord, row.ReqModuleVersion, "ReqModuleVersion", true),
                         QV_MEMBER(FGDRecord, row.ReqGroupName, "ReqGroupName", true),
                         QV_MEMBER(FGDRecord, recordFlags, "recordFlags", false),
                         QV_MEMBER(FGDRecord, lineNumber, "lineNumber", false),
                     });
    s.line = {
        QV_LINE_FIELD(FGDRecord, row.GroupName, LineSyntax::kText, 20, 0, 0),
        QV_LINE_FIELD(FGDRecord, row.ReqModuleName, LineSyntax::kText, 40, 0, 0),
        QV_LINE_FIELD(FGDRecord, row.ReqModuleVersion, LineSyntax::kText, 10, 0, 0),
        QV_LINE_FIELD(FGDRecord, row.ReqGroupName, LineSyntax::kText, 20, 0, 0),
    };
    s.flag_label = "File Group Dependency";
    return s;
  }();
  return schema;
}

const KindSchema& FgaDesc::Schema() {
  static const KindSchema schema = [] {
    KindSchema s = ModuleRecordSchema<FGARecord>("FGA");
    s.members.insert(s.members.end(), {
                                          QV_MEMBER(FGARecord, row.GroupName, "GroupName", true),
                                          QV_MEMBER(FGARecord, row.AdId, "AdId", true),
                                          QV_MEMBER(FGARecord, recordFlags, "recordFlags", false),
                                          QV_MEMBER(FGARecord, lineNumber, "lineNumber", false),
                                      });
    s.line = {
        QV_LINE_FIELD(FGARecord, row.GroupName, LineSyntax::kText, 20, 0, 0),
        QV_LINE_FIELD(FGARecord, row.AdId, LineSyntax::kInteger, 0, 0, 0),
    };
    s.flag_label = "File Group Ad";
    return s;
  }();
  return schema;
}

int FgdDesc::Put(FGDRecord* record, bool* written) {
  return FgdFamily::Put(record, written);
}
int FgaDesc::Put(FGARecord* record, bool* written) {
  return FgaFamily::Put(record, written);
}

const KindApi& FgdKindApi() {
  return FgdFamily::Api();
}
const KindApi& FgaKindApi() {
  return FgaFamily::Api();
}

}  // namespace qv

using qv::FgaFamily;
using qv::FgdFamily;

QV_DEFINE_LIST_OPERATIONS(FGD, FGDRecord, MPFreeFGD)
QV_DEFINE_LIST_OPERATIONS(FGA, FGARecord, MPFreeFGA)

extern "C" {

int MPNewFGD(FGDRecord** recordOut) {
  *recordOut = FgdFamily::New();
  return *recordOut != nullptr ? 1 : 0;
}
int MPFreeFGD(FGDRecord* record) {
  qv::FreeRecord(record);
  return 1;
}
int MPGetFGDCompleteList(const char* moduleName, const char* moduleVersion, FGDList** listOut,
                         uint32_t mode) {
  return FgdFamily::ReadAll(moduleName, moduleVersion, listOut, mode);
}
int MPPutFGDCompleteList(const char* moduleName, const char* moduleVersion, FGDList* list) {
  return FgdFamily::PutCompleteList(moduleName, moduleVersion, list);
}
int MPPutFGD(FGDRecord* record) {
  return FgdFamily::Put(record);
}
int MPDeleteFGD(const char* moduleName, const char* moduleVersion, const char* groupName,
                const char* reqModuleName, const char* reqModuleVersion, const char* reqGroupName) {
  return FgdFamily::Delete({moduleName,
                            moduleVersion,
                            {qv::KeyPart(groupName), qv::KeyPart(reqModuleName),
                             qv::KeyPart(reqModuleVersion), qv::KeyPart(reqGroupName)}});
}
int MPGetFGDFlagNames(FGDFlagNames** tableOut) {
  *tableOut = qv::NewFlagNames(qv::FgdDesc::Schema());
  return 1;
}

int MPNewFGA(FGARecord** recordOut) {
  *recordOut = FgaFamily::New();
  return *recordOut != nullptr ? 1 : 0;
}
int MPFreeFGA(FGARecord* record) {
  qv::FreeRecord(record);
  return 1;
}
int MPGetFGACompleteList(const char* moduleName, const char* moduleVersion, FGAList** listOut,
                         uint32_t mode) {
  return FgaFamily::ReadAll(moduleName, moduleVersion, listOut, mode);
}
int MPPutFGACompleteList(const char* moduleName, const char* moduleVersion, FGAList* list) {
  if (qv::IsOrvikProfile()) {
    ReportError("FGAs not implemented in QUORVEX for Orvik for MPPutFGACompleteList", 0);
    return 0;
  }
  return FgaFamily::PutCompleteList(moduleName, moduleVersion, list);
}
int MPPutFGA(FGARecord* record) {
  return FgaFamily::Put(record);
}
int MPDeleteFGA(const char* moduleName, const char* moduleVersion, const char* groupName,
                uint32_t adId) {
  FgaFamily::Key key{moduleName, moduleVersion, {qv::KeyPart(groupName), std::nullopt}};
  if (adId != 0) key.parts[1] = std::to_string(adId);
  return FgaFamily::Delete(key);
}
int MPGetFGAFlagNames(FGAFlagNames** tableOut) {
  *tableOut = qv::NewFlagNames(qv::FgaDesc::Schema());
  return 1;
}

}  // extern "C"
