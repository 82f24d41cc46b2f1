// The kinds of the registry-administration file inside the engine:
// development registry keys (DRK), their products (DRKPR) and the
// development products (DVPR), as the tool and the profile check reach them.
#ifndef QUORVEX_RECORDS_DEVKEY_FAMILY_H_
#define QUORVEX_RECORDS_DEVKEY_FAMILY_H_

#include "records/kind_api.h"

namespace qv {

const KindApi& DrkKindApi();
const KindApi& DrkprKindApi();
const KindApi& DvprKindApi();

}  // namespace qv

#endif  // QUORVEX_RECORDS_DEVKEY_FAMILY_H_
