// Shipped files: "[File Group Files]" of a module's file, each known by its
// group, file name and language. Deleting one deletes its settings
// associations first.
#include <cstdio>
#include <string>

#include "quorvex/filegroups.h"
#include "quorvex/symbols.h"
#include "records/filegroup_families.h"

namespace qv {
namespace {

void DeriveFileType(void* record) {
  auto* r = static_cast<SFRecord*>(record);
  r->row.FileType = MPSFFileTypeOf(r->row.FileName);
}

KindSchema MakeSfSchema() {
  KindSchema schema = ModuleRecordSchema<SFRecord>("SF");
  schema.members.insert(
      schema.members.end(),
      {
          QV_MEMBER(SFRecord, row.Language, "Language", true),
          QV_MEMBER(SFRecord, row.GroupName, "GroupName", true),
          QV_MEMBER(SFRecord, row.FileName, "FileName", true),
          QV_MEMBER(SFRecord, row.Attribute40a, "Attribute40a", true),
          QV_MEMBER(SFRecord, row.SecondName, "SecondName", true),
          QV_MEMBER(SFRecord, row.SecondVersion, "SecondVersion", true),
          QV_MEMBER(SFRecord, row.TextIdA, "TextIdA", true),
          QV_MEMBER(SFRecord, row.TextIdB, "TextIdB", true),
          QV_MEMBER(SFRecord, row.FileDate, "FileDate", true),
          QV_MEMBER(SFRecord, row.Size, "Size", true),
          QV_MEMBER(SFRecord, row.Number2, "Number2", true),
          QV_MEMBER(SFRecord, row.Number3, "Number3", true),
          QV_MEMBER(SFRecord, row.FileType, "FileType", true),
          QV_MEMBER(SFRecord, row.Number4, "Number4", true),
          QV_MEMBER(SFRecord, row.Number5, "Number5", true),
          QV_MEMBER(SFRecord, row.Flags, "Flags", true),
          QV_MEMBER(SFRecord, row.OSFlags, "OSFlags", true),
          QV_MEMBER(SFRecord, row.DocumentLanguages, "DocumentLanguages", true),
          QV_MEMBER(SFRecord, row.ParticipatesFlags, "ParticipatesFlags", true),
          QV_MEMBER(SFRecord, row.ModifyFilenameFlags, "ModifyFilenameFlags", true),
          QV_MEMBER(SFRecord, Attribute260, "Attribute260", false),
          QV_MEMBER(SFRecord, Attribute29, "Attribute29", false),
          QV_MEMBER(SFRecord, Attribute40b, "Attribute40b", false),
          QV_MEMBER(SFRecord, Attribute127, "Attribute127", false),
          QV_MEMBER(SFRecord, recordFlags, "recordFlags", false),
          QV_MEMBER(SFRecord, lineNumber, "lineNumber", false),
      });
  constexpr uint32_t kOpt = FO_OPTIONAL;
  schema.line = {
      QV_LINE_FIELD(SFRecord, row.Language, LineSyntax::kText, 10, 0, 0),
      QV_LINE_FIELD(SFRecord, row.GroupName, LineSyntax::kText, 20, 0, 0),
      QV_LINE_FIELD(SFRecord, row.FileName, LineSyntax::kText, 40, 0, 0),
      QV_LINE_FIELD(SFRecord, row.Attribute40a, LineSyntax::kText, 40, kOpt, 0),
      QV_LINE_FIELD(SFRecord, row.SecondName, LineSyntax::kText, 40, 0, 0),
      QV_LINE_FIELD(SFRecord, row.SecondVersion, LineSyntax::kText, 10, 0, 0),
      QV_LINE_FIELD(SFRecord, row.TextIdB, LineSyntax::kText, 40, kOpt, 0),
      QV_LINE_FIELD(SFRecord, row.TextIdA, LineSyntax::kText, 40, kOpt, 0),
      QV_LINE_FIELD(SFRecord, row.FileDate, LineSyntax::kDateTime, 17, kOpt, 0),
      QV_LINE_FIELD(SFRecord, row.Size, LineSyntax::kInteger, 0, kOpt, 0),
      QV_LINE_FIELD(SFRecord, row.Number2, LineSyntax::kInteger, 0, kOpt, 0),
      QV_LINE_FIELD(SFRecord, row.Number3, LineSyntax::kInteger, 0, kOpt, 0),
      QV_LINE_FIELD(SFRecord, row.FileType, LineSyntax::kInteger, 0, kOpt, 0),
      QV_LINE_FIELD(SFRecord, row.Number4, LineSyntax::kInteger, 0, kOpt, 0),
      QV_LINE_FIELD(SFRecord, row.Number5, LineSyntax::kInteger, 0, kOpt, 0),
      QV_LINE_FIELD(SFRecord, row.Flags, LineSyntax::kFlagString32, 0, 0, 0),
      QV_LINE_FIELD(SFRecord, row.OSFlags, LineSyntax::kFlagString32, 0, 0, 0),
      QV_LINE_FIELD(SFRecord, Attribute260, LineSyntax::kText, 260, kOpt, 0),
      QV_LINE_FIELD(SFRecord, Attribute29, LineSyntax::kText, 29, kOpt, 0),
      QV_LINE_FIELD(SFRecord, Attribute40b, LineSyntax::kText, 40, kOpt, 0),
      QV_LINE_FIELD(SFRecord, Attribute127, LineSyntax::kText, 127, kOpt, 0),
      QV_LINE_FIELD(SFRecord, row.DocumentLanguages, LineSyntax::kText, 127, kOpt, 0),
      QV_LINE_FIELD(SFRecord, row.ParticipatesFlags, LineSyntax::kFlagString32, 0, kOpt, 0),
      QV_LINE_FIELD(SFRecord, row.ModifyFilenameFlags, LineSyntax::kFlagString32, 0, kOpt, 0),
  };
  schema.flag_label = "Shipped File";
  const char* labels[] = {"Participates in Custom install",
                          "Participates in Minimum install",
                          "Participates in Standard install",
                          "Participates in Local install",
                          "Participates in Network install",
                          "Participates in Workstation install",
                          "File is required by it's module",
                          "Visible in custom dialog",
                          "User modifiable",
                          "Duplicate in the Network Windows System directory",
                          "Don't Remove",
                          "Merge .reg file into the registry",
                          "File appears in .Set File",
                          "File is compressed",
                          "File ships on CD",
                          "File ships on Diskette",
                          "File is shared system wide",
                          nullptr,
                          "Copy file to Network Windows Fonts directory",
                          "Calculate Zero Size If Already Installed",
                          "Don't Configure if Not Installed Locally",
                          "Participate in image binding at config time (used for dll's, exe's)"};
  for (size_t i = 0; i < sizeof labels / sizeof labels[0]; ++i) schema.bit_names[i] = labels[i];
  schema.flag_mask = 0xFD070400u;
  schema.after_read = &DeriveFileType;
  return schema;
}

// The flag tables of a shipped file's other flag words.
KindSchema FlagTable(const char* label) {
  KindSchema table{};
  table.flag_label = label;
  return table;
}

const KindSchema& OsFlagTable() {
  static const KindSchema table = [] {
    KindSchema t = FlagTable("OS Flags");
    t.bit_names[0] = "Does not Participate in MS Windows NT 4.0 Install";
    t.bit_names[1] = "Does not Participate in MS Windows NT 3.51 Install";
    t.bit_names[2] = "Does not Participate in MS Windows 95 Install";
    t.bit_names[3] = "Does not Participate in MS Windows 3.1 Install";
    return t;
  }();
  return table;
}

constexpr const char* kLanguageCodes[28] = {
    "BR", "CF", "CZ", "DE", "DK", "ES", "FR", "GR", "HR", "IT", "MA", "NL", "NO", "OZ",
    "PL", "PO", "RU", "SL", "SO", "SU", "SV", "TR", "UK", "US", "YK", "JP", "CS", "CT"};

// Character k names the k-th language code followed by the suffix.
struct LanguageFlagTable {
  std::string labels[28];
  KindSchema table;
  LanguageFlagTable(const char* title, const char* suffix) : table(FlagTable(title)) {
    for (int i = 0; i < 28; ++i) {
      labels[i] = std::string(kLanguageCodes[i]) + suffix;
      table.bit_names[i] = labels[i].c_str();
    }
  }
};

const KindSchema& ParticipatesTable() {
  static const LanguageFlagTable table("File Participates Flags", "_PARTICIPATES");
  return table.table;
}
const KindSchema& ModifyFilenameTable() {
  static const LanguageFlagTable table("Filename Modified Flags", "_MODIFY_FILENAME");
  return table.table;
}

}  // namespace

const KindSchema& SfDesc::Schema() {
  static const KindSchema schema = MakeSfSchema();
  return schema;
}

bool SfDesc::DeleteReferences(const OwnedKey<3>& key) {
  auto part = [&](size_t i) { return key.parts[i].has_value() ? key.parts[i]->c_str() : nullptr; };
  return MPSFAssociations(key.module_name, key.module_version, part(0), part(1), part(2),
                          SF_ASSOCIATIONS_DELETE, 0, 0, nullptr, nullptr, nullptr) == 1;
}

// The type on the line is what the name says, whatever the caller set.
int SfDesc::Put(SFRecord* record, bool* written) {
  DeriveFileType(record);
  return SfFamily::Put(record, written);
}

const KindApi& SfKindApi() {
  return SfFamily::Api();
}

}  // namespace qv

