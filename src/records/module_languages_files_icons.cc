// The module file's languages (MDL, MLA), created files (CF), installed
// icons (II) and their icon locations (IIL).
#include <string>

#include "quorvex/modulecontents.h"
#include "records/filegroup_families.h"
#include "records/owned_kind_family.h"
#include "records/owner_kinds.h"
#include "records/reference_hooks.h"

namespace qv {
namespace {

constexpr uint32_t kOpt = FO_OPTIONAL;

template <class Record>
KindSchema WithBookkeeping(KindSchema s) {
  s.members.push_back(QV_MEMBER(Record, recordFlags, "recordFlags", false));
  s.members.push_back(QV_MEMBER(Record, lineNumber, "lineNumber", false));
  return s;
}

struct MdlDesc {
  using Record = MDLRecord;
  static constexpr auto kFree = &MPFreeMDL;
  static constexpr std::array<const char*, 1> kKeyMembers = {"LanguageCode"};
  QV_OWNED_KIND_TEXTS("MDL")
  static const KindSchema& Schema() {
    static const KindSchema schema = [] {
      KindSchema s = ModuleRecordSchema<MDLRecord>("MDL");
      s.members.push_back(QV_MEMBER(MDLRecord, row.LanguageCode, "LanguageCode", true));
      s.line = {QV_LINE_FIELD(MDLRecord, row.LanguageCode, LineSyntax::kText, 10, 0, 0)};
      s.flag_label = "Module Document Languages";
      return WithBookkeeping<MDLRecord>(s);
    }();
    return schema;
  }
  static bool DeleteReferences(const OwnedKey<1>&) { return true; }
  static int Put(MDLRecord* record, bool* written);
};

struct MlaDesc {
  using Record = MLARecord;
  static constexpr auto kFree = &MPFreeMLA;
  static constexpr std::array<const char*, 1> kKeyMembers = {"LanguageCode"};
  QV_OWNED_KIND_TEXTS("MLA")
  static const KindSchema& Schema() {
    static const KindSchema schema = [] {
      KindSchema s = ModuleRecordSchema<MLARecord>("MLA");
      s.members.insert(s.members.end(),
                       {QV_MEMBER(MLARecord, row.LanguageCode, "LanguageCode", true),
                        QV_MEMBER(MLARecord, row.Text260, "Text260", true),
                        QV_MEMBER(MLARecord, row.Text29, "Text29", true)});
      s.line = {QV_LINE_FIELD(MLARecord, row.LanguageCode, LineSyntax::kText, 10, 0, 0),
                QV_LINE_FIELD(MLARecord, row.Text260, LineSyntax::kText, 260, kOpt, 0),
                QV_LINE_FIELD(MLARecord, row.Text29, LineSyntax::kText, 29, kOpt, 0)};
      s.flag_label = "Module Languages";
      return WithBookkeeping<MLARecord>(s);
    }();
    return schema;
  }
  static bool DeleteReferences(const OwnedKey<1>&) { return true; }
  static int Put(MLARecord* record, bool* written);
};

struct CfDesc {
  using Record = CFRecord;
  static constexpr auto kFree = &MPFreeCF;
  static constexpr std::array<const char*, 2> kKeyMembers = {"Text40a", "Text40b"};
  QV_OWNED_KIND_TEXTS("CF")
  static const KindSchema& Schema() {
    static const KindSchema schema = [] {
      KindSchema s = ModuleRecordSchema<CFRecord>("CF");
      s.members.insert(s.members.end(), {QV_MEMBER(CFRecord, row.Text40a, "Text40a", true),
                                         QV_MEMBER(CFRecord, row.Text40b, "Text40b", true),
                                         QV_MEMBER(CFRecord, row.Text10, "Text10", true),
                                         QV_MEMBER(CFRecord, row.Flags, "Flags", true)});
      s.line = {QV_LINE_FIELD(CFRecord, row.Text40a, LineSyntax::kText, 40, 0, 0),
                QV_LINE_FIELD(CFRecord, row.Text40b, LineSyntax::kText, 40, 0, 0),
                QV_LINE_FIELD(CFRecord, row.Text10, LineSyntax::kText, 10, 0, 0),
                QV_LINE_FIELD(CFRecord, row.Flags, LineSyntax::kFlagString32, 0, 0, 0)};
      s.flag_label = "Created Files";
      return WithBookkeeping<CFRecord>(s);
    }();
    return schema;
  }
  static bool DeleteReferences(const OwnedKey<2>&) { return true; }
  static int Put(CFRecord* record, bool* written);
};

struct IiDesc {
  using Record = IIRecord;
  static constexpr auto kFree = &MPFreeII;
  static constexpr std::array<const char*, 4> kKeyMembers = {"Number", "Language", "GroupName",
                                                             "FileName"};
  QV_OWNED_KIND_TEXTS("II")
  static const KindSchema& Schema() {
    static const KindSchema schema = [] {
      KindSchema s = ModuleRecordSchema<IIRecord>("II");
      s.members.insert(s.members.end(), {
                                            QV_MEMBER(IIRecord, row.Number, "Number", true),
                                            QV_MEMBER(IIRecord, row.Language, "Language", true),
                                            QV_MEMBER(IIRecord, row.GroupName, "GroupName", true),
                                            QV_MEMBER(IIRecord, row.FileName, "FileName", true),
                                            QV_MEMBER(IIRecord, row.GroupName2, "GroupName2", true),
                                            QV_MEMBER(IIRecord, row.Language2, "Language2", true),
                                            QV_MEMBER(IIRecord, row.FileName2, "FileName2", true),
                                            QV_MEMBER(IIRecord, row.Number2, "Number2", true),
                                            QV_MEMBER(IIRecord, row.Target, "Target", true),
                                            QV_MEMBER(IIRecord, row.Text260a, "Text260a", true),
                                            QV_MEMBER(IIRecord, row.Text260b, "Text260b", true),
                                            QV_MEMBER(IIRecord, row.Text1023a, "Text1023a", true),
                                            QV_MEMBER(IIRecord, row.Text1023b, "Text1023b", true),
                                            QV_MEMBER(IIRecord, row.Text40a, "Text40a", true),
                                            QV_MEMBER(IIRecord, row.Flags, "Flags", true),
                                            QV_MEMBER(IIRecord, row.Text40b, "Text40b", true),
                                            QV_MEMBER(IIRecord, row.Text384, "Text384", true),
                                        });
      s.line = {
          QV_LINE_FIELD(IIRecord, row.Number, LineSyntax::kInteger, 0, 0, 0),
          QV_LINE_FIELD(IIRecord, row.Language, LineSyntax::kText, 10, 0, 0),
          QV_LINE_FIELD(IIRecord, row.GroupName, LineSyntax::kText, 20, 0, 0),
          QV_LINE_FIELD(IIRecord, row.FileName, LineSyntax::kText, 40, 0, 0),
          QV_LINE_FIELD(IIRecord, row.GroupName2, LineSyntax::kText, 20, kOpt, 0),
          QV_LINE_FIELD(IIRecord, row.Language2, LineSyntax::kText, 10, kOpt, 0),
          QV_LINE_FIELD(IIRecord, row.FileName2, LineSyntax::kText, 40, kOpt, 0),
          QV_LINE_FIELD(IIRecord, row.Number2, LineSyntax::kInteger, 0, kOpt, 0),
          QV_LINE_FIELD(IIRecord, row.Target, LineSyntax::kText, 267, kOpt, 0),
          QV_LINE_FIELD(IIRecord, row.Text260a, LineSyntax::kText, 260, kOpt, 0),
          QV_LINE_FIELD(IIRecord, row.Text260b, LineSyntax::kText, 260, kOpt, 0),
          QV_LINE_FIELD(IIRecord, row.Text1023a, LineSyntax::kText, 1023, kOpt, 0),
          QV_LINE_FIELD(IIRecord, row.Text1023b, LineSyntax::kText, 1023, kOpt, 0),
          QV_LINE_FIELD(IIRecord, row.Text40a, LineSyntax::kText, 40, 0, 0),
          QV_LINE_FIELD(IIRecord, row.Flags, LineSyntax::kFlag, 0, 0, II_FLAG_1),
          QV_LINE_FIELD(IIRecord, row.Flags, LineSyntax::kFlag, 0, 0, II_FLAG_2),
          QV_LINE_FIELD(IIRecord, row.Flags, LineSyntax::kFlag, 0, 0, II_FLAG_3),
          QV_LINE_FIELD(IIRecord, row.Text40b, LineSyntax::kText, 40, 0, 0),
          QV_LINE_FIELD(IIRecord, row.Text384, LineSyntax::kText, 384, 0, 0),
      };
      s.flag_label = "Installed Icons";
      return WithBookkeeping<IIRecord>(s);
    }();
    return schema;
  }
  static bool DeleteReferences(const OwnedKey<4>&) { return true; }
  static int Put(IIRecord* record, bool* written);
};

struct IilDesc {
  using Record = IILRecord;
  static constexpr auto kFree = &MPFreeIIL;
  static constexpr std::array<const char*, 2> kKeyMembers = {"Number", "IconLocation"};
  QV_OWNED_KIND_TEXTS("IIL")
  static const KindSchema& Schema() {
    static const KindSchema schema = [] {
      KindSchema s = ModuleRecordSchema<IILRecord>("IIL");
      s.members.insert(s.members.end(),
                       {QV_MEMBER(IILRecord, row.Number, "Number", true),
                        QV_MEMBER(IILRecord, row.Text1023, "Text1023", true),
                        QV_MEMBER(IILRecord, row.IconLocation, "IconLocation", true)});
      s.line = {QV_LINE_FIELD(IILRecord, row.Number, LineSyntax::kInteger, 0, 0, 0),
                QV_LINE_FIELD(IILRecord, row.Text1023, LineSyntax::kText, 1023, 0, 0),
                QV_LINE_FIELD(IILRecord, row.IconLocation, LineSyntax::kText, 20, 0, 0)};
      s.flag_label = "Installed Icon Locations";
      return WithBookkeeping<IILRecord>(s);
    }();
    return schema;
  }
  static bool DeleteReferences(const OwnedKey<2>&) { return true; }
  static int Put(IILRecord* record, bool* written);
};

using MdlFamily = OwnedKindFamily<MdlDesc>;
using MlaFamily = OwnedKindFamily<MlaDesc>;
using CfFamily = OwnedKindFamily<CfDesc>;
using IiFamily = OwnedKindFamily<IiDesc>;
using IilFamily = OwnedKindFamily<IilDesc>;

int MdlDesc::Put(MDLRecord* record, bool* written) {
  return MdlFamily::Put(record, written);
}
int MlaDesc::Put(MLARecord* record, bool* written) {
  return MlaFamily::Put(record, written);
}
int CfDesc::Put(CFRecord* record, bool* written) {
  return CfFamily::Put(record, written);
}
int IiDesc::Put(IIRecord* record, bool* written) {
  return IiFamily::Put(record, written);
}
int IilDesc::Put(IILRecord* record, bool* written) {
  return IilFamily::Put(record, written);
}

std::optional<std::string> NumberPart(uint32_t number) {
  if (number == 0) return std::nullopt;
  return std::to_string(number);
}

}  // namespace

const KindApi& MdlKindApi() {
  return MdlFamily::Api();
}
const KindApi& MlaKindApi() {
  return MlaFamily::Api();
}
const KindApi& CfKindApi() {
  return CfFamily::Api();
}
const KindApi& IiKindApi() {
  return IiFamily::Api();
}
const KindApi& IilKindApi() {
  return IilFamily::Api();
}

bool UpdateInstalledIconLocationsOfIconLocation(const char* name, uint32_t mode,
                                                const char* new_name) {
  bool all = true;
  for (const auto& [module, version] : ProfileModules()) {
    IilFamily::Key key{module.c_str(), version.c_str(), {std::nullopt, KeyPart(name)}};
    if (!IilFamily::AnyMatch(key)) continue;
    if (mode == kDeleteReferences) {
      all = IilFamily::Delete(key) == 1 && all;
      continue;
    }
    RecordList* list = nullptr;
    if (IilFamily::ReadAll(module.c_str(), version.c_str(), &list, MODE_UPDATE) == 1) {
      IilFamily::List::ForEach(list, [&](IILRecord* record) {
        if (!OwnedKindTraits<IilDesc>::Matches(*record, key)) return;
        snprintf(record->row.IconLocation, sizeof record->row.IconLocation, "%s", new_name);
      });
      all = IilFamily::Write(module.c_str(), version.c_str(), list) == 1 && all;
    } else {
      all = false;
    }
    IilFamily::List::Free(list);
  }
  return all;
}

}  // namespace qv

