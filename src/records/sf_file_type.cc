// The type of a shipped file follows from its name's extension; the number
// a line holds in its place is never trusted.
#include <strings.h>

#include <cstring>

#include "quorvex/filegroups.h"

namespace {

constexpr const char* kExtensions[] = {
    "DLL", "FOT", "EXE", "DRV", "MIF", "VXD", "386", "TTF", "PFC", "REG", "HLP", "STY",
    "LAB", "QCS", "MST", "SHW", "ALL", "SUP", "INI", "DRS", "OCX", "UWL", "FLT", "CBS",
};

}  // namespace

// The first extension has type 2; 1 is any other file.
extern "C" uint8_t MPSFFileTypeOf(const char* fileName) {
  const char* dot = fileName != nullptr ? strrchr(fileName, '.') : nullptr;
  if (dot == nullptr) return 1;
  uint8_t type = 2;
  for (const char* extension : kExtensions) {
    if (strcasecmp(dot + 1, extension) == 0) return type;
    ++type;
  }
  return 1;
}
