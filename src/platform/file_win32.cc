// File on Windows: opening, and the positioned transfers under the cache
// that file.cc keeps.
//
// The handle is opened with CreateFile and kept as a C runtime descriptor
// (the File interface is the same on every system). Every transfer names
// its offset in an OVERLAPPED structure, so the handle's own position is
// never used. Files are shared for reading, writing and deleting, as the
// engine renames and deletes files that a reader of its own may still hold.

#include <fcntl.h>
#include <io.h>

#include <algorithm>
#include <cerrno>

#include "platform/file.h"
#include "platform/file_io.h"
#include "platform/fs.h"
#include "platform/read_redirects.h"
#include "platform/win32.h"

namespace qv {

namespace {

HANDLE HandleOf(int fd) {
  return reinterpret_cast<HANDLE>(_get_osfhandle(fd));
}

OVERLAPPED At(int64_t offset) {
  OVERLAPPED o = {};
  o.Offset = static_cast<DWORD>(static_cast<uint64_t>(offset) & 0xffffffffu);
  o.OffsetHigh = static_cast<DWORD>(static_cast<uint64_t>(offset) >> 32);
  return o;
}

// At most this much per ReadFile or WriteFile, whose counts are DWORDs.
constexpr size_t kMostPerCall = size_t{1} << 30;

}  // namespace

long ReadAt(int fd, void* buffer, size_t n, int64_t offset) {
  // Windows may return fewer bytes than asked before the end; the cache
  // relies on a short count meaning the end, so read until full or 0.
  char* out = static_cast<char*>(buffer);
  size_t got = 0;
  while (got < n) {
    OVERLAPPED o = At(offset + static_cast<int64_t>(got));
    DWORD r = 0;
    DWORD ask = static_cast<DWORD>(std::min(n - got, kMostPerCall));
    if (!ReadFile(HandleOf(fd), out + got, ask, &r, &o)) {
      if (GetLastError() == ERROR_HANDLE_EOF) break;
      SetErrnoFromLastError();
      return -1;
    }
    if (r == 0) break;
    got += r;
  }
  return static_cast<long>(got);
}

long WriteAt(int fd, const void* data, size_t n, int64_t offset) {
  OVERLAPPED o = At(offset);
  DWORD w = 0;
  if (!WriteFile(HandleOf(fd), data, static_cast<DWORD>(std::min(n, kMostPerCall)), &w, &o)) {
    SetErrnoFromLastError();
    return -1;
  }
  return static_cast<long>(w);
}

bool SizeOf(int fd, int64_t* size) {
  LARGE_INTEGER s;
  if (!GetFileSizeEx(HandleOf(fd), &s)) return false;
  *size = s.QuadPart;
  return true;
}

bool FlushToDisk(int fd) {
  return FlushFileBuffers(HandleOf(fd)) != 0;
}

void CloseDescriptor(int fd) {
  _close(fd);
}

File* File::Open(const std::string& path, OpenMode mode, int* error) {
  std::string host = ResolvePath(path);
  if (mode == OpenMode::kReadExisting || mode == OpenMode::kUpdateExisting) {
    host = ReadPathOf(host);
  }
  DWORD access = GENERIC_READ | GENERIC_WRITE;
  DWORD disposition = OPEN_EXISTING;
  switch (mode) {
    case OpenMode::kReadExisting:
      access = GENERIC_READ;
      break;
    case OpenMode::kUpdateExisting:
      break;
    case OpenMode::kCreateNew:
      disposition = CREATE_NEW;
      break;
    case OpenMode::kCreateAlways:
      disposition = OPEN_ALWAYS;  // truncated below, which keeps the attributes
      break;
  }
  int code = 0;
  DWORD attributes = GetFileAttributesA(host.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES) {
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
      code = mode == OpenMode::kCreateNew ? EEXIST : EISDIR;
    } else if ((attributes & FILE_ATTRIBUTE_READONLY) != 0 && mode != OpenMode::kReadExisting) {
      code = mode == OpenMode::kCreateNew ? EEXIST : EACCES;
    }
  }
  HANDLE h = INVALID_HANDLE_VALUE;
  if (code == 0) {
    h = CreateFileA(host.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (h == INVALID_HANDLE_VALUE) code = ErrnoFromWin32(GetLastError());
  }
  if (h != INVALID_HANDLE_VALUE && mode == OpenMode::kCreateAlways && !SetEndOfFile(h)) {
    code = ErrnoFromWin32(GetLastError());
    CloseHandle(h);
    h = INVALID_HANDLE_VALUE;
  }
  int fd = -1;
  if (h != INVALID_HANDLE_VALUE) {
    fd = _open_osfhandle(reinterpret_cast<intptr_t>(h),
                         _O_BINARY | (access == GENERIC_READ ? _O_RDONLY : _O_RDWR));
    if (fd < 0) {
      code = EMFILE;
      CloseHandle(h);
    }
  }
  if (fd < 0) {
    if (error != nullptr) *error = code;
    return nullptr;
  }
  if (error != nullptr) *error = 0;
  return new File(fd, std::move(host));
}

}  // namespace qv
