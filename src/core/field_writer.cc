// Writing one field of a record line, and the typed fields built on it.
//
// Every record family emits its lines through these bytes, so the quoting
// and escaping rules here are the inverse of the field parsers: a double
// quote inside a text becomes a caret and a double quote, and ";IAO;" before
// the first field marks a record that is carried but inactive.

#include <array>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <string>

#include "core/field_text.h"
#include "platform/file.h"
#include "quorvex/report.h"
#include "quorvex/text.h"
#include "quorvex/writer.h"

namespace qv {

char* PutEscapedText(char* at, const char* text, size_t length) {
  for (const char* quote = static_cast<const char*>(memchr(text, '"', length)); quote != nullptr;
       quote = static_cast<const char*>(memchr(text, '"', length))) {
    const size_t before = static_cast<size_t>(quote - text);
    memcpy(at, text, before);
    at += before;
    *at++ = '^';
    *at++ = '"';
    text = quote + 1;
    length -= before + 1;
  }
  memcpy(at, text, length);
  return at + length;
}

void AppendFieldBytes(std::string* out, const char* text, size_t length, uint32_t options) {
  const size_t start = out->size();
  out->resize(start + FieldBytesRoom(length));
  char* end = PutFieldBytes(out->data() + start, text, length, options);
  out->resize(static_cast<size_t>(end - out->data()));
}

namespace {

// A number's digits ("%lu" or "%d"); an optional field leaves 0 empty.
template <class Number>
FieldText NumberFieldText(Number value, uint32_t options) {
  FieldText field{"", options | FO_UNQUOTED, 0};
  if (value != 0 || (options & FO_OPTIONAL) == 0) {
    char* end = std::to_chars(field.text, field.text + sizeof field.text - 1, value).ptr;
    *end = '\0';
    field.length = static_cast<size_t>(end - field.text);
  }
  return field;
}

}  // namespace

FieldText UnsignedFieldText(uint32_t value, uint32_t options) {
  return NumberFieldText(value, options);
}

FieldText IntegerFieldText(int32_t value, uint32_t options) {
  return NumberFieldText(value, options);
}

FieldText DateTimeFieldText(uint32_t value, uint32_t options) {
  FieldText field{"", options & ~FO_UNQUOTED, 0};
  FormatDateTime(value, field.text);  // leaves the text empty for 0
  field.length = strlen(field.text);
  return field;
}

FieldText VersionQuadFieldText(uint32_t high, uint32_t low, uint32_t options) {
  FieldText field{"", options | FO_UNQUOTED, 0};
  const uint32_t pair[2] = {high, low};
  FormatVersionQuad(field.text, pair);
  field.length = strlen(field.text);
  return field;
}

FieldText FlagString32FieldText(uint32_t word, uint32_t options) {
  // Y and N need no escaping: the letters go out as they stand.
  FieldText field{"", (options & ~FO_UNQUOTED) | FO_VERBATIM, 32};
  // The first letter is the most significant bit; a byte at a time, since
  // every shipped file's line has several such fields.
  static constexpr auto kLetters = [] {
    std::array<std::array<char, 8>, 256> letters{};
    for (int byte = 0; byte < 256; ++byte) {
      for (int i = 0; i < 8; ++i) letters[byte][i] = ((byte >> (7 - i)) & 1) != 0 ? 'Y' : 'N';
    }
    return letters;
  }();
  for (int k = 0; k < 4; ++k) {
    memcpy(field.text + 8 * k, kLetters[(word >> (24 - 8 * k)) & 0xFFu].data(), 8);
  }
  field.text[32] = '\0';
  return field;
}

FieldText FlagFieldText(uint32_t value, uint32_t options) {
  return FieldText{{value != 0 ? 'Y' : 'N', '\0'}, options | FO_UNQUOTED, 1};
}

bool OsTypeFieldText(int os_type, uint32_t options, FieldText* field) {
  static const char* const kNames[] = {"WIN32_S", "WIN32_WINDOWS", "WIN32_NT", "WIN16"};
  if (os_type < 0 || os_type > 3) {
    // The same call as the reader's, line prefix included.
    ReportError("Unsupported OS Type", 1);
    return false;
  }
  snprintf(field->text, sizeof field->text, "%s", kNames[os_type]);
  field->options = options & ~FO_UNQUOTED;
  field->length = strlen(field->text);
  return true;
}

namespace {

// A typed field goes out as WriteField writes its text.
int WriteText(FieldText field, QvFile file) {
  WriteField(field.text, file, field.options);
  return 1;
}

}  // namespace
}  // namespace qv

extern "C" {

int WriteField(char* text, QvFile handle, uint32_t options) {
  qv::File* file = qv::File::FromHandle(handle);
  if (file == nullptr) return 0;
  char empty[1] = "";
  if (text == nullptr) text = empty;
  // The field goes out in one write, not a write per quote and comma: a
  // short write still stops the line where the disk gave out, since the
  // pieces would have gone out in this order.
  static thread_local std::string bytes;
  bytes.clear();
  const size_t length = strlen(text);
  qv::AppendFieldBytes(&bytes, text, length, options);
  // The text itself is the scratch buffer: afterwards it holds only the
  // part after its last double quote.
  if ((options & FO_VERBATIM) == 0) {
    if (const char* last = strrchr(text, '"'); last != nullptr) {
      memmove(text, last + 1, static_cast<size_t>(text + length - last));
    }
  }
  return file->Write(bytes.data(), bytes.size()) == bytes.size() ? 1 : 0;
}

int WriteUnsignedField(uint32_t value, QvFile file, uint32_t options) {
  return qv::WriteText(qv::UnsignedFieldText(value, options), file);
}

int WriteIntegerField(int32_t value, QvFile file, uint32_t options) {
  return qv::WriteText(qv::IntegerFieldText(value, options), file);
}

int WriteDateTimeField(uint32_t value, QvFile file, uint32_t options) {
  return qv::WriteText(qv::DateTimeFieldText(value, options), file);
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
  return qv::WriteText(qv::VersionQuadFieldText(high, low, options), file);
}

int WriteFlagString32Field(uint32_t word, QvFile file, uint32_t options) {
  return qv::WriteText(qv::FlagString32FieldText(word, options), file);
}

int WriteFlagField(uint32_t value, QvFile file, uint32_t options) {
  return qv::WriteText(qv::FlagFieldText(value, options), file);
}

int WriteOsTypeField(int osType, QvFile file, uint32_t options) {
  qv::FieldText field;
  if (!qv::OsTypeFieldText(osType, options, &field)) return 0;
  return qv::WriteText(field, file);
}

}  // extern "C"
