// The association records that refer to records of another kind, reached
// from the kind that is deleted or changed. The association families fill
// these in; until a family exists there are no such records to follow.
#ifndef QUORVEX_RECORDS_REFERENCE_HOOKS_H_
#define QUORVEX_RECORDS_REFERENCE_HOOKS_H_

#include <cstdint>

namespace qv {

// Driver Ads (install file, "Install Ads") and File Group Ads (module file,
// "File Group Ads") that name an Ad.
bool DeleteDriverAdsOfAd(uint32_t ad_id);
bool DeleteFileGroupAdsOfAd(uint32_t ad_id);
bool UpdateDriverAdsOfAd(uint32_t ad_id, uint32_t mode, uint32_t new_value);
bool UpdateFileGroupAdsOfAd(uint32_t ad_id, uint32_t mode, uint32_t new_value);

}  // namespace qv

#endif  // QUORVEX_RECORDS_REFERENCE_HOOKS_H_
