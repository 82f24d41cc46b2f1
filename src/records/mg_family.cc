// Module groups: each the first line of the "Module Groups" section of its
// own file in "<profile>\UIGroups". The file maker takes no module-group
// kind, so a new group gets no file: only groups whose file exists can be
// written.
#include <cstring>

#include "core/report_capture.h"
#include "orvik/transaction.h"
#include "quorvex/modulegroups.h"
#include "records/family_io.h"
#include "records/owned_file_api.h"
#include "records/owned_file_family.h"
#include "records/record_codec.h"
#include "records/record_list.h"
#include "records/reference_hooks.h"
#include "records/top_kinds.h"

namespace qv {
namespace {

const KindSchema& ModuleGroupSchema() {
  static const KindSchema schema = [] {
    KindSchema s{};
    s.kind = FindKindInfo("MG");
    s.record_size = sizeof(MGRecord);
    s.row_offset = offsetof(MGRecord, row);
    s.row_size = sizeof(MGRow);
    s.row_pointer_offset = SIZE_MAX;
    s.record_flags_offset = offsetof(MGRecord, LineAttributes);
    s.line_number_offset = offsetof(MGRecord, lineNumber);
    s.members = {
        QV_MEMBER(MGRecord, row.Name, "Name", true),
        QV_MEMBER(MGRecord, row.Version, "Version", true),
        QV_MEMBER(MGRecord, row.SecondName, "SecondName", true),
        QV_MEMBER(MGRecord, row.SecondVersion, "SecondVersion", true),
        QV_MEMBER(MGRecord, row.ThirdName, "ThirdName", true),
        QV_MEMBER(MGRecord, row.ThirdVersion, "ThirdVersion", true),
        QV_MEMBER(MGRecord, row.TextIdA, "TextIdA", true),
        QV_MEMBER(MGRecord, row.TextIdB, "TextIdB", true),
        QV_MEMBER(MGRecord, row.Flags, "Flags", true),
        QV_MEMBER(MGRecord, FileName, "FileName", false),
        QV_MEMBER(MGRecord, LineAttributes, "LineAttributes", false),
        QV_MEMBER(MGRecord, lineNumber, "lineNumber", false),
    };
    s.line = {
        QV_LINE_FIELD(MGRecord, row.Name, LineSyntax::kText, 40, 0, 0),
        QV_LINE_FIELD(MGRecord, row.Version, LineSyntax::kText, 10, 0, 0),
        QV_LINE_FIELD(MGRecord, row.SecondName, LineSyntax::kText, 40, FO_OPTIONAL, 0),
        QV_LINE_FIELD(MGRecord, row.SecondVersion, LineSyntax::kText, 10, FO_OPTIONAL, 0),
        QV_LINE_FIELD(MGRecord, row.ThirdName, LineSyntax::kText, 40, 0, 0),
        QV_LINE_FIELD(MGRecord, row.ThirdVersion, LineSyntax::kText, 10, 0, 0),
        QV_LINE_FIELD(MGRecord, row.TextIdA, LineSyntax::kText, 40, 0, 0),
        QV_LINE_FIELD(MGRecord, row.TextIdB, LineSyntax::kText, 40, 0, 0),
        QV_LINE_FIELD(MGRecord, row.Flags, LineSyntax::kFlagString32, 0, 0, 0),
    };
    s.flag_label = "Module Group";
    s.bit_names[0] = "Expandable";
    s.flag_mask = 0x80000000u;
    s.missing_file_message = "File associated with Module Group %s,%s cannot be found or opened!";
    s.orvik_fetch_label = "Module group";
    return s;
  }();
  return schema;
}

bool DeleteModuleGroupReferences(const char* name, const char* version) {
  return MPDeleteMGReferences(name, version, kDeleteReferences, 0, 0) == 1;
}

const OwnedFileKind& ModuleGroupKind() {
  static const OwnedFileKind kind = [] {
    OwnedFileKind k{};
    k.schema = &ModuleGroupSchema();
    k.folder = "UIGroups";
    k.extension = "MG";
    k.name_offset = offsetof(MGRecord, row.Name);
    k.name_size = sizeof(MGRow::Name);
    k.version_offset = offsetof(MGRecord, row.Version);
    k.version_size = sizeof(MGRow::Version);
    k.file_name_offset = offsetof(MGRecord, FileName);
    k.file_name_size = sizeof(MGRecord::FileName);
    k.text_ids = {{offsetof(MGRecord, row.TextIdA), sizeof(MGRow::TextIdA)},
                  {offsetof(MGRecord, row.TextIdB), sizeof(MGRow::TextIdB)}};
    k.parent_missing = "Parent Module Group Could Not be found to birth Child.";
    k.insert_failed = "Cannot insert MG record in Orvik shipping profile";
    k.fetch_failed = "Cannot get Module group out of Orvik profile.";
    k.not_found_to_delete = "Cannot find MG file to delete it.";
    k.cannot_delete_file = "Cannot delete MG file.";
    k.delete_failed = "Cannot delete MG record from Orvik shipping profile";
    k.references_remain = "Cannot delete all references to this MG, therefore cannot delete it.";
    k.delete_references = &DeleteModuleGroupReferences;
    k.file_missing = "Did you just manually delete a file from the database?";
    // The file maker's "Unsupported File Type given to CreateMungedFile."
    // is all that is said.
    k.file_not_made = nullptr;
    return k;
  }();
  return kind;
}

void FreeModuleGroup(MGRecord* record) {
  FreeRecord(record);
}

KindApi MakeModuleGroupApi() {
  KindApi api = MakeOwnedFileApi(ModuleGroupKind());
  api.put_refusal = [](const void* record) -> std::string {
    const auto* group = static_cast<const MGRecord*>(record);
    if (group->FileName[0] != '\0') return "";
    MGRecord* stored = nullptr;
    {
      ReportCapture quiet(/*quiet=*/true);
      MPGetMG(group->row.Name, group->row.Version, &stored);
    }
    bool exists = stored != nullptr;
    MPFreeMG(&stored);
    if (exists) return "";
    return "A new module group cannot be added: the engine makes no file for module groups. "
           "Write the group's file in the profile's UIGroups folder (a [Module Groups] section "
           "holding its line) and put the group again to change it.";
  };
  return api;
}

}  // namespace

const KindApi& ModuleGroupKindApi() {
  static const KindApi api = MakeModuleGroupApi();
  return api;
}

}  // namespace qv

