// Calendar arithmetic for profile dates: seconds since 1 January 1970 taken
// as universal time. No time zone is ever applied, so a date read and
// printed again shows the fields it was written with.
#ifndef QUORVEX_CORE_DATE_TO_TIME_H_
#define QUORVEX_CORE_DATE_TO_TIME_H_

#include <cstdint>

namespace qv {

struct DateFields {
  int year;   // full year, e.g. 1999
  int month;  // 1..12
  int day;    // 1..31
  int hour;
  int minute;
  int second;
};

// Fields out of their range carry over as a calendar would (month 13 is
// January of the next year, day 0 the last day of the month before). The
// count is cut to its low 32 bits: profile dates are 32-bit words.
uint32_t DateToTime(int month, int day, int year, int hour, int minute, int second);

// The fields of a time value, read as an unsigned count of seconds.
DateFields TimeToDate(uint32_t value);

}  // namespace qv

#endif  // QUORVEX_CORE_DATE_TO_TIME_H_
