#include "records/language_file.h"

#include <cstdio>

#include "core/file_name_check.h"
#include "core/host.h"
#include "core/section_rewrite.h"
#include "core/state.h"
#include "profile/global_file_list.h"
#include "quorvex/catalogue.h"
#include "quorvex/report.h"
#include "quorvex/text.h"
#include "quorvex/vcs.h"
#include "quorvex/writer.h"
#include "records/family_io.h"
#include "records/new_files.h"
#include "records/record_codec.h"

namespace qv {
namespace {

constexpr char kQuestionCaption[] = "Question from QUORVEX:";

void ReportWithPath(const char* format, const char* path) {
  char text[QV_LINE_SIZE];
  snprintf(text, sizeof text, format, path);
  ReportError(text, 0);
}

// Makes the language's file with its header and enters it in the global
// list of files as new: it needs no check-out, and the first write adds it
// to version control.
bool CreateLanguageFile(const LanguageFileKind& kind, const char* language) {
  char path[QV_PATH_SIZE] = "";
  QvFile file = CreateMungedFile(language, "", kind.create_kind, path);
  if (!QvFileIsOpen(file)) return false;
  AddGlobalFileEntry(language, "", kind.listed_kind, path, FS_CHECKED_OUT | kFileNewToVcs);
  AddSections(file, kind.header_kind, "", "");
  QvCloseFile(file);
  return true;
}

}  // namespace

bool QuestionsAllowed() {
  return (State().profile_flags & OPEN_SILENT) == 0;
}

bool ReadLanguageSection(const KindSchema& schema, QvFile file, const char* language,
                         RecordList* list) {
  Owner owner;
  owner.name = language;
  return ReadSectionRecords(schema, file, owner, list);
}

bool ReadLanguageList(const LanguageFileKind& kind, const char* language, uint32_t mode,
                      RecordList** list_out) {
  *list_out = nullptr;
  char path[QV_PATH_SIZE] = "";
  QvFile file =
      OpenProfileFile(State().profile_path, language, "", kind.catalogue_kind, path, mode);
  // A file that was found but cannot be read has been reported.
  if (file == QV_FAILED_FILE) return false;
  GenericList::New(list_out);
  if (*list_out == nullptr) {
    QvCloseFile(file);
    return false;
  }
  if (file == QV_NO_FILE) return true;
  bool read = ReadLanguageSection(*kind.schema, file, language, *list_out);
  QvCloseFile(file);
  if (!read) {
    // A read that failed hands out no list: nothing half read can be
    // written back.
    GenericList::Free(*list_out);
    *list_out = nullptr;
  }
  return read;
}

QvFile OpenLanguageFileForChange(const LanguageFileKind& kind, const char* language,
                                 bool offer_creation, char* path) {
  // Neither looked for nor offered for creation: the code would name a file
  // outside the language folder.
  if (!CheckPlainFileName(language)) return QV_NO_FILE;
  for (;;) {
    QvFile file =
        OpenProfileFile(State().profile_path, language, "", kind.catalogue_kind, path, MODE_UPDATE);
    if (QvFileIsOpen(file)) return file;
    if (!offer_creation) return QV_NO_FILE;
    ReportWithPath("%s cannot be found or opened!", path);
    // A file that exists but cannot be opened is not made anew.
    if (file == QV_FAILED_FILE || !QuestionsAllowed()) return QV_NO_FILE;
    if (!HostMessageBox(kind.create_question, kQuestionCaption, QV_BOX_QUESTION)) {
      return QV_NO_FILE;
    }
    // A file that could not be made is looked up and offered again: the
    // person may mend the folder in between, or answer No.
    if (!CreateLanguageFile(kind, language)) continue;
    // The new file needs no check-out: look it up for reading and mark it.
    file =
        OpenProfileFile(State().profile_path, language, "", kind.catalogue_kind, path, MODE_READ);
    if (QvFileIsOpen(file)) {
      MarkNewToVcs(path);
      return file;
    }
  }
}

bool WriteLanguageSection(const LanguageFileKind& kind, QvFile file, const char* path,
                          RecordList* list) {
  SectionRewrite rewrite;
  if (!rewrite.Begin(file, path, kind.schema->kind->section)) return false;
  GenericList::ForEach(list, [&](void* record) {
    // A short write leaves a broken line; the rest is still written.
    WriteRecordLine(*kind.schema, record, rewrite.output());
  });
  if (!rewrite.Finish()) return false;
  AddIfNewToVcs(path);
  return true;
}

}  // namespace qv
