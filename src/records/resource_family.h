// The resource and setup-message families as the rest of the engine and
// the quorvex tool reach them.
#ifndef QUORVEX_RECORDS_RESOURCE_FAMILY_H_
#define QUORVEX_RECORDS_RESOURCE_FAMILY_H_

#include "quorvex/list.h"
#include "records/kind_api.h"
#include "records/kind_schema.h"
#include "records/language_file.h"

namespace qv {

const KindSchema& ResourceSchema();
const LanguageFileKind& ResourceFileKind();
const KindSchema& StringSchema();
const LanguageFileKind& StringFileKind();
const KindSchema& RemoveStringSchema();
const LanguageFileKind& RemoveStringFileKind();

// The uniform interfaces of the three kinds (owner: the language code).
const KindApi& ResourceKindApi();
const KindApi& StringKindApi();
const KindApi& RemoveStringKindApi();

}  // namespace qv

#endif  // QUORVEX_RECORDS_RESOURCE_FAMILY_H_
