// The HKEY_LOCAL_MACHINE registry on Windows: the real one.
//
// Writing under HKEY_LOCAL_MACHINE needs an administrator. A user without
// that right still has to be able to keep the engine's settings, so an
// update that HKEY_LOCAL_MACHINE refuses goes to the same key under
// HKEY_CURRENT_USER instead. Reads look under HKEY_CURRENT_USER first, so
// that such a user sees what they wrote, and then under
// HKEY_LOCAL_MACHINE, where an installation put the machine's values.
//
// Tests give a program, or one test, a registry of its own by naming it in
// QUORVEX_REGISTRY (on POSIX, the file that holds the registry), so that
// what one stores (a program's last profile, a file's state) is never read
// by another running beside it. Windows has one registry for all
// processes, so here that name picks a private branch of
// HKEY_CURRENT_USER, which then stands for both hives. The branch is
// volatile: it lasts as long as the running registry and is never written
// to disk, so test runs do not pile up keys.

#include <cstdio>
#include <cstdlib>
#include <vector>

#include "platform/registry.h"
#include "platform/win32.h"

namespace qv {

namespace {

std::string SubKey(const std::string& key) {
  size_t begin = 0;
  size_t end = key.size();
  while (begin < end && (key[begin] == '\\' || key[begin] == '/')) ++begin;
  while (end > begin && (key[end - 1] == '\\' || key[end - 1] == '/')) --end;
  return NativeSeparators(key.substr(begin, end - begin));
}

constexpr char kPrivateBranches[] = "Software\\QUORVEX private registries\\";

// The private branch that QUORVEX_REGISTRY names, "" when it is not set.
std::string PrivateBranch() {
  const char* name = getenv("QUORVEX_REGISTRY");
  if (name == nullptr || *name == '\0') return std::string();
  // The name becomes one key, so it keeps no "\\"; a key's name holds at
  // most 255 characters, so a long one keeps its end behind a hash of the
  // whole, which tells apart names that end alike.
  std::string component = name;
  uint64_t hash = 14695981039346656037ULL;
  for (char& c : component) {
    hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211ULL;
    if (c == '\\') c = '/';
  }
  constexpr size_t kKept = 200;
  if (component.size() > kKept) {
    char prefix[24];
    snprintf(prefix, sizeof prefix, "%016llx~", static_cast<unsigned long long>(hash));
    component = prefix + component.substr(component.size() - kKept);
  }
  return kPrivateBranches + component;
}

// The key opened for reading from the first hive that has it.
HKEY OpenForReading(const std::string& key) {
  std::string sub = SubKey(key);
  std::string branch = PrivateBranch();
  if (!branch.empty()) {
    HKEY opened;
    std::string path = branch + "\\" + sub;
    return RegOpenKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, &opened) == ERROR_SUCCESS
               ? opened
               : nullptr;
  }
  for (HKEY hive : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
    HKEY opened;
    if (RegOpenKeyExA(hive, sub.c_str(), 0, KEY_READ, &opened) == ERROR_SUCCESS) return opened;
  }
  return nullptr;
}

// The key created or opened for writing, HKEY_CURRENT_USER when
// HKEY_LOCAL_MACHINE refuses.
HKEY OpenForWriting(const std::string& key) {
  std::string sub = SubKey(key);
  std::string branch = PrivateBranch();
  if (!branch.empty()) {
    HKEY opened;
    std::string path = branch + "\\" + sub;
    return RegCreateKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, REG_OPTION_VOLATILE,
                           KEY_READ | KEY_WRITE, nullptr, &opened, nullptr) == ERROR_SUCCESS
               ? opened
               : nullptr;
  }
  for (HKEY hive : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
    HKEY opened;
    LONG r = RegCreateKeyExA(hive, sub.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                             KEY_READ | KEY_WRITE, nullptr, &opened, nullptr);
    if (r == ERROR_SUCCESS) return opened;
    if (r != ERROR_ACCESS_DENIED) return nullptr;
  }
  return nullptr;
}

bool ReadValue(const std::string& key, const std::string& name, DWORD* type,
               std::vector<BYTE>* data) {
  HKEY opened = OpenForReading(key);
  if (opened == nullptr) return false;
  DWORD size = 0;
  LONG r = RegQueryValueExA(opened, name.c_str(), nullptr, type, nullptr, &size);
  if (r == ERROR_SUCCESS) {
    data->resize(size);
    r = RegQueryValueExA(opened, name.c_str(), nullptr, type, data->data(), &size);
    data->resize(size);
  }
  RegCloseKey(opened);
  return r == ERROR_SUCCESS;
}

}  // namespace

std::string RegistryFilePath() {
  return std::string();  // the real registry has no file
}

bool RegistryKeyExists(const std::string& key) {
  HKEY opened = OpenForReading(key);
  if (opened == nullptr) return false;
  RegCloseKey(opened);
  return true;
}

bool RegistryCreateKey(const std::string& key) {
  // A key that is there already needs nothing written, as with the registry
  // file on POSIX: one its user may read but not change still counts as
  // there, and only setting its values fails.
  HKEY opened = OpenForReading(key);
  if (opened == nullptr) opened = OpenForWriting(key);
  if (opened == nullptr) return false;
  RegCloseKey(opened);
  return true;
}

std::optional<std::string> RegistryGetString(const std::string& key, const std::string& name) {
  DWORD type = 0;
  std::vector<BYTE> data;
  if (!ReadValue(key, name, &type, &data) || (type != REG_SZ && type != REG_EXPAND_SZ)) {
    return std::nullopt;
  }
  std::string text(data.begin(), data.end());
  while (!text.empty() && text.back() == '\0') text.pop_back();
  return text;
}

std::optional<uint32_t> RegistryGetDword(const std::string& key, const std::string& name) {
  DWORD type = 0;
  std::vector<BYTE> data;
  if (!ReadValue(key, name, &type, &data) || type != REG_DWORD || data.size() != 4) {
    return std::nullopt;
  }
  return static_cast<uint32_t>(data[0]) | static_cast<uint32_t>(data[1]) << 8 |
         static_cast<uint32_t>(data[2]) << 16 | static_cast<uint32_t>(data[3]) << 24;
}

bool RegistrySetValues(const std::string& key, const std::vector<RegistryValue>& values) {
  HKEY opened = OpenForWriting(key);
  if (opened == nullptr) return false;
  bool ok = true;
  for (const RegistryValue& value : values) {
    LONG r;
    if (value.is_dword) {
      DWORD dword = value.dword;
      r = RegSetValueExA(opened, value.name.c_str(), 0, REG_DWORD,
                         reinterpret_cast<const BYTE*>(&dword), sizeof(dword));
    } else {
      r = RegSetValueExA(opened, value.name.c_str(), 0, REG_SZ,
                         reinterpret_cast<const BYTE*>(value.text.c_str()),
                         static_cast<DWORD>(value.text.size() + 1));
    }
    if (r != ERROR_SUCCESS) ok = false;
  }
  RegCloseKey(opened);
  return ok;
}

}  // namespace qv
