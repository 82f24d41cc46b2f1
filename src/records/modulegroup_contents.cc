// The modules of a module group (MGM, "[Module Group Modules]").
#include "quorvex/modulegroups.h"
#include "records/owner_kinds.h"
#include "records/top_kinds.h"

namespace qv {
namespace {

struct MgmDesc {
  using Record = MGMRecord;
  static constexpr auto kFree = &MPFreeMGM;
  static constexpr std::array<const char*, 2> kOwnerMembers = {"GroupName", "GroupVersion"};
  static constexpr std::array<const char*, 2> kOwnerLabels = {"group", "version"};
  static constexpr std::array<const char*, 2> kKeyMembers = {"ModuleName", "ModuleVersion"};
  QV_OWNED_KIND_TEXTS("MGM")
  static const KindSchema& Schema() {
    static const KindSchema schema = [] {
      KindSchema s = OwnerRecordSchema<MgmDesc>(
          "MGM",
          {QV_MEMBER(MGMRecord, row.GroupName, "GroupName", true),
           QV_MEMBER(MGMRecord, row.GroupVersion, "GroupVersion", true),
           QV_MEMBER(MGMRecord, row.ModuleName, "ModuleName", true),
           QV_MEMBER(MGMRecord, row.ModuleVersion, "ModuleVersion", true),
           QV_MEMBER(MGMRecord, row.Number, "Number", true),
           QV_MEMBER(MGMRecord, row.Flags, "Flags", true),
           QV_MEMBER(MGMRecord, recordFlags, "recordFlags", false),
           QV_MEMBER(MGMRecord, lineNumber, "lineNumber", false)},
          "File associated with Module Group %s,%s cannot be found or opened!");
      s.line = {
          QV_LINE_FIELD(MGMRecord, row.ModuleName, LineSyntax::kText, 40, 0, 0),
          QV_LINE_FIELD(MGMRecord, row.ModuleVersion, LineSyntax::kText, 10, 0, 0),
          QV_LINE_FIELD(MGMRecord, row.Number, LineSyntax::kInteger, 0, 0, 0),
          QV_LINE_FIELD(MGMRecord, row.Flags, LineSyntax::kFlagString32, 0, 0, 0),
      };
      s.flag_label = "Module Group Modules";
      return s;
    }();
    return schema;
  }
  static bool DeleteReferences(const OwnedKey<2>&) { return true; }
  static int Put(MGMRecord* record, bool* written);
};

using MgmFamily = OwnedKindFamily<MgmDesc>;

int MgmDesc::Put(MGMRecord* record, bool* written) {
  return MgmFamily::Put(record, written);
}

}  // namespace

const KindApi& MgmKindApi() {
  return MgmFamily::Api();
}

// The group's own rows; its file holds them in a Master Profile.
bool DeleteModuleGroupRows(const char* name, const char* version) {
  if (IsOrvikProfile()) DeleteRowsQuietly<MgmFamily>({name, version, {}});
  return true;
}

}  // namespace qv

using qv::MgmFamily;

QV_DEFINE_OWNER_CONTENT_OPERATIONS(MGM, MgmFamily)

extern "C" int MPDeleteMGM(const char* groupName, const char* groupVersion, const char* moduleName,
                           const char* moduleVersion) {
  return MgmFamily::Delete(
      {groupName, groupVersion, {qv::KeyPart(moduleName), qv::KeyPart(moduleVersion)}});
}
