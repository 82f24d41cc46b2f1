// The per-language text files (resource files and setup-message files):
// found by language code, created on request when a write finds none, and
// rewritten one section at a time.
#ifndef QUORVEX_RECORDS_LANGUAGE_FILE_H_
#define QUORVEX_RECORDS_LANGUAGE_FILE_H_

#include <cstdint>
#include <functional>
#include <string>

#include "quorvex/base.h"
#include "quorvex/list.h"
#include "records/kind_schema.h"
#include "records/new_files.h"

namespace qv {

struct LanguageFileKind {
  const KindSchema* schema;     // its section is the kind's section
  const char* catalogue_kind;   // how the catalogue finds the file ("RES", "MSG")
  const char* create_kind;      // how CreateMungedFile names a new one ("RE", "MSG")
  const char* header_kind;      // the header template of a new one ("RES", "MSG")
  const char* listed_kind;      // its kind in the global list of files ("RE", "MSG")
  const char* create_question;  // asked before a missing file is made
};

// Reads the language's records of the kind's section into a new list
// handed out in *list_out. A missing file or section gives an empty list.
// False (and no list) when a file was found that cannot be opened.
bool ReadLanguageList(const LanguageFileKind& kind, const char* language, uint32_t mode,
                      RecordList** list_out);

// Opens the language's file for change (checked out first). When there is
// none: with offer_creation, reports "%s cannot be found or opened!" and,
// if the profile allows questions, offers to create it; QV_NO_FILE when it
// stays missing. Without offer_creation a missing file gives QV_NO_FILE
// silently. A created file is named and entered in the global list of
// files as new, but not made: the handle is its header in memory, and
// WriteLanguageSection puts the whole file in place, so that no crash
// leaves a file with the header alone. Until then the language's file
// opens as that header again. path receives the file's path (QV_PATH_SIZE).
QvFile OpenLanguageFileForChange(const LanguageFileKind& kind, const char* language,
                                 bool offer_creation, char* path);

// Reads the section of an open file (the file stays open) and appends its
// records to list. False when memory runs short.
bool ReadLanguageSection(const KindSchema& schema, QvFile file, const char* language,
                         RecordList* list);

// Rewrites the kind's section of the file (taken over, opened by
// OpenLanguageFileForChange) from the list, keeping every other byte, and
// adds a file new to version control with "Initial Revision.". False after
// reporting.
bool WriteLanguageSection(const LanguageFileKind& kind, QvFile file, const char* path,
                          RecordList* list);

// As WriteLanguageSection, with the section's lines put together already
// (they must stay as they are until it returns).
bool WriteLanguageSectionLines(const LanguageFileKind& kind, QvFile file, const char* path,
                               const std::string& lines);

// As WriteLanguageSection, for a put of one record that streams the
// section instead of reading it into a list (see PutIntoOpenSection): the
// first stored record that `replaces` names takes the record's place, with
// what keep_identity keeps of it; the record is added when none does.
bool PutLanguageRecord(const LanguageFileKind& kind, QvFile file, const char* path,
                       const char* language, const void* record,
                       const std::function<bool(const void* stored)>& replaces,
                       const std::function<void(void* copy, const void* stored)>& keep_identity);

// Whether a changing operation may ask the person: the profile was opened
// without OPEN_SILENT.
bool QuestionsAllowed();

}  // namespace qv

#endif  // QUORVEX_RECORDS_LANGUAGE_FILE_H_
