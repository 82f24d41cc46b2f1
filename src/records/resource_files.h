// The open resource files: the texts of each language that single-record
// operations changed, held while the profile is open and written back when
// it closes (while still locked).
//
// MPPutResource and MPDeleteResource load a language's texts once (checking
// its file out) and change them in memory; reads of that language are
// served from them, and the complete-list operations write them to the file
// at once.
#ifndef QUORVEX_RECORDS_RESOURCE_FILES_H_
#define QUORVEX_RECORDS_RESOURCE_FILES_H_

#include "records/held_resources.h"

namespace qv {

// The language's held texts, loading them for change when they are not
// held. With offer_creation a missing file may be created (after the
// question); without it a missing file gives nullptr silently. nullptr too
// when the file stays missing or cannot be read. The texts belong to the
// table.
HeldResources* HoldResources(const char* language, bool offer_creation);

// The language's held texts, or nullptr when they are not held.
HeldResources* HeldResourcesOf(const char* language);

// The held texts differ from their file.
void MarkResourcesChanged(const char* language);

// Rewrites the language's file from its held texts now (offering to create
// a missing file), giving each text without a name a generated one first;
// on success they no longer count as changed. False after reporting.
bool WriteHeldResources(const char* language);

// Writes back every changed open resource file (while the profile is still
// locked), frees every entry and empties the table.
void WriteBackResourceFiles();

}  // namespace qv

#endif  // QUORVEX_RECORDS_RESOURCE_FILES_H_
