// Who holds a lock file on Windows. The holder opened it without sharing,
// so any open of it fails with a sharing violation while the lock is held;
// Windows does not say by whom.

#include "platform/lock_holder.h"
#include "platform/win32.h"

namespace qv {

std::optional<std::string> LockFileHolder(const std::string& lock_path) {
  HANDLE h = CreateFileA(lock_path.c_str(), GENERIC_READ,
                         FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                         OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (h != INVALID_HANDLE_VALUE) {
    CloseHandle(h);
    return std::nullopt;
  }
  if (GetLastError() == ERROR_SHARING_VIOLATION) return std::string();
  return std::nullopt;
}

}  // namespace qv
