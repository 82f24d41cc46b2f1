// The modules a module requires (MDEP) and the locations it installs into
// (ML): records of the module's file that name other records, so deleting
// a module or a location reaches them.
#include <string>
#include <utility>
#include <vector>

#include "quorvex/modulecontents.h"
#include "records/filegroup_families.h"
#include "records/owned_kind_family.h"
#include "records/owner_kinds.h"
#include "records/reference_hooks.h"

namespace qv {
namespace {

struct MdepDesc {
  using Record = MDEPRecord;
  static constexpr auto kFree = &MPFreeMDEP;
  static constexpr std::array<const char*, 2> kKeyMembers = {"ReqModuleName", "ReqModuleVersion"};
  static constexpr const char* kInsertIn = "Cannot insert MDEP record in Orvik shipping profile";
  static constexpr const char* kInsertInto =
      "Cannot insert MDEP record into Orvik shipping profile";
  static constexpr const char* kDeleteFailed = "(not tarrowby supported).";
  static constexpr const char* kNotForOrvik = "MDEPs not implemented in QUORVEX for Orvik";
  static constexpr const char* kReferencesRemain =
      "Cannot delete all references to this MDEP, therefore cannot delete it.";
  static const KindSchema& Schema() {
    static const KindSchema schema = [] {
      KindSchema s = ModuleRecordSchema<MDEPRecord>("MDEP");
      s.members.insert(s.members.end(),
                       {
                           QV_MEMBER(MDEPRecord, row.ReqModuleName, "ReqModuleName", true),
                           QV_MEMBER(MDEPRecord, row.ReqModuleVersion, "ReqModuleVersion", true),
                           QV_MEMBER(MDEPRecord, recordFlags, "recordFlags", false),
                           QV_MEMBER(MDEPRecord, lineNumber, "lineNumber", false),
                       });
      s.line = {
          QV_LINE_FIELD(MDEPRecord, row.ReqModuleName, LineSyntax::kText, 40, 0, 0),
          QV_LINE_FIELD(MDEPRecord, row.ReqModuleVersion, LineSyntax::kText, 10, 0, 0),
      };
      s.flag_label = "Modules I Require";
      s.orvik_deletes = false;
      return s;
    }();
    return schema;
  }
  static bool DeleteReferences(const OwnedKey<2>&) { return true; }
  static int Put(MDEPRecord* record, bool* written);
};

struct MlDesc {
  using Record = MLRecord;
  static constexpr auto kFree = &MPFreeML;
  static constexpr std::array<const char*, 2> kKeyMembers = {"LocationName", "LocationVersion"};
  static constexpr const char* kInsertIn = "Cannot insert ML record in Orvik shipping profile";
  static constexpr const char* kInsertInto = "Cannot insert ML record into Orvik shipping profile";
  static constexpr const char* kDeleteFailed =
      "Cannot delete ML record from Orvik shipping profile";
  static constexpr const char* kNotForOrvik = "MLs not implemented in QUORVEX for Orvik";
  static constexpr const char* kReferencesRemain =
      "Cannot delete all references to this ML, therefore cannot delete it.";
  static const KindSchema& Schema() {
    static const KindSchema schema = [] {
      KindSchema s = ModuleRecordSchema<MLRecord>("ML");
      s.members.insert(s.members.end(),
                       {
                           QV_MEMBER(MLRecord, row.LocationName, "LocationName", true),
                           QV_MEMBER(MLRecord, row.LocationVersion, "LocationVersion", true),
                           QV_MEMBER(MLRecord, recordFlags, "recordFlags", false),
                           QV_MEMBER(MLRecord, lineNumber, "lineNumber", false),
                       });
      s.line = {
          QV_LINE_FIELD(MLRecord, row.LocationName, LineSyntax::kText, 40, 0, 0),
          QV_LINE_FIELD(MLRecord, row.LocationVersion, LineSyntax::kText, 10, 0, 0),
      };
      s.flag_label = "Module Locations";
      return s;
    }();
    return schema;
  }
  static bool DeleteReferences(const OwnedKey<2>&) { return true; }
  static int Put(MLRecord* record, bool* written);
};

using MdepFamily = OwnedKindFamily<MdepDesc>;
using MlFamily = OwnedKindFamily<MlDesc>;

int MdepDesc::Put(MDEPRecord* record, bool* written) {
  return MdepFamily::Put(record, written);
}
int MlDesc::Put(MLRecord* record, bool* written) {
  return MlFamily::Put(record, written);
}

}  // namespace

const KindApi& MdepKindApi() {
  return MdepFamily::Api();
}
const KindApi& MlKindApi() {
  return MlFamily::Api();
}

bool DeleteRequiredModuleReferences(const char* module_name, const char* module_version) {
  // The database keeps required modules (its delete fails and says so).
  if (IsOrvikProfile()) {
    return MdepFamily::Delete(
               {nullptr, nullptr, {KeyPart(module_name), KeyPart(module_version)}}) == 1;
  }
  // Every module of the profile may require the one that goes.
  for (const auto& [name, version] : ProfileModules()) {
    MdepFamily::Key key{
        name.c_str(), version.c_str(), {KeyPart(module_name), KeyPart(module_version)}};
    if (MdepFamily::AnyMatch(key)) MdepFamily::Delete(key);
  }
  return true;
}

bool UpdateModuleLocationsOfLocation(const char* name, const char* version, uint32_t mode,
                                     const char* new_name, const char* new_version) {
  bool all = true;
  for (const auto& [module, module_version] : ProfileModules()) {
    MlFamily::Key key{module.c_str(), module_version.c_str(), {KeyPart(name), KeyPart(version)}};
    if (!MlFamily::AnyMatch(key)) continue;
    if (mode == kDeleteReferences) {
      all = MlFamily::Delete(key) == 1 && all;
      continue;
    }
    RecordList* list = nullptr;
    if (MlFamily::ReadAll(module.c_str(), module_version.c_str(), &list, MODE_UPDATE) == 1) {
      MlFamily::List::ForEach(list, [&](MLRecord* record) {
        if (!OwnedKindTraits<MlDesc>::Matches(*record, key)) return;
        snprintf(record->row.LocationName, sizeof record->row.LocationName, "%s", new_name);
        snprintf(record->row.LocationVersion, sizeof record->row.LocationVersion, "%s",
                 new_version);
      });
      all = MlFamily::Write(module.c_str(), module_version.c_str(), list) == 1 && all;
    } else {
      all = false;
    }
    MlFamily::List::Free(list);
  }
  return all;
}

}  // namespace qv

using qv::MdepFamily;
using qv::MlFamily;

QV_DEFINE_OWNER_CONTENT_OPERATIONS(MDEP, MdepFamily)
QV_DEFINE_OWNER_CONTENT_OPERATIONS(ML, MlFamily)

extern "C" {

int MPDeleteMDEP(const char* moduleName, const char* moduleVersion, const char* reqModuleName,
                 const char* reqModuleVersion) {
  return MdepFamily::Delete(
      {moduleName, moduleVersion, {qv::KeyPart(reqModuleName), qv::KeyPart(reqModuleVersion)}});
}

int MPDeleteML(const char* moduleName, const char* moduleVersion, const char* locationName,
               const char* locationVersion) {
  return MlFamily::Delete(
      {moduleName, moduleVersion, {qv::KeyPart(locationName), qv::KeyPart(locationVersion)}});
}

}  // extern "C"
