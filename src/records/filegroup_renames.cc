// Renaming file groups and shipped files, and the records that follow a
// shipped file: its settings records and the installed icons that start
// it. Names are changed in the records that refer to them first, so that a
// failure leaves no record naming something that is gone.
#include <cstdio>
#include <cstring>

#include "core/copy_text.h"
#include "core/replace_batch.h"
#include "orvik/transaction.h"
#include "quorvex/filegroups.h"
#include "quorvex/report.h"
#include "records/filegroup_families.h"
#include "records/line_capacity.h"
#include "records/reference_hooks.h"

namespace qv {
namespace {

bool HasGroup(RecordList* groups, const char* name) {
  bool found = false;
  FgFamily::List::ForEach(groups, [&](FGRecord* r) {
    found = strcmp(r->row.GroupName, name) == 0;
    return !found;
  });
  return found;
}

void ReportAlreadyNamed(const char* format, const char* name) {
  char text[QV_LINE_SIZE];
  snprintf(text, sizeof text, format, name);
  ReportError(text, 0);
}

// The groups below the old group name the new one as their parent; its
// shipped files and their icons move to the new group.
bool RenameGroupAssociations(const char* module_name, const char* module_version,
                             const char* old_name, const char* new_name) {
  RecordList* groups = nullptr;
  bool ok = FgFamily::ReadAll(module_name, module_version, &groups, MODE_READ) == 1;
  if (ok && HasGroup(groups, new_name)) {
    ReportAlreadyNamed("File Group cannot be renamed since there is already a File Group named %s.",
                       new_name);
    ok = false;
  }
  if (ok) {
    FgFamily::List::ForEach(groups, [&](FGRecord* r) {
      if (strcmp(r->row.ParentGroup, old_name) != 0) return true;
      CopyCut(r->row.ParentGroup, new_name);
      ok = FgFamily::Put(r) == 1;
      return ok;
    });
  }
  FgFamily::List::Free(groups);
  return ok && MPRenameSF(module_name, module_version, old_name, nullptr, nullptr, 0, 0, new_name,
                          nullptr, nullptr) == 1;
}

}  // namespace
}  // namespace qv

using qv::FgFamily;
using qv::SfFamily;

