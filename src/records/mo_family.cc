// Modules: each the first line of the "Module" section of its own file in
// "<profile>\MODULES".
#include <cstdio>
#include <cstring>

#include "core/report_capture.h"
#include "orvik/transaction.h"
#include "quorvex/filegroups.h"
#include "quorvex/installs.h"
#include "quorvex/modulecontents.h"
#include "quorvex/modules.h"
#include "quorvex/report.h"
#include "records/family_io.h"
#include "records/kind_api.h"
#include "records/owned_file_api.h"
#include "records/owned_file_family.h"
#include "records/record_codec.h"
#include "records/record_list.h"
#include "records/reference_hooks.h"

namespace qv {
namespace {

constexpr uint32_t kDeleteMask = 0x80000000u;

KindSchema MakeModuleSchema() {
  KindSchema schema = {
      FindKindInfo("MO"),
      sizeof(MORecord),
      offsetof(MORecord, row),
      sizeof(MORow),
      SIZE_MAX,
      offsetof(MORecord, LineAttributes),
      offsetof(MORecord, lineNumber),
      {
          QV_MEMBER(MORecord, row.Name, "Name", true),
          QV_MEMBER(MORecord, row.Version, "Version", true),
          QV_MEMBER(MORecord, row.Attribute40, "Attribute40", true),
          QV_MEMBER(MORecord, row.TextIdA, "TextIdA", true),
          QV_MEMBER(MORecord, row.TextIdB, "TextIdB", true),
          QV_MEMBER(MORecord, row.Attribute50, "Attribute50", true),
          QV_MEMBER(MORecord, row.SecondName, "SecondName", true),
          QV_MEMBER(MORecord, row.SecondVersion, "SecondVersion", true),
          QV_MEMBER(MORecord, row.Flags, "Flags", true),
          QV_MEMBER(MORecord, row.RowTag, "RowTag", true),
          QV_MEMBER(MORecord, row.Number, "Number", true),
          QV_MEMBER(MORecord, Attribute29, "Attribute29", false),
          QV_MEMBER(MORecord, FileName, "FileName", false),
          QV_MEMBER(MORecord, LineAttributes, "LineAttributes", false),
          QV_MEMBER(MORecord, lineNumber, "lineNumber", false),
      },
      {
          // The two text ids stand B before A on the line, deliberately.
          QV_LINE_FIELD(MORecord, row.Name, LineSyntax::kText, 40, 0, 0),
          QV_LINE_FIELD(MORecord, row.Version, LineSyntax::kText, 10, 0, 0),
          QV_LINE_FIELD(MORecord, row.TextIdB, LineSyntax::kText, 40, 0, 0),
          QV_LINE_FIELD(MORecord, row.TextIdA, LineSyntax::kText, 40, 0, 0),
          QV_LINE_FIELD(MORecord, row.Attribute50, LineSyntax::kText, 50, 0, 0),
          QV_LINE_FIELD(MORecord, row.SecondName, LineSyntax::kText, 40, 0, 0),
          QV_LINE_FIELD(MORecord, row.SecondVersion, LineSyntax::kText, 10, 0, 0),
          QV_LINE_FIELD(MORecord, row.Flags, LineSyntax::kFlagString32, 0, 0, 0),
          QV_LINE_FIELD(MORecord, row.Attribute40, LineSyntax::kText, 40, 0, 0),
          QV_LINE_FIELD(MORecord, Attribute29, LineSyntax::kText, 29, FO_OPTIONAL, 0),
          QV_LINE_FIELD(MORecord, row.Number, LineSyntax::kInteger, 0, FO_OPTIONAL, 0),
      },
      "Module",
      {"Expandable in custom dialog", "Only show File Groups in custom dialog", "Ships on CD",
       "Ships on Diskette", "Participates in Custom install", "Participates in Minimum install",
       "Participates in Standard install", "Participates in Local install",
       "Participates in NetWork install", "Participates in Workstation install", "",
       "This module is a setup module", "This module is a font module"},
      // Character 2 is labelled but outside the mask, character 11 in the
      // mask without a label: both as the table has always been.
      0xBFE00000u,
      "File associated with module %s,%s cannot be found or opened!",
  };
  return schema;
}

const KindSchema& ModuleSchema() {
  static const KindSchema schema = MakeModuleSchema();
  return schema;
}

bool DeleteModuleReferences(const char* name, const char* version) {
  return MPDeleteMOReferences(name, version, kDeleteMask, 0, 0) == 1;
}

const OwnedFileKind& ModuleKind() {
  static const OwnedFileKind kind = {
      &ModuleSchema(),
      "MODULES",
      "mo",
      offsetof(MORecord, row.Name),
      sizeof(MORow::Name),
      offsetof(MORecord, row.Version),
      sizeof(MORow::Version),
      offsetof(MORecord, FileName),
      sizeof(MORecord::FileName),
      {{offsetof(MORecord, row.RowTag), sizeof(MORow::RowTag)}},
      {{offsetof(MORecord, row.TextIdA), sizeof(MORow::TextIdA)},
       {offsetof(MORecord, row.TextIdB), sizeof(MORow::TextIdB)}},
      "Parent Module Could Not be found to birth Child.",
      "Cannot insert MO record in Orvik shipping profile",
      "Cannot get module out of Orvik profile.",
      "Cannot find MO file to delete it.",
      "Cannot delete MO file.",
      "Cannot delete MO record from Orvik shipping profile",
      "Cannot delete all references to this MO, therefore cannot delete it.",
      &RenewBornModuleTexts,
      &DeleteModuleReferences,
  };
  return kind;
}

void FreeModule(MORecord* record) {
  FreeRecord(record);
}

}  // namespace

const KindApi& ModuleKindApi() {
  static const KindApi api = MakeOwnedFileApi(ModuleKind());
  return api;
}

}  // namespace qv

