// The settings associations of a shipped file (SFSR and SFCR lines of its
// module's settings file) follow the file when it is renamed or deleted;
// a module's own settings associations go with the module.
#include <cstdio>

#include "records/line_capacity.h"
#include "records/orvik_rows.h"
#include "records/owner_kinds.h"
#include "records/reference_hooks.h"
#include "records/ss_associations.h"
#include "records/ss_settings_file.h"

namespace qv {
namespace {

template <class Family>
typename Family::Key FileKey(const char* module, const char* version, const char* group,
                             const char* file, const char* language) {
  return {module, version, {KeyPart(language), KeyPart(group), KeyPart(file), std::nullopt}};
}

// A module without a settings file has nothing that refers to its files.
bool HasAssociations(const char* module, const char* version) {
  return IsOrvikProfile() || (module != nullptr && HasSettingsFile(module, version));
}

template <class Family>
bool DeleteOfFile(const typename Family::Key& key) {
  if (IsOrvikProfile()) return DeleteRowsQuietly<Family>(key);
  bool read = false;
  if (!Family::AnyMatch(key, &read)) return read;
  return Family::Delete(key) == 1;
}

template <class Record>
void SetText(char* to, size_t size, const char* text) {
  if (text != nullptr) snprintf(to, size, "%s", text);
}

template <class Family>
bool Rename(const typename Family::Key& key, const char* new_group, const char* new_file,
            const char* new_language) {
  using Record = typename Family::Record;
  using Traits = OwnedKindTraits<typename Family::Desc>;
  RecordList* list = nullptr;
  uint32_t mode = IsOrvikProfile() ? MODE_READ : MODE_UPDATE;
  if (Family::ReadAll(key.module_name, key.module_version, &list, mode) != 1) return false;
  std::vector<Record*> renamed;
  Family::List::ForEach(list, [&](Record* r) {
    if (!Traits::Matches(*r, key)) return;
    if (IsOrvikProfile()) {
      // The database renames by a delete of the old row and an insert.
      Record* old = Family::New();
      if (old != nullptr) {
        *old = *r;
        renamed.push_back(old);
      }
    }
    SetText<Record>(r->row.GroupName, sizeof r->row.GroupName, new_group);
    SetText<Record>(r->row.FileName, sizeof r->row.FileName, new_file);
    SetText<Record>(r->row.Language, sizeof r->row.Language, new_language);
    renamed.push_back(r);
  });
  bool ok = true;
  if (IsOrvikProfile()) {
    const auto& members = Family::Desc::kKeyMembers;
    std::vector<const char*> all = {"ModuleName", "ModuleKey2"};
    all.insert(all.end(), members.begin(), members.end());
    for (size_t i = 0; i + 1 < renamed.size(); i += 2) {
      ok = DeleteOrvikRows(Family::Schema(), renamed[i], all) &&
           InsertOrvikRow(Family::Schema(), renamed[i + 1]) && ok;
      Traits::kFree(renamed[i]);
    }
  } else if (!renamed.empty()) {
    ok = Family::Write(key.module_name, key.module_version, list) == 1;
  }
  Family::List::Free(list);
  return ok;
}

}  // namespace

bool DeleteSettingsOfShippedFile(const char* module_name, const char* module_version,
                                 const char* group, const char* file_name, const char* language) {
  if (!HasAssociations(module_name, module_version)) return true;
  bool settings = DeleteOfFile<SFSRFamily>(
      FileKey<SFSRFamily>(module_name, module_version, group, file_name, language));
  bool created = DeleteOfFile<SFCRFamily>(
      FileKey<SFCRFamily>(module_name, module_version, group, file_name, language));
  return settings && created;
}

bool RenameSettingsOfShippedFile(const char* module_name, const char* module_version,
                                 const char* group, const char* file_name, const char* language,
                                 const char* new_group, const char* new_file_name,
                                 const char* new_language) {
  if (!HasAssociations(module_name, module_version)) return true;
  bool settings = Rename<SFSRFamily>(
      FileKey<SFSRFamily>(module_name, module_version, group, file_name, language), new_group,
      new_file_name, new_language);
  bool created = Rename<SFCRFamily>(
      FileKey<SFCRFamily>(module_name, module_version, group, file_name, language), new_group,
      new_file_name, new_language);
  return settings && created;
}

bool SettingsReferToShippedFile(const char* module_name, const char* module_version,
                                const char* group, const char* file_name, const char* language) {
  if (!HasAssociations(module_name, module_version)) return false;
  return SFSRFamily::AnyMatch(
             FileKey<SFSRFamily>(module_name, module_version, group, file_name, language)) ||
         SFCRFamily::AnyMatch(
             FileKey<SFCRFamily>(module_name, module_version, group, file_name, language));
}

bool DeleteSettingsOfModule(const char* module_name, const char* module_version) {
  if (!HasAssociations(module_name, module_version)) return true;
  MOSRFamily::Key key{module_name, module_version, {std::nullopt}};
  return DeleteOfFile<MOSRFamily>(key);
}

}  // namespace qv
