// The tool's entry for a kind whose records own a file (products,
// installs, module groups): keys as texts, the key's one or two members.
#ifndef QUORVEX_RECORDS_OWNED_FILE_API_H_
#define QUORVEX_RECORDS_OWNED_FILE_API_H_

#include "records/kind_api.h"
#include "records/owned_file_family.h"

namespace qv {

KindApi MakeOwnedFileApi(const OwnedFileKind& kind);

}  // namespace qv

#endif  // QUORVEX_RECORDS_OWNED_FILE_API_H_
