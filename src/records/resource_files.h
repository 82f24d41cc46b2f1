// The open resource files: the texts of each language that single-record
// operations changed, held while the profile is open and written back when
// it closes (while still locked).
//
// MPPutResource and MPDeleteResource load a language's list once (checking
// its file out) and change it in memory; reads of that language are served
// from it, and the complete-list operations write it to the file at once.
#ifndef QUORVEX_RECORDS_RESOURCE_FILES_H_
#define QUORVEX_RECORDS_RESOURCE_FILES_H_

#include "quorvex/list.h"

namespace qv {

// The language's held list, loading it for change when it is not held.
// With offer_creation a missing file may be created (after the question);
// without it a missing file gives nullptr silently. nullptr too when the
// file stays missing or cannot be read. The list belongs to the table.
RecordList* HoldResourceList(const char* language, bool offer_creation);

// The language's held list, or nullptr when it is not held.
RecordList* HeldResourceList(const char* language);

// The held list differs from its file.
void MarkResourceListChanged(const char* language);

// Writes the language's held list to its file now (offering to create a
// missing file); on success it no longer counts as changed.
bool WriteHeldResourceList(const char* language);

// Rewrites the language's resource file from the list, giving each record
// without a name a generated one first. False after reporting.
bool WriteResourceFile(const char* language, RecordList* list);

// Writes back every changed open resource file (while the profile is still
// locked), frees every entry and empties the table.
void WriteBackResourceFiles();

}  // namespace qv

#endif  // QUORVEX_RECORDS_RESOURCE_FILES_H_
