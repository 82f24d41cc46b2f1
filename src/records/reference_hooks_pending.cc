// Stand-ins for the association families not yet read: a profile without
// Driver Ads or File Group Ads has nothing that refers to an Ad.
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

}  // namespace qv
