// Physical lines and section headers.
//
// A line is read the way the engine always read it: take a whole buffer's
// worth of bytes, cut at the first line feed and seek back over the rest.
// qv::File keeps the block in memory, so this costs no system call per line,
// and the positions (including the byte lost after a line that fills the
// buffer) stay exactly those of the plain reads.
#include <algorithm>
#include <cstdio>
#include <cstring>

#include "core/report_capture.h"
#include "core/state.h"
#include "core/text_chars.h"
#include "platform/file.h"
#include "quorvex/text.h"

extern "C" {

int ReadProfileLine(QvFile file, char* buffer, int size) {
  if (size <= 0) return 0;
  buffer[0] = '\0';
  qv::File* f = qv::File::FromHandle(file);
  if (f == nullptr) return 0;
  // The bytes come in pieces until the line's end shows: a whole buffer
  // for each short line would cost far more than the line.
  constexpr size_t kPiece = 512;
  const size_t limit = static_cast<size_t>(size - 1);
  size_t have = 0;
  const char* end = nullptr;  // the first line feed or NUL byte
  while (have < limit && end == nullptr) {
    long got = f->Read(buffer + have, std::min(kPiece, limit - have));
    if (got <= 0) break;
    const char* piece = buffer + have;
    const size_t text = strnlen(piece, static_cast<size_t>(got));  // up to a NUL byte
    end = static_cast<const char*>(memchr(piece, '\n', text));
    if (end == nullptr && text < static_cast<size_t>(got)) end = piece + text;
    have += static_cast<size_t>(got);
  }
  if (have == 0) return 0;
  buffer[have] = '\0';
  size_t length = have;
  if (end != nullptr) {
    length = static_cast<size_t>(end - buffer);
    // A NUL byte ends the line early: the line cannot be read whole.
    if (*end == '\0') qv::NoteCutLine();
    buffer[length] = '\0';
  } else if (have == limit) {
    // A full buffer ends the line, and the byte after it is skipped.
    qv::NoteCutLine();
  }
  // Stand just after the line feed; without one, one byte past the block.
  f->Seek(static_cast<int64_t>(length) - static_cast<int64_t>(have) + 1, SEEK_CUR);
  ++qv::State().parse_line;
  return 1;
}

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
  while (ReadProfileLine(file, line, sizeof line)) {
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
