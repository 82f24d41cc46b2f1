#include "records/ss_entry_section.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <utility>

#include "core/copy_text.h"
#include "core/plain_lines.h"
#include "core/section_rewrite.h"
#include "core/state.h"
#include "platform/file.h"
#include "profile/global_file_list.h"
#include "quorvex/catalogue.h"
#include "quorvex/report.h"
#include "quorvex/text.h"
#include "quorvex/writer.h"
#include "records/new_files.h"
#include "records/record_codec.h"
#include "records/ss_settings_file.h"

namespace qv {
namespace {

constexpr char kGenerated[] = "MP_GEN_";

// The number a generated name carries behind its prefix and five-character
// tag, whatever tag that is; none for other names.
bool GeneratedNumber(const std::string& name, int32_t* number) {
  if (name.find(kGenerated) == std::string::npos) return false;
  const char* digits = name.size() > 12 ? name.c_str() + 12 : "";
  *number = static_cast<int32_t>(strtol(digits, nullptr, 10));
  return true;
}

// The names given out in this open profile, per file and section: a second
// write never repeats one, whatever the file holds (the scan of the file's
// lines alone would let a number equal to the running counter through).
// Those of an earlier open are forgotten.
int32_t& GivenOut(const char* path, const char* section) {
  static std::map<std::string, int32_t> given;
  static uint64_t open = 0;
  if (open != State().open_number) {
    given.clear();
    open = State().open_number;
  }
  return given[std::string(path) + '\n' + section];
}

char* NameOf(void* record) {
  // Both bodies start with the module key, then the name.
  static_assert(offsetof(SSRData, Name) == offsetof(CSSRData, Name));
  return static_cast<char*>(record) + offsetof(SSRData, Name);
}
uint8_t TypeOf(const void* record) {
  static_assert(offsetof(SSRData, Type) == offsetof(CSSRData, Type));
  return *(static_cast<const uint8_t*>(record) + offsetof(SSRData, Type));
}

// Whether a name can raise the counter of generated names.
bool LooksGenerated(const char* name) {
  return strstr(name, kGenerated) != nullptr;
}

// One line of the old section, whichever kind it is: a name that may be a
// generated one counts (NextGeneratedNumber reads no other), and a line of
// another kind is kept as it stood, an inactive one with its marker.
void TakeOldLine(const EntryKind& kind, const char* line, uint32_t flags, std::string* kept,
                 std::vector<std::string>* generated) {
  std::string name;
  std::string tag;
  const bool named = ReadNameAndTag(line, &name, &tag);
  if (named && LooksGenerated(name.c_str())) generated->push_back(name);
  if (named && tag == kind.tag) return;
  if ((flags & RECORD_IAO) != 0) kept->append(";IAO;");
  kept->append(line);
  kept->push_back('\n');
}

void GiveName(void* record, int32_t* counter) {
  snprintf(NameOf(record), sizeof(SSRData::Name), "%s%s%8.8d", kGenerated, State().name_prefix,
           *counter);
  ++*counter;
}

// The first number a name given now may carry: above the section's names
// and above those given out before in this open.
int32_t FirstNumberToGive(const std::vector<std::string>& old_names,
                          const std::vector<std::string>& list_names, int32_t given) {
  const int32_t counter = NextGeneratedNumber(old_names, list_names);
  return counter < given ? given : counter;
}

using RecordCopy = std::unique_ptr<void, void (*)(void*)>;

// The new section of a streamed put as it is put together: the other
// kinds' lines first, as they stood; then the kind's lines, written as they
// go but for the entries without a name, which are named in their places
// once every name of the section is known.
struct EntrySection {
  std::string& theirs;
  std::string& ours;
  std::vector<std::pair<size_t, RecordCopy>> unnamed;  // where in ours, and the entry
  std::vector<std::string> old_generated;              // every line's, in file order
  std::vector<std::string> list_generated;             // the kind's entries'

