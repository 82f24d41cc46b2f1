// generate_profile DIR MODULES FILES [EXAMPLE]: a synthetic Master Profile
// for measuring at scale. DIR (which must not exist) gets a copy of the
// example profile, so that every record kind is there, and MODULES more
// modules, "Generated N" 1.0, each with FILES shipped files. Prints the
// profile's size in bytes.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "bench_profile.h"

namespace fs = std::filesystem;

int main(int argc, char** argv) {
  if (argc < 4) {
    fprintf(stderr, "usage: generate_profile DIR MODULES FILES [EXAMPLE]\n");
    return 2;
  }
  const fs::path dir = argv[1];
  const long modules = strtol(argv[2], nullptr, 10);
  const int files = static_cast<int>(strtol(argv[3], nullptr, 10));
  const fs::path example = argc > 4 ? argv[4] : QUORVEX_EXAMPLE_PROFILE;
  std::error_code ec;
  if (fs::exists(dir, ec)) {
    fprintf(stderr, "generate_profile: %s exists\n", dir.c_str());
    return 1;
  }
  fs::copy(example, dir, fs::copy_options::recursive, ec);
  if (ec) {
    fprintf(stderr, "generate_profile: cannot copy %s: %s\n", example.c_str(),
            ec.message().c_str());
    return 1;
  }
  for (long m = 0; m < modules; ++m) {
    // Eight characters and an extension: a name every file system takes.
    char name[32];
    snprintf(name, sizeof name, "GN%06ld.MO", m);
    if (!qvbench::WriteModuleFile((dir / "MODULES" / name).string(),
                                  "Generated " + std::to_string(m), "1.0", files)) {
      fprintf(stderr, "generate_profile: cannot write %s\n", name);
      return 1;
    }
  }
  uintmax_t bytes = 0;
  for (const auto& entry : fs::recursive_directory_iterator(dir)) {
    if (entry.is_regular_file()) bytes += entry.file_size();
  }
  printf("%ju\n", bytes);
  return 0;
}
