// Copying a profile file around one section, so that a family can write the
// section's new records between the head and the tail while every other
// byte of the file stays as it was.

#include <cstdio>
#include <cstring>

#include "core/plain_lines.h"
#include "core/text_chars.h"
#include "platform/file.h"
#include "quorvex/text.h"
#include "quorvex/writer.h"

namespace qv {
namespace {

char AsciiLower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// True when the line is a header "[name]" of the section (names ignore
// case; the name runs to the first "]" or to the end of the line).
bool IsHeaderOf(char* line, const char* section) {
  char* cursor = line;
  qv::SkipBlankChars(&cursor);
  if (*cursor != '[') return false;
  const char* name = cursor + 1;
  size_t length = 0;
  while (name[length] != '\0' && name[length] != ']') ++length;
  if (strlen(section) != length) return false;
  for (size_t i = 0; i < length; ++i) {
    if (AsciiLower(name[i]) != AsciiLower(section[i])) return false;
  }
  return true;
}

// The copiers never fail: what cannot be written is left to the final
// replacement, which the caller checks.
void Put(File* file, const char* data, size_t length) {
  if (file != nullptr) file->Write(data, length);
}

// Copies the physical lines from the input's position to its end. A line
// keeps its carriage return, if it had one, and always gets a line feed.
void CopyRemainingLines(QvFile input, File* output) {
  char line[QV_LINE_SIZE];
  while (ReadProfileLine(input, line, sizeof line) != 0) {
    Put(output, line, strlen(line));
    Put(output, "\n", 1);
  }
}

void Rewind(QvFile handle) {
  File* file = File::FromHandle(handle);
  if (file != nullptr) file->Seek(0, SEEK_SET);
}

}  // namespace
}  // namespace qv

extern "C" {

int CopyHeadThroughSection(QvFile input, QvFile output, const char* section) {
  qv::File* out = qv::File::FromHandle(output);
  if (section == nullptr) section = "";
  qv::Rewind(input);
  char line[QV_LINE_SIZE];
  while (ReadProfileLine(input, line, sizeof line) != 0) {
    qv::Put(out, line, strlen(line));
    qv::Put(out, "\n", 1);
    if (qv::IsHeaderOf(line, section)) return 1;
  }
  // The file lacks the section: it is appended at the end.
  char header[QV_LINE_SIZE];
  int length = snprintf(header, sizeof header, "[%s]\n", section);
  if (length > static_cast<int>(sizeof header) - 1) length = static_cast<int>(sizeof header) - 1;
  qv::Put(out, header, static_cast<size_t>(length));
  return 1;
}

int CopyTailAfterSection(QvFile input, QvFile output, const char* section) {
  qv::File* out = qv::File::FromHandle(output);
  qv::Rewind(input);
  if (section != nullptr && section[0] != '\0' && FindSection(input, section) == 0) {
    // The head copy has already copied the whole input.
    return 1;
  }
  // Mode 4 returns only comments, so this passes over every line of the old
  // section and stops on the next header (or at the end of the file).
  char record[QV_LINE_SIZE];
  uint32_t flags = 0;
  do {
    qv::SkipPlainLines(input);
  } while (ReadRecordLine(input, record, &flags, COMMENT_MODE_SKIP) != 0);
  qv::CopyRemainingLines(input, out);
  return 1;
}

}  // extern "C"
