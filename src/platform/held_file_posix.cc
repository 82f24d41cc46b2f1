// Held files on POSIX: an flock on the file's open file description.
//
// The lock goes with the open file description, so a crash leaves a file
// that nobody holds. flock rather than fcntl locks: it works on a descriptor
// opened for reading only, which is all a rival may get on someone else's
// file, and it is per description, so a second look from the holder's own
// process sees the name held too.
//
// The file is made and locked under a private name first and then linked to
// its real name, so that the name never shows an unlocked file. The locked
// descriptor is kept until DeleteFile removes the name, not just until the
// File closes: a rival that finds the name unlocked can then be sure that
// its maker is gone, even between the maker's closing and deleting it.

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <map>
#include <mutex>

#include "platform/file.h"
#include "platform/fs.h"
#include "platform/held_file.h"

namespace qv {

namespace {

// Attempts per call; each one ends because a rival changed the name.
constexpr int kAttempts = 16;

// Resolved path -> the descriptor that keeps the name held.
std::mutex g_holds_mutex;
std::map<std::string, int>& Holds() {
  static auto* holds = new std::map<std::string, int>;
  return *holds;
}

void KeepHeld(const std::string& host, int fd) {
  std::lock_guard<std::mutex> guard(g_holds_mutex);
  auto [it, added] = Holds().emplace(host, fd);
  if (!added) {
    // The former file of that name went without DeleteFile.
    close(it->second);
    it->second = fd;
  }
}

bool SameFile(int fd, const std::string& path) {
  struct stat held;
  struct stat named;
  return fstat(fd, &held) == 0 && lstat(path.c_str(), &named) == 0 && held.st_dev == named.st_dev &&
         held.st_ino == named.st_ino;
}

enum class Stale { kRemoved, kGone, kHeld };

// Removes the file under host when no process holds it. The lock is kept
// while the name is checked and removed: a rival that locks the same file
// later finds the name gone or naming another file, never removes that.
Stale RemoveIfStale(const std::string& host) {
  int fd = open(host.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
  if (fd < 0) return errno == ENOENT ? Stale::kGone : Stale::kHeld;
  Stale result = Stale::kHeld;
  struct stat st;
  if (fstat(fd, &st) == 0 && S_ISREG(st.st_mode) && flock(fd, LOCK_EX | LOCK_NB) == 0) {
    if (!SameFile(fd, host)) {
      result = Stale::kGone;  // removed or replaced meanwhile; look again
    } else if (unlink(host.c_str()) == 0) {
      result = Stale::kRemoved;
    }
  }
  close(fd);
  return result;
}

// A new, locked file under a private name beside host; -1 on failure.
int MakeLockedPrivateFile(const std::string& host, std::string* private_path) {
  std::string drive, directory, name;
  SplitPath(host, &drive, &directory, &name);
  *private_path = directory + "." + name + ".XXXXXX";
  int fd = mkostemp(private_path->data(), O_CLOEXEC);
  if (fd < 0) return -1;
  if (flock(fd, LOCK_EX | LOCK_NB) != 0) {
    int code = errno;
    unlink(private_path->c_str());
    close(fd);
    errno = code;
    return -1;
  }
  return fd;
}

}  // namespace

File* CreateHeldFile(const std::string& path, int* error) {
  int code = EEXIST;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    std::string host = ResolvePath(path);
    std::string private_path;
    int fd = MakeLockedPrivateFile(host, &private_path);
    if (fd < 0) {
      code = errno;
      break;
    }
    int linked = link(private_path.c_str(), host.c_str());
    int link_error = errno;
    unlink(private_path.c_str());
    if (linked == 0) {
      // The locked descriptor stays here as the hold; the caller gets a
      // File of its own on the same file, which nobody can replace while
      // the hold lasts.
      File* file = File::Open(host, OpenMode::kUpdateExisting, &code);
      if (file == nullptr) {
        unlink(host.c_str());
        close(fd);
        break;
      }
      KeepHeld(host, fd);
      if (error != nullptr) *error = 0;
      return file;
    }
    close(fd);
    code = link_error;
    if (link_error != EEXIST || RemoveIfStale(host) == Stale::kHeld) break;
  }
  if (error != nullptr) *error = code;
  return nullptr;
}

void ReleaseHeldName(const std::string& host_path) {
  std::lock_guard<std::mutex> guard(g_holds_mutex);
  auto it = Holds().find(host_path);
  if (it == Holds().end()) return;
  close(it->second);
  Holds().erase(it);
}

void ReleaseHeldNamesBelow(const std::string& host_folder) {
  std::string prefix = host_folder;
  if (prefix.empty() || prefix.back() != '/') prefix += '/';
  std::lock_guard<std::mutex> guard(g_holds_mutex);
  for (auto it = Holds().lower_bound(prefix);
       it != Holds().end() && it->first.compare(0, prefix.size(), prefix) == 0;) {
    close(it->second);
    it = Holds().erase(it);
  }
}

}  // namespace qv
