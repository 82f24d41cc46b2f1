// Installs: each the first line of the "Install" section of its own file
// in "<profile>\installs", known by its name alone.
#include "orvik/transaction.h"
#include "quorvex/installs.h"
#include "records/family_io.h"
#include "records/owned_file_api.h"
#include "records/owned_file_family.h"
#include "records/record_codec.h"
#include "records/record_list.h"
#include "records/reference_hooks.h"
#include "records/top_kinds.h"

namespace qv {
namespace {

#define DR_TEXT(path, width, options) \
  QV_LINE_FIELD(DRRecord, row.path, LineSyntax::kText, width, options, 0)
#define DR_NUMBER(path) QV_LINE_FIELD(DRRecord, row.path, LineSyntax::kInteger, 0, FO_OPTIONAL, 0)

const KindSchema& InstallSchema() {
  static const KindSchema schema = [] {
    KindSchema s{};
    s.kind = FindKindInfo("DR");
    s.record_size = sizeof(DRRecord);
    s.row_offset = offsetof(DRRecord, row);
    s.row_size = sizeof(DRRow);
    s.row_pointer_offset = SIZE_MAX;
    s.record_flags_offset = offsetof(DRRecord, LineAttributes);
    s.line_number_offset = offsetof(DRRecord, lineNumber);
    s.members = {
        QV_MEMBER(DRRecord, row.Name, "Name", true),
        QV_MEMBER(DRRecord, row.TextIdA, "TextIdA", true),
        QV_MEMBER(DRRecord, row.TextIdB, "TextIdB", true),
        QV_MEMBER(DRRecord, row.TextIdC, "TextIdC", true),
        QV_MEMBER(DRRecord, row.text1, "text1", true),
        QV_MEMBER(DRRecord, row.text2, "text2", true),
        QV_MEMBER(DRRecord, row.text3, "text3", true),
        QV_MEMBER(DRRecord, row.number1, "number1", true),
        QV_MEMBER(DRRecord, row.text4, "text4", true),
        QV_MEMBER(DRRecord, row.text5, "text5", true),
        QV_MEMBER(DRRecord, row.text6, "text6", true),
        QV_MEMBER(DRRecord, row.number2, "number2", true),
        QV_MEMBER(DRRecord, row.number3, "number3", true),
        QV_MEMBER(DRRecord, row.number4, "number4", true),
        QV_MEMBER(DRRecord, row.Flags, "Flags", true),
        QV_MEMBER(DRRecord, row.text7, "text7", true),
        QV_MEMBER(DRRecord, row.SecondName, "SecondName", true),
        QV_MEMBER(DRRecord, row.SecondVersion, "SecondVersion", true),
        QV_MEMBER(DRRecord, row.text8, "text8", true),
        QV_MEMBER(DRRecord, row.text9, "text9", true),
        QV_MEMBER(DRRecord, row.text10, "text10", true),
        QV_MEMBER(DRRecord, FileName, "FileName", false),
        QV_MEMBER(DRRecord, LineAttributes, "LineAttributes", false),
        QV_MEMBER(DRRecord, lineNumber, "lineNumber", false),
    };
    s.line = {
        DR_TEXT(Name, 40, 0),
        DR_TEXT(TextIdA, 40, 0),
        DR_TEXT(TextIdB, 40, 0),
        DR_TEXT(TextIdC, 40, 0),
        DR_TEXT(text1, 10, 0),
        DR_TEXT(text2, 260, 0),
        DR_TEXT(text3, 40, FO_OPTIONAL),
        DR_NUMBER(number1),
        DR_TEXT(text4, 40, FO_OPTIONAL),
        DR_TEXT(text5, 40, FO_OPTIONAL),
        DR_TEXT(text6, 40, FO_OPTIONAL),
        DR_NUMBER(number2),
        DR_NUMBER(number3),
        DR_NUMBER(number4),
        QV_LINE_FIELD(DRRecord, row.Flags, LineSyntax::kFlagString32, 0, FO_OPTIONAL, 0),
        DR_TEXT(text7, 39, 0),
        DR_TEXT(SecondName, 40, 0),
        DR_TEXT(SecondVersion, 10, 0),
        DR_TEXT(text8, 260, 0),
        DR_TEXT(text9, 10, 0),
        DR_TEXT(text10, 40, 0),
    };
    s.flag_label = "Driver";
    // Characters 6 to 12 have no label: their positions are kept in the
    // stored words.
    const char* names[] = {"Allow a Net install to Allow a Local install",
                           "Allow a Net install To Allow a Workstation install",
                           "Allow Server install only to NT 3.5x servers",
                           "Allow Server install only to NT 4.x servers",
                           "Allow Server install only to Tallgrass servers",
                           "",
                           "",
                           "",
                           "",
                           "",
                           "",
                           "",
                           "Only use current Location versions"};
    for (size_t i = 0; i < std::size(names); ++i) s.bit_names[i] = names[i];
    s.flag_mask = 0xC0080000u;
    s.missing_file_message = "File associated with install %s cannot be found or opened!";
    s.orvik_fetch_label = "Driver";
    return s;
  }();
  return schema;
}

#undef DR_TEXT
#undef DR_NUMBER

bool DeleteInstallReferences(const char* name, const char*) {
  return MPDeleteDRReferences(name, kDeleteReferences, 0, 0) == 1;
}

const OwnedFileKind& InstallKind() {
  static const OwnedFileKind kind = [] {
    OwnedFileKind k{};
    k.schema = &InstallSchema();
    k.folder = "INSTALLS";
    k.extension = "in";
    k.name_offset = offsetof(DRRecord, row.Name);
    k.name_size = sizeof(DRRow::Name);
    // Known by the name alone.
    k.version_offset = 0;
    k.version_size = 0;
    k.file_name_offset = offsetof(DRRecord, FileName);
    k.file_name_size = sizeof(DRRecord::FileName);
    k.text_ids = {{offsetof(DRRecord, row.TextIdA), sizeof(DRRow::TextIdA)},
                  {offsetof(DRRecord, row.TextIdB), sizeof(DRRow::TextIdB)},
                  {offsetof(DRRecord, row.TextIdC), sizeof(DRRow::TextIdC)}};
    k.parent_missing = "Parent Driver Could Not be found to birth Child.";
    k.insert_failed = "Cannot insert DR record in Orvik shipping profile";
    k.fetch_failed = "Cannot get Driver out of Orvik profile.";
    k.not_found_to_delete = "Cannot find DR file to delete it.";
    k.cannot_delete_file = "Cannot delete DR file.";
    k.delete_failed = "Cannot delete DR record from Orvik shipping profile";
    k.references_remain = "Cannot delete all references to this DR, therefore cannot delete it.";
    k.delete_references = &DeleteInstallReferences;
    return k;
  }();
  return kind;
}

void FreeInstall(DRRecord* record) {
  FreeRecord(record);
}

}  // namespace

const KindApi& InstallKindApi() {
  static const KindApi api = MakeOwnedFileApi(InstallKind());
  return api;
}

}  // namespace qv