extern "C" {

static int RenameFGAlone(const char* moduleName, const char* moduleVersion,
                         const char* oldGroupName, uint32_t, uint32_t, const char* newGroupName) {
  if (!qv::RequireLockedProfile()) return 0;
  if (oldGroupName == nullptr || newGroupName == nullptr) return 0;
  if (qv::IsOrvikProfile()) {
    ReportError(qv::FgDesc::kNotForOrvik, 0);
    return 0;
  }
  // Groups, files and icons share the module's file: it changes once.
  qv::ReplaceBatch batch;
  RecordList* groups = nullptr;
  if (FgFamily::ReadAll(moduleName, moduleVersion, &groups, MODE_READ) != 1) {
    FgFamily::List::Free(groups);
    return 0;
  }
  if (qv::HasGroup(groups, newGroupName)) {
    FgFamily::List::Free(groups);
    qv::ReportAlreadyNamed(
        "File Group cannot be renamed since there is already a File Group named %s", newGroupName);
    return 0;
  }
  // A name the line cannot carry is refused before anything is renamed.
  FgFamily::List::ForEach(groups, [&](FGRecord* r) {
    if (strcmp(r->row.GroupName, oldGroupName) == 0) qv::CopyCut(r->row.GroupName, newGroupName);
  });
  bool fits = qv::ListFitsLines(qv::FgDesc::Schema(), groups);
  FgFamily::List::Free(groups);
  if (!fits) return 0;
  if (!qv::RenameGroupAssociations(moduleName, moduleVersion, oldGroupName, newGroupName)) {
    ReportError("Cannot rename FG record because I cannot rename its associations.", 0);
    return 0;
  }
  groups = nullptr;
  if (FgFamily::ReadAll(moduleName, moduleVersion, &groups, MODE_UPDATE) != 1) {
    FgFamily::List::Free(groups);
    return 0;
  }
  FgFamily::List::ForEach(groups, [&](FGRecord* r) {
    if (strcmp(r->row.GroupName, oldGroupName) == 0) qv::CopyCut(r->row.GroupName, newGroupName);
  });
  int result = FgFamily::WriteChecked(FgFamily::ModuleOwner(moduleName, moduleVersion), groups);
  FgFamily::List::Free(groups);
  return result;
}

int MPRenameFG(const char* moduleName, const char* moduleVersion, const char* oldGroupName,
               uint32_t a, uint32_t b, const char* newGroupName) {
  return qv::Transacted(
      [&] { return RenameFGAlone(moduleName, moduleVersion, oldGroupName, a, b, newGroupName); });
}

static int RenameSFAlone(const char* moduleName, const char* moduleVersion, const char* groupName,
                         const char* language, const char* fileName, uint32_t, uint32_t,
                         const char* newGroupName, const char* newLanguage,
                         const char* newFileName) {
  if (!qv::RequireLockedProfile()) return 0;
  if (qv::IsOrvikProfile()) {
    ReportError(qv::SfDesc::kNotForOrvik, 0);
    return 0;
  }
  // The files, their settings and icons change each of their files once.
  qv::ReplaceBatch batch;
  RecordList* files = nullptr;
  if (SfFamily::ReadAll(moduleName, moduleVersion, &files, MODE_UPDATE) != 1) {
    SfFamily::List::Free(files);
    return 0;
  }
  const SfFamily::Key key{moduleName,
                          moduleVersion,
                          {qv::KeyPart(groupName), qv::KeyPart(fileName), qv::KeyPart(language)}};
  bool changed = false;
  SfFamily::List::ForEach(files, [&](SFRecord* r) {
    if (!qv::OwnedKindTraits<qv::SfDesc>::Matches(*r, key)) return;
    if (newGroupName != nullptr) qv::CopyCut(r->row.GroupName, newGroupName);
    if (newLanguage != nullptr) qv::CopyCut(r->row.Language, newLanguage);
    if (newFileName != nullptr) qv::CopyCut(r->row.FileName, newFileName);
    r->row.FileType = MPSFFileTypeOf(r->row.FileName);
    changed = true;
  });
  // New names the line cannot carry are refused before anything is renamed.
  int result = 1;
  if (changed && !qv::ListFitsLines(qv::SfDesc::Schema(), files)) {
    result = 0;
  } else if (MPSFAssociations(moduleName, moduleVersion, groupName, fileName, language,
                              SF_ASSOCIATIONS_RENAME, 0, 0, newGroupName, newFileName,
                              newLanguage) != 1) {
    ReportError("Cannot rename SF record because I cannot rename its associations", 0);
    result = 0;
  } else if (changed) {
    result = SfFamily::WriteChecked(SfFamily::ModuleOwner(moduleName, moduleVersion), files);
  }
  SfFamily::List::Free(files);
  return result;
}

int MPRenameSF(const char* moduleName, const char* moduleVersion, const char* groupName,
               const char* language, const char* fileName, uint32_t a, uint32_t b,
               const char* newGroupName, const char* newLanguage, const char* newFileName) {
  return qv::Transacted([&] {
    return RenameSFAlone(moduleName, moduleVersion, groupName, language, fileName, a, b,
                         newGroupName, newLanguage, newFileName);
  });
}

static int SFAssociationsAlone(const char* moduleName, const char* moduleVersion,
                               const char* groupName, const char* fileName, const char* language,
                               uint32_t mode, uint32_t, uint32_t, const char* newGroupName,
                               const char* newFileName, const char* newLanguage) {
  if (mode == SF_ASSOCIATIONS_DELETE) {
    return qv::DeleteSettingsOfShippedFile(moduleName, moduleVersion, groupName, fileName, language)
               ? 1
               : 0;
  }
  if (mode == SF_ASSOCIATIONS_RENAME) {
    if (!qv::RenameSettingsOfShippedFile(moduleName, moduleVersion, groupName, fileName, language,
                                         newGroupName, newFileName, newLanguage)) {
      return 0;
    }
    if (qv::IsOrvikProfile()) return 1;
    return qv::RenameInstalledIconsOfFile(moduleName, moduleVersion, groupName, fileName, language,
                                          newGroupName, newFileName, newLanguage)
               ? 1
               : 0;
  }
  return qv::SettingsReferToShippedFile(moduleName, moduleVersion, groupName, fileName, language)
             ? 1
             : 0;
}

int MPSFAssociations(const char* moduleName, const char* moduleVersion, const char* groupName,
                     const char* fileName, const char* language, uint32_t mode, uint32_t a,
                     uint32_t b, const char* newGroupName, const char* newFileName,
                     const char* newLanguage) {
  return qv::Transacted([&] {
    return SFAssociationsAlone(moduleName, moduleVersion, groupName, fileName, language, mode, a, b,
                               newGroupName, newFileName, newLanguage);
  });
}

}  // extern "C"
