// Finding a program on Windows: a path, or the first program on PATH, with
// ".exe" added to a name without an extension as CreateProcess adds it.

#include <cerrno>
#include <vector>

#include "platform/fs.h"
#include "platform/program_path.h"
#include "platform/win32.h"

namespace qv {

namespace {

int CheckProgram(const std::string& path) {
  DWORD a = GetFileAttributesA(path.c_str());
  if (a == INVALID_FILE_ATTRIBUTES) return ErrnoFromWin32(GetLastError());
  if ((a & FILE_ATTRIBUTE_DIRECTORY) != 0) return EACCES;
  return 0;
}

std::string Absolute(const std::string& path) {
  std::vector<char> buffer(MAX_PATH);
  for (;;) {
    DWORD n =
        GetFullPathNameA(path.c_str(), static_cast<DWORD>(buffer.size()), buffer.data(), nullptr);
    if (n == 0) return path;
    if (n < buffer.size()) return std::string(buffer.data(), n);
    buffer.resize(n + 1);
  }
}

bool HasExtension(const std::string& word) {
  std::string name = LastPathComponent(word);
  return name.find('.') != std::string::npos;
}

}  // namespace

int FindProgram(const std::string& word, std::string* path) {
  if (word.empty()) return ENOENT;
  if (word.find_first_of("/\\:") != std::string::npos) {
    std::string candidate = Absolute(ResolvePath(word));
    int code = CheckProgram(candidate);
    if (code == ENOENT && !HasExtension(candidate)) {
      code = CheckProgram(candidate + ".exe");
      if (code == 0) candidate += ".exe";
    }
    *path = candidate;
    return code;
  }
  std::vector<char> buffer(MAX_PATH);
  for (;;) {
    DWORD n = SearchPathA(nullptr, word.c_str(), ".exe", static_cast<DWORD>(buffer.size()),
                          buffer.data(), nullptr);
    if (n == 0) return ENOENT;
    if (n < buffer.size()) {
      *path = std::string(buffer.data(), n);
      return CheckProgram(*path);
    }
    buffer.resize(n + 1);
  }
}

}  // namespace qv
