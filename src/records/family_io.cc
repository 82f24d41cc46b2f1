#include "records/family_io.h"

#include <cassert>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include "core/plain_lines.h"
#include "core/report_capture.h"
#include "core/section_rewrite.h"
#include "core/state.h"
#include "core/text_chars.h"
#include "platform/file.h"
#include "quorvex/catalogue.h"
#include "quorvex/profile.h"
#include "quorvex/report.h"
#include "quorvex/text.h"
#include "records/line_capacity.h"
#include "records/orvik_rows.h"
#include "records/written_line.h"

namespace qv {
namespace {

constexpr char kCutLine[] =
    "Line is longer than 5023 characters or holds a NUL byte: it cannot be read whole.";

// The file of an owner is named by its owner ("File associated with module
// %s,%s ..."), a catalogue file by its path.
void ReportMissingFile(const KindSchema& schema, const char* format, const Owner& owner,
                       const char* path) {
  char text[QV_LINE_SIZE];
  if (schema.kind->file == KindFile::kFixed || schema.kind->file == KindFile::kLanguage) {
    snprintf(text, sizeof text, format, path);
  } else {
    snprintf(text, sizeof text, format, owner.name, owner.key);
  }
  ReportError(text, 0);
}

QvFile OpenKindFile(const KindSchema& schema, const Owner& owner, uint32_t mode, char* path,
                    const char* missing_message) {
  const char* directory = owner.directory != nullptr ? owner.directory : State().profile_path;
  QvFile file =
      OpenProfileFile(directory, owner.name, owner.key, schema.kind->file_kind, path, mode);
  if (!QvFileIsOpen(file)) {
    ReportMissingFile(schema, missing_message, owner, path);
    return QV_NO_FILE;
  }
  return file;
}

bool ReadTextList(const KindSchema& schema, const Owner& owner, uint32_t mode,
                  RecordList** list_out) {
  char path[QV_PATH_SIZE] = "";
  QvFile file = OpenKindFile(schema, owner, mode, path, schema.missing_file_message);
  if (file == QV_NO_FILE) return false;
  GenericList::New(list_out);
  bool read = *list_out != nullptr && ReadSectionRecords(schema, file, owner, *list_out);
  QvCloseFile(file);
  return read;
}

// Rewrites the kind's section of the owner's file (checked out first) with
// what write_records puts out, resuming the copy behind the schema's tail
// section when it names one.
bool RewriteKindSection(const KindSchema& schema, const Owner& owner,
                        const std::function<void(SectionRewrite& rewrite)>& write_records) {
  char path[QV_PATH_SIZE] = "";
  const char* missing = schema.missing_file_message_on_write != nullptr
                            ? schema.missing_file_message_on_write
                            : schema.missing_file_message;
  QvFile input = OpenKindFile(schema, owner, MODE_UPDATE, path, missing);
  if (input == QV_NO_FILE) return false;
  SectionRewrite rewrite;
  if (!rewrite.Begin(input, path, schema.kind->section, schema.tail_section)) return false;
  // A short write leaves a broken line; the rest is still written so that
  // the failure shows in the file, as the writer has always done.
  write_records(rewrite);
  return rewrite.Finish();
}

// Whether the section ends with what the writer gives for the record: a
// copied line must be that, which debug builds check at every copy.
[[maybe_unused]] bool EndsWithRecordLine(const KindSchema& schema, const void* record,
                                         const std::string& section) {
  std::string written;
  AppendRecordLine(schema, record, &written);
  return section.size() >= written.size() &&
         section.compare(section.size() - written.size(), written.size(), written) == 0;
}

}  // namespace

bool RequireOpenProfile() {
  if (IsMasterProfileOpen(0)) return true;
  ReportError("It appears that you have not run OpenMasterProfile successfully!", 0);
  return false;
}

bool RequireLockedProfile() {
  if (IsMasterProfileOpen(OPEN_LOCK)) return true;
  ReportError("It appears that you have not locked the Master Profile successfully!", 0);
  return false;
}

// The flags of a closed profile linger in the state; only an open one counts.
bool IsOrvikProfile() {
  return (QvOpenProfileFlags() & OPEN_ORVIK) != 0;
}

bool ScanSectionRecords(const KindSchema& schema, QvFile file, const Owner& owner,
                        const std::function<void*()>& next, const std::function<bool(void*)>& take,
                        const char** as_written, const SeenLine& seen, const PassedLine& passes) {
  if (!FindSection(file, schema.kind->section)) return true;
  return ScanRecordsHere(schema, file, owner, next, take, as_written, seen, passes);
}

bool ScanRecordsHere(const KindSchema& schema, QvFile file, const Owner& owner,
                     const std::function<void*()>& next, const std::function<bool(void*)>& take,
                     const char** as_written, const SeenLine& seen, const PassedLine& passes) {
  const bool copies = as_written != nullptr && LinesCanBeCopied(schema);
  char line[QV_LINE_SIZE];
  std::string kept;
  uint32_t flags = 0;
  for (;;) {
    uint64_t problems = ParseProblemCount();
    uint64_t cuts = CutLineCount();
    bool got = ReadRecordLine(file, line, &flags, State().comment_mode) == 1;
    if (CutLineCount() != cuts) {
      // Whatever the kind, the pieces of a cut line are not the record
      // that stands in the file.
      ReportParseProblem(kCutLine);
      return false;
    }
    // The reader ends a section early at a broken comment continuation.
    if (!got) return ParseProblemCount() == problems;
    if (seen) seen(line, flags);
    if (schema.takes_line != nullptr && !schema.takes_line(line)) continue;
    if (passes && passes(line, flags)) continue;
    void* record = next();
    if (record == nullptr) return false;
    SetLineNumber(schema, record, static_cast<uint32_t>(State().parse_line));
    RecordFlagsOf(schema, record) = flags;
    // The owner comes before the checks, so that they can name it.
    if (schema.set_owner != nullptr) schema.set_owner(record, owner.name, owner.key);
    bool parsed;
    if (copies) {
      parsed = ParseLineForCopy(schema, line, record, &kept, as_written);
    } else {
      parsed = DecodeRecordLine(schema, line, record);
      if (as_written != nullptr) *as_written = nullptr;
    }
    if (!parsed && schema.failed_line == KindSchema::FailedLine::kFailRead) return false;
    if (!take(record)) return false;
  }
}

bool ReadSectionRecords(const KindSchema& schema, QvFile file, const Owner& owner,
                        RecordList* list) {
  void* pending = nullptr;
  bool read = ScanSectionRecords(
      schema, file, owner, [&] { return pending = NewRecord(schema); },
      [&](void* record) {
        if (!GenericList::Append(list, record)) return false;
        pending = nullptr;
        return true;
      });
  FreeRecord(pending);
  return read;
}

bool ReadKindList(const KindSchema& schema, const Owner& owner, uint32_t mode,
                  RecordList** list_out) {
  // A folder given is a Master Profile about to be opened, whatever is open now.
  if (owner.directory == nullptr && IsOrvikProfile()) return ReadOrvikRows(schema, list_out);
  return ReadTextList(schema, owner, mode, list_out);
}

bool WriteKindSection(const KindSchema& schema, const Owner& owner, RecordList* list) {
  // Records that came from the file are not checked on their way in; a
  // kind whose inactive records cannot be written back checks them all
  // before the file is touched.
  if (InnerFieldsTakeRecordFlags(schema) && !ListFitsLines(schema, list)) return false;
  return RewriteKindSection(schema, owner, [&](SectionRewrite& rewrite) {
    GenericList::ForEach(list,
                         [&](void* record) { WriteRecordLine(schema, record, rewrite.output()); });
  });
}

bool CanPutIntoSection(const KindSchema& schema) {
  return schema.takes_line == nullptr && !InnerFieldsTakeRecordFlags(schema);
}

bool PutIntoSection(const KindSchema& schema, const Owner& owner, const void* record,
                    const std::function<bool(const void* stored)>& replaces,
                    const std::function<void(void* copy, const void* stored)>& keep_identity,
                    bool* rewritten, std::span<const size_t> key_offsets) {
  *rewritten = false;
  char path[QV_PATH_SIZE] = "";
  QvFile input = OpenKindFile(schema, owner, MODE_UPDATE, path, schema.missing_file_message);
  if (input == QV_NO_FILE) return false;
  return PutIntoOpenSection(schema, owner, input, path, record, replaces, keep_identity, rewritten,
                            false, key_offsets);
}

bool PutIntoOpenSection(const KindSchema& schema, const Owner& owner, QvFile input,
                        const char* path, const void* record,
                        const std::function<bool(const void* stored)>& replaces,
                        const std::function<void(void* copy, const void* stored)>& keep_identity,
                        bool* rewritten, bool counts_a_read_first,
                        std::span<const size_t> key_offsets) {
  *rewritten = false;
  // Each stored record passes through one scratch record and goes out as
  // its line at once: a put into a large section builds no list of it.
  std::unique_ptr<void, void (*)(void*)> scratch(NewRecord(schema), &FreeRecord);
  std::unique_ptr<void, void (*)(void*)> copy(NewRecord(schema), &FreeRecord);
  if (scratch == nullptr || copy == nullptr) {
    QvCloseFile(input);
    return false;
  }
  // The new section is put together in one buffer that keeps its room from
  // one put to the next: mapping fresh pages for a large section cost a
  // put more than writing its lines into them.
  static thread_local std::string section;
  section.clear();
  File* in = File::FromHandle(input);
  if (in->Seek(0, SEEK_END)) section.reserve(static_cast<size_t>(in->Tell()) + QV_LINE_SIZE);
  // The rewrite copies the file's head through the section's header, and
  // the records are read on from there, so that the file is read once.
  // Without the head copied (a line it cannot copy whole, reported), the
  // records are still read from the section, for what the caller learns
  // from them, and the file is left as it is.
  SectionRewrite rewrite;
  const bool begun = rewrite.Begin(input, path, schema.kind->section, schema.tail_section);
  const uint64_t continuable = ContinuableLineCount();
  const auto lines_of_head = State().parse_line;
  bool replaced = false;
  // A stored line that writes back as it stands is copied, which costs a
  // large section a fraction of writing every field again.
  const char* as_written = nullptr;
  auto next = [&] {
    // What a list's read would hand over: a line that parsed only in part
    // writes back the same from here.
    ClearRecord(schema, scratch.get());
    return scratch.get();
  };
  auto take = [&](void* stored) {
    const void* line = stored;
    // Every stored record is shown to `replaces`, also after the one it
    // named.
    if (replaces(stored) && !replaced) {
      // The record takes the stored one's place and identity.
      memcpy(copy.get(), record, schema.record_size);
      PointAtOwnRow(schema, copy.get());
      keep_identity(copy.get(), stored);
      line = copy.get();
      replaced = true;
    }
    if (line == stored && as_written != nullptr &&
        AppendLineAsWritten(RecordFlagsOf(schema, stored), as_written, &section)) {
      assert(EndsWithRecordLine(schema, stored, section));
      return true;
    }
    AppendRecordLine(schema, line, &section);
    return true;
  };
  // Nearly every line stands as written and names another record: it is
  // copied on its bytes, without being read into a record first.
  const OtherKeyLines others(schema, key_offsets, record);
  PassedLine passes;
  if (others.usable()) {
    passes = [&](const char* line, uint32_t flags) {
      return others.Passes(line) && AppendLineAsWritten(flags, line, &section);
    };
  }
  const bool read =
      begun ? ScanRecordsHere(schema, input, owner, next, take, &as_written, nullptr, passes)
            : ScanSectionRecords(schema, input, owner, next, take, &as_written, nullptr, passes);
  // The rewrite's destructor lets the file go, unchanged, on every way out.
  if (!read || !begun) return read;
  if (!replaced) AppendRecordLine(schema, record, &section);
  rewrite.WriteBlock(section);
  // Where no line may continue, the records ended where the rewrite's own
  // pass over the old section would end, and the copy goes on from there.
  const bool ends_here = ContinuableLineCount() == continuable &&
                         (schema.tail_section == nullptr ||
                          EqualsIgnoreCase(schema.tail_section, schema.kind->section));
  if (ends_here) {
    *rewritten = rewrite.FinishHere();
  } else {
    // What the pass over the old section reports names the lines as the
    // rewrite would count them after the list form's read: those of the
    // read (when it reads through the same file), then the head again.
    State().parse_line = counts_a_read_first ? State().parse_line + lines_of_head : lines_of_head;
    *rewritten = rewrite.Finish();
  }
  return true;
}

}  // namespace qv
