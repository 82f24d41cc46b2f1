#include "platform/write_faults.h"

#include <cerrno>
#include <cstdlib>

namespace qv {
namespace {

int64_t InitialBudget() {
  const char* text = getenv("QUORVEX_FAIL_WRITES_AFTER");
  if (text == nullptr || *text == '\0') return -1;
  char* end = nullptr;
  long long bytes = strtoll(text, &end, 10);
  return end != nullptr && *end == '\0' && bytes >= 0 ? bytes : -1;
}

int64_t& Budget() {
  static int64_t budget = InitialBudget();
  return budget;
}

}  // namespace

size_t AllowedWrite(size_t n) {
  int64_t& budget = Budget();
  if (budget < 0) return n;
  size_t allowed = static_cast<uint64_t>(budget) < n ? static_cast<size_t>(budget) : n;
  budget -= static_cast<int64_t>(allowed);
  if (allowed == 0 && n != 0) errno = ENOSPC;
  return allowed;
}

void SetWriteBudget(int64_t bytes) {
  Budget() = bytes < 0 ? -1 : bytes;
}

}  // namespace qv
