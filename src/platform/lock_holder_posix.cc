// Who holds a lock file on POSIX: the lock's owner as fcntl reports it,
// else the process whose open files include the lock file.

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "platform/lock_holder.h"

namespace qv {

namespace {

// The process whose open files include the lock file, by its /proc entry.
std::string ProcessHolding(const struct stat& lock) {
  DIR* proc = opendir("/proc");
  if (proc == nullptr) return "";
  std::string found;
  while (dirent* entry = readdir(proc)) {
    if (!found.empty()) break;
    std::string pid = entry->d_name;
    if (pid.find_first_not_of("0123456789") != std::string::npos) continue;
    if (pid == std::to_string(getpid())) continue;
    std::string fds = "/proc/" + pid + "/fd";
    DIR* dir = opendir(fds.c_str());
    if (dir == nullptr) continue;
    while (dirent* fd = readdir(dir)) {
      struct stat st;
      if (fd->d_name[0] == '.' || stat((fds + "/" + fd->d_name).c_str(), &st) != 0) continue;
      if (st.st_dev == lock.st_dev && st.st_ino == lock.st_ino) {
        std::string name;
        std::ifstream comm("/proc/" + pid + "/comm");
        std::getline(comm, name);
        found = "pid " + pid + (name.empty() ? "" : ", " + name);
        break;
      }
    }
    closedir(dir);
  }
  closedir(proc);
  return found;
}

}  // namespace

std::optional<std::string> LockFileHolder(const std::string& lock_path) {
  int fd = open(lock_path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return std::nullopt;
  struct flock probe = {};
  probe.l_type = F_WRLCK;
  probe.l_whence = SEEK_SET;
  bool asked = false;
#ifdef F_OFD_GETLK
  asked = fcntl(fd, F_OFD_GETLK, &probe) == 0;
#endif
  if (!asked) {
    probe = {};
    probe.l_type = F_WRLCK;
    asked = fcntl(fd, F_GETLK, &probe) == 0;
  }
  struct stat st;
  bool have_stat = fstat(fd, &st) == 0;
  close(fd);
  if (!asked || probe.l_type == F_UNLCK) return std::nullopt;
  // Open file description locks name no process; the holder's open files do.
  std::string holder;
  if (probe.l_pid > 0) {
    std::string name;
    std::ifstream comm("/proc/" + std::to_string(probe.l_pid) + "/comm");
    std::getline(comm, name);
    holder = "pid " + std::to_string(probe.l_pid) + (name.empty() ? "" : ", " + name);
  }
  if (holder.empty() && have_stat) holder = ProcessHolding(st);
  return holder;
}

}  // namespace qv
