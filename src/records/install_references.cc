// What deletes reach in installs: the install's own rows (the database's
// only), the entries naming a product, a module group, a module or an Ad
// in every install, and the install modules that only the database holds.
#include <string>

#include "quorvex/report.h"
#include "records/install_families.h"
#include "records/reference_hooks.h"
#include "records/top_kinds.h"

namespace qv {
namespace {

constexpr char kNoDmInMasterProfile[] =
    "Driver Module is not explicitly a part of the Master Profile";

// Install modules are rows of the database; a Master Profile has no place
// for them.
bool DmAvailable() {
  if (IsOrvikProfile()) return true;
  ReportError(kNoDmInMasterProfile, 0);
  return false;
}

KindApi MakeDmApi() {
  KindApi api = DmFamily::Api();
  auto list = api.list;
  auto get = api.get;
  auto put = api.put;
  auto remove = api.remove;
  api.list = [list](const Texts& owner, RecordList** out) {
    return DmAvailable() && list(owner, out);
  };
  api.get = [get](const Texts& key, void** record) { return DmAvailable() && get(key, record); };
  api.put = [put](void* record) { return DmAvailable() && put(record); };
  api.remove = [remove](const Texts& key) { return DmAvailable() && remove(key); };
  return api;
}

}  // namespace

const KindApi& DmKindApi() {
  static const KindApi api = MakeDmApi();
  return api;
}

bool DeleteInstallRows(const char* name) {
  if (!IsOrvikProfile()) return true;
  DeleteRowsQuietly<ArFamily>({name, "", {}});
  DeleteRowsQuietly<IlaFamily>({name, "", {}});
  DeleteRowsQuietly<AmlaFamily>({name, "", {}});
  DeleteRowsQuietly<SmFamily>({name, "", {}});
  DeleteRowsQuietly<DaFamily>({name, "", {}});
  DeleteRowsQuietly<DmFamily>({name, "", {}});
  DeleteRowsQuietly<DpFamily>({name, "", {}});
  return true;
}

bool DeleteInstallProductsOfProduct(const char* name, const char* version) {
  return DeleteInInstalls<DpFamily>(InstallKey<DpFamily>(nullptr, name, version)) == 1;
}

bool DeleteInstallModuleGroupsOfGroup(const char* name, const char* version) {
  return DeleteInInstalls<DmgFamily>(InstallKey<DmgFamily>(nullptr, name, version)) == 1;
}

bool DeleteInstallReferencesToModule(const char* name, const char* version) {
  DeleteInInstalls<AmlaFamily>(InstallKey<AmlaFamily>(nullptr, nullptr, name, version, nullptr));
  DeleteInInstalls<AmlFamily>(InstallKey<AmlFamily>(nullptr, nullptr, name, version, nullptr));
  return true;
}

bool DeleteDriverAdsOfAd(uint32_t ad_id) {
  DaFamily::Key key = InstallKey<DaFamily>(nullptr, nullptr);
  key.parts[0] = std::to_string(ad_id);
  return DeleteInInstalls<DaFamily>(key) == 1;
}

bool UpdateDriverAdsOfAd(uint32_t ad_id, uint32_t mode, uint32_t new_value) {
  if (mode == kDeleteReferences) return DeleteDriverAdsOfAd(ad_id);
  if (mode != kUpdateReferences || IsOrvikProfile()) return true;
  bool ok = true;
  for (const auto& [name, unused] : ProfileFileOwners("IN", "Install", false)) {
    DaFamily::Key key = InstallKey<DaFamily>(name.c_str(), nullptr);
    key.parts[0] = std::to_string(ad_id);
    bool read = false;
    if (!DaFamily::AnyMatch(key, &read)) {
      ok = read && ok;
      continue;
    }
    RecordList* list = nullptr;
    if (DaFamily::ReadAll(name.c_str(), "", &list, MODE_UPDATE) == 1) {
      DaFamily::List::ForEach(list, [&](DARecord* r) {
        if (r->row.AdId == ad_id) r->row.AdId = new_value;
      });
      ok = DaFamily::WriteChecked(DaFamily::ModuleOwner(name.c_str(), ""), list) == 1 && ok;
    } else {
      ok = false;
    }
    DaFamily::List::Free(list);
  }
  return ok;
}

}  // namespace qv

using qv::DmFamily;

QV_DEFINE_LIST_OPERATIONS(DM, DMRecord, MPFreeDM)

extern "C" {

int MPNewDM(DMRecord** recordOut) {
  *recordOut = DmFamily::New();
  return *recordOut != nullptr ? 1 : 0;
}
int MPFreeDM(DMRecord* record) {
  qv::FreeRecord(record);
  return 1;
}
int MPGetDMCompleteList(const char* installName, DMList** listOut, uint32_t mode) {
  *listOut = nullptr;
  if (!qv::DmAvailable()) return 0;
  return DmFamily::ReadAll(installName, "", listOut, mode);
}
int MPPutDMCompleteList(const char* installName, DMList* list) {
  if (!qv::DmAvailable()) return 0;
  return DmFamily::PutCompleteList(installName, "", list);
}
int MPPutDM(DMRecord* record) {
  if (!qv::DmAvailable()) return 0;
  return DmFamily::Put(record);
}
int MPDeleteDM(const char* installName, const char* moduleName, const char* moduleVersion) {
  if (!qv::DmAvailable()) return 0;
  return DmFamily::Delete(qv::InstallKey<DmFamily>(installName, moduleName, moduleVersion));
}
int MPGetDMFlagNames(DMFlagNames** tableOut) {
  *tableOut = qv::NewFlagNames(DmFamily::Schema());
  return 1;
}
int MPUpdateDAReferences(uint32_t adId, uint32_t mode, uint32_t newAdId) {
  qv::UpdateDriverAdsOfAd(adId, mode, newAdId);
  return 1;
}

}  // extern "C"
