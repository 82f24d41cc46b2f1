// Products: each the first line of the "Product" section of its own file
// in "<profile>\products".
#include <cstring>

#include "orvik/transaction.h"
#include "quorvex/products.h"
#include "records/family_io.h"
#include "records/owned_file_api.h"
#include "records/owned_file_family.h"
#include "records/record_codec.h"
#include "records/record_list.h"
#include "records/reference_hooks.h"
#include "records/top_kinds.h"

namespace qv {
namespace {

const KindSchema& ProductSchema() {
  static const KindSchema schema = [] {
    KindSchema s{};
    s.kind = FindKindInfo("PR");
    s.record_size = sizeof(PRRecord);
    s.row_offset = offsetof(PRRecord, row);
    s.row_size = sizeof(PRRow);
    s.row_pointer_offset = SIZE_MAX;
    s.record_flags_offset = offsetof(PRRecord, LineAttributes);
    s.line_number_offset = offsetof(PRRecord, lineNumber);
    s.members = {
        QV_MEMBER(PRRecord, row.Name, "Name", true),
        QV_MEMBER(PRRecord, row.Version, "Version", true),
        QV_MEMBER(PRRecord, row.TextIdA, "TextIdA", true),
        QV_MEMBER(PRRecord, row.TextIdB, "TextIdB", true),
        QV_MEMBER(PRRecord, row.SecondName, "SecondName", true),
        QV_MEMBER(PRRecord, row.SecondVersion, "SecondVersion", true),
        QV_MEMBER(PRRecord, row.ThirdName, "ThirdName", true),
        QV_MEMBER(PRRecord, row.ThirdVersion, "ThirdVersion", true),
        QV_MEMBER(PRRecord, row.Flags, "Flags", true),
        QV_MEMBER(PRRecord, row.Number, "Number", true),
        QV_MEMBER(PRRecord, Attribute29, "Attribute29", false),
        QV_MEMBER(PRRecord, FileName, "FileName", false),
        QV_MEMBER(PRRecord, LineAttributes, "LineAttributes", false),
        QV_MEMBER(PRRecord, lineNumber, "lineNumber", false),
    };
    s.line = {
        QV_LINE_FIELD(PRRecord, row.Name, LineSyntax::kText, 40, 0, 0),
        QV_LINE_FIELD(PRRecord, row.Version, LineSyntax::kText, 10, 0, 0),
        QV_LINE_FIELD(PRRecord, row.TextIdA, LineSyntax::kText, 40, 0, 0),
        QV_LINE_FIELD(PRRecord, row.TextIdB, LineSyntax::kText, 40, 0, 0),
        QV_LINE_FIELD(PRRecord, row.SecondName, LineSyntax::kText, 40, 0, 0),
        QV_LINE_FIELD(PRRecord, row.SecondVersion, LineSyntax::kText, 10, 0, 0),
        QV_LINE_FIELD(PRRecord, row.ThirdName, LineSyntax::kText, 40, 0, 0),
        QV_LINE_FIELD(PRRecord, row.ThirdVersion, LineSyntax::kText, 10, 0, 0),
        QV_LINE_FIELD(PRRecord, row.Flags, LineSyntax::kFlagString32, 0, 0, 0),
        QV_LINE_FIELD(PRRecord, row.Number, LineSyntax::kInteger, 0, FO_OPTIONAL, 0),
    };
    s.flag_label = "Product";
    // Character 8 is in the mask without a label and character 9 labelled
    // outside it: both stand in stored flag words as they always have.
    const char* names[] = {"Expandable in custom dialog",
                           "Participates in Custom install",
                           "Participates in Minimum install",
                           "Participates in Standard install",
                           "Participates in Local install",
                           "Participates in NetWork install",
                           "Participates in Workstation install",
                           "",
                           "Software distribution may be triggered when this application starts"};
    for (size_t i = 0; i < std::size(names); ++i) s.bit_names[i] = names[i];
    s.flag_mask = 0xFF000000u;
    s.missing_file_message = "File associated with product %s,%s cannot be found or opened!";
    s.orvik_fetch_label = "Product";
    return s;
  }();
  return schema;
}

bool DeleteProductReferences(const char* name, const char* version) {
  return MPDeletePRReferences(name, version, kDeleteReferences, 0, 0) == 1;
}

const OwnedFileKind& ProductKind() {
  static const OwnedFileKind kind = [] {
    OwnedFileKind k{};
    k.schema = &ProductSchema();
    k.folder = "PRODUCTS";
    k.extension = "pr";
    k.name_offset = offsetof(PRRecord, row.Name);
    k.name_size = sizeof(PRRow::Name);
    k.version_offset = offsetof(PRRecord, row.Version);
    k.version_size = sizeof(PRRow::Version);
    k.file_name_offset = offsetof(PRRecord, FileName);
    k.file_name_size = sizeof(PRRecord::FileName);
    k.text_ids = {{offsetof(PRRecord, row.TextIdA), sizeof(PRRow::TextIdA)},
                  {offsetof(PRRecord, row.TextIdB), sizeof(PRRow::TextIdB)}};
    k.parent_missing = "Parent Product Could Not be found to birth Child.";
    k.insert_failed = "Cannot insert PR record in Orvik shipping profile";
    k.fetch_failed = "Cannot get Product out of Orvik profile.";
    k.not_found_to_delete = "Cannot find PR file to delete it.";
    k.cannot_delete_file = "Cannot delete PR file.";
    // The row's delete names DR, as it always has.
    k.delete_failed = "Cannot delete DR record from Orvik shipping profile";
    k.references_remain = "Cannot delete all references to this PR, therefore cannot delete it.";
    k.delete_references = &DeleteProductReferences;
    return k;
  }();
  return kind;
}

void FreeProduct(PRRecord* record) {
  FreeRecord(record);
}

}  // namespace

const KindApi& ProductKindApi() {
  static const KindApi api = MakeOwnedFileApi(ProductKind());
  return api;
}

}  // namespace qv

