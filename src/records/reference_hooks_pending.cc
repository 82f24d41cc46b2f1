// Stand-ins for the families not yet read: a profile without Driver Ads,
// Module Locations or Installed Icon Locations has nothing that refers to
// an Ad, a location or an icon location; one without installs or products
// has nothing to delete for a module.
#include "records/reference_hooks.h"

namespace qv {

bool DeleteDriverAdsOfAd(uint32_t) {
  return true;
}
bool UpdateDriverAdsOfAd(uint32_t, uint32_t, uint32_t) {
  return true;
}

bool DeleteInstallReferencesToModule(const char*, const char*) {
  return true;
}
bool DeleteProductModulesOfModule(const char*, const char*) {
  return true;
}


// No family keeps shipped-file settings records yet: none refers to a file.
bool DeleteSettingsOfShippedFile(const char*, const char*, const char*, const char*, const char*) {
  return true;
}
bool RenameSettingsOfShippedFile(const char*, const char*, const char*, const char*, const char*,
                                 const char*, const char*, const char*) {
  return true;
}
bool SettingsReferToShippedFile(const char*, const char*, const char*, const char*, const char*) {
  return false;
}

}  // namespace qv
