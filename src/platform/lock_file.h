// The lock file that keeps a second writer out of a Master Profile.
//
// Acquire opens (or creates) the file, takes an exclusive non-blocking lock
// on it and checks that the path still names the locked file, so a stale
// file left by a crashed process does not block. Release unlinks the file,
// then closes it.
#ifndef QUORVEX_PLATFORM_LOCK_FILE_H_
#define QUORVEX_PLATFORM_LOCK_FILE_H_

#include <string>

namespace qv {

class LockFile {
 public:
  // nullptr when another process holds the lock or the file cannot be made.
  static LockFile* Acquire(const std::string& path);
  // Unlinks and closes; deletes this object.
  void Release();
  const std::string& path() const { return path_; }

 private:
  LockFile(int fd, std::string path) : fd_(fd), path_(std::move(path)) {}
  int fd_;
  std::string path_;
};

}  // namespace qv

#endif  // QUORVEX_PLATFORM_LOCK_FILE_H_
