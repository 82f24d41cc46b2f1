// Physical lines and section headers.
//
// A line is read the way the engine always read it: up to a buffer's worth
// of bytes, cut at the first line feed (or NUL byte), the position left
// just after it. The line's end is found in qv::File's cached block, so
// this costs no system call per line, and the positions (including the
// byte lost after a line that fills the buffer) stay exactly those of the
// plain reads.
#include <algorithm>
#include <cstdio>
#include <cstring>

#include "core/plain_lines.h"
#include "core/read_line.h"
#include "core/report_capture.h"
#include "core/state.h"
#include "core/text_chars.h"
#include "platform/file.h"
#include "quorvex/text.h"

namespace qv {

long ReadLine(QvFile file, char* buffer, int size) {
  if (size <= 0) return -1;
  buffer[0] = '\0';
  File* f = File::FromHandle(file);
  if (f == nullptr) return -1;
  // The line's end is looked for in the file's cached block and only the
  // line is copied: most lines are far shorter than the buffer.
  const size_t limit = static_cast<size_t>(size - 1);
  size_t have = 0;
  bool ended = false;  // at a line feed or a NUL byte
  while (have < limit && !ended) {
    const char* bytes = nullptr;
    size_t got = f->Peek(&bytes);
    if (got == 0) break;
    got = std::min(got, limit - have);
    const char* feed = static_cast<const char*>(memchr(bytes, '\n', got));
    size_t take = feed != nullptr ? static_cast<size_t>(feed - bytes) : got;
    const size_t text = strnlen(bytes, take);  // up to a NUL byte
    if (text < take || feed != nullptr) {
      // A NUL byte ends the line early: the line cannot be read whole.
      if (text < take) NoteCutLine();
      take = text;
      ended = true;
    }
    memcpy(buffer + have, bytes, take);
    have += take;
    // Stand just after the line's end (the line feed or NUL byte).
    f->Seek(static_cast<int64_t>(take) + (ended ? 1 : 0), SEEK_CUR);
  }
  if (have == 0 && !ended) return -1;
  buffer[have] = '\0';
  if (!ended) {
    // A full buffer ends the line, and the byte after it is skipped; at the
    // end of the file, the position goes one byte past it.
    if (have == limit) NoteCutLine();
    f->Seek(1, SEEK_CUR);
  }
  ++State().parse_line;
  return static_cast<long>(have);
}

}  // namespace qv

extern "C" {

int ReadProfileLine(QvFile file, char* buffer, int size) {
  return qv::ReadLine(file, buffer, size) >= 0 ? 1 : 0;
}

}  // extern "C"

namespace qv {

void SkipLinesWithout(QvFile file, const char* firsts) {
  File* f = File::FromHandle(file);
  if (f == nullptr) return;
  constexpr size_t kLimit = QV_LINE_SIZE - 1;  // what ReadRecordLine's buffer holds
  for (;;) {
    const char* bytes = nullptr;
    const size_t got = f->Peek(&bytes);
    size_t passed = 0;  // the bytes of the whole plain lines passed in this block
    while (passed < got) {
      const char* line = bytes + passed;
      const size_t left = std::min(got - passed, kLimit);
      const char* feed = static_cast<const char*>(memchr(line, '\n', left));
      // A line that runs past the block or the buffer is left to the reader.
      if (feed == nullptr) break;
      const size_t length = static_cast<size_t>(feed - line);
      if (strnlen(line, length) != length) break;  // a NUL byte: a cut line
      const char* first = line;
      while (first < feed && IsBlank(*first)) ++first;
      if (first < feed && strchr(firsts, *first) != nullptr) break;
      passed += length + 1;
      ++State().parse_line;
    }
    if (passed == 0) return;
    f->Seek(static_cast<int64_t>(passed), SEEK_CUR);
    if (passed < got) return;
  }
}

void SkipPlainLines(QvFile file) {
  SkipLinesWithout(file, "[;");
}

}  // namespace qv

extern "C" {

void SkipBlanks(char** cursor) {
  qv::SkipBlankChars(cursor);
}

void TrimTrailingBlanks(char* text) {
  size_t n = strlen(text);
  while (n > 1 && qv::IsBlank(text[n - 1])) --n;
  text[n] = '\0';
}

int FindSection(QvFile file, const char* section) {
  qv::File* f = qv::File::FromHandle(file);
  if (f == nullptr || section == nullptr) return 0;
  // The line counter runs on: reported line numbers count every line read
  // since SetParseFile, not the line's place in the file.
  f->Seek(0, SEEK_SET);
  char line[QV_LINE_SIZE];
  for (;;) {
    // Lines that cannot be a header are passed in the cached block, where
    // the reader would copy each whole first.
    qv::SkipLinesWithout(file, "[");
    if (!ReadProfileLine(file, line, sizeof line)) break;
    char* p = line;
    qv::SkipBlankChars(&p);
    if (*p != '[') continue;
    char* name = p + 1;
    char* close = strchr(name, ']');
    if (close != nullptr) *close = '\0';
    if (qv::EqualsIgnoreCase(name, section)) return 1;
  }
  return 0;
}

}  // extern "C"
