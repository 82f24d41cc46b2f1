// The installed icons of a module that start a shipped file follow the
// file when it is renamed: its group, language and name, and the name
// inside the icon's target text. The icons are read and written here with
// a schema of their line, as the icon family itself reads them.
#include <cstring>
#include <string>

#include "quorvex/filegroups.h"
#include "quorvex/report.h"
#include "records/filegroup_families.h"
#include "records/line_capacity.h"

namespace qv {
namespace {

struct IconRow {
  uint32_t Number;
  char Language[11];
  char GroupName[21];
  char FileName[41];
  char GroupName2[21];
  char Language2[11];
  char FileName2[41];
  uint32_t Number2;
  char Target[268];
  char Text260a[261];
  char Text260b[261];
  char Text1023a[1024];
  char Text1023b[1024];
  char Text40a[41];
  uint32_t Flags;
  char Text40b[41];
  char Text384[385];
};

struct IconRecord {
  IconRow row;
  uint32_t recordFlags;
  uint32_t lineNumber;
};

const KindSchema& IconSchema() {
  static const KindSchema schema = [] {
    KindSchema s = RowRecordSchema<IconRecord>("II");
    constexpr uint32_t kOpt = FO_OPTIONAL;
    s.members = {
        QV_MEMBER(IconRecord, row.Number, "Number", true),
        QV_MEMBER(IconRecord, row.Language, "Language", true),
        QV_MEMBER(IconRecord, row.GroupName, "GroupName", true),
        QV_MEMBER(IconRecord, row.FileName, "FileName", true),
        QV_MEMBER(IconRecord, row.GroupName2, "GroupName2", true),
        QV_MEMBER(IconRecord, row.Language2, "Language2", true),
        QV_MEMBER(IconRecord, row.FileName2, "FileName2", true),
        QV_MEMBER(IconRecord, row.Number2, "Number2", true),
        QV_MEMBER(IconRecord, row.Target, "Target", true),
        QV_MEMBER(IconRecord, row.Text260a, "Text260a", true),
        QV_MEMBER(IconRecord, row.Text260b, "Text260b", true),
        QV_MEMBER(IconRecord, row.Text1023a, "Text1023a", true),
        QV_MEMBER(IconRecord, row.Text1023b, "Text1023b", true),
        QV_MEMBER(IconRecord, row.Text40a, "Text40a", true),
        QV_MEMBER(IconRecord, row.Flags, "Flags", true),
        QV_MEMBER(IconRecord, row.Text40b, "Text40b", true),
        QV_MEMBER(IconRecord, row.Text384, "Text384", true),
    };
    s.line = {
        QV_LINE_FIELD(IconRecord, row.Number, LineSyntax::kInteger, 0, 0, 0),
        QV_LINE_FIELD(IconRecord, row.Language, LineSyntax::kText, 10, 0, 0),
        QV_LINE_FIELD(IconRecord, row.GroupName, LineSyntax::kText, 20, 0, 0),
        QV_LINE_FIELD(IconRecord, row.FileName, LineSyntax::kText, 40, 0, 0),
        QV_LINE_FIELD(IconRecord, row.GroupName2, LineSyntax::kText, 20, kOpt, 0),
        QV_LINE_FIELD(IconRecord, row.Language2, LineSyntax::kText, 10, kOpt, 0),
        QV_LINE_FIELD(IconRecord, row.FileName2, LineSyntax::kText, 40, kOpt, 0),
        QV_LINE_FIELD(IconRecord, row.Number2, LineSyntax::kInteger, 0, kOpt, 0),
        QV_LINE_FIELD(IconRecord, row.Target, LineSyntax::kText, 267, kOpt, 0),
        QV_LINE_FIELD(IconRecord, row.Text260a, LineSyntax::kText, 260, kOpt, 0),
        QV_LINE_FIELD(IconRecord, row.Text260b, LineSyntax::kText, 260, kOpt, 0),
        QV_LINE_FIELD(IconRecord, row.Text1023a, LineSyntax::kText, 1023, kOpt, 0),
        QV_LINE_FIELD(IconRecord, row.Text1023b, LineSyntax::kText, 1023, kOpt, 0),
        QV_LINE_FIELD(IconRecord, row.Text40a, LineSyntax::kText, 40, 0, 0),
        QV_LINE_FIELD(IconRecord, row.Flags, LineSyntax::kFlag, 0, 0, 1),
        QV_LINE_FIELD(IconRecord, row.Flags, LineSyntax::kFlag, 0, 0, 2),
        QV_LINE_FIELD(IconRecord, row.Flags, LineSyntax::kFlag, 0, 0, 4),
        QV_LINE_FIELD(IconRecord, row.Text40b, LineSyntax::kText, 40, 0, 0),
        QV_LINE_FIELD(IconRecord, row.Text384, LineSyntax::kText, 384, 0, 0),
    };
    s.flag_label = "Installed Icon";
    s.missing_file_message = "File associated with module %s,%s cannot be found or opened!";
    return s;
  }();
  return schema;
}

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
  const KindSchema& schema = IconSchema();
  const Owner owner{module_name, module_version};
  RecordList* list = nullptr;
  if (!ReadKindList(schema, owner, MODE_READ, &list)) {
    GenericList::Free(list);
    return false;
  }
  bool changed = false;
  bool too_long = false;
  GenericList::ForEach(list, [&](void* record) {
    IconRow& icon = static_cast<IconRecord*>(record)->row;
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
