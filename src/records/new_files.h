// Profile files this engine has created and not yet put under version
// control. Such a file needs no check-out while the profile is open, and its
// first write adds it with "Initial Revision.".
//
// A new file is never made in place and then filled: it is named and listed
// here, its header template waits in memory, and its first rewrite puts
// header and records there in one rename. A crash therefore leaves either
// no file or the whole file, never one that holds only its header.
#ifndef QUORVEX_RECORDS_NEW_FILES_H_
#define QUORVEX_RECORDS_NEW_FILES_H_

#include <cstdint>

#include "quorvex/base.h"

namespace qv {

// The status bit in the global list of files of a file made here and not
// yet added to version control.
constexpr uint32_t kFileNewToVcs = 0x40000000u;

// Enters path in the global list of files as the owner's new file of the
// kind: checked out, not yet added to version control.
void ListAsNew(const char* owner_name, const char* owner_key, const char* kind, const char* path);

// The header template of the kind (with its keys) in a file in memory,
// positioned at its start: the source of a new file's first rewrite.
QvFile NewFileHeader(const char* kind, const char* first_key, const char* second_key);

// The path of the owner's file of the kind that is listed as new but not
// yet on disk (its first write has not happened yet); nullptr when there
// is none.
const char* UnwrittenNewFile(const char* owner_name, const char* owner_key, const char* kind);

// Takes a file listed as new out of the global list again when it never
// reached the disk: its first write failed, so nothing was made.
void ForgetUnwrittenNewFile(const char* path);

// Marks the listed file (found by its path, whatever spelling the
// catalogue listed first) as new: checked out and not yet added.
void MarkNewToVcs(const char* path);

// Adds a file marked new to version control with "Initial Revision."; on
// success it counts as checked in, so the next change checks it out.
void AddIfNewToVcs(const char* path);

}  // namespace qv

#endif  // QUORVEX_RECORDS_NEW_FILES_H_