QV_DEFINE_LIST_OPERATIONS(MO, MORecord, qv::FreeModule)

namespace qv {
namespace {

// Each kind's own delete, with every key part but the module's left open.
// A kind without rows of the module has nothing to delete, which is no
// failure to tell: the results are not asked for.
void DeleteModuleRows(const char* name, const char* version) {
  ReportCapture quiet(/*quiet=*/true);
  MPDeleteCF(name, version, nullptr, nullptr);
  DeleteSettingsOfModule(name, version);
  DeleteSettingsOfShippedFile(name, version, nullptr, nullptr, nullptr);
  MPDeleteFG(name, version, nullptr);
  MPDeleteML(name, version, nullptr, nullptr);
  MPDeleteSF(name, version, nullptr, nullptr, nullptr);
  MPDeleteMLA(name, version, nullptr);
  MPDeleteII(name, version, 0, nullptr, nullptr, nullptr);
  MPDeleteIIL(name, version, 0, nullptr);
  MPDeleteDM(nullptr, name, version);
  MPDeleteFGA(name, version, nullptr, 0);
}

}  // namespace
}  // namespace qv

extern "C" {

int MPNewMO(MORecord** recordOut) {
  *recordOut = static_cast<MORecord*>(qv::NewRecord(qv::ModuleSchema()));
  return *recordOut != nullptr ? 1 : 0;
}

int MPFreeMO(MORecord** record) {
  if (record == nullptr) return 1;
  qv::FreeRecord(*record);
  *record = nullptr;
  return 1;
}

int MPGetMOCompleteList(MOList** listOut) {
  *listOut = nullptr;
  return qv::ReadOwnedList(qv::ModuleKind(), listOut) ? 1 : 0;
}

int MPFindMONode(const char* name, const char* version, const char* fileName, MOList* list,
                 MORecord** recordOut) {
  void* found = nullptr;
  bool ok = qv::FindOwnedNode(qv::ModuleKind(), name, version, fileName, list, &found);
  *recordOut = static_cast<MORecord*>(found);
  return ok ? 1 : 0;
}

int MPGetMO(const char* name, const char* version, MORecord** recordOut) {
  void* found = nullptr;
  bool ok = qv::GetOwned(qv::ModuleKind(), name, version, &found);
  *recordOut = static_cast<MORecord*>(found);
  return ok ? 1 : 0;
}

int MPCopyMO(MORecord** recordInOut, const MORecord* source, int mode, MOList* list) {
  return qv::CopyOwned(qv::ModuleKind(), reinterpret_cast<void**>(recordInOut), source, mode, list)
             ? 1
             : 0;
}

int MPParseMO(char* line, MORecord* record) {
  return qv::ParseRecordLine(qv::ModuleSchema(), line, record) ? 1 : 0;
}

int MPPutMO(MORecord** record, MORecord* parent) {
  return qv::PutOwned(qv::ModuleKind(), reinterpret_cast<void**>(record), parent) ? 1 : 0;
}

int MPDeleteMO(const char* name, const char* version) {
  return qv::DeleteOwned(qv::ModuleKind(), name, version) ? 1 : 0;
}

static int DeleteMOReferencesAlone(const char* name, const char* version, uint32_t mask, uint32_t,
                                   uint32_t) {
  if (mask != qv::kDeleteMask) return 1;
  // In a text profile the module's own records live in its file and go with
  // it; the database holds them as rows of their own, deleted here first.
  if (qv::IsOrvikProfile()) qv::DeleteModuleRows(name, version);
  // What others hold of it goes next, in this order, whatever each result.
  qv::DeleteInstallReferencesToModule(name, version);
  qv::DeleteFileGroupRequirementsOfModule(name, version);
  qv::DeleteProductModulesOfModule(name, version);
  qv::DeleteRequiredModuleReferences(name, version);
  return 1;
}

int MPDeleteMOReferences(const char* name, const char* version, uint32_t mask, uint32_t a,
                         uint32_t b) {
  return qv::Transacted([&] { return DeleteMOReferencesAlone(name, version, mask, a, b); });
}

int MPGetMOFlagNames(MOFlagNames** tableOut) {
  *tableOut = qv::NewFlagNames(qv::ModuleSchema());
  return 1;
}

}  // extern "C"
