// Passing over the lines of an old section that a rewrite leaves out.
#ifndef QUORVEX_CORE_PLAIN_LINES_H_
#define QUORVEX_CORE_PLAIN_LINES_H_

#include <cstdint>

#include "quorvex/base.h"

namespace qv {

// Passes over the lines that ReadRecordLine in COMMENT_MODE_SKIP would pass
// over without a word: whole lines (within the reader's buffer, without a
// NUL byte) whose first non-blank character is neither "[" nor ";". Each
// counts as a line read. It stops before any other line, which the caller
// reads with ReadRecordLine; looking for the ends in the file's cached
// block, it costs a rewrite far less than reading each line.
void SkipPlainLines(QvFile file);
// The same for lines whose first non-blank character is none of `firsts`
// (which must not hold NUL): FindSection passes all but headers so.
void SkipLinesWithout(QvFile file, const char* firsts);

// How many lines ReadRecordLine has met so far (in any comment mode) whose
// last character other than blanks is a backslash, where a record or a
// comment may go on in the next line. While it meets none, every comment
// mode ends a section at the same line: the next header or the file's end.
uint64_t ContinuableLineCount();

}  // namespace qv

#endif  // QUORVEX_CORE_PLAIN_LINES_H_
