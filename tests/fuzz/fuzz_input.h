// The file a fuzz target hands its input to the engine through: one file in
// a private temporary folder, made on the first input and removed at exit.
#ifndef QUORVEX_TESTS_FUZZ_FUZZ_INPUT_H_
#define QUORVEX_TESTS_FUZZ_FUZZ_INPUT_H_

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/environment.h"
#include "platform/fs.h"
#include "quorvex/quorvex.h"

namespace qvfuzz {

inline std::string& InputPath() {
  static std::string path;
  return path;
}

inline void RemoveInput() {
  std::remove(InputPath().c_str());
  std::remove(InputPath().substr(0, InputPath().rfind('/')).c_str());
}

// Installs box as the host's message box (every report passes through it)
// and makes the input's folder. The folder is made once per process even
// where several targets share it (the regression test runs them all).
inline void Initialise(int (*box)(void*, const char*, const char*, int)) {
  QuorvexHost host = {nullptr, box, nullptr, nullptr};
  QuorvexSetHost(&host);
  if (!InputPath().empty()) return;
  std::string folder = qv::MakeUniqueDirectory(qv::TempDirectory(), "qvfuzz.");
  if (folder.empty()) abort();
  InputPath() = folder + "/input.txt";
  atexit(RemoveInput);
}

// Puts the bytes into the input file, replacing what it held.
inline bool WriteInput(const uint8_t* data, size_t size) {
  FILE* out = fopen(InputPath().c_str(), "wb");
  if (out == nullptr) return false;
  bool ok = fwrite(data, 1, size, out) == size;
  return fclose(out) == 0 && ok;
}

}  // namespace qvfuzz

#endif  // QUORVEX_TESTS_FUZZ_FUZZ_INPUT_H_
