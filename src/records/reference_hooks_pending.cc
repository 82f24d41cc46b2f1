// Stand-ins for the families not yet read: a profile without settings
// families has nothing that refers to a shipped file.
#include "records/reference_hooks.h"

namespace qv {

// No family keeps shipped-file settings records yet: none refers to a file.
bool DeleteSettingsOfShippedFile(const char*, const char*, const char*, const char*, const char*) {
  return true;
}
bool RenameSettingsOfShippedFile(const char*, const char*, const char*, const char*, const char*,
                                 const char*, const char*, const char*) {
  return true;
}
bool DeleteSettingsOfModule(const char*, const char*) {
  return true;
}
bool SettingsReferToShippedFile(const char*, const char*, const char*, const char*, const char*) {
  return false;
}

}  // namespace qv