QV_DEFINE_LIST_OPERATIONS(DR, DRRecord, qv::FreeInstall)

extern "C" {

int MPNewDR(DRRecord** recordOut) {
  *recordOut = static_cast<DRRecord*>(qv::NewRecord(qv::InstallSchema()));
  return *recordOut != nullptr ? 1 : 0;
}

int MPFreeDR(DRRecord** record) {
  if (record == nullptr) return 1;
  qv::FreeRecord(*record);
  *record = nullptr;
  return 1;
}

int MPGetDRCompleteList(DRList** listOut) {
  *listOut = nullptr;
  return qv::ReadOwnedList(qv::InstallKind(), listOut) ? 1 : 0;
}

int MPFindDRNode(const char* name, const char* fileName, DRList* list, DRRecord** recordOut) {
  void* found = nullptr;
  bool ok = qv::FindOwnedNode(qv::InstallKind(), name, "", fileName, list, &found);
  *recordOut = static_cast<DRRecord*>(found);
  return ok ? 1 : 0;
}

int MPGetDR(const char* name, DRRecord** recordOut) {
  void* found = nullptr;
  bool ok = qv::GetOwned(qv::InstallKind(), name, "", &found);
  *recordOut = static_cast<DRRecord*>(found);
  return ok ? 1 : 0;
}

int MPCopyDR(DRRecord** recordInOut, const DRRecord* source, int mode, DRList* list) {
  return qv::CopyOwned(qv::InstallKind(), reinterpret_cast<void**>(recordInOut), source, mode, list)
             ? 1
             : 0;
}

int MPParseDR(char* line, DRRecord* record) {
  return qv::ParseRecordLine(qv::InstallSchema(), line, record) ? 1 : 0;
}

int MPPutDR(DRRecord** record, DRRecord* parent) {
  return qv::PutOwned(qv::InstallKind(), reinterpret_cast<void**>(record), parent) ? 1 : 0;
}

int MPDeleteDR(const char* name) {
  return qv::DeleteOwned(qv::InstallKind(), name, "") ? 1 : 0;
}

static int DeleteDRReferencesAlone(const char* name, uint32_t mask, uint32_t, uint32_t) {
  if (mask != qv::kDeleteReferences) return 1;
  qv::DeleteInstallRows(name);
  return 1;
}

int MPDeleteDRReferences(const char* name, uint32_t mask, uint32_t a, uint32_t b) {
  return qv::Transacted([&] { return DeleteDRReferencesAlone(name, mask, a, b); });
}

int MPGetDRFlagNames(DRFlagNames** tableOut) {
  *tableOut = qv::NewFlagNames(qv::InstallSchema());
  return 1;
}

}  // extern "C"
