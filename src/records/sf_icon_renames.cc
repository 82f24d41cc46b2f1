// The installed icons of a module that start a shipped file follow the
// file when it is renamed: its group, language and name, and the name
// inside the icon's target text. The icons are read and written through
// the installed-icon kind's own schema.
#include <cstring>
#include <string>

#include "quorvex/filegroups.h"
#include "quorvex/modulecontents.h"
#include "quorvex/report.h"
#include "records/filegroup_families.h"
#include "records/kind_api.h"
#include "records/line_capacity.h"

namespace qv {
namespace {

bool PartMatches(const char* wanted, const char* value) {
  return wanted == nullptr || strcmp(wanted, value) == 0;
}

template <size_t N>
void SetPart(char (&field)[N], const char* value) {
  if (value != nullptr) snprintf(field, N, "%s", value);
}

// Every occurrence of the old name, so that a target naming the file twice
// names the new one twice.
std::string ReplaceAll(std::string text, const char* old_name, const char* new_name) {
  if (old_name == nullptr || new_name == nullptr || *old_name == '\0') return text;
  const size_t old_size = strlen(old_name);
  const size_t new_size = strlen(new_name);
  for (size_t at = text.find(old_name); at != std::string::npos;
       at = text.find(old_name, at + new_size)) {
    text.replace(at, old_size, new_name);
  }
  return text;
}

}  // namespace

bool RenameInstalledIconsOfFile(const char* module_name, const char* module_version,
                                const char* group, const char* file_name, const char* language,
                                const char* new_group, const char* new_file_name,
                                const char* new_language) {
  const KindSchema& schema = *IiKindApi().schema;
  const Owner owner{module_name, module_version};
  RecordList* list = nullptr;
  if (!ReadKindList(schema, owner, MODE_READ, &list)) {
    GenericList::Free(list);
    return false;
  }
  bool changed = false;
  bool too_long = false;
  GenericList::ForEach(list, [&](void* record) {
    IIRow& icon = static_cast<IIRecord*>(record)->row;
    if (PartMatches(group, icon.GroupName) && PartMatches(file_name, icon.FileName) &&
        PartMatches(language, icon.Language)) {
      const std::string old_file = icon.FileName;
      SetPart(icon.GroupName, new_group);
      SetPart(icon.FileName, new_file_name);
      SetPart(icon.Language, new_language);
      std::string target = ReplaceAll(icon.Target, old_file.c_str(), new_file_name);
      if (target.size() >= sizeof icon.Target) {
        too_long = true;
        return false;
      }
      snprintf(icon.Target, sizeof icon.Target, "%s", target.c_str());
      changed = true;
    }
    if (icon.GroupName2[0] != '\0' && PartMatches(group, icon.GroupName2) &&
        PartMatches(file_name, icon.FileName2) && PartMatches(language, icon.Language2)) {
      SetPart(icon.GroupName2, new_group);
      SetPart(icon.FileName2, new_file_name);
      SetPart(icon.Language2, new_language);
      changed = true;
    }
    return true;
  });
  if (too_long) {
    ReportError(
        "II record refused: Target would be longer than 267 characters; nothing was written.", 0);
    GenericList::Free(list);
    return false;
  }
  bool ok = true;
  if (changed) {
    // Nothing is written unless every icon still reads back as changed.
    ok = ListFitsLines(schema, list) && WriteKindSection(schema, owner, list);
  }
  GenericList::Free(list);
  return ok;
}

}  // namespace qv
