// Stand-ins for the families not yet read: a profile without Driver Ads,
// File Group Ads, Module Locations or Installed Icon Locations has nothing
// that refers to an Ad, a location or an icon location; one without file
// groups, installs or products has nothing to renew or delete for a module.
#include "records/reference_hooks.h"

namespace qv {

bool DeleteDriverAdsOfAd(uint32_t) {
  return true;
}
bool DeleteFileGroupAdsOfAd(uint32_t) {
  return true;
}
bool UpdateDriverAdsOfAd(uint32_t, uint32_t, uint32_t) {
  return true;
}
bool UpdateFileGroupAdsOfAd(uint32_t, uint32_t, uint32_t) {
  return true;
}
bool UpdateModuleLocationsOfLocation(const char*, const char*, uint32_t, const char*, const char*) {
  return true;
}
bool UpdateInstalledIconLocationsOfIconLocation(const char*, uint32_t, const char*) {
  return true;
}

bool RenewBornModuleTexts(const char*, const char*) {
  return true;
}
bool DeleteFileGroupRequirementsOfModule(const char*, const char*) {
  return true;
}
bool DeleteInstallReferencesToModule(const char*, const char*) {
  return true;
}
bool DeleteProductModulesOfModule(const char*, const char*) {
  return true;
}

}  // namespace qv
