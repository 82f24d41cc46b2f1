// Physical lines and section headers.
//
// A line is read the way the engine always read it: take a whole buffer's
// worth of bytes, cut at the first line feed and seek back over the rest.
// qv::File keeps the block in memory, so this costs no system call per line,
// and the positions (including the byte lost after a line that fills the
// buffer) stay exactly those of the plain reads.
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
  long read = f->Read(buffer, static_cast<size_t>(size - 1));
  if (read <= 0) return 0;
  buffer[read] = '\0';
  char* feed = strchr(buffer, '\n');
  if (feed != nullptr) {
    *feed = '\0';
  } else if (strlen(buffer) < static_cast<size_t>(read) || read == size - 1) {
    // A NUL byte or a full buffer ends the line early, and the byte after
    // that end is skipped: the line cannot be read whole.
    qv::NoteCutLine();
  }
  // Stand just after the line feed; without one, one byte past the block.
  f->Seek(static_cast<int64_t>(strlen(buffer)) - read + 1, SEEK_CUR);
  ++qv::State().parse_line;
  return 1;
}

void SkipBlanks(char** cursor) {
  while (qv::IsBlank(**cursor)) ++*cursor;
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
    SkipBlanks(&p);
    if (*p != '[') continue;
    char* name = p + 1;
    char* close = strchr(name, ']');
    if (close != nullptr) *close = '\0';
    if (qv::EqualsIgnoreCase(name, section)) return 1;
  }
  return 0;
}

}  // extern "C"
