// What other families ask of file groups and shipped files: fresh texts
// for a module born from a parent, and the requirements and Ads of every
// module that name a deleted module or a deleted or changed Ad.
#include <cstdio>
#include <string>

#include "core/report_capture.h"
#include "core/state.h"
#include "profile/profile_files.h"
#include "quorvex/resources.h"
#include "quorvex/text.h"
#include "records/filegroup_families.h"
#include "records/orvik_rows.h"
#include "records/owner_kinds.h"
#include "records/reference_hooks.h"

namespace qv {
namespace {

// A copy of the English text with that id under a new generated id; a text
// that is missing gives an empty one, so that the copy never shares the id.
bool CopyText(char* id, size_t size) {
  if (id[0] == '\0') return true;
  ResourceRecord* found = nullptr;
  ResourceRecord copy{};
  if (MPGetResource("EN", id, &found) == 1 && found != nullptr) copy = *found;
  MPFreeResource(found);
  snprintf(copy.LanguageCode, sizeof copy.LanguageCode, "EN");
  copy.ResourceName[0] = '\0';
  copy.recordFlags = 0;
  if (MPPutResource(&copy) != 1 || copy.ResourceName[0] == '\0') return false;
  snprintf(id, size, "%s", copy.ResourceName);
  return true;
}

template <class Family>
bool RenewTexts(const char* module_name, const char* module_version) {
  RecordList* list = nullptr;
  if (Family::ReadAll(module_name, module_version, &list, MODE_UPDATE) != 1) {
    Family::List::Free(list);
    return false;
  }
  bool ok = true;
  Family::List::ForEach(list, [&](typename Family::Record* r) {
    ok = CopyText(r->row.TextIdA, sizeof r->row.TextIdA) &&
         CopyText(r->row.TextIdB, sizeof r->row.TextIdB);
    return ok;
  });
  // Nothing is written when a text could not be copied: the child keeps
  // what it was born with, and the failure has been shown.
  if (ok && list->count > 0) {
    ok = Family::WriteChecked(Family::ModuleOwner(module_name, module_version), list) == 1;
  }
  Family::List::Free(list);
  return ok;
}

// Deletes, in every module, the records the key names (its module left
// open); the database deletes them in one step.
template <class Family>
bool DeleteInEveryModule(typename Family::Key key) {
  key.module_name = nullptr;
  key.module_version = nullptr;
  if (IsOrvikProfile()) return DeleteRowsQuietly<Family>(key);
  bool ok = true;
  for (const auto& [name, version] : ProfileModules()) {
    typename Family::Key in_module = key;
    in_module.module_name = name.c_str();
    in_module.module_version = version.c_str();
    bool read = false;
    if (Family::AnyMatch(in_module, &read)) {
      ok = Family::Delete(in_module) == 1 && ok;
    } else {
      ok = read && ok;
    }
  }
  return ok;
}

}  // namespace

std::vector<std::pair<std::string, std::string>> ProfileModules() {
  std::vector<std::pair<std::string, std::string>> modules;
  if (IsOrvikProfile()) return modules;
  // A module line that does not read is the module family's to report.
  ReportCapture quiet(/*quiet=*/true);
  for (const ProfileFileFound& found : ListProfileFiles(State().profile_path)) {
    if (std::string(found.kind) != "MO") continue;
    QvFile file = QvOpenFileForRead(found.path.c_str());
    if (!QvFileIsOpen(file)) continue;
    SetParseFile(found.path.c_str());
    char line[QV_LINE_SIZE];
    char name[41] = "";
    char version[11] = "";
    uint32_t flags = 0;
    if (FindSection(file, "Module") == 1 &&
        ReadRecordLine(file, line, &flags, State().comment_mode) == 1) {
      char* cursor = line;
      if (ParseQuotedString(&cursor, name, 0, sizeof name) == 1 &&
          ParseQuotedString(&cursor, version, 0, sizeof version) == 1) {
        modules.emplace_back(name, version);
      }
    }
    QvCloseFile(file);
  }
  return modules;
}

bool RenewBornModuleTexts(const char* module_name, const char* module_version) {
  bool groups = RenewTexts<FgFamily>(module_name, module_version);
  bool files = RenewTexts<SfFamily>(module_name, module_version);
  return groups && files;
}

bool DeleteFileGroupRequirementsOfModule(const char* module_name, const char* module_version) {
  FgdFamily::Key key;
  key.parts[1] = KeyPart(module_name);
  key.parts[2] = KeyPart(module_version);
  return DeleteInEveryModule<FgdFamily>(key);
}

bool DeleteFileGroupAdsOfAd(uint32_t ad_id) {
  FgaFamily::Key key;
  key.parts[1] = std::to_string(ad_id);
  return DeleteInEveryModule<FgaFamily>(key);
}

// The database has no way to change a row in place; only the text store
// follows a changed Ad.
bool UpdateFileGroupAdsOfAd(uint32_t ad_id, uint32_t mode, uint32_t new_value) {
  if (mode == kDeleteReferences) return DeleteFileGroupAdsOfAd(ad_id);
  if (mode != kUpdateReferences || IsOrvikProfile()) return true;
  bool ok = true;
  for (const auto& [name, version] : ProfileModules()) {
    FgaFamily::Key key{name.c_str(), version.c_str(), {std::nullopt, std::to_string(ad_id)}};
    bool read = false;
    if (!FgaFamily::AnyMatch(key, &read)) {
      ok = read && ok;
      continue;
    }
    RecordList* list = nullptr;
    if (FgaFamily::ReadAll(key.module_name, key.module_version, &list, MODE_UPDATE) == 1) {
      FgaFamily::List::ForEach(list, [&](FGARecord* r) {
        if (r->row.AdId == ad_id) r->row.AdId = new_value;
      });
      ok = FgaFamily::WriteChecked(FgaFamily::ModuleOwner(key.module_name, key.module_version),
                                   list) == 1 &&
           ok;
    } else {
      ok = false;
    }
    FgaFamily::List::Free(list);
  }
  return ok;
}

}  // namespace qv
