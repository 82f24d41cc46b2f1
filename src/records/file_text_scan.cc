#include "records/file_text_scan.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "quorvex/base.h"

namespace qv {
namespace {

// The reader takes at most this many bytes at once: a line whose bytes
// before the line feed fill them is cut, and the byte after them is lost.
constexpr size_t kReadSize = QV_LINE_SIZE - 1;

bool IsBlankByte(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f';
}

bool IsTextByte(unsigned char c) {
  return c == '\t' || (c >= 0x20 && c != 0x7F);
}

// Whether every byte is text and none a tab: eight bytes at a time, since
// check looks at every byte of the profile. A byte below 0x20 or 0x7F in a
// word makes the tests below say so (they may also flag a word that holds a
// tab, which the caller then looks at byte by byte).
bool AllPlainText(const char* bytes, size_t length) {
  constexpr uint64_t kOnes = 0x0101010101010101ull;
  constexpr uint64_t kHighs = 0x8080808080808080ull;
  size_t i = 0;
  for (; i + 8 <= length; i += 8) {
    uint64_t word;
    memcpy(&word, bytes + i, 8);
    const uint64_t below_space = (word - kOnes * 0x20) & ~word & kHighs;
    const uint64_t del = word ^ (kOnes * 0x7F);
    const uint64_t is_del = (del - kOnes) & ~del & kHighs;
    if ((below_space | is_del) != 0) return false;
  }
  for (; i < length; ++i) {
    const auto c = static_cast<unsigned char>(bytes[i]);
    if (c < 0x20 || c == 0x7F) return false;
  }
  return true;
}

std::string Describe(unsigned char c) {
  char text[8];
  snprintf(text, sizeof text, "0x%02X", c);
  return text;
}

// Replays the reader over the bytes: each read takes up to kReadSize bytes,
// ends at the first line feed or NUL byte, and the next read starts one
// byte past that end.
std::vector<int> ReaderLines(const std::string& bytes) {
  std::vector<int> lines;
  size_t position = 0;
  int line = 1;
  while (position < bytes.size()) {
    lines.push_back(line);
    size_t length = std::min(kReadSize, bytes.size() - position);
    const char* start = bytes.data() + position;
    // The read ends at the first line feed or NUL byte. The feed is looked
    // for first: a NUL is rare, and looking for it over the whole read size
    // would pass over thousands of bytes for every short line.
    const void* feed = memchr(start, '\n', length);
    const size_t limit =
        feed != nullptr ? static_cast<size_t>(static_cast<const char*>(feed) - start) : length;
    const void* nul = memchr(start, '\0', limit);
    const size_t end =
        nul != nullptr ? static_cast<size_t>(static_cast<const char*>(nul) - start) : limit;
    // The read took the bytes up to `end` and the byte there: a line feed
    // there (its own, or the byte a cut line loses) starts the next line.
    // There is none before it.
    if (position + end < bytes.size() && bytes[position + end] == '\n') ++line;
    position += end + 1;
  }
  return lines;
}

void Add(FileTextScan* scan, const std::string& path, int line, const char* kind,
         std::string text) {
  scan->problems.push_back({path, line, kind, std::move(text)});
}

void CheckBytes(FileTextScan* scan, const std::string& path, int number, const char* line,
                size_t length, bool before_feed) {
  if (length >= kReadSize) {
    Add(scan, path, number, kLongProblem,
        "line of " + std::to_string(length) + " bytes: the reader cuts lines of " +
            std::to_string(kReadSize) + " bytes or more and loses a byte");
  }
  // A carriage return belongs to the line end written on Windows.
  const size_t checked =
      before_feed && length > 0 && line[length - 1] == '\r' ? length - 1 : length;
  if (AllPlainText(line, checked)) return;
  size_t first = length;
  int count = 0;
  for (size_t i = 0; i < length; ++i) {
    auto c = static_cast<unsigned char>(line[i]);
    // A carriage return belongs to the line end written on Windows.
    if (c == '\r' && i + 1 == length && before_feed) continue;
    if (IsTextByte(c)) continue;
    if (count++ == 0) first = i;
  }
  if (count == 0) return;
  std::string text = "byte " + Describe(static_cast<unsigned char>(line[first])) + " at column " +
                     std::to_string(first + 1) + " is not text";
  if (count > 1) text += " (" + std::to_string(count) + " such bytes on the line)";
  Add(scan, path, number, kTextProblem, text);
}

}  // namespace

FileTextScan ScanFileText(const std::string& path, const std::string& bytes) {
  FileTextScan scan;
  scan.reader_lines = ReaderLines(bytes);
  size_t start = 0;
  int number = 0;
  while (start < bytes.size()) {
    ++number;
    size_t feed = bytes.find('\n', start);
    bool before_feed = feed != std::string::npos;
    size_t end = before_feed ? feed : bytes.size();
    const char* line = bytes.data() + start;
    size_t length = end - start;
    CheckBytes(&scan, path, number, line, length, before_feed);
    size_t first = 0;
    while (first < length && IsBlankByte(line[first])) ++first;
    if (first < length && line[first] == '[') {
      // The reader stops at a NUL byte, so the name does too.
      std::string rest(line + first + 1, strnlen(line + first + 1, length - first - 1));
      size_t close = rest.find(']');
      scan.headers.push_back({close == std::string::npos ? rest : rest.substr(0, close), number});
    } else if (first < length && line[first] != ';') {
      if (scan.headers.empty()) {
        Add(&scan, path, number, kOutsideProblem, "line outside any section");
      } else {
        ++scan.headers.back().record_lines;
      }
    }
    start = end + 1;
  }
  return scan;
}

int PhysicalLine(const FileTextScan& scan, int reader_line) {
  if (reader_line < 1 || static_cast<size_t>(reader_line) > scan.reader_lines.size()) {
    return reader_line;
  }
  return scan.reader_lines[reader_line - 1];
}

}  // namespace qv
