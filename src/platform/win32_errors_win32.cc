#include "platform/win32.h"

#include <cerrno>

namespace qv {

int ErrnoFromWin32(DWORD code) {
  switch (code) {
    case ERROR_SUCCESS:
      return 0;
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_PATHNAME:
    case ERROR_INVALID_NAME:
    case ERROR_MOD_NOT_FOUND:
      return ENOENT;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_WRITE_PROTECT:
    case ERROR_CANNOT_MAKE:
      return EACCES;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
      return EEXIST;
    case ERROR_DIRECTORY:
      return ENOTDIR;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
      return ENOSPC;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
      return ENOMEM;
    case ERROR_BAD_EXE_FORMAT:
    case ERROR_EXE_MACHINE_TYPE_MISMATCH:
      return ENOEXEC;
    case ERROR_DIR_NOT_EMPTY:
      return ENOTEMPTY;
    case ERROR_FILENAME_EXCED_RANGE:
      return ENAMETOOLONG;
    default:
      return EIO;
  }
}

int SetErrnoFromLastError() {
  int code = ErrnoFromWin32(GetLastError());
  errno = code;
  return code;
}

std::string NativeSeparators(const std::string& path) {
  std::string result = path;
  for (char& c : result) {
    if (c == '/') c = '\\';
  }
  return result;
}

}  // namespace qv
