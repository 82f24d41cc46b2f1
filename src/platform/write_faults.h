// A disk that fills up on request, for the tests of what a failed write
// leaves behind. Once the budget of bytes is spent, every write to a file
// fails as a write to a full disk does (ENOSPC). A test sets the budget
// directly; a whole process (the tool, under a test driver) takes it from
// QUORVEX_FAIL_WRITES_AFTER=N. Without either, writes are never limited.
#ifndef QUORVEX_PLATFORM_WRITE_FAULTS_H_
#define QUORVEX_PLATFORM_WRITE_FAULTS_H_

#include <cstddef>
#include <cstdint>

namespace qv {

// How many of n bytes may go to a file now, taken from the budget; 0, with
// errno set to ENOSPC, once it is spent.
size_t AllowedWrite(size_t n);

// Sets the bytes left to write; a negative budget removes the limit.
void SetWriteBudget(int64_t bytes);

}  // namespace qv

#endif  // QUORVEX_PLATFORM_WRITE_FAULTS_H_
