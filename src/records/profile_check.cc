#include "records/profile_check.h"

#include <strings.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <map>
#include <memory>
#include <vector>

#include "core/report_capture.h"
#include "core/state.h"
#include "core/text_chars.h"
#include "platform/file.h"
#include "profile/profile_files.h"
#include "quorvex/text.h"
#include "records/file_sections.h"
#include "records/file_text_scan.h"
#include "records/key_lines.h"
#include "records/kind_api.h"
#include "records/profile_references.h"
#include "records/record_codec.h"
#include "records/record_members.h"

namespace qv {
namespace {

// Kinds whose lines are key=value: a line without "=" has neither, and a
// rewrite would write it back as a bare "=".
constexpr const char* kKeyValueKinds[] = {"Strings", "Remove Strings"};

bool IsKeyValueKind(const char* code) {
  for (const char* kind : kKeyValueKinds) {
    if (strcasecmp(kind, code) == 0) return true;
  }
  return false;
}

bool ReadBytes(const std::string& path, std::string* bytes) {
  std::unique_ptr<File> file(File::Open(path, OpenMode::kReadExisting));
  if (file == nullptr) return false;
  // Room for the whole file at once, read straight into it: growing the
  // string block by block copied it over and over, and a profile of large
  // module files spent more time on that than on checking them.
  int64_t size = file->Seek(0, SEEK_END) ? file->Tell() : 0;
  if (!file->Seek(0, SEEK_SET)) return false;
  // The bytes a file before left in the buffer are read over, not cleared:
  // only room the buffer never had is filled first.
  const size_t room = static_cast<size_t>(std::max<int64_t>(size, 0)) + 1;  // + 1: learns the end
  if (bytes->size() < room) bytes->resize(room);
  size_t have = 0;
  for (;;) {
    if (have == bytes->size()) bytes->resize(bytes->size() * 2);
    long got = file->Read(bytes->data() + have, bytes->size() - have);
    if (got < 0) return false;
    if (got == 0) break;
    have += static_cast<size_t>(got);
  }
  bytes->resize(have);
  return true;
}

// The operations of the kinds whose records live in the section of a file
// of this catalogue kind, when they are described. Kinds that share a
// section (settings entries) name no file of their own: the section of a
// file that holds it is theirs.
std::vector<const KindApi*> ApisOf(const char* file_kind, const std::string& section) {
  std::vector<const KindApi*> apis;
  for (const KindApi* api : AllKindApis()) {
    const KindInfo& kind = *api->schema->kind;
    if (strcasecmp(kind.section, section.c_str()) != 0) continue;
    bool shared = api->schema->takes_line != nullptr && kind.file_kind[0] == '\0' &&
                  HoldsSection(file_kind, section);
    if (strcasecmp(kind.file_kind, file_kind) == 0 || shared) apis.push_back(api);
  }
  return apis;
}

// Of the section's kinds, the one a line belongs to.
const KindApi* ApiOfLine(const std::vector<const KindApi*>& apis, const char* line) {
  for (const KindApi* api : apis) {
    if (api->schema->takes_line == nullptr || api->schema->takes_line(line)) return api;
  }
  return nullptr;
}

// The code of the kind whose section it is, described or not; the class of
// reader messages when no kind lives there.
const char* KindCodeOf(const char* file_kind, const std::string& section) {
  for (const KindInfo& kind : AllKindInfo()) {
    if (strcasecmp(kind.file_kind, file_kind) == 0 &&
        strcasecmp(kind.section, section.c_str()) == 0) {
      return kind.code;
    }
  }
  return kParseProblem;
}

class FileChecker {
 public:
  FileChecker(const std::string& path, const char* file_kind, ReferenceIndex* references)
      : path_(path), file_kind_(file_kind), references_(references) {}

