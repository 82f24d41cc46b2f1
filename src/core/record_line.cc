// Logical record lines: one record (continuations joined) or, in the modes
// that want them, one comment, per call.
//
// Comment modes:        plain lines  ";IAO;" lines         other comments
//   1 active only       returned     skipped               skipped
//   2 records           returned     returned, marked      skipped
//   3 listing           returned     returned, marked      returned, marked
//   4 skip a section    skipped      returned as comment   returned, marked
#include <algorithm>
#include <cstdio>
#include <cstring>

#include "core/plain_lines.h"
#include "core/read_line.h"
#include "core/report_capture.h"
#include "core/state.h"
#include "core/text_chars.h"
#include "platform/file.h"
#include "quorvex/report.h"
#include "quorvex/text.h"

namespace qv {
namespace {

constexpr char kMarker[] = ";IAO;";
constexpr size_t kMarkerLength = sizeof kMarker - 1;
constexpr size_t kRecordLimit = QV_LINE_SIZE - 1;  // callers pass QV_LINE_SIZE bytes

constexpr char kCommentNotContinued[] = "Continued Comment line is not commented out.";

uint64_t continuable_lines = 0;

// A line whose record or comment may go on in the next line.
bool MayContinue(const char* line, long length) {
  while (length > 0 && (IsBlank(line[length - 1]) || line[length - 1] == '\r')) --length;
  return length > 0 && line[length - 1] == '\\';
}

// The record buffer with its length, so that joining stays linear.
class RecordText {
 public:
  explicit RecordText(char* buffer) : buffer_(buffer), length_(strlen(buffer)) {}

  // Appends text; false (text left as it was) when the record would pass
  // the size of the caller's buffer.
  bool Append(const char* text) { return Append(text, strlen(text)); }
  bool Append(const char* text, size_t n) {
    if (length_ + n > kRecordLimit) return false;
    memcpy(buffer_ + length_, text, n + 1);
    length_ += n;
    return true;
  }
  bool EndsInBackslash() const { return length_ > 0 && buffer_[length_ - 1] == '\\'; }
  void DropLast() { buffer_[--length_] = '\0'; }

