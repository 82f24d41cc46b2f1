// Finding the profile file of a kind and owner.
//
// Fixed files sit at known paths. Per-owner files have generated names, so
// the only way to find an owner's file is to open the candidates and read
// their identity section; every owner met that way is remembered in the
// global list of files so that the next open of it goes straight there.
#include "quorvex/catalogue.h"

#include <cstdio>
#include <cstring>
#include <string>

#include "core/file_name_check.h"
#include "core/state.h"
#include "core/text_chars.h"
#include "platform/file.h"
#include "platform/fs.h"
#include "profile/global_file_list.h"
#include "profile/profile_files.h"
#include "quorvex/report.h"
#include "quorvex/text.h"
#include "quorvex/vcs.h"

namespace qv {
namespace {

struct FileKind {
  const char* code;
  const char* pattern;           // the profile directory fills the first %s
  bool named;                    // the owner name fills a second %s
  const char* identity_section;  // nullptr for a fixed file
};

constexpr FileKind kFileKinds[] = {
    {"MO", "%s\\modules\\*.mo", false, "Module"},
    {"SSR", "%s\\SSR\\*.ssr", false, "Module"},
    {"IN", "%s\\installs\\*.in", false, "Install"},
    {"PR", "%s\\products\\*.pr", false, "Product"},
    {"MG", "%s\\UIGroups\\*.MG", false, "Module Groups"},
    {"LO", "%s\\locs\\vardo.lo", false, nullptr},
    {"ILO", "%s\\locs\\icons.lo", false, nullptr},
    {"LA", "%s\\LANGUAGE\\pelham.la", false, nullptr},
    {"RES", "%s\\RES_US\\pelham%s.re", true, nullptr},
    {"AD", "%s\\ADS\\adlist.ad", false, nullptr},
    {"MSG", "%s\\LANGUAGE\\setup%s.msg", true, nullptr},
    {"DSI", "%s\\SSR\\DRKSSR.DSI", false, nullptr},
    {"RAM", "%s\\REGADMIN\\REGADMIN.RAM", false, nullptr},
    {"OSDL", "%s\\LANGUAGE\\OsDoC.LA", false, nullptr},
};

const char* OrEmpty(const char* text) {
  return text != nullptr ? text : "";
}

const FileKind* FindFileKind(const char* code) {
  for (const FileKind& kind : kFileKinds) {
    if (EqualsIgnoreCase(kind.code, code)) return &kind;
  }
  return nullptr;
}

void Report(const char* format, const char* text) {
  char message[QV_LINE_SIZE];
  snprintf(message, sizeof message, format, text);
  ReportError(message, 0);
}

void CopyPath(char* destination, const std::string& path) {
  snprintf(destination, QV_PATH_SIZE, "%s", path.c_str());
}

QvFile OpenForRead(const std::string& path) {
  return QvOpenFileForRead(path.c_str());
}

// An owner already listed is opened from its listed path. Entries
// whose file cannot be opened are reported and passed over.
QvFile OpenListedFile(const char* name, const char* key, const char* kind, std::string* path) {
  RecordList* list = State().global_file_list;
  if (list == nullptr || list->head == nullptr) return QV_NO_FILE;
  RecordNode* node = list->head;
  do {
    const ProfileFileEntry* entry = static_cast<const ProfileFileEntry*>(node->record);
    if (GlobalFileEntryMatches(*entry, name, key, kind)) {
      QvFile file = OpenForRead(entry->path);
      if (file != QV_NO_FILE) {
        *path = entry->path;
        return file;
      }
      Report("Cannot open input file %s.", entry->path);
    }
    node = node->next;
  } while (node != list->head);
  return QV_NO_FILE;
}

// Reads the identity section of a candidate, listing every owner met, and
// tells whether the wanted owner is among them. The name buffers live
// through the whole search: the parser's too-long message shows what the
// buffer held before, that is the previous owner met.
struct IdentityScan {
  char record[QV_LINE_SIZE];
  char owner_name[41] = "";
  char owner_key[11] = "";
};

bool ScanIdentity(QvFile file, const FileKind& kind, const char* name, const char* key,
                  const std::string& path, IdentityScan* scan) {
  if (FindSection(file, kind.identity_section) == 0) return false;
  uint32_t record_flags = 0;
  while (ReadRecordLine(file, scan->record, &record_flags, State().comment_mode) != 0) {
    char* cursor = scan->record;
    if (ParseQuotedString(&cursor, scan->owner_name, 0, sizeof scan->owner_name) == 0) continue;
    if (*key == '\0') {
      scan->owner_key[0] = '\0';
    } else if (ParseQuotedString(&cursor, scan->owner_key, 0, sizeof scan->owner_key) == 0) {
      continue;
    }
    AddGlobalFileEntry(scan->owner_name, scan->owner_key, kind.code, path.c_str());
    if (strcmp(scan->owner_name, name) == 0 && strcmp(scan->owner_key, key) == 0) return true;
  }
  return false;
}

// Searches the kind's folder in directory order.
QvFile SearchDirectory(const FileKind& kind, const char* name, const char* key,
                       const std::string& pattern, std::string* path) {
  std::string drive, directory;
  SplitPath(pattern, &drive, &directory, nullptr);
  directory = drive + directory;  // the found names live beside the pattern, drive and all
  IdentityScan scan;
  for (const DirEntry& found : FindFiles(pattern)) {
    if (found.is_directory) continue;
    std::string candidate = directory + found.name;
    QvFile file = OpenForRead(candidate);
    if (file == QV_NO_FILE) Report("Cannot open input file %s.", candidate.c_str());
    if (kind.identity_section == nullptr) {
      // A fixed file is the file even when it cannot be opened: the failed
      // handle goes back to the caller.
      *path = candidate;
      AddGlobalFileEntry(name, key, kind.code, candidate.c_str());
      return file != QV_NO_FILE ? file : QV_FAILED_FILE;
    }
    if (file == QV_NO_FILE) continue;
    if (ScanIdentity(file, kind, name, key, candidate, &scan)) {
      *path = candidate;
      return file;
    }
    QvCloseFile(file);
  }
  return QV_NO_FILE;
}

// An update needs the file checked out; the check-out may change
// the file, so it is opened afresh.
QvFile Finish(QvFile file, const std::string& path, uint32_t mode) {
  if ((mode & MODE_UPDATE) != 0) {
    QvCloseFile(file);
    VcsCheckOut(path.c_str());
    file = OpenForRead(path);
    if (file == QV_NO_FILE) {
      Report("Cannot re-open input file %s after Source Safe checkout.", path.c_str());
      return QV_FAILED_FILE;
    }
  } else if (File* read = File::FromHandle(file)) {
    // The identity search read into the file; callers start at its top.
    read->Seek(0, SEEK_SET);
  }
  SetParseFile(path.c_str());
  return file;
}

}  // namespace

std::vector<std::string> ProfileFilePatterns(const char* directory) {
  std::vector<std::string> patterns;
  for (const FileKind& kind : kFileKinds) {
    char pattern[QV_LINE_SIZE];
    // Files named by their owner (one per language) are all wanted here.
    snprintf(pattern, sizeof pattern, kind.pattern, directory, "*");
    patterns.push_back(pattern);
  }
  return patterns;
}

std::vector<ProfileFileFound> ListProfileFiles(const char* directory) {
  std::vector<ProfileFileFound> files;
  std::vector<std::string> patterns = ProfileFilePatterns(directory);
  for (size_t i = 0; i < patterns.size(); ++i) {
    std::string folder = patterns[i];
    folder.resize(folder.find_last_of("\\/") + 1);
    for (const DirEntry& found : FindFiles(patterns[i])) {
      if (!found.is_directory) files.push_back({kFileKinds[i].code, folder + found.name});
    }
  }
  return files;
}

}  // namespace qv