  // The entry of the kind goes out after those before it; one of another
  // type is left out, as a list's rewrite leaves it. The record that ends
  // up with the name it goes out with: itself, or the copy that waits for
  // one. nullptr when memory ran short.
  const void* Add(const EntryKind& kind, const KindSchema& schema, const void* record) {
    const char* name = NameOf(const_cast<void*>(record));
    // Every entry's name counts, also one that is left out.
    if (LooksGenerated(name)) list_generated.push_back(name);
    if (TypeOf(record) != kind.type) return record;
    if (name[0] != '\0') {
      AppendRecordLine(schema, record, &ours);
      return record;
    }
    RecordCopy copy(NewRecord(schema), &FreeRecord);
    if (copy == nullptr) return nullptr;
    memcpy(copy.get(), record, schema.record_size);
    unnamed.emplace_back(ours.size(), std::move(copy));
    return unnamed.back().second.get();
  }

  // Names the entries that had none, counting on from every name of the
  // section (and from those given out before), and puts the kind's half
  // in its final form. Returns the counter after the last name given.
  int32_t NameAndJoin(const KindSchema& schema, int32_t given) {
    int32_t counter = FirstNumberToGive(old_generated, list_generated, given);
    if (unnamed.empty()) return counter;
    std::string joined;
    joined.reserve(ours.size() + unnamed.size() * QV_LINE_SIZE);
    size_t from = 0;
    for (auto& [at, record] : unnamed) {
      joined.append(ours, from, at - from);
      GiveName(record.get(), &counter);
      AppendRecordLine(schema, record.get(), &joined);
      from = at;
    }
    joined.append(ours, from);
    ours.swap(joined);
    return counter;
  }
};

}  // namespace

StreamedEntryPut PutEntryIntoSection(
    const EntryKind& kind, const KindSchema& schema, const Owner& module, const void* entry,
    const std::function<bool(const void* stored)>& replaces,
    const std::function<void(void* copy, const void* stored)>& keep_identity, char* written_name) {
  // The rewrite keeps the other kinds' lines as the records mode reads
  // them; an open that reads fewer lines for the kind's list leaves a
  // different section.
  if (State().comment_mode != COMMENT_MODE_RECORDS) return StreamedEntryPut::kNeedsList;
  char path[QV_PATH_SIZE] = "";
  QvFile input =
      OpenProfileFile(State().profile_path, module.name, module.key, "SSR", path, MODE_UPDATE);
  if (input == QV_NO_FILE) return StreamedEntryPut::kNeedsList;
  // A file that was found but cannot be opened has been reported.
  if (input == QV_FAILED_FILE) return StreamedEntryPut::kFailed;
  RecordCopy scratch(NewRecord(schema), &FreeRecord);
  RecordCopy copy(NewRecord(schema), &FreeRecord);
  if (scratch == nullptr || copy == nullptr) {
    QvCloseFile(input);
    return StreamedEntryPut::kFailed;
  }
  // Both halves keep their room from one put to the next: mapping fresh
  // pages for a large section costs more than writing its lines.
  static thread_local std::string theirs;
  static thread_local std::string ours;
  theirs.clear();
  ours.clear();
  EntrySection section{theirs, ours, {}, {}, {}};
  SectionRewrite rewrite;
  const bool begun = rewrite.Begin(input, path, kind.section);
  const uint64_t continuable = ContinuableLineCount();
  const void* named = nullptr;  // what holds the entry's name once it went out
  auto seen = [&](const char* line, uint32_t flags) {
    TakeOldLine(kind, line, flags, &theirs, &section.old_generated);
  };
  auto next = [&] {
    ClearRecord(schema, scratch.get());
    return scratch.get();
  };
  auto take = [&](void* stored) {
    if (named != nullptr || !replaces(stored)) return section.Add(kind, schema, stored) != nullptr;
    memcpy(copy.get(), entry, schema.record_size);
    keep_identity(copy.get(), stored);
    named = section.Add(kind, schema, copy.get());
    return named != nullptr;
  };
  const bool read = begun ? ScanRecordsHere(schema, input, module, next, take, nullptr, seen)
                          : ScanSectionRecords(schema, input, module, next, take, nullptr, seen);
  // The rewrite's destructor lets the file go, unchanged, on every way out.
  if (!read || !begun) return StreamedEntryPut::kFailed;
  if (named == nullptr) {
    memcpy(copy.get(), entry, schema.record_size);
    named = section.Add(kind, schema, copy.get());
    if (named == nullptr) return StreamedEntryPut::kFailed;
  }
  int32_t& given = GivenOut(path, kind.section);
  given = section.NameAndJoin(schema, given);
  rewrite.WriteBlock(theirs);
  rewrite.WriteBlock(ours);
  // Where no line may continue, the section ended where the list form's
  // pass over it ends, and the copy goes on from there.
  const bool finished =
      ContinuableLineCount() == continuable ? rewrite.FinishHere() : rewrite.Finish();
  if (!finished) return StreamedEntryPut::kFailed;
  AddIfNewToVcs(path);
  CopyCut(written_name, sizeof(SSRData::Name), NameOf(const_cast<void*>(named)));
  return StreamedEntryPut::kWritten;
}

int32_t NextGeneratedNumber(const std::vector<std::string>& old_names,
                            const std::vector<std::string>& list_names) {
  int32_t counter = 0;
  int32_t number = 0;
  for (const std::string& name : old_names) {
    if (GeneratedNumber(name, &number) && counter < number) counter = number + 1;
  }
  for (const std::string& name : list_names) {
    if (GeneratedNumber(name, &number) && number >= counter) counter = number + 1;
  }
  return counter;
}

bool ReadEntrySection(const KindSchema& schema, const Owner& module, uint32_t mode,
                      RecordList** list_out) {
  *list_out = nullptr;
  char path[QV_PATH_SIZE] = "";
  QvFile file = OpenProfileFile(State().profile_path, module.name, module.key, "SSR", path, mode);
  // A file that was found but cannot be opened has been reported.
  if (file == QV_FAILED_FILE) return false;
  GenericList::New(list_out);
  if (*list_out == nullptr) {
    QvCloseFile(file);
    return false;
  }
  if (file == QV_NO_FILE) return true;
  bool read = ReadSectionRecords(schema, file, module, *list_out);
  QvCloseFile(file);
  if (!read) {
    // Nothing half read is handed out to be written back.
    GenericList::Free(*list_out);
    *list_out = nullptr;
  }
  return read;
}

bool WriteEntrySection(const EntryKind& kind, const KindSchema& schema, const Owner& module,
                       RecordList* list) {
  char path[QV_PATH_SIZE] = "";
  QvFile input = OpenSettingsFileForChange(module, path);
  if (input == QV_NO_FILE) return false;
  SectionRewrite rewrite;
  if (!rewrite.Begin(input, path, kind.section)) return false;
  std::string kept;
  std::vector<std::string> old_names;
  char line[QV_LINE_SIZE];
  uint32_t flags = 0;
  // The marked lines are read whatever the open asked, so none is lost.
  while (ReadRecordLine(input, line, &flags, COMMENT_MODE_RECORDS) == 1) {
    TakeOldLine(kind, line, flags, &kept, &old_names);
  }
  rewrite.WriteBlock(kept);

  std::vector<std::string> list_names;
  GenericList::ForEach(list, [&](void* record) { list_names.push_back(NameOf(record)); });
  int32_t& given = GivenOut(path, kind.section);
  int32_t counter = FirstNumberToGive(old_names, list_names, given);
  GenericList::ForEach(list, [&](void* record) {
    if (TypeOf(record) != kind.type) return;
    if (NameOf(record)[0] == '\0') GiveName(record, &counter);
    // A short write leaves a broken line; the rest is still written.
    WriteRecordLine(schema, record, rewrite.output());
  });
  given = counter;
  if (!rewrite.Finish()) return false;
  AddIfNewToVcs(path);
  return true;
}

}  // namespace qv