  std::vector<ProfileProblem> Run(CheckedFile* summary) {
    summary->path = path_;
    summary->kind = file_kind_;
    // One buffer for every file checked: its room is reused, so a profile
    // of many large files does not map fresh memory for each of them.
    static thread_local std::string bytes;
    if (!ReadBytes(path_, &bytes)) {
      Add(0, kFileProblem, "cannot open or read the file");
      return Finish(summary);
    }
    scan_ = ScanFileText(path_, bytes);
    problems_ = scan_.problems;
    summary->sections = static_cast<int>(scan_.headers.size());
    CheckSectionNames();
    // Learning which sections the kind holds asks the writer, whose
    // complaints about kinds without a header template are not about this file.
    taken_ = capture_.problems().size();
    QvFile file = QvOpenFileForRead(path_.c_str());
    if (!QvFileIsOpen(file)) {
      Add(0, kFileProblem, "cannot open the file");
      return Finish(summary);
    }
    std::vector<std::string> done;
    for (const SectionHeader& header : scan_.headers) {
      // A section found again under the same name is the first one again.
      bool seen = false;
      for (const std::string& d : done)
        seen = seen || strcasecmp(d.c_str(), header.name.c_str()) == 0;
      if (seen) continue;
      done.push_back(header.name);
      CheckSection(file, header);
    }
    QvCloseFile(file);
    return Finish(summary);
  }

 private:
  void Add(int line, const char* kind, std::string text) {
    problems_.push_back({path_, line, kind, std::move(text)});
  }

  std::vector<ProfileProblem> Finish(CheckedFile* summary) {
    std::stable_sort(
        problems_.begin(), problems_.end(),
        [](const ProfileProblem& a, const ProfileProblem& b) { return a.line < b.line; });
    summary->records = records_;
    summary->problems = static_cast<int>(problems_.size());
    return std::move(problems_);
  }

  // Record lines in a section no kind of the file reads, or in a second
  // section of a name the reader finds only the first of, are read by
  // nothing. A section of comments alone is a note and harms nothing.
  void CheckSectionNames() {
    bool known = !HeldSections(file_kind_.c_str()).empty();
    std::map<std::string, int> first;
    for (const SectionHeader& header : scan_.headers) {
      auto [at, fresh] = first.emplace(Folded(header.name), header.line);
      if (header.record_lines == 0) continue;
      std::string unread = "; nothing reads its " + std::to_string(header.record_lines) +
                           (header.record_lines == 1 ? " record line" : " record lines");
      if (!fresh) {
        Add(header.line, kSectionProblem,
            "section [" + header.name + "] again (first at line " + std::to_string(at->second) +
                ")" + unread);
      } else if (known && !HoldsSection(file_kind_.c_str(), header.name)) {
        Add(header.line, kSectionProblem,
            "section [" + header.name + "] is not one a " + file_kind_ + " file holds" + unread);
      }
    }
  }

  // Every report made since the last call becomes a problem of the kind,
  // placed on its line in the file (the record's line when the report
  // named none).
  void TakeReports(const char* kind, int line) {
    const std::vector<ReportedProblem>& reports = capture_.problems();
    for (; taken_ < reports.size(); ++taken_) {
      const ReportedProblem& report = reports[taken_];
      int at = report.file == path_ && report.line > 0 ? PhysicalLine(scan_, report.line) : line;
      Add(at, kind, report.message);
    }
  }

  void CheckSection(QvFile file, const SectionHeader& header) {
    const std::string& section = header.name;
    // Counting from the file's start again makes the reader's line numbers
    // count from the top of the file.
    SetParseFile(path_.c_str());
    if (!FindSection(file, section.c_str())) return;
    const std::vector<const KindApi*> apis = ApisOf(file_kind_.c_str(), section);
    const char* kind =
        !apis.empty() ? apis[0]->schema->kind->code : KindCodeOf(file_kind_.c_str(), section);
    std::map<const KindApi*, std::vector<const MemberSpec*>> keys;
    for (const KindApi* api : apis) keys[api] = KeyMembers(*api);
    const bool key_value = IsKeyValueKind(kind);
    // One table for every section checked, which keeps its room.
    static thread_local KeyLines key_lines;
    key_lines.Clear(static_cast<size_t>(header.record_lines));
    char line[QV_LINE_SIZE];
    uint32_t flags = 0;
    int cut_line = 0;
    for (;;) {
      uint64_t cuts = CutLineCount();
      bool got = ReadRecordLine(file, line, &flags, State().comment_mode) == 1;
      int here = PhysicalLine(scan_, State().parse_line);
      TakeReports(kind, here);
      // The reader ends a section early at a broken comment continuation.
      if (!got) return;
      ++records_;
      // The pieces of a line the reader cut are not records; the line is
      // reported as too long or as holding a byte that is not text.
      if (CutLineCount() != cuts) cut_line = here;
      if (here == cut_line) continue;
      if (key_value && strchr(line, '=') == nullptr) {
        Add(here, kMessageProblem, "message line without \"=\"");
      }
      if (const KindApi* api = ApiOfLine(apis, line)) {
        CheckRecord(*api, line, flags, here, keys[api], &key_lines);
      }
    }
  }

