#include "records/file_sections.h"

#include <strings.h>

#include <cctype>
#include <cstdio>
#include <map>
#include <memory>

#include "core/report_capture.h"
#include "core/state.h"
#include "platform/file.h"
#include "quorvex/text.h"
#include "quorvex/writer.h"
#include "records/kind_table.h"

namespace qv {
namespace {

constexpr char kKeywordSection[] = "SourceSafe";

void AddOnce(std::vector<std::string>* sections, const std::string& name) {
  for (const std::string& known : *sections) {
    if (strcasecmp(known.c_str(), name.c_str()) == 0) return;
  }
  sections->push_back(name);
}

// The section headers of the header a new file of the kind gets. Kinds
// without a header template (the fixed files) give none; the writer's
// complaint about them is kept quiet.
std::vector<std::string> TemplateSections(const char* file_kind) {
  std::vector<std::string> sections;
  std::unique_ptr<File> memory(File::OpenInMemory());
  if (memory == nullptr) return sections;
  {
    ReportCapture quiet(/*quiet=*/true);
    if (AddSections(memory->handle(), file_kind, "", "") == 0) return sections;
  }
  memory->Seek(0, SEEK_SET);
  // Reading moves the parse position; whoever reads profile text next
  // expects it where it was.
  int32_t line_before = State().parse_line;
  char line[QV_LINE_SIZE];
  while (ReadProfileLine(memory->handle(), line, sizeof line)) {
    char* cursor = line;
    SkipBlanks(&cursor);
    if (*cursor != '[') continue;
    std::string name = cursor + 1;
    name.resize(name.find(']') == std::string::npos ? name.size() : name.find(']'));
    sections.push_back(name);
  }
  State().parse_line = line_before;
  return sections;
}

std::vector<std::string> DeriveSections(const char* file_kind) {
  std::vector<std::string> sections;
  for (const KindInfo& kind : AllKindInfo()) {
    if (kind.section[0] != '\0' && strcasecmp(kind.file_kind, file_kind) == 0) {
      AddOnce(&sections, kind.section);
    }
  }
  for (const std::string& name : TemplateSections(file_kind)) AddOnce(&sections, name);
  // A kind with no section of its own is unknown; the keyword section alone
  // says nothing about what else such a file may hold.
  if (!sections.empty()) AddOnce(&sections, kKeywordSection);
  return sections;
}

}  // namespace

const std::vector<std::string>& HeldSections(const char* file_kind) {
  static std::map<std::string, std::vector<std::string>> derived;
  std::string key = file_kind;
  for (char& c : key) c = static_cast<char>(toupper(static_cast<unsigned char>(c)));
  auto found = derived.find(key);
  if (found == derived.end()) found = derived.emplace(key, DeriveSections(file_kind)).first;
  return found->second;
}

bool HoldsSection(const char* file_kind, const std::string& section) {
  for (const std::string& held : HeldSections(file_kind)) {
    if (strcasecmp(held.c_str(), section.c_str()) == 0) return true;
  }
  return false;
}

}  // namespace qv