QV_DEFINE_LIST_OPERATIONS(MG, MGRecord, qv::FreeModuleGroup)

extern "C" {

int MPNewMG(MGRecord** recordOut) {
  *recordOut = static_cast<MGRecord*>(qv::NewRecord(qv::ModuleGroupSchema()));
  return *recordOut != nullptr ? 1 : 0;
}

int MPFreeMG(MGRecord** record) {
  if (record == nullptr) return 1;
  qv::FreeRecord(*record);
  *record = nullptr;
  return 1;
}

int MPGetMGCompleteList(MGList** listOut) {
  *listOut = nullptr;
  return qv::ReadOwnedList(qv::ModuleGroupKind(), listOut) ? 1 : 0;
}

int MPFindMGNode(const char* name, const char* version, const char* fileName, MGList* list,
                 MGRecord** recordOut) {
  void* found = nullptr;
  bool ok = qv::FindOwnedNode(qv::ModuleGroupKind(), name, version, fileName, list, &found);
  *recordOut = static_cast<MGRecord*>(found);
  return ok ? 1 : 0;
}

int MPGetMG(const char* name, const char* version, MGRecord** recordOut) {
  void* found = nullptr;
  bool ok = qv::GetOwned(qv::ModuleGroupKind(), name, version, &found);
  *recordOut = static_cast<MGRecord*>(found);
  return ok ? 1 : 0;
}

int MPCopyMG(MGRecord** recordInOut, const MGRecord* source, int mode, MGList* list) {
  return qv::CopyOwned(qv::ModuleGroupKind(), reinterpret_cast<void**>(recordInOut), source, mode,
                       list)
             ? 1
             : 0;
}

int MPParseMG(char* line, MGRecord* record) {
  return qv::ParseRecordLine(qv::ModuleGroupSchema(), line, record) ? 1 : 0;
}

int MPPutMG(MGRecord** record, MGRecord* parent) {
  return qv::PutOwned(qv::ModuleGroupKind(), reinterpret_cast<void**>(record), parent) ? 1 : 0;
}

int MPDeleteMG(const char* name, const char* version) {
  return qv::DeleteOwned(qv::ModuleGroupKind(), name, version) ? 1 : 0;
}

static int DeleteMGReferencesAlone(const char* name, const char* version, uint32_t mask, uint32_t,
                                   uint32_t) {
  if (mask != qv::kDeleteReferences) return 1;
  qv::DeleteModuleGroupRows(name, version);
  qv::DeleteInstallModuleGroupsOfGroup(name, version);
  return 1;
}

int MPDeleteMGReferences(const char* name, const char* version, uint32_t mask, uint32_t a,
                         uint32_t b) {
  return qv::Transacted([&] { return DeleteMGReferencesAlone(name, version, mask, a, b); });
}

int MPGetMGFlagNames(MGFlagNames** tableOut) {
  *tableOut = qv::NewFlagNames(qv::ModuleGroupSchema());
  return 1;
}

}  // extern "C"
