// The four kinds of a module's file groups: file groups (FG), the groups
// they require (FGD), the Ads they carry (FGA) and shipped files (SF). The
// families, their cascades and their entries for the tool.
#ifndef QUORVEX_RECORDS_FILEGROUP_FAMILIES_H_
#define QUORVEX_RECORDS_FILEGROUP_FAMILIES_H_

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "quorvex/filegroups.h"
#include "records/owned_kind_family.h"

namespace qv {

struct FgDesc {
  using Record = FGRecord;
  static constexpr auto kFree = &MPFreeFG;
  static constexpr std::array<const char*, 1> kKeyMembers = {"GroupName"};
  static constexpr const char* kInsertIn = "Cannot insert FG record in Orvik shipping profile";
  static constexpr const char* kInsertInto = "Cannot insert FG record into Orvik shipping profile";
  // The text names MO, as it always has.
  static constexpr const char* kDeleteFailed =
      "Cannot delete MO record from Orvik shipping profile";
  static constexpr const char* kNotForOrvik = "FGs not implemented in QUORVEX for Orvik";
  static constexpr const char* kReferencesRemain =
      "Cannot delete all references to this FG, therefore cannot delete it.";
  static const KindSchema& Schema();
  static bool DeleteReferences(const OwnedKey<1>& key);
  static int Put(FGRecord* record, bool* written);
};

struct SfDesc {
  using Record = SFRecord;
  static constexpr auto kFree = &MPFreeSF;
  static constexpr std::array<const char*, 3> kKeyMembers = {"GroupName", "FileName", "Language"};
  static constexpr const char* kInsertIn = "Cannot insert SF record in Orvik shipping profile";
  static constexpr const char* kInsertInto = "Cannot insert SF record into Orvik shipping profile";
  static constexpr const char* kDeleteFailed =
      "Cannot delete MO record from Orvik shipping profile";
  static constexpr const char* kNotForOrvik = "SFs not implemented in QUORVEX for Orvik";
  static constexpr const char* kReferencesRemain =
      "Cannot delete SF record because I cannot delete its associations";
  static const KindSchema& Schema();
  static bool DeleteReferences(const OwnedKey<3>& key);
  static int Put(SFRecord* record, bool* written);
};

struct FgdDesc {
  using Record = FGDRecord;
  static constexpr auto kFree = &MPFreeFGD;
  static constexpr std::array<const char*, 4> kKeyMembers = {"GroupName", "ReqModuleName",
                                                             "ReqModuleVersion", "ReqGroupName"};
  static constexpr const char* kInsertIn = "Cannot insert FGD record in Orvik shipping profile";
  static constexpr const char* kInsertInto = "Cannot insert FGD record into Orvik shipping profile";
  static constexpr const char* kDeleteFailed =
      "Cannot delete FGD record from Orvik shipping profile";
  static constexpr const char* kNotForOrvik = "FGDs not implemented in QUORVEX for Orvik";
  static constexpr const char* kReferencesRemain =
      "Cannot delete all references to this FGD, therefore cannot delete it.";
  static const KindSchema& Schema();
  static bool DeleteReferences(const OwnedKey<4>&) { return true; }
  static int Put(FGDRecord* record, bool* written);
};

struct FgaDesc {
  using Record = FGARecord;
  static constexpr auto kFree = &MPFreeFGA;
  static constexpr std::array<const char*, 2> kKeyMembers = {"GroupName", "AdId"};
  static constexpr const char* kInsertIn = "Cannot insert FGA record in Orvik shipping profile";
  static constexpr const char* kInsertInto = "Cannot insert FGA record into Orvik shipping profile";
  static constexpr const char* kDeleteFailed =
      "Cannot delete FGA record from Orvik shipping profile";
  static constexpr const char* kNotForOrvik = "FGAs not implemented in QUORVEX for Orvik";
  static constexpr const char* kReferencesRemain =
      "Cannot delete all references to this FGA, therefore cannot delete it.";
  static const KindSchema& Schema();
  static bool DeleteReferences(const OwnedKey<2>&) { return true; }
  static int Put(FGARecord* record, bool* written);
};

using FgFamily = OwnedKindFamily<FgDesc>;
using SfFamily = OwnedKindFamily<SfDesc>;
using FgdFamily = OwnedKindFamily<FgdDesc>;
using FgaFamily = OwnedKindFamily<FgaDesc>;

// The start of the schema every one of these kinds shares: the record
// holds its row, the module key first, then text-store members.
template <class Record>
KindSchema ModuleRecordSchema(const char* code) {
  KindSchema schema = RowRecordSchema<Record>(code);
  schema.members = {
      QV_MEMBER(Record, row.ModuleName, "ModuleName", true),
      QV_MEMBER(Record, row.ModuleVersion, "ModuleVersion", true),
  };
  schema.set_owner = &SetModuleOwner<Record>;
  schema.missing_file_message = "File associated with module %s,%s cannot be found or opened!";
  return schema;
}

// The name and version of every module that has a file in the open
// profile, in catalogue order.
std::vector<std::pair<std::string, std::string>> ProfileModules();

// Installed icons of a module that start a shipped file: those with the
// old key (NULL parts match any) get the new parts that are given, and the
// old file name in their target text becomes the new one.
bool RenameInstalledIconsOfFile(const char* module_name, const char* module_version,
                                const char* group, const char* file_name, const char* language,
                                const char* new_group, const char* new_file_name,
                                const char* new_language);

const KindApi& FgKindApi();
const KindApi& SfKindApi();
const KindApi& FgdKindApi();
const KindApi& FgaKindApi();

}  // namespace qv

#endif  // QUORVEX_RECORDS_FILEGROUP_FAMILIES_H_
