// A module's settings file: found through the catalogue by the module's
// key, and made on the first write of entries to a module without one.
#ifndef QUORVEX_RECORDS_SS_SETTINGS_FILE_H_
#define QUORVEX_RECORDS_SS_SETTINGS_FILE_H_

#include "quorvex/base.h"
#include "records/family_io.h"

namespace qv {

// The text when a module's settings file is missing where it must exist.
inline constexpr char kSettingsFileMissing[] =
    "Settings Record (.SSR ) file associated with module %s,%s cannot be found or opened!";

// Opens the module's settings file for change (checked out first). When the
// module has none, makes it (module line and the six empty sections),
// enters it in the global list of files as new and opens it. QV_NO_FILE
// after reporting when it cannot be had; path receives its path.
QvFile OpenSettingsFileForChange(const Owner& module, char* path);

// Whether the module has a settings file in the open profile (quietly).
bool HasSettingsFile(const char* module_name, const char* module_key);

}  // namespace qv

#endif  // QUORVEX_RECORDS_SS_SETTINGS_FILE_H_
