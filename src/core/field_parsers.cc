// The field parsers: each reads one field of a record line at the cursor and
// moves the cursor past the field and the comma after it.
//
// A malformed field is reported with the file and line, and the parser
// returns 0 with the cursor where it stopped; the caller abandons the record.
// Integers are the exception: they report, read 0 and let the record go on.
#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "core/decimal.h"
#include "core/report_capture.h"
#include "core/text_chars.h"
#include "quorvex/report.h"
#include "quorvex/text.h"

namespace qv {
namespace {

constexpr char kStringNoOpeningQuote[] = "Bad string constant: must begin with double quote";
constexpr char kStringNoClosingQuote[] = "Bad string constant: must end with double quote";
constexpr char kStringNoComma[] = "Bad string constant: missing comma after end double quote";
constexpr char kFlagNotYN[] = "Bad flag constant: must be a Y or an N character";
constexpr char kFlagNoComma[] = "Bad flag constant: missing comma following flag";
constexpr char kFlagStringNotYN[] = "Bad flag string: must contain 32 Y or N characters";
constexpr char kIntegerNoDigit[] = "Bad integer constant: first character must be a digit";
constexpr char kIntegerNoComma[] = "Bad integer constant: missing comma following integer";

int Fail(const char* message) {
  qv::ReportParseProblem(message);
  return 0;
}

bool IsFlagLetter(char c) {
  return c == 'Y' || c == 'y' || c == 'N' || c == 'n';
}
bool IsYes(char c) {
  return c == 'Y' || c == 'y';
}

// Reads 32 letters that are all an upper-case Y or N, eight at a time, into
// *word (the first letter the most significant bit); false when any other
// character is among them. The bytes are taken as a little-endian word.
bool ReadPlainLetters(const char* letters, uint32_t* word) {
  if constexpr (std::endian::native != std::endian::little) return false;
  constexpr uint64_t kAllN = 0x4E4E4E4E4E4E4E4Eull;     // "NNNNNNNN"
  constexpr uint64_t kLowBits = 0x0101010101010101ull;  // 'Y' ^ 'N' is 0x17
  constexpr uint64_t kGather = 0x8040201008040201ull;   // byte k's bit to bit 7 - k
  uint32_t yes = 0;
  for (int k = 0; k < 4; ++k) {
    uint64_t chunk;
    memcpy(&chunk, letters + 8 * k, 8);
    const uint64_t diff = chunk ^ kAllN;
    const uint64_t ys = diff & kLowBits;
    if (ys * 0x17 != diff) return false;
    yes = (yes << 8) | static_cast<uint32_t>((ys * kGather) >> 56);
  }
  *word = yes;
  return true;
}

// An optional field may be empty: the cursor stands at a comma, which is
// consumed, or at the end of the line.
bool TakeEmptyOptional(char** cursor, uint32_t options) {
  if ((options & FO_OPTIONAL) == 0) return false;
  if (**cursor == '\0') return true;
  if (**cursor != ',') return false;
  ++*cursor;
  return true;
}

// After a field only blanks may follow before the comma or the end of the
// line; the comma is consumed.
bool TakeFieldEnd(char** cursor) {
  qv::SkipBlankChars(cursor);
  if (**cursor == ',') {
    ++*cursor;
    return true;
  }
  return **cursor == '\0';
}

// The digits of an integer field, converted; every error reads as 0.
int32_t ReadIntegerToken(char** cursor, uint32_t options) {
  qv::SkipBlankChars(cursor);
  if (TakeEmptyOptional(cursor, options)) return 0;
  if (!IsDigit(**cursor)) {
    qv::ReportParseProblem(kIntegerNoDigit);
    return 0;
  }
  // The digits are converted as they are passed, saturating as
  // DecimalToInt32 does: every field of a section's lines comes through here.
  constexpr int64_t kLimit = int64_t{INT32_MAX} + 1;
  int64_t magnitude = 0;
  for (; IsDigit(**cursor); ++*cursor) {
    magnitude = std::min(magnitude * 10 + (**cursor - '0'), kLimit);
  }
  qv::SkipBlankChars(cursor);
  if (**cursor != '\0' && **cursor != ',') {
    qv::ReportParseProblem(kIntegerNoComma);
    return 0;
  }
  if (**cursor == ',') ++*cursor;
  return static_cast<int32_t>(std::min<int64_t>(magnitude, INT32_MAX));
}

// One group of a version quad; a group that does not begin with a digit
// reads 0 and consumes nothing.
uint32_t ReadVersionGroup(char** cursor) {
  uint32_t value = 0;
  if (IsDigit(**cursor)) {
    value = static_cast<uint32_t>(DecimalToInt32(*cursor));
    while (IsDigit(**cursor)) ++*cursor;
  }
  qv::SkipBlankChars(cursor);
  return value;
}

}  // namespace
}  // namespace qv