using qv::SfFamily;

QV_DEFINE_LIST_OPERATIONS(SF, SFRecord, MPFreeSF)
QV_DEFINE_LIST_OPERATIONS(SFDL, SFDLRecord, MPFreeSFDL)

extern "C" {

int MPNewSF(SFRecord** recordOut) {
  *recordOut = SfFamily::New();
  return *recordOut != nullptr ? 1 : 0;
}

int MPFreeSF(SFRecord* record) {
  qv::FreeRecord(record);
  return 1;
}

int MPReleaseSF(SFRecord** record) {
  if (record == nullptr) return 1;
  qv::FreeRecord(*record);
  *record = nullptr;
  return 1;
}

int MPFreeSFDL(SFDLRecord* record) {
  qv::FreeRecord(record);
  return 1;
}

int MPGetSFCompleteList(const char* moduleName, const char* moduleVersion, SFList** listOut,
                        uint32_t mode) {
  return SfFamily::ReadAll(moduleName, moduleVersion, listOut, mode);
}

int MPPutSFCompleteList(const char* moduleName, const char* moduleVersion, SFList* list) {
  SfFamily::List::ForEach(list,
                          [](SFRecord* r) { r->row.FileType = MPSFFileTypeOf(r->row.FileName); });
  return SfFamily::PutCompleteList(moduleName, moduleVersion, list);
}

int MPPutSF(SFRecord* record) {
  return qv::SfDesc::Put(record, nullptr);
}

int MPDeleteSF(const char* moduleName, const char* moduleVersion, const char* groupName,
               const char* fileName, const char* language) {
  return SfFamily::Delete({moduleName,
                           moduleVersion,
                           {qv::KeyPart(groupName), qv::KeyPart(fileName), qv::KeyPart(language)}});
}

int MPGetSF(const char* moduleName, const char* moduleVersion, const char* groupName,
            const char* fileName, const char* language, SFRecord** recordOut) {
  return SfFamily::Get({moduleName,
                        moduleVersion,
                        {qv::KeyPart(groupName), qv::KeyPart(fileName), qv::KeyPart(language)}},
                       recordOut);
}

// Empty or NULL parts take any value, so that the search can step through
// a group's files.
int MPFindSFNode(const char* groupName, const char* fileName, const char* language, SFList* list,
                 SFRecord** recordOut) {
  auto part = [](const char* text) {
    return text != nullptr && *text != '\0' ? qv::KeyPart(text) : std::nullopt;
  };
  SfFamily::Key key{nullptr, nullptr, {part(groupName), part(fileName), part(language)}};
  return SfFamily::Find(key, list, recordOut);
}

int MPCopySF(SFRecord** recordInOut, const SFRecord* source, int mode, SFList* list) {
  return SfFamily::Copy(recordInOut, source, mode, list);
}

int MPWriteSFList(const char* moduleName, const char* moduleVersion, SFList* list) {
  return SfFamily::Write(moduleName, moduleVersion, list);
}

int MPGetSFDocumentLanguages(const SFRecord* record, SFDLList** listOut) {
  if (MPNewSFDLList(listOut) != 1) return 0;
  if (record == nullptr) return 1;
  std::string codes = record->row.DocumentLanguages;
  const char* cursor = codes.c_str();
  std::string item(codes.size() + 1, '\0');
  while (NextListItem(&cursor, item.data()) == 1) {
    if (item[0] == '\0') continue;
    auto* entry = static_cast<SFDLRecord*>(calloc(1, sizeof(SFDLRecord)));
    if (entry == nullptr) return 0;
    snprintf(entry->ModuleName, sizeof entry->ModuleName, "%s", record->row.ModuleName);
    snprintf(entry->ModuleVersion, sizeof entry->ModuleVersion, "%s", record->row.ModuleVersion);
    snprintf(entry->GroupName, sizeof entry->GroupName, "%s", record->row.GroupName);
    snprintf(entry->FileName, sizeof entry->FileName, "%s", record->row.FileName);
    snprintf(entry->Language, sizeof entry->Language, "%s", record->row.Language);
    snprintf(entry->DocumentLanguage, sizeof entry->DocumentLanguage, "%s", item.c_str());
    MPAppendSFDL(*listOut, entry);
  }
  return 1;
}

int MPGetSFFlagNames(SFFlagNames** tableOut) {
  *tableOut = qv::NewFlagNames(qv::SfDesc::Schema());
  return 1;
}

int MPGetSFOSFlagNames(SFFlagNames** tableOut) {
  *tableOut = qv::NewFlagNames(qv::OsFlagTable());
  return 1;
}

int MPGetSFParticipatesFlagNames(SFFlagNames** tableOut) {
  *tableOut = qv::NewFlagNames(qv::ParticipatesTable());
  return 1;
}

int MPGetSFModifyFilenameFlagNames(SFFlagNames** tableOut) {
  *tableOut = qv::NewFlagNames(qv::ModifyFilenameTable());
  return 1;
}

int MPGetSFDLFlagNames(SFFlagNames** tableOut) {
  static const qv::KindSchema table = qv::FlagTable("Shipped File Document Language");
  *tableOut = qv::NewFlagNames(table);
  return 1;
}

}  // extern "C"
