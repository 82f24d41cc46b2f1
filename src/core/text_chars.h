// Character classes and comparisons of profile text.
#ifndef QUORVEX_CORE_TEXT_CHARS_H_
#define QUORVEX_CORE_TEXT_CHARS_H_

namespace qv {

// The blanks that the reader skips before a field and trims after a line:
// space, tab, line feed, carriage return and form feed (not vertical tab).
inline bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f';
}

// Moves the cursor over blanks. The parsers call this for every field (and
// every letter of a flag string), so it is inline here rather than a call
// through the exported SkipBlanks.
inline void SkipBlankChars(char** cursor) {
  while (IsBlank(**cursor)) ++*cursor;
}

inline bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

inline char AsciiLower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

// Section and symbolic names compare without regard to ASCII case.
inline bool EqualsIgnoreCase(const char* a, const char* b) {
  while (*a != '\0' && AsciiLower(*a) == AsciiLower(*b)) {
    ++a;
    ++b;
  }
  return AsciiLower(*a) == AsciiLower(*b);
}

}  // namespace qv

#endif  // QUORVEX_CORE_TEXT_CHARS_H_
