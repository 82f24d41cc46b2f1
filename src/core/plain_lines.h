// Passing over the lines of an old section that a rewrite leaves out.
#ifndef QUORVEX_CORE_PLAIN_LINES_H_
#define QUORVEX_CORE_PLAIN_LINES_H_

#include "quorvex/base.h"

namespace qv {

// Passes over the lines that ReadRecordLine in COMMENT_MODE_SKIP would pass
// over without a word: whole lines (within the reader's buffer, without a
// NUL byte) whose first non-blank character is neither "[" nor ";". Each
// counts as a line read. It stops before any other line, which the caller
// reads with ReadRecordLine; looking for the ends in the file's cached
// block, it costs a rewrite far less than reading each line.
void SkipPlainLines(QvFile file);

}  // namespace qv

#endif  // QUORVEX_CORE_PLAIN_LINES_H_
