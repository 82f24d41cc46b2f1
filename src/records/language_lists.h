// The language kinds inside the engine: the four language lists of the
// language file (SLA, DLA, OSLA, AILA), the OS document languages (OSDL)
// and the user information data of an Orvik profile (UNFO), as the tool
// and the profile check reach them.
#ifndef QUORVEX_RECORDS_LANGUAGE_LISTS_H_
#define QUORVEX_RECORDS_LANGUAGE_LISTS_H_

#include "records/kind_api.h"

namespace qv {

const KindApi& SlaKindApi();
const KindApi& DlaKindApi();
const KindApi& OslaKindApi();
const KindApi& AilaKindApi();
const KindApi& OsdlKindApi();
const KindApi& UnfoKindApi();

}  // namespace qv

#endif  // QUORVEX_RECORDS_LANGUAGE_LISTS_H_