using qv::CfFamily;
using qv::IiFamily;
using qv::IilFamily;
using qv::MdlFamily;
using qv::MlaFamily;

QV_DEFINE_OWNER_CONTENT_OPERATIONS(MDL, MdlFamily)
QV_DEFINE_OWNER_CONTENT_OPERATIONS(MLA, MlaFamily)
QV_DEFINE_OWNER_CONTENT_OPERATIONS(CF, CfFamily)
QV_DEFINE_OWNER_CONTENT_OPERATIONS(II, IiFamily)
QV_DEFINE_OWNER_CONTENT_OPERATIONS(IIL, IilFamily)

extern "C" {

int MPDeleteMDL(const char* moduleName, const char* moduleVersion, const char* languageCode) {
  return MdlFamily::Delete({moduleName, moduleVersion, {qv::KeyPart(languageCode)}});
}
int MPDeleteMLA(const char* moduleName, const char* moduleVersion, const char* languageCode) {
  return MlaFamily::Delete({moduleName, moduleVersion, {qv::KeyPart(languageCode)}});
}
int MPDeleteCF(const char* moduleName, const char* moduleVersion, const char* text40a,
               const char* text40b) {
  return CfFamily::Delete(
      {moduleName, moduleVersion, {qv::KeyPart(text40a), qv::KeyPart(text40b)}});
}
int MPDeleteII(const char* moduleName, const char* moduleVersion, uint32_t number,
               const char* language, const char* groupName, const char* fileName) {
  return IiFamily::Delete({moduleName,
                           moduleVersion,
                           {qv::NumberPart(number), qv::KeyPart(language), qv::KeyPart(groupName),
                            qv::KeyPart(fileName)}});
}
int MPDeleteIIL(const char* moduleName, const char* moduleVersion, uint32_t number,
                const char* iconLocation) {
  return IilFamily::Delete(
      {moduleName, moduleVersion, {qv::NumberPart(number), qv::KeyPart(iconLocation)}});
}

}  // extern "C"
