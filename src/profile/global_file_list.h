// The global list of files: every profile file the engine has located while
// the profile is open, with its owner, kind, path and status word.
//
// Opening a profile makes a new list, closing frees it. Lookups by path
// compare without regard to case; owners compare with regard to case and
// kinds without.
#ifndef QUORVEX_PROFILE_GLOBAL_FILE_LIST_H_
#define QUORVEX_PROFILE_GLOBAL_FILE_LIST_H_

#include <cstdint>

#include "quorvex/catalogue.h"
#include "quorvex/list.h"

namespace qv {

// A new, empty list (calloc); nullptr when memory is short.
RecordList* NewGlobalFileList();
// Frees every node, its entry and the header; nullptr is accepted.
void FreeGlobalFileList(RecordList* list);

// Appends an entry to the open profile's list. Does nothing and returns
// false when there is no list (the catalogue then works without one) or
// memory is short. Texts longer than their fields are cut.
bool AddGlobalFileEntry(const char* owner_name, const char* owner_key, const char* kind,
                        const char* path, uint32_t status = 0);

// Removes the first entry of the owner and kind from the open profile's
// list and frees it; false when there is none.
bool RemoveGlobalFileEntry(const char* owner_name, const char* owner_key, const char* kind);

// The first entry whose path equals path without regard to case; nullptr
// when it is not listed or there is no list. Reports nothing.
ProfileFileEntry* FindGlobalFileEntry(const char* path);

// True when the entry belongs to the owner (with regard to case) and kind
// (without regard to case).
bool GlobalFileEntryMatches(const ProfileFileEntry& entry, const char* owner_name,
                            const char* owner_key, const char* kind);

}  // namespace qv

#endif  // QUORVEX_PROFILE_GLOBAL_FILE_LIST_H_
