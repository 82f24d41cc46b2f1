// The profile lock on POSIX: an open file description lock on the lock file.
//
// The lock lives as long as the descriptor, so a crashed holder leaves at
// most a file that nobody holds. Because the holder unlinks the file before
// it lets go, a rival may lock an inode that no longer has a name; checking
// that the path still names the locked inode catches that, and the rival
// tries again with the new file.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/fs.h"
#include "platform/lock_file.h"

namespace qv {

namespace {

constexpr int kAttempts = 16;

int OpenLockFile(const std::string& path) {
  int fd = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  if (fd < 0 && errno == EACCES) {
    // A read-only file left behind does not keep the lock out.
    struct stat st;
    if (stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode) &&
        chmod(path.c_str(), (st.st_mode & 07777) | S_IWUSR) == 0) {
      fd = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    }
  }
  return fd;
}

// An exclusive, non-blocking lock on the whole file.
bool LockExclusive(int fd) {
  struct flock lock = {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  lock.l_start = 0;
  lock.l_len = 0;
#ifdef F_OFD_SETLK
  if (fcntl(fd, F_OFD_SETLK, &lock) == 0) return true;
  if (errno != EINVAL) return false;
  lock.l_pid = 0;
#endif
  // Without open file description locks, fall back to process locks.
  return fcntl(fd, F_SETLK, &lock) == 0;
}

bool SameFile(int fd, const std::string& path) {
  struct stat held;
  struct stat named;
  return fstat(fd, &held) == 0 && stat(path.c_str(), &named) == 0 && held.st_dev == named.st_dev &&
         held.st_ino == named.st_ino;
}

}  // namespace

LockFile* LockFile::Acquire(const std::string& path) {
  std::string host = ResolvePath(path);
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    int fd = OpenLockFile(host);
    if (fd < 0) return nullptr;
    struct stat st;
    if (fstat(fd, &st) != 0 || !S_ISREG(st.st_mode) || !LockExclusive(fd)) {
      close(fd);
      return nullptr;
    }
    if (SameFile(fd, host)) return new LockFile(fd, host);
    close(fd);  // the holder released it meanwhile; lock the file now there
  }
  return nullptr;
}

void LockFile::Release() {
  unlink(path_.c_str());
  close(fd_);
  delete this;
}

}  // namespace qv
