// Which program the version-control command word "ss" starts on POSIX.
//
// On Linux the `ss` on PATH is nearly always iproute2's socket-statistics
// tool, which must never be handed a check-out command. Without
// $QUORVEX_SS_CLIENT the `ss` found on PATH is used only when its file
// (symbolic links followed) does not contain the text "iproute2", which
// iproute2's programs carry. The file is read, never started; a file that
// cannot be read is not trusted. The answer is kept for the process, and
// looked for again only when PATH changes.

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "platform/process.h"
#include "platform/program_path.h"

namespace qv {

namespace {

constexpr char kClientVariable[] = "QUORVEX_SS_CLIENT";
constexpr char kForeignMarker[] = "iproute2";

// True when the file holds the marker; also true when it cannot be read.
bool HoldsMarker(const std::string& path) {
  int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return true;
  const size_t marker = strlen(kForeignMarker);
  std::vector<char> block(64 * 1024);
  std::string window;  // the tail of the last block, then the new block
  bool found = false;
  for (;;) {
    ssize_t r = read(fd, block.data(), block.size());
    if (r < 0 && errno == EINTR) continue;
    if (r < 0) {
      found = true;
      break;
    }
    if (r == 0) break;
    window.append(block.data(), static_cast<size_t>(r));
    if (window.find(kForeignMarker) != std::string::npos) {
      found = true;
      break;
    }
    // Keep enough for a marker that spans two blocks.
    window.erase(0, window.size() - (marker - 1));
  }
  close(fd);
  return found;
}

std::string ClientOnPath() {
  std::string found;
  if (FindProgram("ss", &found) != 0) return "";
  char real[PATH_MAX];
  if (realpath(found.c_str(), real) == nullptr) return "";
  if (HoldsMarker(real)) return "";
  return real;
}

}  // namespace

std::string VersionControlClient() {
  const char* configured = getenv(kClientVariable);
  if (configured != nullptr && *configured != '\0') return configured;
  static bool decided = false;
  static std::string decided_for;  // the PATH the answer was found on
  static std::string client;
  const char* search = getenv("PATH");
  std::string current = search != nullptr ? search : "";
  if (!decided || current != decided_for) {
    client = ClientOnPath();
    decided_for = current;
    decided = true;
  }
  return client;
}

}  // namespace qv
