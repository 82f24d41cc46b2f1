// Reading and writing the records of one kind, whatever the kind: a section
// of a profile file, or a table of the Orvik database.
#ifndef QUORVEX_RECORDS_FAMILY_IO_H_
#define QUORVEX_RECORDS_FAMILY_IO_H_

#include <cstdint>
#include <functional>
#include <span>

#include "quorvex/base.h"
#include "quorvex/list.h"
#include "records/kind_schema.h"
#include "records/record_codec.h"
#include "records/record_list.h"

namespace qv {

// Lists of records of any kind: every record is freed the same way.
using GenericList = ListOps<void, &FreeRecord>;

// The file a kind's records live in: the owner of per-owner files, empty
// for the fixed catalogue files.
struct Owner {
  const char* name = "";
  const char* key = "";
  // The profile folder; nullptr: the open profile's. Opening reads the
  // locations of a profile before it becomes the open one.
  const char* directory = nullptr;
};

// Reads every record of the kind in file (or table) order into a new list
// handed out in *list_out. The text store opens the file with `mode`
// (MODE_UPDATE checks it out); a missing section gives an empty list.
// Returns false after reporting; a list handed out before the failure stays
// with the caller.
bool ReadKindList(const KindSchema& schema, const Owner& owner, uint32_t mode,
                  RecordList** list_out);

// Appends the records of the kind's section in an open file to the list,
// each with its line number, record flags and owner. A missing section adds
// nothing. False when memory ran short.
bool ReadSectionRecords(const KindSchema& schema, QvFile file, const Owner& owner,
                        RecordList* list);

// Every record line a scan reads, whichever kind it belongs to: its text as
// read, before the kind's filter and reader see it, and its record flags.
using SeenLine = std::function<void(const char* line, uint32_t flags)>;
// A line of the kind that its caller deals with on its text alone: when it
// says so, no record is made of it.
using PassedLine = std::function<bool(const char* line, uint32_t flags)>;

// Reads the section's record lines in turn, each into the empty record that
// `next` gives, with its line number, record flags and owner, and hands it
// to `take` once its line has read. False at the first line that fails the
// read (reported), or when `next` gives nothing or `take` refuses. With
// `as_written`, for a kind whose lines can be copied, *as_written is the
// line's text while `take` has a record that writes back as that text, and
// nullptr while it has another. `seen`, when given, is shown every line
// first, also those of the other kinds of a shared section; `passes`, when
// given, every line of the kind before a record is made of it.
bool ScanSectionRecords(const KindSchema& schema, QvFile file, const Owner& owner,
                        const std::function<void*()>& next, const std::function<bool(void*)>& take,
                        const char** as_written = nullptr, const SeenLine& seen = nullptr,
                        const PassedLine& passes = nullptr);
// As ScanSectionRecords, from the file's position: behind the section's
// header.
bool ScanRecordsHere(const KindSchema& schema, QvFile file, const Owner& owner,
                     const std::function<void*()>& next, const std::function<bool(void*)>& take,
                     const char** as_written = nullptr, const SeenLine& seen = nullptr,
                     const PassedLine& passes = nullptr);

// Rewrites the kind's section from the list (the file is checked out
// first), resuming the copy behind the schema's tail section when it names
// one. A kind whose inactive records cannot be written as lines has the
// whole list checked first. Returns false after reporting.
bool WriteKindSection(const KindSchema& schema, const Owner& owner, RecordList* list);

// A put of one record that streams the section instead of reading it into
// a list: the first stored record that `replaces` names is written as the
// record with the stored one's identity (`keep_identity` on a copy), and
// the record goes at the section's end when none is. `replaces` sees every
// stored record in file order, also those after the first it names. False
// when the section does not read (reported; nothing written); *rewritten
// tells whether the file was rewritten. For the kinds CanPutIntoSection
// allows: each line is its own record, and it writes back as a list's read
// of it would (a line of which only some fields parse included).
//
// `key_offsets` may name the members `replaces` compares with the record's
// when it compares nothing else and has no other effect: a line that
// stands as the writer gives it, with other values in those members, is
// then copied on its bytes and not shown to `replaces`.
bool CanPutIntoSection(const KindSchema& schema);
bool PutIntoSection(const KindSchema& schema, const Owner& owner, const void* record,
                    const std::function<bool(const void* stored)>& replaces,
                    const std::function<void(void* copy, const void* stored)>& keep_identity,
                    bool* rewritten, std::span<const size_t> key_offsets = {});
// As PutIntoSection, into a file its caller opened for update at path:
// files that are found, or made, their own way. The file is taken over.
// Reports name lines as the list form of the put would count them: with
// counts_a_read_first, that form reads the section through the same open
// file before rewriting it, so its count goes on from that read.
bool PutIntoOpenSection(const KindSchema& schema, const Owner& owner, QvFile input,
                        const char* path, const void* record,
                        const std::function<bool(const void* stored)>& replaces,
                        const std::function<void(void* copy, const void* stored)>& keep_identity,
                        bool* rewritten, bool counts_a_read_first = false,
                        std::span<const size_t> key_offsets = {});

// Reports "It appears that you have not run OpenMasterProfile
// successfully!" (or "...not locked the Master Profile...") when the open
// profile does not allow the operation.
bool RequireOpenProfile();
bool RequireLockedProfile();
bool IsOrvikProfile();

}  // namespace qv

#endif  // QUORVEX_RECORDS_FAMILY_IO_H_
