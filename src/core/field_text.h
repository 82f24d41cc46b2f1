// The bytes of one field of a record line, shared by the C writers (which
// put each field out with one write) and the record encoder (which puts a
// whole line together before it goes out).
#ifndef QUORVEX_CORE_FIELD_TEXT_H_
#define QUORVEX_CORE_FIELD_TEXT_H_

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "quorvex/base.h"

namespace qv {

// Appends what WriteField writes for a text of `length` bytes: the marker
// for FO_IAO, the quotes unless FO_UNQUOTED, each double quote as a caret
// and a double quote unless FO_VERBATIM, then a comma or, for
// FO_END_RECORD, carriage return and line feed. The text is not touched.
void AppendFieldBytes(std::string* out, const char* text, size_t length, uint32_t options);
// The text with each double quote escaped, at `at`; returns the end.
char* PutEscapedText(char* at, const char* text, size_t length);
// The marker and the opening quote of a field, and its closing quote and
// separator, as PutFieldBytes writes them around the text.
inline char* PutFieldStart(char* at, uint32_t options) {
  if ((options & FO_IAO) != 0) {
    memcpy(at, ";IAO;", 5);
    at += 5;
  }
  if ((options & FO_UNQUOTED) == 0) *at++ = '"';
  return at;
}
inline char* PutFieldEnd(char* at, uint32_t options) {
  if ((options & FO_UNQUOTED) == 0) *at++ = '"';
  if ((options & FO_END_RECORD) != 0) {
    *at++ = '\r';
    *at++ = '\n';
  } else {
    *at++ = ',';
  }
  return at;
}
// The same bytes written at `at`, which has room for FieldBytesRoom(length)
// of them; returns the end of what was written. A caller that puts a whole
// line together makes room for all its fields at once. Inline: a rewrite
// puts every field of a section through it, and most are a few bytes.
inline size_t FieldBytesRoom(size_t length) {
  return 5 + 2 + 2 * length + 2;
}
inline char* PutFieldBytes(char* at, const char* text, size_t length, uint32_t options) {
  constexpr size_t kShortText = 8;  // shorter: one pass beats the library calls
  if (length == 0 && (options & FO_OPTIONAL) != 0) options |= FO_UNQUOTED;
  at = PutFieldStart(at, options);
  if ((options & FO_VERBATIM) != 0) {
    memcpy(at, text, length);
    at += length;
  } else if (length <= kShortText) {
    for (size_t i = 0; i < length; ++i) {
      if (text[i] == '"') *at++ = '^';
      *at++ = text[i];
    }
  } else {
    at = PutEscapedText(at, text, length);
  }
  return PutFieldEnd(at, options);
}

// The bytes that PutFieldBytes writes for UnsignedFieldText's or
// IntegerFieldText's field, and for FlagFieldText's, written directly: the
// record encoder puts every number and flag of a section through them.
template <class Number>
inline char* PutNumberField(char* at, Number value, uint32_t options) {
  options |= FO_UNQUOTED;
  at = PutFieldStart(at, options);
  if (value != 0 || (options & FO_OPTIONAL) == 0) at = std::to_chars(at, at + 11, value).ptr;
  return PutFieldEnd(at, options);
}
inline char* PutFlagField(char* at, uint32_t value, uint32_t options) {
  options |= FO_UNQUOTED;
  at = PutFieldStart(at, options);
  *at++ = value != 0 ? 'Y' : 'N';
  return PutFieldEnd(at, options);
}

// A typed field's text, and the options with which its writer hands it to
// WriteField.
struct FieldText {
  char text[64];
  uint32_t options;
  size_t length;  // of the text, so that a line writer need not count it
};

FieldText UnsignedFieldText(uint32_t value, uint32_t options);
FieldText IntegerFieldText(int32_t value, uint32_t options);
FieldText DateTimeFieldText(uint32_t value, uint32_t options);
FieldText VersionQuadFieldText(uint32_t high, uint32_t low, uint32_t options);
FieldText FlagString32FieldText(uint32_t word, uint32_t options);
FieldText FlagFieldText(uint32_t value, uint32_t options);
// False, reported as "Unsupported OS Type", for a code with no name.
bool OsTypeFieldText(int os_type, uint32_t options, FieldText* text);

}  // namespace qv

#endif  // QUORVEX_CORE_FIELD_TEXT_H_
