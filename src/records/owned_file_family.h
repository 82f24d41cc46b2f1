// The kinds whose every record owns a profile file of its own (modules
// now; products, installs and module groups share the same protocol): the
// record is the first line of its file's identity section, the other
// sections of that file hold the records that belong to it. One
// implementation serves them all; a kind is an OwnedFileKind of data.
#ifndef QUORVEX_RECORDS_OWNED_FILE_FAMILY_H_
#define QUORVEX_RECORDS_OWNED_FILE_FAMILY_H_

#include <cstddef>
#include <vector>

#include "quorvex/list.h"
#include "records/kind_schema.h"

namespace qv {

struct OwnedFileKind {
  const KindSchema* schema;  // the identity line; the kind table gives file kind and section
  const char* folder;        // the files' folder below the profile ("MODULES")
  const char* extension;     // of the files in it ("mo")
  // Members of the record. A kind keyed by its name alone (installs) has
  // version_size 0: its files are found, and its records matched, by name.
  size_t name_offset, name_size;
  size_t version_offset, version_size;
  size_t file_name_offset, file_name_size;
  // What a replacing copy keeps of the stored record besides its key and
  // file name (a row tag, ...), and the texts a born record gets anew.
  std::vector<std::pair<size_t, size_t>> kept_members;
  std::vector<std::pair<size_t, size_t>> text_ids;
  // Messages.
  const char* parent_missing;  // "Parent Module Could Not be found to birth Child."
  const char* insert_failed;   // "Cannot insert MO record in Orvik shipping profile"
  const char* fetch_failed;    // "Cannot get module out of Orvik profile."
  const char* not_found_to_delete;
  const char* cannot_delete_file;
  const char* delete_failed;      // the database's
  const char* references_remain;  // "Cannot delete all references to this MO, ..."
  // What follows a birth (the contained texts) and goes before a delete
  // (the references others hold); both get the record's name and version.
  bool (*renew_contents)(const char* name, const char* version);
  bool (*delete_references)(const char* name, const char* version);
  // The record names a file that is neither found nor there.
  const char* file_missing = "Did you just delete a file from the database?";
  // Said when no new file could be made for the record, besides what the
  // file maker said itself; nullptr: nothing more (the file maker refuses
  // module groups in its own words).
  const char* file_not_made = "Cannot create a file for %s.";
};

// Every record of the kind: the first identity line of each of its files, in
// the order of the files' names (a file without the section is passed over),
// or the database rows. False, reported, when a file cannot be opened or its
// line does not read; the records read so far stay in *list_out.
bool ReadOwnedList(const OwnedFileKind& kind, RecordList** list_out);

// From the first node: by file name (ignoring case) when one is given, the
// first node when no name is, else by name and version exactly.
bool FindOwnedNode(const OwnedFileKind& kind, const char* name, const char* version,
                   const char* file_name, RecordList* list, void** record_out);

bool GetOwned(const OwnedFileKind& kind, const char* name, const char* version, void** record_out);
bool CopyOwned(const OwnedFileKind& kind, void** record_in_out, const void* source, int mode,
               RecordList* list);
bool PutOwned(const OwnedFileKind& kind, void** record_in_out, const void* parent);
// Makes the file the record names, as the kind's header template, when the
// profile has no file of that name: a rebuilt profile keeps its file names.
bool MakeNamedOwnedFile(const OwnedFileKind& kind, const void* record);
bool DeleteOwned(const OwnedFileKind& kind, const char* name, const char* version);

}  // namespace qv

#endif  // QUORVEX_RECORDS_OWNED_FILE_FAMILY_H_
