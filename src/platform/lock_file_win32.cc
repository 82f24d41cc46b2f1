// The profile lock on Windows: the lock file opened with no sharing at all
// and deleted when closed.
//
// While the handle is open nobody else can open the file, so a second
// writer fails at once. Windows closes the handles of a process that
// crashed, which deletes the file: nothing stale is left behind.

#include <fcntl.h>
#include <io.h>

#include "platform/fs.h"
#include "platform/lock_file.h"
#include "platform/win32.h"

namespace qv {

LockFile* LockFile::Acquire(const std::string& path) {
  std::string host = ResolvePath(path);
  DWORD attributes = GetFileAttributesA(host.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
    return nullptr;
  }
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
    // A read-only file left behind does not keep the lock out.
    SetFileAttributesA(host.c_str(), attributes & ~FILE_ATTRIBUTE_READONLY);
  }
  HANDLE h = CreateFileA(host.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                         FILE_ATTRIBUTE_NORMAL | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
  if (h == INVALID_HANDLE_VALUE) return nullptr;
  int fd = _open_osfhandle(reinterpret_cast<intptr_t>(h), _O_BINARY | _O_RDWR);
  if (fd < 0) {
    CloseHandle(h);
    return nullptr;
  }
  return new LockFile(fd, host);
}

void LockFile::Release() {
  _close(fd_);  // deletes the file
  delete this;
}

}  // namespace qv
