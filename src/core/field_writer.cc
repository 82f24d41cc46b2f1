// Writing one field of a record line, and the typed fields built on it.
//
// Every record family emits its lines through WriteField, so the quoting and
// escaping rules here are the inverse of the field parsers: a double quote
// inside a text becomes a caret and a double quote, and ";IAO;" before the
// first field marks a record that is carried but inactive.

#include <cstdio>
#include <cstring>

#include "platform/file.h"
#include "quorvex/report.h"
#include "quorvex/text.h"
#include "quorvex/writer.h"

namespace qv {
namespace {

// One write, checked the way the engine checks every piece: a short count
// stops the line where it is.
bool WritePiece(File* file, const char* data, size_t length) {
  return file->Write(data, length) == length;
}

}  // namespace
}  // namespace qv

extern "C" {

int WriteField(char* text, QvFile handle, uint32_t options) {
  qv::File* file = qv::File::FromHandle(handle);
  if (file == nullptr) return 0;
  char empty[1] = "";
  if (text == nullptr) text = empty;

  if (text[0] == '\0' && (options & FO_OPTIONAL) != 0) options |= FO_UNQUOTED;
  if ((options & FO_IAO) != 0 && !qv::WritePiece(file, ";IAO;", 5)) return 0;
  if ((options & FO_UNQUOTED) == 0 && !qv::WritePiece(file, "\"", 1)) return 0;

  if ((options & FO_VERBATIM) != 0) {
    if (!qv::WritePiece(file, text, strlen(text))) return 0;
  } else {
    // The text itself is the scratch buffer: what follows each quote is moved
    // to its front, so afterwards it holds only the part after the last one.
    for (char* quote = strchr(text, '"'); quote != nullptr; quote = strchr(text, '"')) {
      if (!qv::WritePiece(file, text, static_cast<size_t>(quote - text))) return 0;
      if (!qv::WritePiece(file, "^\"", 2)) return 0;
      memmove(text, quote + 1, strlen(quote + 1) + 1);
    }
    if (!qv::WritePiece(file, text, strlen(text))) return 0;
  }

  if ((options & FO_UNQUOTED) == 0 && !qv::WritePiece(file, "\"", 1)) return 0;
  if ((options & FO_END_RECORD) != 0) return qv::WritePiece(file, "\r\n", 2) ? 1 : 0;
  return qv::WritePiece(file, ",", 1) ? 1 : 0;
}

int WriteUnsignedField(uint32_t value, QvFile file, uint32_t options) {
  char text[32] = "";
  if (value != 0 || (options & FO_OPTIONAL) == 0) {
    snprintf(text, sizeof text, "%lu", static_cast<unsigned long>(value));
  }
  WriteField(text, file, options | FO_UNQUOTED);
  return 1;
}

int WriteIntegerField(int32_t value, QvFile file, uint32_t options) {
  char text[32] = "";
  if (value != 0 || (options & FO_OPTIONAL) == 0) {
    snprintf(text, sizeof text, "%d", static_cast<int>(value));
  }
  WriteField(text, file, options | FO_UNQUOTED);
  return 1;
}

int WriteDateTimeField(uint32_t value, QvFile file, uint32_t options) {
  char text[QV_LINE_SIZE] = "";
  FormatDateTime(value, text);  // leaves the text empty for 0
  WriteField(text, file, options & ~FO_UNQUOTED);
  return 1;
}

int FormatVersionQuad(char* destination, const uint32_t* pair) {
  uint32_t high = pair[0];
  uint32_t low = pair[1];
  if (high == 0 && low == 0) {
    destination[0] = '\0';
    return 1;
  }
  // Each group is 16 bits, so the four numbers and blanks fit in 24 bytes.
  snprintf(destination, 24, "%d %d %d %d", static_cast<int>(high >> 16),
           static_cast<int>(high & 0xFFFF), static_cast<int>(low >> 16),
           static_cast<int>(low & 0xFFFF));
  return 1;
}

int WriteVersionQuadField(uint32_t high, uint32_t low, QvFile file, uint32_t options) {
  char text[32];
  const uint32_t pair[2] = {high, low};
  FormatVersionQuad(text, pair);
  WriteField(text, file, options | FO_UNQUOTED);
  return 1;
}

int WriteFlagString32Field(uint32_t word, QvFile file, uint32_t options) {
  char text[33];
  for (int i = 0; i < 32; ++i) {
    // The first letter is the most significant bit.
    text[i] = (word & (0x80000000u >> i)) != 0 ? 'Y' : 'N';
  }
  text[32] = '\0';
  WriteField(text, file, options & ~FO_UNQUOTED);
  return 1;
}

int WriteFlagField(uint32_t value, QvFile file, uint32_t options) {
  char text[2] = {value != 0 ? 'Y' : 'N', '\0'};
  WriteField(text, file, options | FO_UNQUOTED);
  return 1;
}

int WriteOsTypeField(int osType, QvFile file, uint32_t options) {
  static const char* const kNames[] = {"WIN32_S", "WIN32_WINDOWS", "WIN32_NT", "WIN16"};
  if (osType < 0 || osType > 3) {
    // The same call as the reader's, line prefix included.
    ReportError("Unsupported OS Type", 1);
    return 0;
  }
  char text[16];
  snprintf(text, sizeof text, "%s", kNames[osType]);
  WriteField(text, file, options & ~FO_UNQUOTED);
  return 1;
}

}  // extern "C"
