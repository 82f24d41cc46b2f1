// Environment variables on Windows go through the C runtime, whose own copy
// getenv reads, and it passes them on to the process's block, which child
// processes inherit.

#include <cstdio>
#include <cstdlib>

#include "platform/environment.h"
#include "platform/win32.h"

namespace qv {

bool SetEnvironmentValue(const std::string& name, const char* value) {
  // An empty value removes a variable there, so removal is spelled that way.
  return _putenv_s(name.c_str(), value != nullptr ? value : "") == 0 &&
         SetEnvironmentVariableA(name.c_str(), value) != 0;
}

std::string MakeUniqueDirectory(const std::string& base, const std::string& prefix) {
  static const char kLetters[] = "abcdefghijklmnopqrstuvwxyz0123456789";
  LARGE_INTEGER counter;
  QueryPerformanceCounter(&counter);
  unsigned long long seed = static_cast<unsigned long long>(counter.QuadPart) ^
                            (static_cast<unsigned long long>(GetCurrentProcessId()) << 32);
  for (int attempt = 0; attempt < 100; ++attempt) {
    std::string path = base + "\\" + prefix;
    for (int i = 0; i < 6; ++i) {
      seed = seed * 6364136223846793005ULL + 1442695040888963407ULL;
      path += kLetters[(seed >> 33) % (sizeof(kLetters) - 1)];
    }
    if (CreateDirectoryA(path.c_str(), nullptr)) return path;
    if (GetLastError() != ERROR_ALREADY_EXISTS) break;
  }
  return std::string();
}

char PathListSeparator() {
  return ';';
}

}  // namespace qv
