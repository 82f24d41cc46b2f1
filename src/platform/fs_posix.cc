// File-system services on POSIX.

#include <dirent.h>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string_view>
#include <vector>

#include "platform/fs.h"
#include "platform/held_file.h"
#include "platform/names.h"
#include "platform/path_components.h"
#include "platform/replace_with.h"
#include "platform/write_faults.h"

namespace qv {

namespace {

bool StatPath(const std::string& path, struct stat* st) {
  return stat(path.empty() ? "." : path.c_str(), st) == 0;
}

// The spelling of component inside the folder dir: the exact name when it
// exists, else the first case variant in byte order, else "" when none.
std::string FindComponent(const std::string& dir, const std::string& component) {
  std::string exact = dir + component;
  struct stat st;
  if (lstat(exact.c_str(), &st) == 0) return component;
  DIR* d = opendir(dir.empty() ? "." : dir.c_str());
  if (d == nullptr) return std::string();
  std::string best;
  while (struct dirent* e = readdir(d)) {
    std::string name = e->d_name;
    if (EqualNoCase(name, component) && (best.empty() || name < best)) best = name;
  }
  closedir(d);
  return best;
}

bool IsWritableMode(mode_t mode) {
  return (mode & 0222) != 0;
}

}  // namespace

bool IsSeparator(char c) {
  return c == '/' || c == '\\';
}

std::string ResolvePath(const std::string& path) {
  // The path with every run of separators made one slash; when that exists
  // as spelled, it is its own stored spelling (the walk would find every
  // component's exact name). One lstat instead of one per component: the
  // engine resolves the same few paths many times per operation.
  std::string plain;
  plain.reserve(path.size());
  for (char c : path) {
    if (!IsSeparator(c)) {
      plain.push_back(c);
    } else if (plain.empty() || plain.back() != '/') {
      plain.push_back('/');
    }
  }
  struct stat st;
  if (!plain.empty() && lstat(plain.c_str(), &st) == 0) return plain;
  return ResolveComponents("", path, 0, '/', 0, FindComponent);
}

bool FileExists(const std::string& path) {
  struct stat st;
  return !path.empty() && StatPath(ResolvePath(path), &st) && !S_ISDIR(st.st_mode);
}

bool DirectoryExists(const std::string& path) {
  struct stat st;
  return !path.empty() && StatPath(ResolvePath(path), &st) && S_ISDIR(st.st_mode);
}

bool DeleteFile(const std::string& path) {
  std::string host = ResolvePath(path);
  struct stat st;
  if (host.empty() || lstat(host.c_str(), &st) != 0 || S_ISDIR(st.st_mode)) return false;
  // As on Windows, a read-only file must be made writable before it goes.
  if (S_ISREG(st.st_mode) && !IsWritableMode(st.st_mode)) {
    errno = EACCES;
    return false;
  }
  if (unlink(host.c_str()) != 0) return false;
  ReleaseHeldName(host);  // a temporary file's name is free for others now
  return true;
}

bool MakeDirectories(const std::string& path) {
  std::string host = ResolvePath(path);
  if (host.empty()) return false;
  // Each prefix that ends before a separator, then the whole path.
  for (size_t i = 1; i <= host.size(); ++i) {
    if (i < host.size() && host[i] != '/') continue;
    if (host[i - 1] == '/') continue;
    std::string prefix = host.substr(0, i);
    if (mkdir(prefix.c_str(), 0777) != 0 && errno != EEXIST) return false;
  }
  struct stat st;
  return stat(host.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

std::vector<DirEntry> FindFiles(const std::string& pattern) {
  std::vector<DirEntry> entries;
  std::string drive, directory, name_pattern;
  SplitPath(pattern, &drive, &directory, &name_pattern);
  std::string folder = ResolvePath(directory);
  if (!folder.empty() && folder.back() != '/') folder += '/';
  DIR* d = opendir(folder.empty() ? "." : folder.c_str());
  if (d == nullptr) return entries;
  while (struct dirent* e = readdir(d)) {
    std::string name = e->d_name;
    if (name == "." || name == "..") continue;
    if (!PatternMatches(name_pattern, name)) continue;
    bool is_directory;
    if (e->d_type == DT_DIR) {
      is_directory = true;
    } else if (e->d_type == DT_REG) {
      is_directory = false;
    } else {
      struct stat st;
      is_directory = stat((folder + name).c_str(), &st) == 0 && S_ISDIR(st.st_mode);
    }
    entries.push_back(DirEntry{name, is_directory});
  }
  closedir(d);
  std::sort(entries.begin(), entries.end(),
            [](const DirEntry& a, const DirEntry& b) { return NameLess(a.name, b.name); });
  return entries;
}

bool IsReadOnly(const std::string& path) {
  struct stat st;
  return StatPath(ResolvePath(path), &st) && !IsWritableMode(st.st_mode);
}

bool SetReadOnly(const std::string& path, bool read_only) {
  std::string host = ResolvePath(path);
  struct stat st;
  if (host.empty() || stat(host.c_str(), &st) != 0) return false;
  mode_t mode = st.st_mode & 07777;
  mode = read_only ? (mode & ~static_cast<mode_t>(0222)) : (mode | S_IWUSR);
  if (mode == (st.st_mode & 07777)) return true;
  return chmod(host.c_str(), mode) == 0;
}

namespace {

// Writes all n bytes (within the write budget); false on any failure.
bool WriteAll(int fd, const char* bytes, size_t n) {
  for (size_t done = 0; done < n;) {
    size_t allowed = AllowedWrite(n - done);
    if (allowed == 0) return false;
    ssize_t w = write(fd, bytes + done, allowed);
    if (w < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    done += static_cast<size_t>(w);
  }
  return true;
}

}  // namespace

bool ReplaceWith(const std::string& to, const std::function<bool(const WriteBytes& write)>& fill) {
  if (to.empty()) return false;
  struct stat target_stat;
  bool target_exists = stat(to.c_str(), &target_stat) == 0;
  if (target_exists && (S_ISDIR(target_stat.st_mode) || !IsWritableMode(target_stat.st_mode))) {
    errno = EACCES;
    return false;
  }
  std::string drive, directory, name;
  SplitPath(to, &drive, &directory, &name);
  std::string temp = directory + "." + name + ".XXXXXX";
  int out = mkostemp(temp.data(), O_CLOEXEC);
  if (out < 0) return false;
  bool ok = fill([out](const char* bytes, size_t n) { return WriteAll(out, bytes, n); });
  // The new file carries the old one's permissions (a new one those the
  // umask gives a fresh file).
  mode_t mode;
  if (target_exists) {
    mode = target_stat.st_mode & 07777;
  } else {
    mode_t mask = umask(0);
    umask(mask);
    mode = 0666 & ~mask;
  }
  if (ok && fchmod(out, mode) != 0) ok = false;
  if (ok && fsync(out) != 0) ok = false;
  if (close(out) != 0) ok = false;
  if (ok && rename(temp.c_str(), to.c_str()) != 0) ok = false;
  if (!ok) {
    int saved = errno;
    unlink(temp.c_str());
    errno = saved;
    return false;
  }
  // Make the rename itself durable.
  int dir = open(directory.empty() ? "." : directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (dir >= 0) {
    fsync(dir);
    close(dir);
  }
  return true;
}

std::string LastPathComponent(const std::string& path) {
  size_t i = path.size();
  while (i > 0 && !IsSeparator(path[i - 1])) --i;
  return path.substr(i);
}

void RemoveTrailingSeparator(std::string* path) {
  // The root keeps its separator: "/" alone still names a folder.
  while (path->size() > 1 && IsSeparator(path->back())) path->pop_back();
}

void AddTrailingSeparator(std::string* path) {
  if (path->empty() || !IsSeparator(path->back())) path->push_back('/');
}

void SplitPath(const std::string& path, std::string* drive, std::string* directory,
               std::string* file_name) {
  size_t i = path.size();
  while (i > 0 && !IsSeparator(path[i - 1])) --i;
  if (drive != nullptr) drive->clear();
  if (directory != nullptr) *directory = path.substr(0, i);
  if (file_name != nullptr) *file_name = path.substr(i);
}

std::string TempDirectory() {
  const char* dir = getenv("TMPDIR");
  return dir != nullptr && *dir != '\0' ? std::string(dir) : std::string("/tmp");
}

std::string HostProgramPath() {
  std::vector<char> buffer(4096);
  ssize_t n = readlink("/proc/self/exe", buffer.data(), buffer.size() - 1);
  if (n <= 0) return std::string();
  return std::string(buffer.data(), static_cast<size_t>(n));
}

std::string CurrentUserName() {
  long size = sysconf(_SC_GETPW_R_SIZE_MAX);
  std::vector<char> buffer(size > 0 ? static_cast<size_t>(size) : 16384);
  struct passwd pw;
  struct passwd* found = nullptr;
  if (getpwuid_r(geteuid(), &pw, buffer.data(), buffer.size(), &found) == 0 && found != nullptr &&
      found->pw_name != nullptr && found->pw_name[0] != '\0') {
    return found->pw_name;
  }
  for (const char* variable : {"USER", "LOGNAME"}) {
    const char* value = getenv(variable);
    if (value != nullptr && *value != '\0') return value;
  }
  return std::string();
}

}  // namespace qv
