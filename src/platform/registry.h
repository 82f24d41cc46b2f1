// The HKEY_LOCAL_MACHINE registry.
//
// On POSIX it is kept in a REGEDIT4 text file: $QUORVEX_REGISTRY when set,
// else ${XDG_CONFIG_HOME:-~/.config}/quorvex/registry.reg. Keys are written
// "[HKEY_LOCAL_MACHINE\SOFTWARE\...]", values "Name"="text" and
// "Name"=dword:80000000. Every update reads, changes and replaces the file
// under a file lock, so two processes never lose each other's values. Key
// names compare without regard to case, as on Windows.
//
// On Windows it is the system's registry (registry_win32.cc): an update
// that HKEY_LOCAL_MACHINE refuses goes to HKEY_CURRENT_USER, which reads
// look at first; $QUORVEX_REGISTRY, when set, names a private, volatile
// branch of HKEY_CURRENT_USER that stands for both, so that tests running
// side by side never see each other's values.
#ifndef QUORVEX_PLATFORM_REGISTRY_H_
#define QUORVEX_PLATFORM_REGISTRY_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace qv {

struct RegistryValue {
  std::string name;
  bool is_dword = false;
  std::string text;    // REG_SZ content
  uint32_t dword = 0;  // REG_DWORD content
};

std::string RegistryFilePath();

// key is relative to HKEY_LOCAL_MACHINE, e.g. "SOFTWARE\Vardo\...".
bool RegistryKeyExists(const std::string& key);
// Creates the key when missing; false when the file cannot be written.
bool RegistryCreateKey(const std::string& key);
std::optional<std::string> RegistryGetString(const std::string& key, const std::string& name);
std::optional<uint32_t> RegistryGetDword(const std::string& key, const std::string& name);
// Creates the key when missing and sets the values in one atomic update.
bool RegistrySetValues(const std::string& key, const std::vector<RegistryValue>& values);

}  // namespace qv

#endif  // QUORVEX_PLATFORM_REGISTRY_H_