  void CheckRecord(const KindApi& api, char* line, uint32_t flags, int here,
                   const std::vector<const MemberSpec*>& keys, KeyLines* key_lines) {
    const KindSchema& schema = *api.schema;
    // One scratch record for every line: allocating one per record cost
    // more than reading most lines.
    scratch_.resize(schema.record_size / sizeof(std::max_align_t) + 1);
    void* record = scratch_.data();
    ClearRecord(schema, record);
    RecordFlagsOf(schema, record) = flags;
    if (schema.set_owner != nullptr) schema.set_owner(record, "", "");
    DecodeRecordLine(schema, line, record);
    TakeReports(schema.kind->code, here);
    // Kinds that share a section keep their keys apart. Every record of the
    // profile passes here: the key is built in one string, and the text that
    // names a duplicate only for one.
    key_.assign(schema.kind->code);
    key_ += '\x1f';
    bool empty = true;
    for (const MemberSpec* member : keys) {
      const size_t start = key_.size();
      key_ += MemberText(*member, record);
      empty = empty && key_.size() == start;
      for (size_t i = start; i < key_.size(); ++i) key_[i] = AsciiLower(key_[i]);
      key_ += '\x1f';
    }
    // A record without a key (a message line without "=") is reported as such.
    if (!keys.empty() && !empty) {
      if (const int first = key_lines->FirstLine(key_, here); first != 0) {
        std::string shown;
        for (const MemberSpec* member : keys) {
          shown += std::string(shown.empty() ? "" : " ") + member->name + "=\"" +
                   MemberText(*member, record) + "\"";
        }
        Add(here, kDuplicateProblem,
            std::string(schema.kind->code) + " " + shown + " again (first at line " +
                std::to_string(first) + ")");
      }
    }
    if (references_ != nullptr) references_->Note(schema, record, path_, here);
  }

  std::vector<std::max_align_t> scratch_;  // the record being checked
  std::string key_;                        // its key
  std::string path_;
  std::string file_kind_;
  ReferenceIndex* references_;
  // Reports stay out of the log and the boxes: they are this check's result.
  ReportCapture capture_{/*quiet=*/true};
  size_t taken_ = 0;
  FileTextScan scan_;
  std::vector<ProfileProblem> problems_;
  int records_ = 0;
};

}  // namespace

bool RewriteWouldLose(const ProfileProblem& problem) {
  const std::string& kind = problem.kind;
  return kind == kTextProblem || kind == kLongProblem || kind == kMessageProblem ||
         kind == kParseProblem || FindKindInfo(kind.c_str()) != nullptr;
}

std::vector<ProfileProblem> CheckProfileFile(const std::string& path, const char* file_kind,
                                             CheckedFile* summary) {
  CheckedFile ignored;
  return FileChecker(path, file_kind, nullptr).Run(summary != nullptr ? summary : &ignored);
}

ProfileCheck CheckProfile() {
  ProfileCheck check;
  ReferenceIndex references;
  for (const ProfileFileFound& found : ListProfileFiles(State().profile_path)) {
    CheckedFile summary;
    std::vector<ProfileProblem> problems =
        FileChecker(found.path, found.kind, &references).Run(&summary);
    check.files.push_back(summary);
    check.problems.insert(check.problems.end(), problems.begin(), problems.end());
  }
  for (ProfileProblem& problem : references.Unresolved()) {
    for (CheckedFile& file : check.files) file.problems += file.path == problem.file;
    check.problems.push_back(std::move(problem));
  }
  return check;
}

}  // namespace qv
