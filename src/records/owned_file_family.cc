#include "records/owned_file_family.h"

#include <cstdio>
#include <cstring>
#include <string>

#include "core/copy_text.h"
#include "core/file_name_check.h"
#include "core/munged_file.h"
#include "core/replace_batch.h"
#include "core/report_capture.h"
#include "core/section_rewrite.h"
#include "core/state.h"
#include "core/text_chars.h"
#include "orvik/transaction.h"
#include "platform/file.h"
#include "platform/fs.h"
#include "profile/global_file_list.h"
#include "quorvex/catalogue.h"
#include "quorvex/report.h"
#include "quorvex/resources.h"
#include "quorvex/text.h"
#include "quorvex/vcs.h"
#include "quorvex/writer.h"
#include "records/family_io.h"
#include "records/line_capacity.h"
#include "records/new_files.h"
#include "records/orvik_rows.h"
#include "records/record_codec.h"

namespace qv {
namespace {

char* At(void* record, size_t offset) {
  return static_cast<char*>(record) + offset;
}
const char* At(const void* record, size_t offset) {
  return static_cast<const char*>(record) + offset;
}

void CopyMember(void* to, const void* from, size_t offset, size_t size) {
  memcpy(At(to, offset), At(from, offset), size);
}

void SetText(void* record, size_t offset, size_t size, const char* text) {
  CopyCut(At(record, offset), size, text);
}

const char* FileKindOf(const OwnedFileKind& kind) {
  return kind.schema->kind->file_kind;
}

void Report(const char* text) {
  ReportError(text, 0);
}

void ReportFormatted(const char* format, const char* text) {
  char message[QV_LINE_SIZE];
  snprintf(message, sizeof message, format, text);
  ReportError(message, 0);
}

// The second key part, "" for a kind keyed by its name alone.
const char* VersionOf(const OwnedFileKind& kind, const void* record) {
  return kind.version_size != 0 ? At(record, kind.version_offset) : "";
}
const char* KeyText(const char* text) {
  return text != nullptr ? text : "";
}

std::string FolderPath(const OwnedFileKind& kind) {
  return std::string(State().profile_path) + "\\" + kind.folder + "\\";
}

// Reads the first identity line of an open file into a new record; false
// (reported by the parsers) when that line does not read, true with no
// record when the file has no such section or line.
bool ReadIdentity(const OwnedFileKind& kind, QvFile file, const char* file_name,
                  void** record_out) {
  *record_out = nullptr;
  const KindSchema& schema = *kind.schema;
  if (!FindSection(file, schema.kind->section)) return true;
  char line[QV_LINE_SIZE];
  uint32_t flags = 0;
  uint64_t cuts = CutLineCount();
  if (!ReadRecordLine(file, line, &flags, State().comment_mode)) return true;
  if (CutLineCount() != cuts) return false;
  void* record = NewRecord(schema);
  if (record == nullptr) return false;
  SetLineNumber(schema, record, static_cast<uint32_t>(State().parse_line));
  RecordFlagsOf(schema, record) = flags;
  SetText(record, kind.file_name_offset, kind.file_name_size, file_name);
  if (!DecodeRecordLine(schema, line, record)) {
    FreeRecord(record);
    return false;
  }
  *record_out = record;
  return true;
}

// A fresh copy of the "EN" text with that id under a new generated id; an
// id whose text does not exist (or an empty one) gives an empty id.
void RenewTextId(char* id, size_t size) {
  if (id[0] == '\0') return;
  ResourceRecord* text = nullptr;
  if (MPGetResource("EN", id, &text) != 1 || text == nullptr) {
    id[0] = '\0';
    return;
  }
  text->ResourceName[0] = '\0';
  snprintf(text->LanguageCode, sizeof text->LanguageCode, "EN");
  if (MPPutResource(text) == 1) {
    snprintf(id, size, "%s", text->ResourceName);
  } else {
    id[0] = '\0';
  }
  MPFreeResource(text);
}

// The file a record writes into, and where its old content comes from.
struct PutFiles {
  QvFile source = QV_NO_FILE;
  std::string path;  // the record's file
  bool created = false;
};

// Finds a new file name for the record (and enters it as new in the global
// list of files); its old content is the header template, or the parent's
// file. Nothing is made on disk here: the rewrite puts the whole file there
// by rename, so a put that stops half way leaves no half-made file.
bool CreateOwnedFile(const OwnedFileKind& kind, void* record, const void* parent, PutFiles* files) {
  std::string path =
      FreeMungedPath(At(record, kind.name_offset), VersionOf(kind, record), FileKindOf(kind));
  if (path.empty()) {
    if (kind.file_not_made != nullptr) {
      ReportFormatted(kind.file_not_made, At(record, kind.name_offset));
    }
    return false;
  }
  files->path = path;
  files->created = true;
  if (parent != nullptr) {
    char parent_path[QV_PATH_SIZE] = "";
    files->source =
        OpenProfileFile(State().profile_path, At(parent, kind.name_offset), VersionOf(kind, parent),
                        FileKindOf(kind), parent_path, MODE_READ);
    if (!QvFileIsOpen(files->source)) {
      Report(kind.parent_missing);
      return false;
    }
  } else {
    files->source = NewFileHeader(FileKindOf(kind), "", "");
  }
  ListAsNew(At(record, kind.name_offset), VersionOf(kind, record), FileKindOf(kind), path.c_str());
  SetText(record, kind.file_name_offset, kind.file_name_size,
          LastPathComponent(files->path).c_str());
  return true;
}

// The record's existing file, found by its key or, failing that, by the
// file name it carries.
bool OpenExistingFile(const OwnedFileKind& kind, const void* record, PutFiles* files) {
  char path[QV_PATH_SIZE] = "";
  files->source = OpenProfileFile(State().profile_path, At(record, kind.name_offset),
                                  VersionOf(kind, record), FileKindOf(kind), path, MODE_UPDATE);
  if (QvFileIsOpen(files->source)) {
    files->path = path;
    return true;
  }
  if (At(record, kind.file_name_offset)[0] == '\0') return true;  // a new file is made
  if (!CheckPlainFileName(At(record, kind.file_name_offset))) return false;
  files->path = FolderPath(kind) + At(record, kind.file_name_offset);
  if (VcsCheckOut(files->path.c_str()) != 1) {
    Report("Did a file just get removed from Source Safe?");
    return false;
  }
  files->source = QvOpenFileForRead(files->path.c_str());
  if (!QvFileIsOpen(files->source)) {
    Report(kind.file_missing);
    return false;
  }
  return true;
}

}  // namespace

bool ReadOwnedList(const OwnedFileKind& kind, RecordList** list_out) {
  if (!RequireOpenProfile()) return false;
  if (IsOrvikProfile()) return ReadOrvikRows(*kind.schema, list_out);
  GenericList::New(list_out);
  if (*list_out == nullptr) return false;
  std::string pattern = FolderPath(kind) + "*." + kind.extension;
  for (const DirEntry& entry : FindFiles(pattern)) {
    if (entry.is_directory) continue;
    std::string path = FolderPath(kind) + entry.name;
    QvFile file = QvOpenFileForRead(path.c_str());
    if (!QvFileIsOpen(file)) {
      ReportFormatted("Cannot open input file %s.", path.c_str());
      return false;
    }
    SetParseFile(path.c_str());
    void* record = nullptr;
    bool read = ReadIdentity(kind, file, entry.name.c_str(), &record);
    QvCloseFile(file);
    if (!read) return false;
    if (record != nullptr && !GenericList::Append(*list_out, record)) {
      FreeRecord(record);
      return false;
    }
  }
  return true;
}

bool FindOwnedNode(const OwnedFileKind& kind, const char* name, const char* version,
                   const char* file_name, RecordList* list, void** record_out) {
  *record_out = nullptr;
  if (list == nullptr) return false;
  list->current = nullptr;
  while (void* record = GenericList::Next(list)) {
    bool match;
    if (file_name != nullptr && file_name[0] != '\0') {
      match = EqualsIgnoreCase(file_name, At(record, kind.file_name_offset));
    } else if (name == nullptr || name[0] == '\0') {
      match = true;
    } else {
      match = strcmp(name, At(record, kind.name_offset)) == 0 &&
              strcmp(KeyText(version), VersionOf(kind, record)) == 0;
    }
    if (match) {
      *record_out = record;
      return true;
    }
  }
  list->current = nullptr;
  return false;
}

bool GetOwned(const OwnedFileKind& kind, const char* name, const char* version, void** record_out) {
  *record_out = nullptr;
  RecordList* list = nullptr;
  bool found = false;
  if (ReadOwnedList(kind, &list)) {
    void* match = nullptr;
    found = FindOwnedNode(kind, name, version, nullptr, list, &match) &&
            CopyOwned(kind, record_out, match, 0, nullptr);
    if (!found && IsOrvikProfile()) Report(kind.fetch_failed);
  }
  GenericList::Free(list);
  return found;
}

bool CopyOwned(const OwnedFileKind& kind, void** record_in_out, const void* source, int mode,
               RecordList* list) {
  const KindSchema& schema = *kind.schema;
  void* stored = *record_in_out;
  void* copy = NewRecord(schema);
  if (copy == nullptr) return false;
  memcpy(copy, source, schema.record_size);
  if (schema.row_pointer_offset != SIZE_MAX) {
    void* row = RowOf(schema, copy);
    memcpy(At(copy, schema.row_pointer_offset), &row, sizeof row);
  }
  if (mode == 1 && stored != nullptr) {
    // The stored record keeps what names it: its key, file and row tag.
    CopyMember(copy, stored, kind.name_offset, kind.name_size);
    CopyMember(copy, stored, kind.version_offset, kind.version_size);
    CopyMember(copy, stored, kind.file_name_offset, kind.file_name_size);
    for (const auto& [offset, size] : kind.kept_members) CopyMember(copy, stored, offset, size);
  }
  *record_in_out = copy;
  if (stored != nullptr && list != nullptr) {
    RecordNode* node = FindNodeByRecord(list, stored);
    if (node == nullptr) {
      Report("Cannot copy a node not listed in list");
      return true;
    }
    node->record = copy;
    FreeRecord(stored);
  }
  return true;
}

namespace {

bool PutOwnedAlone(const OwnedFileKind& kind, void** record_in_out, const void* parent) {
  if (!RequireLockedProfile()) return false;
  const KindSchema& schema = *kind.schema;
  void* record = *record_in_out;
  if (parent != nullptr) {
    // Born from the parent: the child keeps what names it, takes the rest,
    // and gets texts of its own.
    void* child = record;
    if (!CopyOwned(kind, &child, parent, 1, nullptr)) return false;
    FreeRecord(record);
    record = child;
    *record_in_out = record;
    for (const auto& [offset, size] : kind.text_ids) RenewTextId(At(record, offset), size);
  }
  if (!RecordFitsLine(schema, record)) return false;
  if (IsOrvikProfile()) {
    if (InsertOrvikRow(schema, record)) return true;
    Report(kind.insert_failed);
    return false;
  }
  PutFiles files;
  if (!OpenExistingFile(kind, record, &files)) return false;
  if (!QvFileIsOpen(files.source) && !CreateOwnedFile(kind, record, parent, &files)) return false;
  {
    // A birth writes the new file, then gives its contents texts of their
    // own: the file is put in place once, with both.
    ReplaceBatch batch;
    SectionRewrite rewrite;
    bool written = rewrite.Begin(files.source, files.path.c_str(), schema.kind->section);
    if (written) {
      WriteRecordLine(schema, record, rewrite.output());
      written = rewrite.FinishAfterFirstRecord(State().comment_mode);
    }
    if (!written) {
      // A new file that was never put in place is no longer listed.
      if (files.created) {
        RemoveGlobalFileEntry(At(record, kind.name_offset), VersionOf(kind, record),
                              FileKindOf(kind));
      }
      return false;
    }
    if (parent != nullptr && kind.renew_contents != nullptr) {
      kind.renew_contents(At(record, kind.name_offset), VersionOf(kind, record));
    }
  }
  AddIfNewToVcs(files.path.c_str());
  return true;
}

bool DeleteOwnedAlone(const OwnedFileKind& kind, const char* name, const char* version) {
  if (!RequireLockedProfile()) return false;
  name = KeyText(name);
  version = kind.version_size != 0 ? KeyText(version) : "";
  bool references_deleted = true;
  if (kind.delete_references != nullptr) {
    // Each file that names the record changes once (an install names a
    // module in several sections), before the record's own file goes.
    ReplaceBatch batch;
    references_deleted = kind.delete_references(name, version);
  }
  if (!references_deleted) {
    Report(kind.references_remain);
    return false;
  }
  const KindSchema& schema = *kind.schema;
  if (IsOrvikProfile()) {
    void* key = NewRecord(schema);
    if (key == nullptr) return false;
    SetText(key, kind.name_offset, kind.name_size, name);
    SetText(key, kind.version_offset, kind.version_size, version);
    std::vector<const char*> members;
    for (const MemberSpec& m : schema.members) {
      if (m.offset == kind.name_offset ||
          (kind.version_size != 0 && m.offset == kind.version_offset))
        members.push_back(m.name);
    }
    bool deleted = DeleteOrvikRows(schema, key, members);
    FreeRecord(key);
    if (!deleted) Report(kind.delete_failed);
    return deleted;
  }
  char path[QV_PATH_SIZE] = "";
  QvFile file =
      OpenProfileFile(State().profile_path, name, version, FileKindOf(kind), path, MODE_READ);
  if (!QvFileIsOpen(file)) {
    Report(kind.not_found_to_delete);
    return false;
  }
  QvCloseFile(file);
  SetReadOnly(path, false);
  if (!DeleteFile(path)) {
    Report(kind.cannot_delete_file);
    return false;
  }
  RemoveGlobalFileEntry(name, version, FileKindOf(kind));
  return VcsRemove(path) == 1;
}

}  // namespace

bool MakeNamedOwnedFile(const OwnedFileKind& kind, const void* record) {
  const char* name = At(record, kind.file_name_offset);
  if (name[0] == '\0') return true;
  if (!CheckPlainFileName(name)) return false;
  std::string path = ResolvePath(FolderPath(kind) + name);
  if (FileExists(path)) return true;
  File* header = File::FromHandle(NewFileHeader(FileKindOf(kind), "", ""));
  if (header == nullptr) return false;
  std::string content;
  char buffer[4096];
  for (long n; (n = header->Read(buffer, sizeof buffer)) > 0;) content.append(buffer, n);
  delete header;
  File* file = File::Open(path, OpenMode::kCreateNew);
  if (file == nullptr) return false;
  bool written = file->Write(content.data(), content.size()) == content.size();
  delete file;
  return written;
}

// A birth and a delete with its references are one transaction in an
// Orvik profile.
bool PutOwned(const OwnedFileKind& kind, void** record_in_out, const void* parent) {
  return Transacted([&] { return PutOwnedAlone(kind, record_in_out, parent) ? 1 : 0; }) == 1;
}

bool DeleteOwned(const OwnedFileKind& kind, const char* name, const char* version) {
  return Transacted([&] { return DeleteOwnedAlone(kind, name, version) ? 1 : 0; }) == 1;
}

}  // namespace qv