extern "C" QvFile OpenProfileFile(const char* directory, const char* ownerName,
                                  const char* ownerKey, const char* kind, char* pathOut,
                                  uint32_t mode) {
  const char* name = qv::OrEmpty(ownerName);
  const char* key = qv::OrEmpty(ownerKey);
  const qv::FileKind* file_kind = qv::FindFileKind(qv::OrEmpty(kind));
  if (file_kind == nullptr) {
    if (pathOut != nullptr) pathOut[0] = '\0';
    qv::Report("Unsupported Master Profile file Type %s", qv::OrEmpty(kind));
    return QV_NO_FILE;
  }
  if (file_kind->named && !qv::CheckPlainFileName(name)) {
    // The owner's name goes into the file name, and into a search pattern.
    if (pathOut != nullptr) pathOut[0] = '\0';
    return QV_FAILED_FILE;
  }
  char pattern[QV_PATH_SIZE];
  snprintf(pattern, sizeof pattern, file_kind->pattern, qv::OrEmpty(directory),
           file_kind->named ? name : "");

  std::string path;
  QvFile file = qv::OpenListedFile(name, key, file_kind->code, &path);
  if (file == QV_NO_FILE) file = qv::SearchDirectory(*file_kind, name, key, pattern, &path);
  if (file == QV_NO_FILE) {
    if (pathOut != nullptr) qv::CopyPath(pathOut, pattern);
    return QV_NO_FILE;
  }
  if (pathOut != nullptr) qv::CopyPath(pathOut, path);
  return qv::Finish(file, path, mode);
}
