#include "core/decimal.h"

#include "core/text_chars.h"

namespace qv {

int32_t DecimalToInt32(const char* text) {
  const char* p = text;
  while (*p == ' ' || (*p >= '\t' && *p <= '\r')) ++p;
  bool negative = false;
  if (*p == '+' || *p == '-') negative = *p++ == '-';
  constexpr int64_t kLimit = int64_t{INT32_MAX} + 1;
  int64_t magnitude = 0;
  for (; IsDigit(*p); ++p) {
    magnitude = magnitude * 10 + (*p - '0');
    if (magnitude > kLimit) magnitude = kLimit;  // saturated; the rest cannot lower it
  }
  if (negative) return static_cast<int32_t>(-magnitude);
  return magnitude > INT32_MAX ? INT32_MAX : static_cast<int32_t>(magnitude);
}

}  // namespace qv
