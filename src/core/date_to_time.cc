#include "core/date_to_time.h"

namespace qv {
namespace {

constexpr int64_t kSecondsPerDay = 86400;

int64_t FloorDiv(int64_t a, int64_t b) {
  return a / b - ((a % b != 0) && ((a < 0) != (b < 0)));
}

// Days from 1970-01-01 to the given date of the proleptic Gregorian calendar
// (eras of 400 years, years counted from March so that leap days fall last).
int64_t DaysFromCivil(int64_t year, int64_t month, int64_t day) {
  year -= month <= 2;
  int64_t era = FloorDiv(year, 400);
  int64_t year_of_era = year - era * 400;
  int64_t day_of_year = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  int64_t day_of_era = year_of_era * 365 + year_of_era / 4 - year_of_era / 100 + day_of_year;
  return era * 146097 + day_of_era - 719468;
}

}  // namespace

uint32_t DateToTime(int month, int day, int year, int hour, int minute, int second) {
  int64_t months = int64_t{month} - 1;
  int64_t full_year = int64_t{year} + FloorDiv(months, 12);
  int64_t month_of_year = months - FloorDiv(months, 12) * 12 + 1;
  int64_t days = DaysFromCivil(full_year, month_of_year, 1) + (int64_t{day} - 1);
  int64_t seconds =
      days * kSecondsPerDay + int64_t{hour} * 3600 + int64_t{minute} * 60 + int64_t{second};
  return static_cast<uint32_t>(static_cast<uint64_t>(seconds));
}

DateFields TimeToDate(uint32_t value) {
  int64_t days = value / kSecondsPerDay;
  int64_t rest = value % kSecondsPerDay;
  // The inverse of DaysFromCivil.
  int64_t z = days + 719468;
  int64_t era = FloorDiv(z, 146097);
  int64_t day_of_era = z - era * 146097;
  int64_t year_of_era =
      (day_of_era - day_of_era / 1460 + day_of_era / 36524 - day_of_era / 146096) / 365;
  int64_t day_of_year = day_of_era - (365 * year_of_era + year_of_era / 4 - year_of_era / 100);
  int64_t shifted_month = (5 * day_of_year + 2) / 153;
  int64_t day = day_of_year - (153 * shifted_month + 2) / 5 + 1;
  int64_t month = shifted_month < 10 ? shifted_month + 3 : shifted_month - 9;
  int64_t year = year_of_era + era * 400 + (month <= 2);
  DateFields fields;
  fields.year = static_cast<int>(year);
  fields.month = static_cast<int>(month);
  fields.day = static_cast<int>(day);
  fields.hour = static_cast<int>(rest / 3600);
  fields.minute = static_cast<int>(rest / 60 % 60);
  fields.second = static_cast<int>(rest % 60);
  return fields;
}

}  // namespace qv