extern "C" {

int ParseQuotedString(char** cursor, char* destination, uint32_t options, int size) {
  qv::SkipBlankChars(cursor);
  if (qv::TakeEmptyOptional(cursor, options)) {
    if (size > 0) destination[0] = '\0';
    return 1;
  }
  if (**cursor != '"') return qv::Fail(qv::kStringNoOpeningQuote);
  char* text = *cursor + 1;
  char* close = text;
  bool escapes = false;
  // A double quote behind a caret belongs to the text.
  for (;; ++close) {
    close = strchr(close, '"');
    if (close == nullptr) return qv::Fail(qv::kStringNoClosingQuote);
    if (close[-1] != '^') break;
    escapes = true;
  }
  size_t length = static_cast<size_t>(close - text);
  size_t limit = size > 0 ? static_cast<size_t>(size) - 1 : 0;
  if (length > limit) {
    // The message names what the destination held before this field.
    char message[QV_LINE_SIZE];
    snprintf(message, sizeof message,
             "String \"%.*s\" is too long: should not exceed %d characters (within quotes)",
             static_cast<int>(limit), size > 0 ? destination : "", static_cast<int>(limit));
    qv::ReportParseProblem(message);
    length = limit;
  }
  if (size > 0) {
    memmove(destination, text, length);
    destination[length] = '\0';
  }
  *cursor = close + 1;
  if (!qv::TakeFieldEnd(cursor)) return qv::Fail(qv::kStringNoComma);
  if (escapes && size > 0) UnescapeQuotes(destination);
  return 1;
}

int ParseFlag(char** cursor, uint32_t* value, uint32_t options) {
  qv::SkipBlankChars(cursor);
  if (qv::TakeEmptyOptional(cursor, options)) {
    *value = 0;
    return 1;
  }
  char letter = **cursor;
  if (!qv::IsFlagLetter(letter)) return qv::Fail(qv::kFlagNotYN);
  ++*cursor;
  if (!qv::TakeFieldEnd(cursor)) return qv::Fail(qv::kFlagNoComma);
  *value = qv::IsYes(letter) ? 1 : 0;
  return 1;
}

int ParseFlagString32(char** cursor, uint32_t* word, uint32_t options) {
  *word = 0;
  qv::SkipBlankChars(cursor);
  if (qv::TakeEmptyOptional(cursor, options)) return 1;
  if (**cursor != '"') return qv::Fail(qv::kStringNoOpeningQuote);
  char* letters = *cursor + 1;
  char* close = strchr(letters, '"');
  if (close == nullptr) return qv::Fail(qv::kStringNoClosingQuote);
  *cursor = close + 1;
  if (!qv::TakeFieldEnd(cursor)) return qv::Fail(qv::kStringNoComma);
  // The first letter is bit 31; blanks between letters are allowed and
  // letters after the 32nd are ignored. The writer puts 32 letters and
  // nothing else between the quotes, which is read without the general loop.
  if (close - letters >= 32 && qv::ReadPlainLetters(letters, word)) return 1;
  for (int bit = 31; bit >= 0; --bit) {
    qv::SkipBlankChars(&letters);
    if (!qv::IsFlagLetter(*letters)) return qv::Fail(qv::kFlagStringNotYN);
    if (qv::IsYes(*letters)) *word |= uint32_t{1} << bit;
    ++letters;
  }
  return 1;
}

int ParseInteger(char** cursor, int32_t* value, uint32_t options) {
  *value = qv::ReadIntegerToken(cursor, options);
  return 1;
}

int ParseLong(char** cursor, int32_t* value, uint32_t options) {
  *value = qv::ReadIntegerToken(cursor, options);
  return 1;
}

int ParseVersionQuad(char** cursor, uint32_t* pair, uint32_t options) {
  qv::SkipBlankChars(cursor);
  if (qv::TakeEmptyOptional(cursor, options)) {
    pair[0] = 0;
    pair[1] = 0;
    return 1;
  }
  if (!qv::IsDigit(**cursor)) return qv::Fail(qv::kIntegerNoDigit);
  uint32_t groups[4];
  for (uint32_t& group : groups) group = qv::ReadVersionGroup(cursor);
  pair[0] = (groups[0] << 16) + groups[1];
  pair[1] = (groups[2] << 16) + groups[3];
  if (**cursor == ',') {
    ++*cursor;
    return 1;
  }
  if (**cursor != '\0') return qv::Fail(qv::kIntegerNoComma);
  return 1;
}

void RemoveChar(char* text, int c) {
  char* out = text;
  for (const char* in = text; *in != '\0'; ++in) {
    if (*in != static_cast<char>(c)) *out++ = *in;
  }
  *out = '\0';
}

void UnescapeQuotes(char* text) {
  char* out = text;
  for (const char* in = text; *in != '\0'; ++in) {
    if (*in == '^' && in[1] == '"') continue;
    *out++ = *in;
  }
  *out = '\0';
}

}  // extern "C"
