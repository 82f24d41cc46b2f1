#include "records/ss_entry_section.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>

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
std::map<std::string, int32_t>& GivenOut() {
  static std::map<std::string, int32_t> given;
  return given;
}

std::string GivenOutKey(const char* path, const char* section) {
  const EngineState& s = State();
  char open[64];
  snprintf(open, sizeof open, "%p", static_cast<const void*>(s.global_file_list));
  return std::string(s.profile_path) + '\n' + s.name_prefix + '\n' + open + '\n' + path + '\n' +
         section;
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

// The section's old lines: those of other kinds are kept, as they read
// (an inactive one with its marker), and every name counts.
struct OldSection {
  std::vector<std::string> kept;
  std::vector<std::string> names;
};

OldSection ReadOldSection(QvFile input, const EntryKind& kind) {
  OldSection old;
  char line[QV_LINE_SIZE];
  uint32_t flags = 0;
  // The marked lines are read whatever the open asked, so none is lost.
  while (ReadRecordLine(input, line, &flags, 2) == 1) {
    std::string name;
    std::string tag;
    bool named = ReadNameAndTag(line, &name, &tag);
    if (named) old.names.push_back(name);
    if (named && tag == kind.tag) continue;
    std::string text = (flags & RECORD_IAO) != 0 ? std::string(";IAO;") + line : line;
    old.kept.push_back(text + "\n");
  }
  return old;
}

}  // namespace

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
  OldSection old = ReadOldSection(input, kind);
  File* out = File::FromHandle(rewrite.output());
  for (const std::string& line : old.kept) out->Write(line.data(), line.size());

  std::vector<std::string> list_names;
  GenericList::ForEach(list, [&](void* record) { list_names.push_back(NameOf(record)); });
  int32_t counter = NextGeneratedNumber(old.names, list_names);
  int32_t& given = GivenOut()[GivenOutKey(path, kind.section)];
  if (counter < given) counter = given;
  GenericList::ForEach(list, [&](void* record) {
    if (TypeOf(record) != kind.type) return;
    if (NameOf(record)[0] == '\0') {
      snprintf(NameOf(record), sizeof(SSRData::Name), "%s%s%8.8d", kGenerated, State().name_prefix,
               counter);
      ++counter;
    }
    // A short write leaves a broken line; the rest is still written.
    WriteRecordLine(schema, record, rewrite.output());
  });
  given = counter;
  if (!rewrite.Finish()) return false;
  AddIfNewToVcs(path);
  return true;
}

}  // namespace qv
