// Dates in profile text: "MM/DD/YY hh:mm:ss" with a two-digit year, held as
// seconds since 1970 taken as universal time.
#include <cstdio>
#include <cstring>

#include "core/date_to_time.h"
#include "core/decimal.h"
#include "core/report_capture.h"
#include "quorvex/report.h"
#include "quorvex/text.h"

namespace qv {
namespace {

constexpr size_t kDateTextLimit = 18;  // characters of the text that are looked at
constexpr char kDelimiters[] = " /:\t\n";
constexpr char kBadDate[] = "Bad date/time: must be of the form 00/00/00 00:00:00";

// The printed year has two digits: years from 2000 lose their century.
int ShortYear(const DateFields& fields) {
  int since_1900 = fields.year - 1900;
  return since_1900 >= 100 ? since_1900 - 100 : since_1900;
}

// Prints into a local buffer first: callers' destinations are the fixed
// fields of their records, and the text is at most 18 characters.
int Print(uint32_t value, char* destination, bool date, bool time) {
  if (value == 0) {
    destination[0] = '\0';
    return 0;
  }
  DateFields f = TimeToDate(value);
  char text[64];
  if (date && time) {
    snprintf(text, sizeof text, "%02d/%02d/%02d %02d:%02d:%02d", f.month, f.day, ShortYear(f),
             f.hour, f.minute, f.second);
  } else if (date) {
    snprintf(text, sizeof text, "%02d/%02d/%02d", f.month, f.day, ShortYear(f));
  } else {
    snprintf(text, sizeof text, "%02d:%02d:%02d", f.hour, f.minute, f.second);
  }
  memcpy(destination, text, strlen(text) + 1);
  return 1;
}

}  // namespace
}  // namespace qv

extern "C" {

int ParseDateTime(uint32_t* value, const char* text) {
  char copy[qv::kDateTextLimit + 1];
  size_t length = strnlen(text, qv::kDateTextLimit);
  memcpy(copy, text, length);
  copy[length] = '\0';
  if (length == 0) {
    *value = 0;
    return 1;
  }
  // Tokens as strtok finds them: runs of delimiters separate, none is empty.
  int fields[6];
  int count = 0;
  for (char* p = copy; *p != '\0';) {
    p += strspn(p, qv::kDelimiters);
    if (*p == '\0') break;
    size_t token = strcspn(p, qv::kDelimiters);
    char saved = p[token];
    p[token] = '\0';
    if (count < 6) fields[count] = qv::DecimalToInt32(p);
    ++count;
    p[token] = saved;
    p += token;
  }
  if (count != 6) {
    *value = 0;
    qv::ReportParseProblem(qv::kBadDate);
    return 0;
  }
  // Two-digit years: 70..99 are 1970..1999, the rest 2000 onward. A
  // four-digit year is not recognised and lands far in the future.
  int year = fields[2] < 70 ? 2000 + fields[2] : 1900 + fields[2];
  *value = qv::DateToTime(fields[0], fields[1], year, fields[3], fields[4], fields[5]);
  return 1;
}

int FormatDateTime(uint32_t value, char* destination) {
  return qv::Print(value, destination, true, true);
}

int FormatDate(uint32_t value, char* destination) {
  return qv::Print(value, destination, true, false);
}

int FormatTime(uint32_t value, char* destination) {
  return qv::Print(value, destination, false, true);
}

}  // extern "C"
