// Profile files this engine has created and not yet put under version
// control. Such a file needs no check-out while the profile is open, and its
// first write adds it with "Initial Revision.".
#ifndef QUORVEX_RECORDS_NEW_FILES_H_
#define QUORVEX_RECORDS_NEW_FILES_H_

#include <cstdint>

namespace qv {

// The status bit in the global list of files of a file made here and not
// yet added to version control.
constexpr uint32_t kFileNewToVcs = 0x40000000u;

// Marks the listed file (found by its path, whatever spelling the
// catalogue listed first) as new: checked out and not yet added.
void MarkNewToVcs(const char* path);

// Adds a file marked new to version control with "Initial Revision."; on
// success it counts as checked in, so the next change checks it out.
void AddIfNewToVcs(const char* path);

}  // namespace qv

#endif  // QUORVEX_RECORDS_NEW_FILES_H_
