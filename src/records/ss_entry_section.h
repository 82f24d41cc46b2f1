// A section of a module's settings file that three entry kinds share: read
// one kind's lines, or rewrite them keeping the other kinds' lines, with
// generated names for the entries that have none.
#ifndef QUORVEX_RECORDS_SS_ENTRY_SECTION_H_
#define QUORVEX_RECORDS_SS_ENTRY_SECTION_H_

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "quorvex/list.h"
#include "records/family_io.h"
#include "records/kind_schema.h"
#include "records/ss_entry_lines.h"

namespace qv {

// The kind's entries of the module's file into a new list. A module
// without a settings file, or a file without the section, gives an empty
// list. False (reported) when a line of the kind does not read.
bool ReadEntrySection(const KindSchema& schema, const Owner& module, uint32_t mode,
                      RecordList** list_out);

// Rewrites the section: the lines of the other kinds first, as they
// stood, then the list's entries of this kind, each without a name given
// one. Makes the module's settings file when it has none. False after
// reporting.
bool WriteEntrySection(const EntryKind& kind, const KindSchema& schema, const Owner& module,
                       RecordList* list);

// How a put of one entry through the section went: written, failed
// (reported; nothing written), or not tried because the section must be
// read into a list (an open that leaves inactive lines unread, or a module
// without a settings file, which the list form makes).
enum class StreamedEntryPut { kWritten, kFailed, kNeedsList };

// A put of one entry that streams the section instead of reading it into a
// list of full-size records: it leaves what WriteEntrySection leaves after
// ReadEntrySection, with the entry in place of the first stored one that
// `replaces` names (taking that one's identity from `keep_identity`), or
// last. The name it went out with (given one when it had none) is copied
// to written_name (room for SSRData::Name).
StreamedEntryPut PutEntryIntoSection(
    const EntryKind& kind, const KindSchema& schema, const Owner& module, const void* entry,
    const std::function<bool(const void* stored)>& replaces,
    const std::function<void(void* copy, const void* stored)>& keep_identity, char* written_name);

// The counter behind "MP_GEN_" + tag: above the numbers of the section's
// lines (old_names, in file order) and of the names already in the list.
// The two scans raise it by different rules, both kept.
int32_t NextGeneratedNumber(const std::vector<std::string>& old_names,
                            const std::vector<std::string>& list_names);

}  // namespace qv

#endif  // QUORVEX_RECORDS_SS_ENTRY_SECTION_H_
