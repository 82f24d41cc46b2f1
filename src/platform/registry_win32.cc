// The HKEY_LOCAL_MACHINE registry on Windows: the real one.
//
// Writing under HKEY_LOCAL_MACHINE needs an administrator. A user without
// that right still has to be able to keep the engine's settings, so an
// update that HKEY_LOCAL_MACHINE refuses goes to the same key under
// HKEY_CURRENT_USER instead. Reads look under HKEY_CURRENT_USER first, so
// that such a user sees what they wrote, and then under
// HKEY_LOCAL_MACHINE, where an installation put the machine's values.

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

// The key opened for reading from the first hive that has it.
HKEY OpenForReading(const std::string& key) {
  std::string sub = SubKey(key);
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
  HKEY opened = OpenForWriting(key);
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
