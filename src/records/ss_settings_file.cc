#include "records/ss_settings_file.h"

#include <cstdio>

#include "core/state.h"
#include "profile/global_file_list.h"
#include "quorvex/catalogue.h"
#include "quorvex/report.h"
#include "quorvex/writer.h"
#include "records/new_files.h"

namespace qv {
namespace {

void ReportMissing(const Owner& module) {
  char text[QV_LINE_SIZE];
  snprintf(text, sizeof text, kSettingsFileMissing, module.name, module.key);
  ReportError(text, 0);
}

// Makes the file with its header and enters it as new: it needs no
// check-out, and its first write adds it to version control.
bool CreateSettingsFile(const Owner& module) {
  char path[QV_PATH_SIZE] = "";
  QvFile file = CreateMungedFile(module.name, module.key, "SSR", path);
  if (!QvFileIsOpen(file)) return false;
  AddGlobalFileEntry(module.name, module.key, "SSR", path, FS_CHECKED_OUT | kFileNewToVcs);
  AddSections(file, "SSR", module.name, module.key);
  QvCloseFile(file);
  return true;
}

}  // namespace

QvFile OpenSettingsFileForChange(const Owner& module, char* path) {
  const char* folder = State().profile_path;
  QvFile file = OpenProfileFile(folder, module.name, module.key, "SSR", path, MODE_UPDATE);
  if (QvFileIsOpen(file)) return file;
  // A file that exists but cannot be opened is not made anew.
  if (file == QV_FAILED_FILE || !CreateSettingsFile(module)) {
    ReportMissing(module);
    return QV_NO_FILE;
  }
  // The new file needs no check-out: look it up for reading.
  file = OpenProfileFile(folder, module.name, module.key, "SSR", path, MODE_READ);
  if (!QvFileIsOpen(file)) {
    ReportMissing(module);
    return QV_NO_FILE;
  }
  MarkNewToVcs(path);
  return file;
}

bool HasSettingsFile(const char* module_name, const char* module_key) {
  char path[QV_PATH_SIZE] = "";
  QvFile file =
      OpenProfileFile(State().profile_path, module_name, module_key, "SSR", path, MODE_READ);
  if (!QvFileIsOpen(file)) return false;
  QvCloseFile(file);
  return true;
}

}  // namespace qv
