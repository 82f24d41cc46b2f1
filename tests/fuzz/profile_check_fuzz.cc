// Feeds arbitrary bytes to the profile checker as one file of the profile:
// the first byte picks the file's catalogue kind, the rest is the file.
// Every problem is expected and returned as data; what must not happen is
// a crash, a sanitizer report, a report through the error reporter or a
// problem that points past the end of the file.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "fuzz_input.h"
#include "quorvex/quorvex.h"
#include "records/profile_check.h"

namespace {

constexpr const char* kKinds[] = {"AD", "LO", "ILO", "LA",  "RES", "MSG", "MO",
                                  "IN", "PR", "MG",  "SSR", "DSI", "RAM", "OSDL"};

int reports = 0;

int CountingBox(void*, const char*, const char*, int) {
  ++reports;
  return 1;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static bool initialised = (qvfuzz::Initialise(CountingBox), true);
  (void)initialised;
  if (size == 0) return 0;
  const char* kind = kKinds[data[0] % (sizeof kKinds / sizeof kKinds[0])];
  if (!qvfuzz::WriteInput(data + 1, size - 1)) return 0;
  qv::CheckedFile summary;
  std::vector<qv::ProfileProblem> problems =
      qv::CheckProfileFile(qvfuzz::InputPath(), kind, &summary);
  if (reports != 0) abort();  // the checker reports nothing through the reporter
  // A line number beyond the file's lines would send a person nowhere.
  long lines = 1;
  for (size_t i = 1; i < size; ++i) lines += data[i] == '\n';
  for (const qv::ProfileProblem& problem : problems) {
    if (problem.line < 0 || problem.line > lines) abort();
  }
  if (summary.problems != static_cast<int>(problems.size())) abort();
  return 0;
}