QV_DEFINE_LIST_OPERATIONS(PR, PRRecord, qv::FreeProduct)

extern "C" {

int MPNewPR(PRRecord** recordOut) {
  *recordOut = static_cast<PRRecord*>(qv::NewRecord(qv::ProductSchema()));
  return *recordOut != nullptr ? 1 : 0;
}

int MPFreePR(PRRecord** record) {
  if (record == nullptr) return 1;
  qv::FreeRecord(*record);
  *record = nullptr;
  return 1;
}

int MPGetPRCompleteList(PRList** listOut) {
  *listOut = nullptr;
  return qv::ReadOwnedList(qv::ProductKind(), listOut) ? 1 : 0;
}

int MPFindPRNode(const char* name, const char* version, const char* fileName, PRList* list,
                 PRRecord** recordOut) {
  void* found = nullptr;
  bool ok = qv::FindOwnedNode(qv::ProductKind(), name, version, fileName, list, &found);
  *recordOut = static_cast<PRRecord*>(found);
  return ok ? 1 : 0;
}

int MPGetPR(const char* name, const char* version, PRRecord** recordOut) {
  void* found = nullptr;
  bool ok = qv::GetOwned(qv::ProductKind(), name, version, &found);
  *recordOut = static_cast<PRRecord*>(found);
  return ok ? 1 : 0;
}

int MPCopyPR(PRRecord** recordInOut, const PRRecord* source, int mode, PRList* list) {
  return qv::CopyOwned(qv::ProductKind(), reinterpret_cast<void**>(recordInOut), source, mode, list)
             ? 1
             : 0;
}

int MPParsePR(char* line, PRRecord* record) {
  return qv::ParseRecordLine(qv::ProductSchema(), line, record) ? 1 : 0;
}

int MPPutPR(PRRecord** record, PRRecord* parent) {
  return qv::PutOwned(qv::ProductKind(), reinterpret_cast<void**>(record), parent) ? 1 : 0;
}

int MPDeletePR(const char* name, const char* version) {
  return qv::DeleteOwned(qv::ProductKind(), name, version) ? 1 : 0;
}

static int DeletePRReferencesAlone(const char* name, const char* version, uint32_t mask, uint32_t,
                                   uint32_t) {
  if (mask != qv::kDeleteReferences) return 1;
  qv::DeleteProductRows(name, version);
  qv::DeleteInstallProductsOfProduct(name, version);
  return 1;
}

int MPDeletePRReferences(const char* name, const char* version, uint32_t mask, uint32_t a,
                         uint32_t b) {
  return qv::Transacted([&] { return DeletePRReferencesAlone(name, version, mask, a, b); });
}

int MPGetPRFlagNames(PRFlagNames** tableOut) {
  *tableOut = qv::NewFlagNames(qv::ProductSchema());
  return 1;
}

}  // extern "C"
