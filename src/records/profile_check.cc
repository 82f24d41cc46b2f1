#include "records/profile_check.h"

#include <strings.h>

#include <cstring>

#include "core/state.h"
#include "profile/profile_files.h"
#include "quorvex/report.h"
#include "quorvex/text.h"
#include "records/kind_api.h"
#include "records/record_codec.h"

namespace qv {
namespace {

// The section names of a file, in order, as its headers spell them.
std::vector<std::string> SectionsOf(QvFile file) {
  std::vector<std::string> sections;
  char line[QV_LINE_SIZE];
  while (ReadProfileLine(file, line, sizeof line)) {
    char* cursor = line;
    SkipBlanks(&cursor);
    if (*cursor != '[') continue;
    char* end = strchr(cursor + 1, ']');
    sections.emplace_back(cursor + 1, end != nullptr ? end : cursor + strlen(cursor));
  }
  return sections;
}

// The schema of the records in a file kind's section, when one is known.
const KindSchema* SchemaOf(const char* file_kind, const std::string& section) {
  for (const KindApi* api : AllKindApis()) {
    const KindInfo& kind = *api->schema->kind;
    if (strcasecmp(kind.file_kind, file_kind) == 0 &&
        strcasecmp(kind.section, section.c_str()) == 0) {
      return api->schema;
    }
  }
  return nullptr;
}

void CheckSection(QvFile file, const char* path, const std::string& section,
                  const KindSchema* schema, CheckedFile* checked) {
  // Counting from the file's start again makes the reported line numbers
  // the lines' places in the file.
  SetParseFile(path);
  if (!FindSection(file, section.c_str())) return;
  char line[QV_LINE_SIZE];
  uint32_t flags = 0;
  while (ReadRecordLine(file, line, &flags, State().comment_mode)) {
    ++checked->records;
    if (schema == nullptr) continue;
    void* record = NewRecord(*schema);
    DecodeRecordLine(*schema, line, record);
    FreeRecord(record);
  }
}

}  // namespace

std::vector<CheckedFile> CheckProfileFiles() {
  std::vector<CheckedFile> result;
  for (const ProfileFileFound& found : ListProfileFiles(State().profile_path)) {
    CheckedFile checked;
    checked.path = found.path;
    QvFile file = QvOpenFileForRead(found.path.c_str());
    if (!QvFileIsOpen(file)) {
      char text[QV_LINE_SIZE];
      snprintf(text, sizeof text, "Cannot open input file %s.", found.path.c_str());
      ReportError(text, 0);
      result.push_back(checked);
      continue;
    }
    SetParseFile(found.path.c_str());
    std::vector<std::string> sections = SectionsOf(file);
    checked.sections = static_cast<int>(sections.size());
    std::vector<std::string> done;
    for (const std::string& section : sections) {
      // A section found again under the same name is the first one again.
      bool seen = false;
      for (const std::string& d : done) seen = seen || strcasecmp(d.c_str(), section.c_str()) == 0;
      if (seen) continue;
      done.push_back(section);
      CheckSection(file, found.path.c_str(), section, SchemaOf(found.kind, section), &checked);
    }
    QvCloseFile(file);
    result.push_back(checked);
  }
  return result;
}

}  // namespace qv
