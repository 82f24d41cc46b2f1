#include "records/language_file.h"

#include <cstdio>
#include <string>

#include "core/file_name_check.h"
#include "core/host.h"
#include "core/munged_file.h"
#include "core/section_rewrite.h"
#include "core/state.h"
#include "quorvex/catalogue.h"
#include "quorvex/report.h"
#include "quorvex/text.h"
#include "quorvex/vcs.h"
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

// Names the language's new file and lists it as new: it needs no check-out,
// and its first write adds it to version control. Nothing is made on disk
// here; the first write puts the whole file there.
bool NameLanguageFile(const LanguageFileKind& kind, const char* language, char* path) {
  std::string free_path = FreeMungedPath(language, "", kind.create_kind);
  if (free_path.empty()) return false;
  snprintf(path, QV_PATH_SIZE, "%s", free_path.c_str());
  ListAsNew(language, "", kind.listed_kind, path);
  return true;
}

// A new file reads as its header until its first write.
QvFile NewLanguageFile(const LanguageFileKind& kind, const char* path) {
  SetParseFile(path);
  return NewFileHeader(kind.header_kind, "", "");
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
    if (file == QV_NO_FILE) {
      // Made earlier in this open and not written yet (the texts a put
      // changes wait for the close): it is there, as its header.
      if (const char* unwritten = UnwrittenNewFile(language, "", kind.listed_kind)) {
        snprintf(path, QV_PATH_SIZE, "%s", unwritten);
        return NewLanguageFile(kind, path);
      }
    }
    if (!offer_creation) return QV_NO_FILE;
    ReportWithPath("%s cannot be found or opened!", path);
    // A file that exists but cannot be opened is not made anew.
    if (file == QV_FAILED_FILE || !QuestionsAllowed()) return QV_NO_FILE;
    if (!HostMessageBox(kind.create_question, kQuestionCaption, QV_BOX_QUESTION)) {
      return QV_NO_FILE;
    }
    // A file that could not be named is looked up and offered again: the
    // person may mend the folder in between, or answer No.
    if (!NameLanguageFile(kind, language, path)) continue;
    return NewLanguageFile(kind, path);
  }
}

namespace {

// After a rewrite of a language file: a new file that never reached the
// disk was not made after all, and one that did goes to version control.
bool SettleLanguageFile(const char* path, bool written) {
  if (!written) {
    ForgetUnwrittenNewFile(path);
    return false;
  }
  AddIfNewToVcs(path);
  return true;
}

// Rewrites the kind's section with what write_section writes into it.
bool RewriteLanguageSection(const LanguageFileKind& kind, QvFile file, const char* path,
                            const std::function<void(SectionRewrite&)>& write_section) {
  SectionRewrite rewrite;
  bool written = rewrite.Begin(file, path, kind.schema->kind->section);
  if (written) {
    write_section(rewrite);
    written = rewrite.Finish();
  }
  return SettleLanguageFile(path, written);
}

}  // namespace

bool WriteLanguageSection(const LanguageFileKind& kind, QvFile file, const char* path,
                          RecordList* list) {
  return RewriteLanguageSection(kind, file, path, [&](SectionRewrite& rewrite) {
    GenericList::ForEach(list, [&](void* record) {
      // A short write leaves a broken line; the rest is still written.
      WriteRecordLine(*kind.schema, record, rewrite.output());
    });
  });
}

bool WriteLanguageSectionLines(const LanguageFileKind& kind, QvFile file, const char* path,
                               const std::string& lines) {
  return RewriteLanguageSection(kind, file, path,
                                [&](SectionRewrite& rewrite) { rewrite.WriteBlock(lines); });
}

bool PutLanguageRecord(const LanguageFileKind& kind, QvFile file, const char* path,
                       const char* language, const void* record,
                       const std::function<bool(const void* stored)>& replaces,
                       const std::function<void(void* copy, const void* stored)>& keep_identity) {
  Owner owner;
  owner.name = language;
  bool written = false;
  // The list form reads the section and rewrites it through one open file.
  PutIntoOpenSection(*kind.schema, owner, file, path, record, replaces, keep_identity, &written,
                     true);
  return SettleLanguageFile(path, written);
}

}  // namespace qv
