// The records of a product's file: its sub-products (MP, "[Sub-Products]")
// and its modules (PM, "[Modules]"). Deleting a module takes its product
// modules out of every product.
#include "quorvex/products.h"
#include "records/owner_kinds.h"
#include "records/reference_hooks.h"
#include "records/top_kinds.h"

namespace qv {
namespace {

constexpr char kNoProductFile[] = "File associated with product %s,%s cannot be found or opened!";

struct ProductOwned {
  static constexpr std::array<const char*, 2> kOwnerMembers = {"ProductName", "ProductVersion"};
  static constexpr std::array<const char*, 2> kOwnerLabels = {"product", "version"};
  static bool DeleteReferences(const OwnedKey<2>&) { return true; }
};

struct MpDesc : ProductOwned {
  using Record = MPRecord;
  static constexpr auto kFree = &MPFreeMP;
  static constexpr std::array<const char*, 2> kKeyMembers = {"SubProductName", "SubProductVersion"};
  QV_OWNED_KIND_TEXTS("MP")
  static const KindSchema& Schema() {
    static const KindSchema schema = [] {
      KindSchema s = OwnerRecordSchema<MpDesc>(
          "MP",
          {QV_MEMBER(MPRecord, row.ProductName, "ProductName", true),
           QV_MEMBER(MPRecord, row.ProductVersion, "ProductVersion", true),
           QV_MEMBER(MPRecord, row.SubProductName, "SubProductName", true),
           QV_MEMBER(MPRecord, row.SubProductVersion, "SubProductVersion", true),
           QV_MEMBER(MPRecord, row.Number, "Number", true),
           QV_MEMBER(MPRecord, row.Flags, "Flags", true),
           QV_MEMBER(MPRecord, recordFlags, "recordFlags", false),
           QV_MEMBER(MPRecord, lineNumber, "lineNumber", false)},
          kNoProductFile);
      s.line = {
          QV_LINE_FIELD(MPRecord, row.SubProductName, LineSyntax::kText, 40, 0, 0),
          QV_LINE_FIELD(MPRecord, row.SubProductVersion, LineSyntax::kText, 10, 0, 0),
          QV_LINE_FIELD(MPRecord, row.Number, LineSyntax::kInteger, 0, FO_OPTIONAL, 0),
          QV_LINE_FIELD(MPRecord, row.Flags, LineSyntax::kFlag, 0, 0, MP_MOST_IMPORTANT),
      };
      // The one label stands at the last character, with an empty mask.
      s.flag_label = "Master Product";
      s.bit_names[31] = "Most important product";
      s.flag_mask = 0;
      return s;
    }();
    return schema;
  }
  static int Put(MPRecord* record, bool* written);
};

struct PmDesc : ProductOwned {
  using Record = PMRecord;
  static constexpr auto kFree = &MPFreePM;
  static constexpr std::array<const char*, 2> kKeyMembers = {"ModuleName", "ModuleVersion"};
  QV_OWNED_KIND_TEXTS("PM")
  static const KindSchema& Schema() {
    static const KindSchema schema = [] {
      KindSchema s = OwnerRecordSchema<PmDesc>(
          "PM",
          {QV_MEMBER(PMRecord, row.ProductName, "ProductName", true),
           QV_MEMBER(PMRecord, row.ProductVersion, "ProductVersion", true),
           QV_MEMBER(PMRecord, row.ModuleName, "ModuleName", true),
           QV_MEMBER(PMRecord, row.ModuleVersion, "ModuleVersion", true),
           QV_MEMBER(PMRecord, row.Number, "Number", true),
           QV_MEMBER(PMRecord, row.Flags, "Flags", true),
           QV_MEMBER(PMRecord, recordFlags, "recordFlags", false),
           QV_MEMBER(PMRecord, lineNumber, "lineNumber", false)},
          kNoProductFile);
      s.line = {
          QV_LINE_FIELD(PMRecord, row.ModuleName, LineSyntax::kText, 40, 0, 0),
          QV_LINE_FIELD(PMRecord, row.ModuleVersion, LineSyntax::kText, 10, 0, 0),
          QV_LINE_FIELD(PMRecord, row.Number, LineSyntax::kInteger, 0, FO_OPTIONAL, 0),
          QV_LINE_FIELD(PMRecord, row.Flags, LineSyntax::kFlagString32, 0, 0, 0),
      };
      s.flag_label = "Product Module";
      s.bit_names[0] = "Required by the associated product";
      s.bit_names[1] = "Ships on CD";
      s.bit_names[2] = "Ships on Diskette";
      // Character 1 is labelled outside the mask, as it always has been.
      s.flag_mask = 0x60000000u;
      return s;
    }();
    return schema;
  }
  static int Put(PMRecord* record, bool* written);
};

using MpFamily = OwnedKindFamily<MpDesc>;
using PmFamily = OwnedKindFamily<PmDesc>;

int MpDesc::Put(MPRecord* record, bool* written) {
  return MpFamily::Put(record, written);
}
int PmDesc::Put(PMRecord* record, bool* written) {
  return PmFamily::Put(record, written);
}

// The product modules naming the module in the product given, or in every
// product when none is.
int DeletePm(const char* product, const char* version, const char* module,
             const char* module_version) {
  PmFamily::Key key{product, version, {KeyPart(module), KeyPart(module_version)}};
  if (product != nullptr) return PmFamily::Delete(key);
  return DeleteInEveryOwner<PmFamily>(key, "PR", "Product") ? 1 : 0;
}

}  // namespace

const KindApi& MpKindApi() {
  return MpFamily::Api();
}
const KindApi& PmKindApi() {
  return PmFamily::Api();
}

bool DeleteProductModulesOfModule(const char* module_name, const char* module_version) {
  DeletePm(nullptr, nullptr, module_name, module_version);
  return true;
}

// The product's own rows; its file holds them in a Master Profile.
bool DeleteProductRows(const char* name, const char* version) {
  if (!IsOrvikProfile()) return true;
  DeleteRowsQuietly<PmFamily>({name, version, {}});
  DeleteRowsQuietly<MpFamily>({name, version, {}});
  return true;
}

}  // namespace qv

using qv::MpFamily;
using qv::PmFamily;

QV_DEFINE_OWNER_CONTENT_OPERATIONS(MP, MpFamily)
QV_DEFINE_OWNER_CONTENT_OPERATIONS(PM, PmFamily)

extern "C" {

int MPDeleteMP(const char* productName, const char* productVersion, const char* subProductName,
               const char* subProductVersion) {
  return MpFamily::Delete(
      {productName, productVersion, {qv::KeyPart(subProductName), qv::KeyPart(subProductVersion)}});
}

int MPDeletePM(const char* productName, const char* productVersion, const char* moduleName,
               const char* moduleVersion) {
  return qv::DeletePm(productName, productVersion, moduleName, moduleVersion);
}

}  // extern "C"