 private:
  char* buffer_;
  size_t length_;
};

bool ReportTooLong() {
  char message[QV_LINE_SIZE];
  snprintf(message, sizeof message,
           "Continued record line is too long: should not exceed %d characters",
           static_cast<int>(kRecordLimit));
  qv::ReportParseProblem(message);
  return false;
}

// Reads the next physical line with its leading blanks skipped. At the end
// of the file the line is empty: a continuation then appends nothing.
char* NextContinuation(QvFile file, char* line) {
  ReadProfileLine(file, line, QV_LINE_SIZE);
  char* p = line;
  qv::SkipBlankChars(&p);
  return p;
}

// A plain record: the line (leading blanks already skipped, `length` bytes
// long), then every following line while the joined text ends in a
// backslash, whatever that line begins with.
bool ReadPlainRecord(QvFile file, char* text, size_t length, char* record) {
  // As TrimTrailingBlanks, with the length known.
  while (length > 1 && IsBlank(text[length - 1])) --length;
  text[length] = '\0';
  RecordText joined(record);
  joined.Append(text, length);
  char line[QV_LINE_SIZE];
  while (joined.EndsInBackslash()) {
    joined.DropLast();
    char* next = NextContinuation(file, line);
    TrimTrailingBlanks(next);
    if (!joined.Append(next)) return ReportTooLong();
  }
  return true;
}

// A record behind the ";IAO;" marker. Continuation lines must be comments;
// their first five characters are dropped unseen, as the marker would be.
bool ReadMarkedRecord(QvFile file, char* text, char* record) {
  char* body = text + kMarkerLength;
  TrimTrailingBlanks(body);
  RecordText joined(record);
  joined.Append(body);
  char line[QV_LINE_SIZE];
  while (joined.EndsInBackslash()) {
    joined.DropLast();
    char* next = NextContinuation(file, line);
    if (*next != ';') {
      qv::ReportParseProblem(kCommentNotContinued);
      return false;
    }
    size_t length = strlen(next);
    next += length < kMarkerLength ? length : kMarkerLength;
    TrimTrailingBlanks(next);
    if (!joined.Append(next)) return ReportTooLong();
  }
  return true;
}

// A comment returned as it stands, from its ";" on. The first line is not
// trimmed, so a backslash before a carriage return does not continue it.
bool ReadComment(QvFile file, char* text, char* record) {
  RecordText joined(record);
  joined.Append(text);
  char line[QV_LINE_SIZE];
  while (joined.EndsInBackslash()) {
    joined.DropLast();
    char* next = NextContinuation(file, line);
    if (*next != ';') {
      qv::ReportParseProblem(kCommentNotContinued);
      return false;
    }
    ++next;
    TrimTrailingBlanks(next);
    if (!joined.Append(next)) return ReportTooLong();
  }
  return true;
}

// A plain record line that the file's cached block holds whole, copied
// straight into the record: nearly every line of a section is one, and the
// general way copies it twice. False, with the file where it was, for any
// other line (a section header, a comment, a blank line, one that may
// continue or that the block or buffer cuts), which the general way reads.
bool ReadWholePlainLine(QvFile file, char* record) {
  File* f = File::FromHandle(file);
  if (f == nullptr) return false;
  const char* bytes = nullptr;
  const size_t got = f->Peek(&bytes);
  if (got == 0) return false;
  const char* feed = static_cast<const char*>(memchr(bytes, '\n', std::min(got, kRecordLimit)));
  if (feed == nullptr) return false;
  const size_t length = static_cast<size_t>(feed - bytes);
  if (strnlen(bytes, length) != length) return false;  // a NUL byte cuts the line
  const char* first = bytes;
  while (first < feed && IsBlank(*first)) ++first;
  if (first == feed || *first == '[' || *first == ';') return false;
  const char* end = feed;
  while (IsBlank(end[-1])) --end;  // stops at the first character at the latest
  if (end[-1] == '\\') return false;
  memcpy(record, first, static_cast<size_t>(end - first));
  record[end - first] = '\0';
  f->Seek(static_cast<int64_t>(length) + 1, SEEK_CUR);
  ++State().parse_line;
  return true;
}

}  // namespace

uint64_t ContinuableLineCount() {
  return continuable_lines;
}

}  // namespace qv

extern "C" {

int ReadRecordLine(QvFile file, char* record, uint32_t* recordFlags, int commentMode) {
  record[0] = '\0';
  *recordFlags = 0;
  if (commentMode != COMMENT_MODE_SKIP && qv::ReadWholePlainLine(file, record)) return 1;
  char line[QV_LINE_SIZE];
  for (;;) {
    const long length = qv::ReadLine(file, line, sizeof line);
    if (length < 0) return 0;
    if (qv::MayContinue(line, length)) ++qv::continuable_lines;
    char* p = line;
    qv::SkipBlankChars(&p);
    if (*p == '[') {
      // The next section begins: step back so that its header is read again.
      qv::File::FromHandle(file)->Seek(-(length + 1), SEEK_CUR);
      return 0;
    }
    if (*p != ';') {
      if (commentMode == COMMENT_MODE_SKIP || *p == '\0') continue;
      return qv::ReadPlainRecord(file, p, static_cast<size_t>(line + length - p), record) ? 1 : 0;
    }
    bool marked = strncmp(p, qv::kMarker, qv::kMarkerLength) == 0;
    if (marked && (commentMode == COMMENT_MODE_RECORDS || commentMode == COMMENT_MODE_LISTING)) {
      *recordFlags = RECORD_IAO;
      return qv::ReadMarkedRecord(file, p, record) ? 1 : 0;
    }
    if (commentMode == COMMENT_MODE_ACTIVE_ONLY || commentMode == COMMENT_MODE_RECORDS) continue;
    *recordFlags = RECORD_IAO;
    return qv::ReadComment(file, p, record) ? 1 : 0;
  }
}

}  // extern "C"
