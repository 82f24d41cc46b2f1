// File on POSIX: opening, and the positioned transfers under the cache
// that file.cc keeps (pread and pwrite, so the descriptor's own offset is
// never used).

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/file.h"
#include "platform/file_io.h"
#include "platform/fs.h"
#include "platform/read_redirects.h"

namespace qv {

long ReadAt(int fd, void* buffer, size_t n, int64_t offset) {
  ssize_t r;
  do {
    r = pread(fd, buffer, n, offset);
  } while (r < 0 && errno == EINTR);
  // A regular file gives a short count only at its end.
  return static_cast<long>(r);
}

long WriteAt(int fd, const void* data, size_t n, int64_t offset) {
  ssize_t w;
  do {
    w = pwrite(fd, data, n, offset);
  } while (w < 0 && errno == EINTR);
  return static_cast<long>(w);
}

bool SizeOf(int fd, int64_t* size) {
  struct stat st;
  if (fstat(fd, &st) != 0) return false;
  *size = st.st_size;
  return true;
}

bool FlushToDisk(int fd) {
  return fsync(fd) == 0;
}

void CloseDescriptor(int fd) {
  close(fd);
}

File* File::Open(const std::string& path, OpenMode mode, int* error) {
  std::string host = ResolvePath(path);
  if (mode == OpenMode::kReadExisting || mode == OpenMode::kUpdateExisting) {
    host = ReadPathOf(host);
  }
  int flags = O_CLOEXEC;
  switch (mode) {
    case OpenMode::kReadExisting:
      flags |= O_RDONLY;
      break;
    case OpenMode::kUpdateExisting:
      flags |= O_RDWR;
      break;
    case OpenMode::kCreateNew:
      flags |= O_RDWR | O_CREAT | O_EXCL;
      break;
    case OpenMode::kCreateAlways:
      flags |= O_RDWR | O_CREAT | O_TRUNC;
      break;
  }
  int code = 0;
  if (mode == OpenMode::kUpdateExisting || mode == OpenMode::kCreateAlways) {
    // A read-only file refuses writers, even a privileged one: the engine
    // takes the attribute to mean "not checked out".
    struct stat st;
    if (stat(host.c_str(), &st) == 0 && S_ISREG(st.st_mode) && (st.st_mode & 0222) == 0) {
      code = EACCES;
    }
  }
  int fd = -1;
  if (code == 0) {
    do {
      fd = open(host.c_str(), flags, 0666);
    } while (fd < 0 && errno == EINTR);
    if (fd < 0) code = errno;
  }
  if (fd >= 0) {
    struct stat st;
    if (fstat(fd, &st) != 0) {
      code = errno;
    } else if (S_ISDIR(st.st_mode)) {
      code = EISDIR;
    }
    if (code != 0) {
      close(fd);
      fd = -1;
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
