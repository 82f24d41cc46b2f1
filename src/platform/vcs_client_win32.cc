// Which program the version-control command word "ss" starts on Windows:
// $QUORVEX_SS_CLIENT when set, else the client's own ss.exe found on PATH.
// Windows has no other well-known program of that name.

#include <cstdlib>

#include "platform/process.h"
#include "platform/program_path.h"

namespace qv {

std::string VersionControlClient() {
  const char* configured = getenv("QUORVEX_SS_CLIENT");
  if (configured != nullptr && *configured != '\0') return configured;
  std::string found;
  if (FindProgram("ss", &found) != 0) return std::string();
  return found;
}

}  // namespace qv
