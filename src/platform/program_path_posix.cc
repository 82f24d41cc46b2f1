// Finding a program on POSIX: a path, or the first runnable file on PATH.

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <vector>

#include "platform/fs.h"
#include "platform/program_path.h"

namespace qv {

namespace {

// 0 when path names a program that can be run, else the errno that says why not.
int CheckProgram(const std::string& path) {
  struct stat st;
  if (stat(path.c_str(), &st) != 0) return errno;
  if (S_ISDIR(st.st_mode) || (st.st_mode & 0111) == 0) return EACCES;
  return 0;
}

std::string Absolute(const std::string& path) {
  if (!path.empty() && path[0] == '/') return path;
  std::vector<char> cwd(4096);
  if (getcwd(cwd.data(), cwd.size()) == nullptr) return path;
  return std::string(cwd.data()) + "/" + path;
}

}  // namespace

int FindProgram(const std::string& word, std::string* path) {
  if (word.empty()) return ENOENT;
  if (word.find_first_of("/\\") != std::string::npos) {
    *path = Absolute(ResolvePath(word));
    return CheckProgram(*path);
  }
  const char* search = getenv("PATH");
  std::string dirs = search != nullptr ? search : "/usr/local/bin:/usr/bin:/bin";
  int result = ENOENT;
  size_t start = 0;
  for (;;) {
    size_t end = dirs.find(':', start);
    std::string dir =
        dirs.substr(start, end == std::string::npos ? std::string::npos : end - start);
    std::string candidate = (dir.empty() ? std::string(".") : dir) + "/" + word;
    int code = CheckProgram(candidate);
    if (code == 0) {
      *path = Absolute(candidate);
      return 0;
    }
    if (code == EACCES) result = EACCES;  // found, but not runnable: say so unless a later one runs
    if (end == std::string::npos) break;
    start = end + 1;
  }
  return result;
}

}  // namespace qv
