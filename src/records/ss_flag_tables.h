// The flag tables of settings entries and created entries, and the three
// per-language tables of the entries' language words.
#ifndef QUORVEX_RECORDS_SS_FLAG_TABLES_H_
#define QUORVEX_RECORDS_SS_FLAG_TABLES_H_

#include "records/kind_schema.h"

namespace qv {

// Fills a schema's flag table: "System Settings Record" or "Created System
// Settings Record", mask 0x28000000.
void SetSettingsFlagTable(KindSchema* schema);
void SetCreatedFlagTable(KindSchema* schema);

// "System Settings Modify Subkey Flags" and the like: the language code and
// the suffix for bits 31 down to 4, mask 0.
const KindSchema& ModifySubkeyTable();
const KindSchema& ModifyValueNameTable();
const KindSchema& ModifyValueTable();

}  // namespace qv

#endif  // QUORVEX_RECORDS_SS_FLAG_TABLES_H_
